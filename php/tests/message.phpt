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
toXML([]) -> "SEPAException 0: IBAN missing"
