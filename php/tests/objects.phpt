--TEST--
Objects: construction, refusal of cloning and serialisation, missing constructors, release
--FILE--
<?php
require __DIR__ . '/shared.inc';

foreach ([0, 3, -1, 'lower half 1' => PHP_INT_MIN + 1, 'largest' => PHP_INT_MAX] as $name => $type) {
    show("new SEPA($name)", function () use ($type) { new SEPA($type); });
}

class Orphan extends SEPA
{
    public $property = 'kept';
    public function __construct() {}
}
class OrphanParser extends SEPAStatementParser
{
    public function __construct() {}
}

echo "\nWithout the constructor:\n";
$calls = ['setIBAN' => ['x'], 'setBIC' => ['x'], 'setName' => ['x'], 'setCreditorIdentifier' => ['x'],
    'setDate' => ['x'], 'setDDType' => [0], 'setBatchBooking' => [true], 'setMessageId' => ['x'],
    'add' => [['iban' => 'x']], 'toXML' => []];
$results = [];
foreach ([new Orphan, (new ReflectionClass('SEPA'))->newInstanceWithoutConstructor()] as $object) {
    foreach ($calls as $name => $arguments) {
        $results[] = attempt(function () use ($object, $name, $arguments) { return $object->$name(...$arguments); });
    }
}
echo text_of(array_count_values($results)), "\n", (new Orphan)->property, "\n";
show('load', function () { return (new OrphanParser)->load(1, __FILE__); });
show('getStatements', function () { return (new OrphanParser)->getStatements(); });

echo "\nRefused:\n";
foreach ([message_of_type(SEPA_MSGTYPE_DDI), new SEPAStatementParser] as $object) {
    $class = get_class($object);
    $stored = sprintf('O:%d:"%s":0:{}', strlen($class), $class);
    show('clone', function () use ($object) { return clone $object; });
    show('serialize', function () use ($object) { return serialize($object); });
    show('unserialize', function () use ($stored, $class) {
        $silent = @unserialize($stored) === false && PHP_VERSION_ID < 80100;
        return $silent ? "Exception 0: Unserialization of '$class' is not allowed" : 'allowed';
    });
}

echo "\nConstructor called again:\n";
$message = message_of_type(SEPA_MSGTYPE_DDI);
$message->add(payment());
show('wrong type', function () use ($message) { $message->__construct(7); });
echo elements($message->toXML(), 'CtrlSum'), "\n";
show('right type', function () use ($message) { $message->__construct(SEPA_MSGTYPE_CTI); });
echo elements($message->toXML(), 'NbOfTxs'), " transactions\n";
$parser = new SEPAStatementParser;
$parser->load(SEPA_STMT_FORMAT_MT940, statement_file('', ':20:A', '-'));
$parser->__construct();
show('parser', function () use ($parser) { return $parser->getStatements(); });
show('loads again', function () use ($parser) { return $parser->load(1, statement_file('', ':20:B', '-')); });

// What the cycle collector finds is released, too: this test runs under valgrind.
class Ring extends SEPA
{
    public $self;
}
$ring = new Ring(SEPA_MSGTYPE_CTI);
$ring->setName('Muster GmbH');
$ring->self = $ring;
unset($ring);
echo gc_collect_cycles(), " collected\n";
?>
--EXPECT--
new SEPA(0) -> "SEPAException 42: invalid/unknown message type"
new SEPA(1) -> "SEPAException 42: invalid/unknown message type"
new SEPA(2) -> "SEPAException 42: invalid/unknown message type"
new SEPA(lower half 1) -> "SEPAException 42: invalid/unknown message type"
new SEPA(largest) -> "SEPAException 42: invalid/unknown message type"

Without the constructor:
{"SEPAException 0: Invalid sepa_t handle (NULL)":20}
kept
load -> "SEPAException 0: invalid sepa_stmt_parser_t handle"
getStatements -> "SEPAException 0: invalid sepa_stmt_parser_t handle"

Refused:
clone -> "Error 0: Trying to clone an uncloneable object of class SEPA"
serialize -> "Exception 0: Serialization of 'SEPA' is not allowed"
unserialize -> "Exception 0: Unserialization of 'SEPA' is not allowed"
clone -> "Error 0: Trying to clone an uncloneable object of class SEPAStatementParser"
serialize -> "Exception 0: Serialization of 'SEPAStatementParser' is not allowed"
unserialize -> "Exception 0: Unserialization of 'SEPAStatementParser' is not allowed"

Constructor called again:
wrong type -> "SEPAException 42: invalid/unknown message type"
12.50, 12.50
right type -> null
0 transactions
parser -> null
loads again -> true
1 collected
