--TEST--
SEPAStatementParser: loading, the arrays with their keys in order, two parsers at once
--FILE--
<?php
require __DIR__ . '/shared.inc';

$full = statement_file(
    '', ':20:STARTUMS', ':25:37040044/532013000', ':28C:12/3', ':60F:C230101EUR1234,56',
    ':61:2301020103D12,50NMSCKUNDE//BANKREF',
    ':86:105?00LASTSCHRIFT?109310?20EREF+E1?21KREF+K1?22MREF+M1?23CRED+C1?24DEBT+D1?25SVWZ+Miete?26Januar' .
    '?30COBADEFFXXX?31DE89370400440532013000?32Erika?33Mustermann?34997',
    ':61:2301050105C100,00NTRFNONREF',
    ':86:166?00GUTSCHRIFT?20Ohne?21Kennwort',
    ':62F:D230131EUR17,00', '-',
    ':20:ZWEI', ':25:X', ':28C:5', '-');

$parser = new SEPAStatementParser;
show('before load', function () use ($parser) { return $parser->getStatements(); });
show('format 2', function () use ($parser, $full) { return $parser->load(2, $full); });
show('format 2^32 + 1', function () use ($parser, $full) { return $parser->load(4294967297, $full); });
show('load', function () use ($parser, $full) { return $parser->load(SEPA_STMT_FORMAT_MT940, $full); });
show('again', function () use ($parser, $full) { return $parser->load(SEPA_STMT_FORMAT_MT940, $full); });
$statements = $parser->getStatements();
echo json_encode($statements, JSON_PRETTY_PRINT | JSON_UNESCAPED_SLASHES | JSON_PRESERVE_ZERO_FRACTION), "\n";
$statements[0]['tx'] = null;
var_dump($parser->getStatements() === $statements, $parser->getStatements() === $parser->getStatements());

echo "\nFailures:\n";
$broken = new SEPAStatementParser;
show('no file', function () use ($broken) { return $broken->load(1, '/nonexistent/file'); });
show('then a file', function () use ($broken, $full) { return $broken->load(1, $full); });
show('statements', function () use ($broken) { return $broken->getStatements(); });
show('directory', function () { return (new SEPAStatementParser)->load(1, __DIR__); });
show('empty file', function () { return (new SEPAStatementParser)->load(1, '/dev/null'); });
show('zero byte', function () use ($full) { return (new SEPAStatementParser)->load(1, "$full\0x"); });
show('long name', function () { return (new SEPAStatementParser)->load(1, str_repeat('x', 100000)); });
foreach ([[], [1], ['x', 'y'], [1, []], [1, 'a', 'b']] as $arguments) {
    show('load', function () use ($arguments) { return (new SEPAStatementParser)->load(...$arguments); });
}
show('new', function () { return new SEPAStatementParser(1); });
show('getStatements', function () { return (new SEPAStatementParser)->getStatements(1); });

echo "\nTwo parsers:\n";
list($first, $second) = [new SEPAStatementParser, new SEPAStatementParser];
$first->load(1, statement_file('', ':20:A', ':61:230102C1,00NMSCREFA', '-'));
$second->load(1, statement_file('', ':20:B', ':61:230102C2,00NMSCREFB', '-', '', ':20:B2', '-'));
foreach ([$first, $second, $first] as $parser) {
    foreach ($parser->getStatements() as $statement) {
        echo $statement['ref'], ' ', implode(array_column($statement['tx'], 'ref')), "\n";
    }
}
unset($first);
echo count($second->getStatements()), "\n";

echo "\nOdd dates:\n";
$odd = new SEPAStatementParser;
$odd->load(1, statement_file('', ':20:A', ':60F:C990099EUR1,', ':61:00-9-9C1,NMSCX', '-'));
echo json_encode($odd->getStatements(), JSON_PRESERVE_ZERO_FRACTION), "\n";
show('LF only', function () {
    $path = statement_file('');
    file_put_contents($path, "\n:20:A\n-\n");
    $parser = new SEPAStatementParser;
    return [$parser->load(1, $path), $parser->getStatements()];
});

