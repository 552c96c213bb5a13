--TEST--
The classes of the module velmora: the table of their calls, loops through bookings
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
        return call_user_func_array([$static ? $this->class : new $this->class, $name], $arguments);
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
show('clone', function () { return clone new SEPAStatementReader; });
?>
--EXPECT--
16 calls

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
