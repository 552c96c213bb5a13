--TEST--
add(): what becomes of keys and values of every kind, and of exceptions on the way
--FILE--
<?php
require __DIR__ . '/shared.inc';

/** What happens when the value becomes a text. */
class Text
{
    private $convert;
    public function __construct(callable $convert) { $this->convert = $convert; }
    public function __toString(): string { return ($this->convert)(); }
}

$debits = message_of_type(SEPA_MSGTYPE_DDI);
function debit(string $label, array $properties): void
{
    show($label, function () use ($properties) { return $GLOBALS['debits']->add($properties); });
}

set_error_handler(function ($level, $text) { echo "[$text] "; });
debit('array', payment(['ref' => ['x']]));
debit('zero byte', payment(['ref' => "seen\0unseen"]));
debit('zero byte in a key', payment(["ref\0" => 'seen']));
debit('number', payment(['amount' => 0.30000000000000004]));
debit('object', payment(['ref' => new Text(function () { return 'from an object'; })]));
debit('object that throws', payment(['ref' => new Text(function () { throw new DomainException('no text', 5); })]));
debit('closure', payment(['ref' => function () {}]));
debit('resource', payment(['ref' => STDIN]));
$amount = 7;
$array = payment();
$array['amount'] = &$amount;
$array['ref'] = &$array;
debit('references, one to the array itself', $array);

echo "\nThe script interferes:\n";
function interfered_with(&$name, &$ref): array
{
    $array = payment();
    $array['name'] = &$name;
    $array['ref'] = &$ref;
    return $array;
}
$name = 'Erika ' . uniqid();
$ref = ['x'];
$array = interfered_with($name, $ref);
set_error_handler(function () use (&$array, &$name, &$ref) { $array = $name = $ref = null; });
debit('handler empties everything', $array);
set_error_handler(function ($level, $text) { throw new ErrorException($text); });
debit('handler throws', payment(['ref' => ['x']]));
$name = 'Erika ' . uniqid();
$ref = new Text(function () use (&$array, &$name, $debits) {
    $array = $name = 1;
    $debits->add(payment(['ref' => 'inner']));
    return 'outer';
});
$array = interfered_with($name, $ref);
debit('object adds another', $array);
echo elements($debits->toXML(), 'InstdAmt'), "\n", elements($debits->toXML(), 'Ustrd'), "\n";

echo "\nMany:\n";
$transfers = message_of_type(SEPA_MSGTYPE_CTI);
$many = ['iban' => 'DE89370400440532013000', 'amount' => 1];
for ($i = 0; $i < 10000; $i++) {
    $many[] = $i;
    $many["key $i"] = new Text(function () use ($i) { return "value $i"; });
}
show('20,000 more', function () use ($transfers, $many) { return $transfers->add($many); });
debit('20,000 more', $many);
$holes = range(0, 99) + payment();
for ($i = 0; $i < 100; $i++) {
    unset($holes[$i]);
}
debit('deleted entries', $holes);
echo elements($transfers->toXML(), 'NbOfTxs'), "\n";
?>
--EXPECT--
array -> [Array to string conversion] true
zero byte -> "SEPAException 0: Text contains a zero byte"
zero byte in a key -> "SEPAException 0: Text contains a zero byte"
number -> true
object -> true
object that throws -> "DomainException 5: no text"
closure -> "Error 0: Object of class Closure could not be converted to string"
resource -> "SEPAException 0: Invalid character '#' in unstructured remittance information"
references, one to the array itself -> [Array to string conversion] true

The script interferes:
handler empties everything -> true
handler throws -> "ErrorException 0: Array to string conversion"
object adds another -> true
12.50, 0.30, 12.50, 7.00, 12.50, 12.50, 12.50
Array, from an object, Array, Array, inner, outer

Many:
20,000 more -> true
20,000 more -> "SEPAException 0: Invalid transaction property '0'"
deleted entries -> true
1, 1
