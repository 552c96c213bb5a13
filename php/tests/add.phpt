--TEST--
add(): what becomes of keys and values of every kind, and of exceptions on the way
--FILE--
<?php
require __DIR__ . '/shared.inc';

class Text
{
    private $text;
    public function __construct($text) { $this->text = $text; }
    public function __toString(): string
    {
        if ($this->text instanceof Throwable) {
            throw $this->text;
        }
        return $this->text;
    }
}
class NoText {}

$debits = direct_debits();
$transfers = credit_transfers();
function debit(string $label, $properties): void
{
    show($label, function () use ($properties) { return $GLOBALS['debits']->add($properties); });
}
function transfer(string $label, $properties): void
{
    show($label, function () use ($properties) { return $GLOBALS['transfers']->add($properties); });
}

echo "Keys:\n";
debit('any case', array_change_key_case(payment(), CASE_UPPER));
debit('none', []);
debit('list', ['a', 'b']);
debit('after text keys', payment() + [7 => 'x']);
debit('long number', [1234567890 => 'x']);
debit('negative number', [-12345678901 => 'x']);
debit('number in a text', ['007' => 'x']);
debit('empty', ['' => 'x']);
debit('zero byte', ["refx\0" => 'x']);
transfer('list ignored', payment() + ['a', 'b', -5 => 'c']);

echo "\nValues:\n";
set_error_handler(function ($level, $text) { echo "[$text] "; });
debit('integer', payment(['amount' => 5]));
debit('float', payment(['amount' => 10.5]));
debit('float 0.1 + 0.2', payment(['amount' => 0.1 + 0.2]));
debit('true', payment(['smnda' => true]));
debit('false', payment(['smnda' => false]));
debit('null', payment(['name' => null]));
debit('empty text', payment(['ref' => '']));
debit('object', payment(['ref' => new Text('from an object')]));
debit('object without text', payment(['ref' => new NoText]));
debit('object that throws', payment(['ref' => new Text(new DomainException('no text', 5))]));
debit('closure', payment(['ref' => function () {}]));
debit('resource', payment(['ref' => STDIN]));
debit('zero byte', payment(['ref' => "seen\0unseen"]));
$nested = payment(['ref' => ['x']]);
debit('array', $nested);
$amount = 7;
$referring = payment();
$referring['amount'] = &$amount;
debit('reference', $referring);
$self = payment();
$self['ref'] = &$self;
debit('array that contains itself', $self);
echo implode(' ', elements($debits->toXML(), 'InstdAmt')), "\n";
echo implode('|', elements($debits->toXML(), 'Ustrd')), "\n";

restore_error_handler();

echo "\nThe script interferes:\n";
$variable = ['x'];
$name = 'Erika ' . uniqid();
$array = payment();
$array['name'] = &$name;
$array['ref'] = &$variable;
set_error_handler(function ($level, $text) use (&$array, &$variable, &$name) {
    $variable = $name = null;
    $array = [];
    return true;
});
debit('handler empties everything', $array);
$array = payment(['ref' => ['x']]);
$array['name'] = &$array;
set_error_handler(function ($level, $text) { throw new ErrorException($text); });
debit('handler throws', $array);
restore_error_handler();
restore_error_handler();
$name = 'Erika';
$array = payment(['ref' => new class($array, $name, $debits) {
    private $array, $name, $debits;
    public function __construct(&$array, &$name, $debits)
    {
        list($this->array, $this->name, $this->debits) = [&$array, &$name, $debits];
    }
    public function __toString(): string
    {
        $this->array = $this->name = 1;
        $this->debits->add(payment(['ref' => 'inner']));
        return 'outer';
    }
}]);
$array['name'] = &$name;
debit('object adds another', $array);
echo implode(' ', array_slice(elements($debits->toXML(), 'Ustrd'), -2)), "\n";

echo "\nMany:\n";
$many = ['iban' => 'DE89370400440532013000', 'amount' => 1];
for ($i = 0; $i < 10000; $i++) {
    $many[] = $i;
    $many["key $i"] = new Text("value $i");
}
transfer('20,000 more', $many);
debit('20,000 more', $many);
$holes = payment();
for ($i = 0; $i < 100; $i++) {
    $holes["gone $i"] = $holes[$i] = 1;
    unset($holes["gone $i"], $holes[$i]);
}
debit('deleted entries', $holes);
echo implode(' ', elements($transfers->toXML(), 'NbOfTxs')), "\n";
?>
--EXPECT--
Keys:
any case -> true
none -> "SEPAException 0: IBAN missing"
list -> "SEPAException 0: Invalid transaction property '0'"
after text keys -> "SEPAException 0: Invalid transaction property '7'"
long number -> "SEPAException 0: Invalid transaction property '12345678'"
negative number -> "SEPAException 0: Invalid transaction property '-1234567'"
number in a text -> "SEPAException 0: Invalid transaction property '007'"
empty -> "SEPAException 0: Invalid transaction property ''"
zero byte -> "SEPAException 0: Invalid transaction property 'refx'"
list ignored -> true

Values:
integer -> true
float -> true
float 0.1 + 0.2 -> true
true -> true
false -> "SEPAException 0: Invalid value '' for SMNDA flag"
null -> "SEPAException 0: Invalid name (must be 1-70 characters)"
empty text -> true
object -> true
object without text -> "Error 0: Object of class NoText could not be converted to string"
object that throws -> "DomainException 5: no text"
closure -> "Error 0: Object of class Closure could not be converted to string"
resource -> "SEPAException 0: Invalid character '#' in unstructured remittance information"
zero byte -> true
array -> [Array to string conversion] true
reference -> true
array that contains itself -> [Array to string conversion] true
12.50 5.00 10.50 0.30 12.50 12.50 12.50 12.50 12.50 7.00 12.50
Beitrag|Beitrag|Beitrag|Beitrag|Beitrag||from an object|seen|Array|Beitrag|Array

The script interferes:
handler empties everything -> true
handler throws -> "ErrorException 0: Array to string conversion"
object adds another -> true
inner outer

Many:
20,000 more -> true
20,000 more -> "SEPAException 0: Invalid transaction property '0'"
deleted entries -> true
2 2
