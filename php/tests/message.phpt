--TEST--
The setters and toXML(): true, or the library's text with code 0; the message goes on after every failure
--FILE--
<?php
require __DIR__ . '/shared.inc';

SEPA::init(SEPA_INIT_RULEBOOK, 'DE-3.7');
$message = new SEPA(SEPA_MSGTYPE_DDI);
replay('message.txt', function ($name, $arguments) use ($message) { return $message->$name(...$arguments); });
$document = $message->toXML();
foreach (['MsgId', 'NbOfTxs', 'CtrlSum', 'BtchBookg', 'Cd', 'ReqdColltnDt', 'BICFI', 'Nm', 'InstdAmt'] as $name) {
    echo $name, ': ', elements($document, $name), "\n";
}
$message->setBatchBooking(false);
echo 'BtchBookg: ', elements($message->toXML(), 'BtchBookg'), "\n";
?>
--EXPECT--
32 calls
MsgId: MSG-1
NbOfTxs: 1, 1
CtrlSum: 10.50, 10.50
BtchBookg: true
Cd: SEPA, B2B
ReqdColltnDt: 2027-03-01
BICFI: COBADEFFXXX
Nm: Müller &amp; Söhne, Müller &amp; Söhne, Erika Müller
InstdAmt: 10.50
BtchBookg: false
