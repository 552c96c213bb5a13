<?php
// Makes and drops 200,000 messages, every second one after a failure: the process must not grow.

function resident_bytes(): int
{
    return 4096 * (int) explode(' ', file_get_contents('/proc/self/statm'))[1];
}

function make_and_drop(int $count): void
{
    for ($i = 0; $i < $count; $i++) {
        $message = new SEPA(SEPA_MSGTYPE_CTI);
        $message->setIBAN('DE89370400440532013000');
        $message->setMessageId('first');
        $message->setMessageId('second');
        try {
            $message->add(['iban' => 'DE89370400440532013000', 'amount' => $i % 2 ? 1.5 : 'x']);
            $message->toXML();
        } catch (SEPAException $failure) {
        }
    }
}

make_and_drop(2000); // until everything is allocated that stays
$before = resident_bytes();
make_and_drop(200000);
$growth = resident_bytes() - $before;
echo "$growth bytes\n";
exit($growth > 1 << 20 ? 1 : 0);