ini_set('open_basedir', sys_get_temp_dir());
show('open_basedir', function () { return @(new SEPAStatementParser)->load(1, '/etc/passwd'); });
?>
--EXPECT--
before load -> null
format 2 -> "SEPAException 42: invalid/unknown statement format"
format 2^32 + 1 -> "SEPAException 42: invalid/unknown statement format"
load -> true
again -> "SEPAException 0: Parser already used"
[
    {
        "ref": "STARTUMS",
        "account": "37040044/532013000",
        "number": 12,
        "page": 3,
        "openSaldo": 1234.56,
        "openCurrency": "EUR",
        "openDate": "2023-01-01",
        "closeSaldo": -17.0,
        "closeCurrency": "EUR",
        "closeDate": "2023-01-31",
        "tx": [
            {
                "valuta": "2023-01-02",
                "booked": "2023-01-03",
                "amount": 3187.5,
                "code": "MSC",
                "ref": "KUNDE",
                "bankref": "KUNDE",
                "gvc": 105,
                "extcode": 997,
                "txtext": "LASTSCHRIFT",
                "primanota": "9310",
                "bank": "COBADEFFXXX",
                "account": "DE89370400440532013000",
                "name": "Erika Mustermann",
                "eref": "E1",
                "kref": "K1",
                "mref": "M1",
                "cred": "C1",
                "debt": "D1",
                "svwz": "Miete Januar"
            },
            {
                "valuta": "2023-01-05",
                "booked": "2023-01-05",
                "amount": 100.0,
                "code": "TRF",
                "ref": "NONREF",
                "gvc": 166,
                "txtext": "GUTSCHRIFT",
                "bank": "",
                "account": "",
                "name": "",
                "purpose": "Ohne\nKennwort"
            }
        ]
    },
    {
        "ref": "ZWEI",
        "account": "X",
        "number": 5,
        "openSaldo": 0.0,
        "openCurrency": "",
        "openDate": "1900-01-00",
        "closeSaldo": 0.0,
        "closeCurrency": "",
        "closeDate": "1900-01-00",
        "tx": []
    }
]
bool(false)
bool(true)

Failures:
no file -> "SEPAException 0: Can't open input file: No such file or directory"
then a file -> "SEPAException 0: Parser already used"
statements -> null
directory -> "SEPAException 0: Error while reading from file: Is a directory"
empty file -> "SEPAException 0: Input file is empty"
zero byte -> "ValueError 0: SEPAStatementParser::load(): Argument #2 ($filename) must not contain any null bytes"
long name -> "SEPAException 0: Can't open input file: File name too long"
load -> "ArgumentCountError 0: SEPAStatementParser::load() expects exactly 2 arguments, 0 given"
load -> "ArgumentCountError 0: SEPAStatementParser::load() expects exactly 2 arguments, 1 given"
load -> "TypeError 0: SEPAStatementParser::load(): Argument #1 ($format) must be of type int, string given"
load -> "TypeError 0: SEPAStatementParser::load(): Argument #2 ($filename) must be of type string, array given"
load -> "ArgumentCountError 0: SEPAStatementParser::load() expects exactly 2 arguments, 3 given"
new -> "ArgumentCountError 0: SEPAStatementParser::__construct() expects exactly 0 arguments, 1 given"
getStatements -> "ArgumentCountError 0: SEPAStatementParser::getStatements() expects exactly 0 arguments, 1 given"

Two parsers:
A REFA
B REFB
B2 
A REFA
2

Odd dates:
[{"ref":"A","openSaldo":1.0,"openCurrency":"EUR","openDate":"1999-00-99","closeSaldo":0.0,"closeCurrency":"","closeDate":"1900-01-00","tx":[{"valuta":"2000--9--9","amount":1.0,"code":"MSC","ref":"X","gvc":0,"bank":"","account":"","name":""}]}]
LF only -> [true,null]
open_basedir -> "SEPAException 0: Can't open input file: Operation not permitted"
