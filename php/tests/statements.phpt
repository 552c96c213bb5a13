--TEST--
SEPAStatementParser: loading, the arrays with their keys in order, two parsers at once
--FILE--
<?php
require __DIR__ . '/shared.inc';

class Parser extends SEPAStatementParser
{
    public function read(string ...$lines)
    {
        $this->load(SEPA_STMT_FORMAT_MT940, statement_file(...$lines));
        return $this->getStatements();
    }
}

echo replay(file(__DIR__ . '/statements.txt', FILE_IGNORE_NEW_LINES), function ($name, $arguments) {
    return (new Parser)->$name(...$arguments);
}), " calls\n";
show('after a failure', function () {
    $parser = new Parser;
    attempt(function () use ($parser) { return $parser->load(2, 'no attempt'); });
    attempt(function () use ($parser) { return $parser->load(1, '/nonexistent/file'); });
    return [attempt(function () use ($parser) { return $parser->read('', ':20:A', '-'); }), $parser->getStatements()];
});

echo "\nTwo parsers:\n";
$first = new Parser;
$statements = $first->read('', ':20:A', ':61:230102C1,00NMSCREFA', '-');
$second = new Parser;
show('second', function () use ($second) { return count($second->read('', ':20:B', '-', '', ':20:B2', '-')); });
$again = $first->getStatements();
show('same again', function () use ($statements, $again) { return $statements === $again; });
$statements[0]['tx'] = null;
show('own array', function () use ($first, $again) { return $first->getStatements() === $again; });
show('second load', function () use ($first) { return $first->read('', ':20:C', '-'); });
unset($first);
show('other', function () use ($second) { return array_column($second->getStatements(), 'ref'); });

ini_set('open_basedir', sys_get_temp_dir());
$refused = new Parser;
show('open_basedir', function () use ($refused) { return @$refused->load(1, '/etc/passwd'); });
show('was its load', function () use ($refused) { return $refused->read('', ':20:A', '-'); });
?>
--EXPECT--
19 calls
after a failure -> ["SEPAException 0: Parser already used",null]

Two parsers:
second -> 2
same again -> true
own array -> true
second load -> "SEPAException 0: Parser already used"
other -> ["B","B2"]
open_basedir -> "SEPAException 0: Can't open input file: Operation not permitted"
was its load -> "SEPAException 0: Parser already used"
