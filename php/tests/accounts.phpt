--TEST--
Static methods: results, false without exception, the status variable
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

foreach ([[SEPA_INIT_RULEBOOK, 'DE-3.5'], [SEPA_INIT_RULEBOOK, 'de-3.5'], [SEPA_INIT_RULEBOOK, ''], [0, 'DE-3.5'],
    [4294967299, 'DE-3.5'], ['3', 'DE-3.7'], [3, "DE-3.7\0"]] as list($option, $value)) {
    show("init($option, " . json_encode($value) . ')',
        function () use ($option, $value) { return SEPA::init($option, $value); });
}
foreach (['DE89370400440532013000', 'DE89370400440532013001', 'AT611904300234573201', '', 'XX',
    "DE89370400440532013000\0", str_repeat('9', 100000)] as $iban) {
    show('IBAN ' . substr($iban, 0, 24), function () use ($iban) {
        return [SEPA::IBAN_check($iban), SEPA::IBAN_getBIC($iban)];
    });
}
foreach (['COBADEFFXXX', 'cobadeff', 'XXXXXXXX', '', str_repeat('C', 100000)] as $bic) {
    show('BIC ' . substr($bic, 0, 11), function () use ($bic) {
        return [SEPA::BIC_getBankName($bic), SEPA::BIC_getBankFlags($bic)];
    });
}

echo "\nIBAN_convert:\n";
$convert = function ($country, $account, $bankCode, ...$expected) {
    $status = 'untouched';
    $iban = SEPA::IBAN_convert($country, $account, $bankCode, $status);
    var_dump($iban, $status);
};
$convert('DE', '532013000', '37040044');
$convert('DE', '532013000', '00000000');
$convert('FR', '532013000', '37040044');
$convert('DE', '', '');
var_dump(SEPA::IBAN_convert('DE', '532013000', '37040044'));
$status = new Destroyed;
SEPA::IBAN_convert('DE', '532013000', '37040044', $status);
var_dump($status);
$other = &$status;
$status = [1, 2];
SEPA::IBAN_convert('DE', '532013000', '00000000', $status);
var_dump($other);
$list = [];
SEPA::IBAN_convert('DE', '532013000', '00000000', $list['new']);
var_dump($list);
$typed = new Typed;
SEPA::IBAN_convert('DE', '532013000', '00000000', $typed->number);
SEPA::IBAN_convert('DE', '532013000', '00000000', $typed->text);
show('typed array', function () use ($typed) {
    return SEPA::IBAN_convert('DE', '532013000', '37040044', $typed->list);
});
var_dump($typed);
var_dump(@call_user_func('SEPA::IBAN_convert', 'DE', '532013000', '37040044', 1));

echo "\nWrong arguments:\n";
foreach ([['init', 3], ['init', 'x', 'y'], ['IBAN_check'], ['IBAN_check', []], ['IBAN_getBIC', new stdClass],
    ['IBAN_convert', 'DE', '1'], ['BIC_getBankName', 'a', 'b'], ['BIC_getBankFlags', null]] as $call) {
    $name = array_shift($call);
    show($name, function () use ($name, $call) { return @SEPA::$name(...$call); });
}
?>
--EXPECT--
