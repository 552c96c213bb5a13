--TEST--
The classes of the module velmora: the table of their calls, loops through bookings, batches of payments
--FILE--
<?php
require __DIR__ . '/shared.inc';

class Calls
{
    private $class, $object;
    public function __construct(string $class) { $this->class = $class; }
    public function __invoke(string $name, array $arguments)
    {
        if (method_exists($this, $name)) {
            return $this->$name(...$arguments);
        }
        $static = (new ReflectionMethod($this->class, $name))->isStatic();
        $object = $static ? $this->class : $this->object ?? new $this->class;
        $result = call_user_func_array([$object, $name], $arguments);
        return $result === $object ? 'the object' : $result;
    }
    private function finding(string $method, string $text): array
    {
        $found = SEPACheck::$method($text);
        unset($found['code'], $found['method']); // "name" says it, too
        return array_values($found);
    }
    private function answer(string $id)
    {
        $report = new SEPAReport;
        $report->load(__DIR__ . '/partly.xml');
        return [array_search($report->match($id), $report->getItems()), $report->match($id)];
    }
    private function message(...$arguments): bool
    {
        return (bool) $this->object = new SEPAMessage(...$arguments);
    }
    private function document(string $name): string
    {
        return elements($this->object->toXML(), $name);
    }
    private function report(string $text, int $mode, int $limit): array
    {
        SEPAText::convert($text, $mode, $limit, $report);
        return $report;
    }
    private function read(int $format, string $data): array
    {
        $reader = new SEPAStatementReader;
        $reader->loadString($format, $data);
        $bookings = iterator_to_array($reader->getBookings());
        $same = $bookings === array_merge([], ...array_column($reader->getStatements() ?? [], 'tx'));
        return [$same, $reader->getStatements(), $reader->check()];
    }
}

SEPA::init(SEPA_INIT_RULEBOOK, 'DE-3.7');
$count = 0;
preg_match_all('/^== (.*)\n((?:(?!== ).*\n)*)/m', file_get_contents(__DIR__ . '/velmora.txt'), $sections);
foreach ($sections[1] as $i => $class) {
    $count += replay(explode("\n", $sections[2][$i]), new Calls($class));
}
echo $count, " calls\n";

/** As the table has it. */
function answer(string $method, string $text): string
{
    $found = SEPACheck::$method(...$method == 'account' ? explode('/', $text) : [$text]);
    if (!isset($found['valid'])) {
        return is_array($found) ? rtrim(count($found) . ' ' . implode(' ', $found)) : $found ?? '-1';
    }
    return implode(' ', [$found['valid'] ? 1 : -1, $found['code'], $found['position'], $found['length'],
        $found['expected'], $found['method'] ?: '-']) . '|' . $found['text'];
}

// What the explanations say, as in C.
$findings = 0;
foreach (preg_grep('/^#|\(null\)/', file(__DIR__ . '/findings.txt', FILE_IGNORE_NEW_LINES), PREG_GREP_INVERT) as $row) {
    list($method, $text, $expected) = explode('|', $row, 3);
    if (answer($method, $text) !== $expected) {
        echo $row, ' -> ', answer($method, $text), "\n";
    }
    $findings++;
}
echo $findings > 40 ? '' : "$findings findings\n";

echo "\nBookings:\n";
$statement = "\r\n:20:A\r\n:61:230102C1,00NMSCA\r\n:61:230102C2,00NMSCB\r\n-\r\n:20:B\r\n-\r\n:20:C\r\n:61:230102C3,00NMSCC\r\n-\r\n";
$reader = new SEPAStatementReader;
show('before load()', function () use ($reader) { return [iterator_to_array($reader->getBookings()), $reader->check()]; });
$reader->loadString(SEPA_STMT_FORMAT_MT940, $statement);
show('second load', function () use ($reader) { return $reader->loadString(SEPA_STMT_FORMAT_CAMT, 'x'); });
show('second constructor', function () use ($reader) { $reader->__construct(); });
$bookings = $reader->getBookings();
$other = $reader->getBookings();
unset($reader); // the loops hold it
foreach ($bookings as $number => $booking) {
    foreach ($other as $again) {
        echo $number, ' ', $booking['ref'], ' ', $again['ref'], "\n";
    }
}
show('outlives the loop', function () use ($booking) { return $booking['amount']; });
class Unfinished extends SEPAStatementReader
{
    public function __construct() {}
}
foreach (['check' => [], 'getBookings' => [], 'loadString' => [1, 'x']] as $name => $arguments) {
    show($name, function () use ($name, $arguments) { return (new Unfinished)->$name(...$arguments); });
}
foreach (['SEPAStatementReader', 'SEPAReport'] as $class) {
    show('clone', function () use ($class) { return clone new $class; });
    show('serialize', function () use ($class) { return serialize(new $class); });
}

