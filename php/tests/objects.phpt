--TEST--
Objects: construction, refusal of cloning and serialisation, missing constructors, release
--FILE--
<?php
require __DIR__ . '/shared.inc';

foreach ([0, 3, -1, 4294967297, PHP_INT_MAX] as $type) {
    show("new SEPA($type)", function () use ($type) { new SEPA($type); });
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
foreach ([new Orphan, (new ReflectionClass('SEPA'))->newInstanceWithoutConstructor()] as $object) {
    foreach ($calls as $name => $arguments) {
        show($name, function () use ($object, $name, $arguments) { return $object->$name(...$arguments); });
    }
}
show('load', function () { return (new OrphanParser)->load(1, __FILE__); });
show('getStatements', function () { return (new OrphanParser)->getStatements(); });
echo (new Orphan)->property, "\n";

echo "\nRefused:\n";
foreach ([direct_debits(), new SEPAStatementParser] as $object) {
    show('clone', function () use ($object) { return clone $object; });
    show('serialize', function () use ($object) { return serialize($object); });
    $class = get_class($object);
    show('unserialize', function () use ($class) {
        return @unserialize(sprintf('O:%d:"%s":0:{}', strlen($class), $class));
    });
}

echo "\nConstructor called again:\n";
$message = direct_debits();
$message->add(payment());
show('wrong type', function () use ($message) { $message->__construct(7); });
echo implode(array_unique(elements($message->toXML(), 'CtrlSum'))), "\n";
show('right type', function () use ($message) { $message->__construct(SEPA_MSGTYPE_CTI); });
echo implode(elements($message->toXML(), 'NbOfTxs')), " transactions\n";
$parser = new SEPAStatementParser;
$parser->load(SEPA_STMT_FORMAT_MT940, statement_file('', ':20:A', '-'));
$parser->__construct();
show('parser', function () use ($parser) { return $parser->getStatements(); });
show('loads again', function () use ($parser) { return $parser->load(1, statement_file('', ':20:B', '-')); });

class Ring extends SEPA
{
    public $self;
}
function make_and_drop(int $count): void
{
    for ($i = 0; $i < $count; $i++) {
        $message = direct_debits();
        $message->add(payment());
        if ($i % 50 == 0) {
            $message->toXML();
        }
        if ($i % 3 == 0) {
            $ring = new Ring(SEPA_MSGTYPE_CTI);
            $ring->setName('Muster GmbH');
            $ring->self = $ring; // left to the cycle collector
        }
    }
}
make_and_drop(50000);
gc_collect_cycles();
$before = resident_memory();
make_and_drop(200000);
gc_collect_cycles();
$growth = resident_memory() - $before;
echo "\n200,000 objects: ", $growth < 1024 ? 'stable' : "$growth KiB more", "\n";
?>
--EXPECT--
new SEPA(0) -> "SEPAException 42: invalid/unknown message type"
new SEPA(3) -> "SEPAException 42: invalid/unknown message type"
new SEPA(-1) -> "SEPAException 42: invalid/unknown message type"
new SEPA(4294967297) -> "SEPAException 42: invalid/unknown message type"
new SEPA(9223372036854775807) -> "SEPAException 42: invalid/unknown message type"

Without the constructor:
setIBAN -> "SEPAException 0: Invalid sepa_t handle (NULL)"
setBIC -> "SEPAException 0: Invalid sepa_t handle (NULL)"
setName -> "SEPAException 0: Invalid sepa_t handle (NULL)"
setCreditorIdentifier -> "SEPAException 0: Invalid sepa_t handle (NULL)"
setDate -> "SEPAException 0: Invalid sepa_t handle (NULL)"
setDDType -> "SEPAException 0: Invalid sepa_t handle (NULL)"
setBatchBooking -> "SEPAException 0: Invalid sepa_t handle (NULL)"
setMessageId -> "SEPAException 0: Invalid sepa_t handle (NULL)"
add -> "SEPAException 0: Invalid sepa_t handle (NULL)"
toXML -> "SEPAException 0: Invalid sepa_t handle (NULL)"
setIBAN -> "SEPAException 0: Invalid sepa_t handle (NULL)"
setBIC -> "SEPAException 0: Invalid sepa_t handle (NULL)"
setName -> "SEPAException 0: Invalid sepa_t handle (NULL)"
setCreditorIdentifier -> "SEPAException 0: Invalid sepa_t handle (NULL)"
setDate -> "SEPAException 0: Invalid sepa_t handle (NULL)"
setDDType -> "SEPAException 0: Invalid sepa_t handle (NULL)"
setBatchBooking -> "SEPAException 0: Invalid sepa_t handle (NULL)"
setMessageId -> "SEPAException 0: Invalid sepa_t handle (NULL)"
add -> "SEPAException 0: Invalid sepa_t handle (NULL)"
toXML -> "SEPAException 0: Invalid sepa_t handle (NULL)"
load -> "SEPAException 0: invalid sepa_stmt_parser_t handle"
getStatements -> "SEPAException 0: invalid sepa_stmt_parser_t handle"
kept

Refused:
clone -> "Error 0: Trying to clone an uncloneable object of class SEPA"
serialize -> "Exception 0: Serialization of 'SEPA' is not allowed"
unserialize -> "Exception 0: Unserialization of 'SEPA' is not allowed"
clone -> "Error 0: Trying to clone an uncloneable object of class SEPAStatementParser"
serialize -> "Exception 0: Serialization of 'SEPAStatementParser' is not allowed"
unserialize -> "Exception 0: Unserialization of 'SEPAStatementParser' is not allowed"

Constructor called again:
wrong type -> "SEPAException 42: invalid/unknown message type"
12.50
right type -> null
0 transactions
parser -> null
loads again -> true

200,000 objects: stable
