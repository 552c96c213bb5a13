--TEST--
SEPA::IBAN_convert(): the status variable
--FILE--
<?php
require __DIR__ . '/shared.inc';

class Typed
{
    public int $number = 7;
    public string $text = 'x';
    public array $list = [];
}
class Destroyed
{
    public function __destruct() { echo "old value destroyed\n"; }
}

function convert(string $bankCode, &$status): void
{
    $iban = SEPA::IBAN_convert('DE', '532013000', $bankCode, $status);
    echo text_of([$iban, $status]), "\n";
}
$status = new Destroyed;
convert('37040044', $status);
$other = &$status;
$status = [1, 2];
convert('00000000', $status);
$list = [];
convert('00000000', $list['new']);
echo text_of([$other, $list]), "\n";
$typed = new Typed;
convert('00000000', $typed->number);
convert('00000000', $typed->text);
show('typed array', function () use ($typed) { convert('37040044', $typed->list); });
show('by value', function () {
    return @call_user_func('SEPA::IBAN_convert', 'DE', '532013000', '37040044', 1);
});
?>
--EXPECT--
old value destroyed
["DE89370400440532013000",0]
[false,10]
[false,10]
[10,{"new":10}]
[false,10]
[false,"10"]
typed array -> "TypeError 0: Cannot assign int to reference held by property Typed::$list of type array"
by value -> "DE89370400440532013000"
