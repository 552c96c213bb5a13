--TEST--
The setters and toXML(): true, or the library's text with code 0; the message goes on after every failure
--FILE--
<?php
require __DIR__ . '/shared.inc';

SEPA::init(SEPA_INIT_RULEBOOK, 'DE-3.7');
$message = new SEPA(SEPA_MSGTYPE_DDI);
$calls = [
    ['toXML'],
    ['setIBAN', ''], ['setIBAN', 'DE12'], ['setIBAN', 'DE89370400440532013000'],
    ['setBIC', 'x'], ['setBIC', 'cobadeffxxx'],
    ['setName', ''], ['setName', str_repeat('ü', 36)], ['setName', "Tab\t"], ['setName', 'Müller & Söhne'],
    ['setCreditorIdentifier', 'DE99ZZZ09999999999'], ['setCreditorIdentifier', 'DE98ZZZ09999999999'],
    ['setDate', '2027-3-1'], ['setDate', '2027-03-01'],
    ['setDDType', 3], ['setDDType', -1], ['setDDType', 4294967296], ['setDDType', SEPA_DDTYPE_COR1],
    ['setDDType', SEPA_DDTYPE_B2B], ['setDDType', '2'],
    ['setBatchBooking', false], ['setBatchBooking', 2],
    ['setMessageId', 'ä'], ['setMessageId', 'MSG-1'],
    ['add', payment(['name' => 'Erika Müller', 'amount' => 10.5])],
];
foreach ($calls as $call) {
    $name = array_shift($call);
    show("$name(" . substr(json_encode($call, JSON_UNESCAPED_UNICODE), 1, -1) . ')',
        function () use ($message, $name, $call) { return $message->$name(...$call); });
}
$document = $message->toXML();
foreach (['MsgId', 'NbOfTxs', 'CtrlSum', 'BtchBookg', 'Cd', 'ReqdColltnDt', 'BICFI', 'Nm', 'InstdAmt'] as $name) {
    echo $name, ': ', implode(', ', elements($document, $name)), "\n";
}
echo $document === $message->toXML() ? 'same again' : 'different', "\n";

echo "\nWrong arguments:\n";
foreach ([['setIBAN'], ['setIBAN', []], ['setIBAN', 'a', 'b'], ['setDDType', 'x'], ['setBatchBooking', []],
    ['add', 'x'], ['add', new ArrayObject], ['toXML', 1]] as $call) {
    $name = array_shift($call);
    show($name, function () use ($message, $name, $call) { return $message->$name(...$call); });
}
show('setName', function () { return SEPA::setName('x'); });

echo "\nZero bytes end a text:\n";
show('setName', function () use ($message) { return $message->setName("Kurz\0" . str_repeat('x', 100)); });
show('setIBAN', function () use ($message) { return $message->setIBAN("DE12\0" . str_repeat('9', 1000)); });
echo implode(', ', elements($message->toXML(), 'Nm')), "\n";
?>
--EXPECT--
toXML() -> "SEPAException 0: Missing creditor IBAN"
setIBAN("") -> "SEPAException 0: Invalid or unknown IBAN country code ()"
setIBAN("DE12") -> "SEPAException 0: Wrong IBAN length (DE12)"
setIBAN("DE89370400440532013000") -> true
setBIC("x") -> "SEPAException 0: sepa_setBIC: invalid BIC format"
setBIC("cobadeffxxx") -> true
setName("") -> "SEPAException 0: sepa_setAccount: Name too short"
setName("üüüüüüüüüüüüüüüüüüüüüüüüüüüüüüüüüüüü") -> "SEPAException 0: sepa_setAccount: Name too long"
setName("Tab\t") -> "SEPAException 0: sepa_setName: invalid character '\t' in name"
setName("Müller & Söhne") -> true
setCreditorIdentifier("DE99ZZZ09999999999") -> "SEPAException 0: Invalid Creditor Identifier checksum"
setCreditorIdentifier("DE98ZZZ09999999999") -> true
setDate("2027-3-1") -> "SEPAException 0: Invalid date"
setDate("2027-03-01") -> true
setDDType(3) -> "SEPAException 0: Unknown/unsupported LocalInstrumentCode (setDDType)"
setDDType(-1) -> "SEPAException 0: Unknown/unsupported LocalInstrumentCode (setDDType)"
setDDType(4294967296) -> "SEPAException 0: Unknown/unsupported LocalInstrumentCode (setDDType)"
setDDType(1) -> "SEPAException 0: COR1 is not allowed with selected SEPA rulebook"
setDDType(2) -> true
setDDType("2") -> true
setBatchBooking(false) -> true
setBatchBooking(2) -> true
setMessageId("ä") -> "SEPAException 0: Invalid message id"
setMessageId("MSG-1") -> true
add({"name":"Erika Müller","amount":10.5,"iban":"DE89370400440532013000","seq":"RCUR","mref":"M-1","mdate":"2026-01-31","ref":"Beitrag"}) -> true
MsgId: MSG-1
NbOfTxs: 1, 1
CtrlSum: 10.50, 10.50
BtchBookg: true
Cd: SEPA, B2B
ReqdColltnDt: 2027-03-01
BICFI: COBADEFFXXX
Nm: Müller &amp; Söhne, Müller &amp; Söhne, Erika Müller
InstdAmt: 10.50
same again

Wrong arguments:
setIBAN -> "ArgumentCountError 0: SEPA::setIBAN() expects exactly 1 argument, 0 given"
setIBAN -> "TypeError 0: SEPA::setIBAN(): Argument #1 ($iban) must be of type string, array given"
setIBAN -> "ArgumentCountError 0: SEPA::setIBAN() expects exactly 1 argument, 2 given"
setDDType -> "TypeError 0: SEPA::setDDType(): Argument #1 ($type) must be of type int, string given"
setBatchBooking -> "TypeError 0: SEPA::setBatchBooking(): Argument #1 ($batch) must be of type bool, array given"
add -> "TypeError 0: SEPA::add(): Argument #1 ($transaction) must be of type array, string given"
add -> "TypeError 0: SEPA::add(): Argument #1 ($transaction) must be of type array, ArrayObject given"
toXML -> "ArgumentCountError 0: SEPA::toXML() expects exactly 0 arguments, 1 given"
setName -> "Error 0: Non-static method SEPA::setName() cannot be called statically"

Zero bytes end a text:
setName -> true
setIBAN -> "SEPAException 0: Wrong IBAN length (DE12)"
Kurz, Kurz, Erika Müller