echo "\nBatches:\n";
function transfer(string $amount): array
{
    return ['name' => 'Eva Muster', 'iban' => 'AT611904300234573201', 'amount' => $amount];
}
class Amount
{
    public $call;
    public function __construct(callable $call) { $this->call = $call; }
    public function __toString(): string { return ($this->call)(); }
}
$message = new SEPAMessage(SEPA_MSGTYPE_CTI, 'DE-26.11');
function batch(string $label, $payments): void
{
    global $message;
    show($label, function () use ($message, $payments) {
        try {
            return $message->addAll($payments);
        } catch (SEPAException $failure) {
            $previous = $failure->getPrevious();
            return [$failure->getMessage(), $failure->getCode(), $previous ? $previous->getMessage() : null];
        } finally {
            echo $message->getTotals()['payments'], ' ';
        }
    });
}
batch('list', [transfer('1'), transfer('2')]);
batch('nothing', []);
batch('generator', (function () { yield 'x' => transfer('3'); yield 'x' => transfer('4'); })());
batch('iterator', new ArrayIterator([transfer('5')]));
batch('the last refused', [transfer('1'), 'Miete' => transfer('-2')]);
batch('in a generator with odd keys', (function () { yield null => transfer('1'); yield [] => transfer('x'); })());
batch('no array', [transfer('1'), 5]);
batch('zero byte', [transfer('1'), transfer("1\0")]);
batch('generator throws', (function () { yield transfer('1'); throw new DomainException('broken', 7); })());
batch('text throws', [transfer('1'), ['amount' => new Amount(function () { throw new DomainException('no', 8); })]]);
$refused = attempt(function () use ($message) { return $message->addAll(5); });
echo 'nothing iterable -> ', strtok($refused, ':'), "\n"; // versions of PHP put the rest in words of their own
$list = [transfer('6'), transfer('7')];
$list[0]['ref'] = new Amount(function () use (&$list, $message) {
    $list = null;
    return (string) $message->addAll([transfer('8')]);
});
batch('changed on the way, and a batch within', $list);
$list = null;
show('constructed on the way', function () {
    $message = new SEPAMessage(SEPA_MSGTYPE_CTI, 'DE-26.11');
    $again = new Amount(function () use ($message) { return $message->__construct(SEPA_MSGTYPE_CTI) ?? '1'; });
    return [$message->test(['amount' => $again] + transfer('1')), $message->addAll([transfer($again)])];
});
echo elements($message->setName('Verein')->setIBAN('DE89370400440532013000')->toXML(), 'InstdAmt'), "\n";

echo "\nFiles:\n";
$folder = sys_get_temp_dir() . '/velmora' . getmypid();
mkdir($folder);
$file = "$folder/document.xml";
$message->set('created', '2027-01-02T03:04:05Z')->setDate('2027-01-15')->setMessageId('MSG-1');
show('new', function () use ($message, $file) { return $message->save($file) === strlen($message->toXML()); });
chmod($file, 0640);
symlink($file, "$folder/link");
show('again, by a link', function () use ($message, $folder) { return $message->save("$folder/link") > 0; });
show('as it was', function () use ($message, $file, $folder) {
    return [file_get_contents($file) === $message->toXML(), decoct(fileperms($file)), is_link("$folder/link")];
});
show('a folder', function () use ($message, $folder) { return $message->save($folder); });
show('no such folder', function () use ($message, $folder) { return $message->save("$folder/none/file"); });
show('a device', function () use ($message) { return $message->save('/dev/null'); });
show('no document', function () use ($file) { return (new SEPAMessage(SEPA_MSGTYPE_CTI, 'DE-26.11'))->save($file); });
show('nothing else', function () use ($folder) { return scandir($folder); });
array_map('unlink', glob("$folder/*"));
rmdir($folder);
?>
--EXPECT--
97 calls

Bookings:
before load() -> [[],[]]
second load -> "SEPAException 0: Parser already used"
second constructor -> "SEPAException 0: Parser already used"
0 A A
0 A B
0 A C
1 B A
1 B B
1 B C
2 C A
2 C B
2 C C
outlives the loop -> 3.0
check -> "SEPAException 0: invalid sepa_stmt_parser_t handle"
getBookings -> "SEPAException 0: invalid sepa_stmt_parser_t handle"
loadString -> "SEPAException 0: invalid sepa_stmt_parser_t handle"
clone -> "Error 0: Trying to clone an uncloneable object of class SEPAStatementReader"
serialize -> "Exception 0: Serialization of 'SEPAStatementReader' is not allowed"
clone -> "Error 0: Trying to clone an uncloneable object of class SEPAReport"
serialize -> "Exception 0: Serialization of 'SEPAReport' is not allowed"

Batches:
list -> 2 2
nothing -> 2 0
generator -> 4 2
iterator -> 5 1
the last refused -> 5 ["Payment Miete: Negative or zero amount not allowed",1,"Negative or zero amount not allowed"]
in a generator with odd keys -> 5 ["Payment 1: Invalid amount",1,"Invalid amount"]
no array -> 5 ["Payment 1: Not an array",1,"Not an array"]
zero byte -> 5 ["Payment 1: Text contains a zero byte",1,"Text contains a zero byte"]
generator throws -> 5 "DomainException 7: broken"
text throws -> 5 "DomainException 8: no"
nothing iterable -> TypeError 0
changed on the way, and a batch within -> 8 2
constructed on the way -> [null,1]
1.00, 2.00, 3.00, 4.00, 5.00, 8.00, 6.00, 7.00

Files:
new -> true
again, by a link -> true
as it was -> [true,"100640",true]
a folder -> "SEPAException 0: Can't write output file: Is a directory"
no such folder -> "SEPAException 0: Can't write output file: No such file or directory"
a device -> "SEPAException 0: Can't write output file: Invalid argument"
no document -> "SEPAException 0: Missing debtor IBAN"
nothing else -> [".","..","document.xml","link"]
