<?php
// Collects membership fees: reads direct debits from a CSV file and writes the pain.008 document for the bank.
//
//   php -d extension=build/libvelmora.so examples/direct_debit.php PAYMENTS.csv DOCUMENT.xml

require __DIR__ . '/payments.php';

if ($argc !== 3) {
    fwrite(STDERR, "usage: direct_debit.php PAYMENTS.csv DOCUMENT.xml\n");
    exit(2);
}

SEPA::init(SEPA_INIT_RULEBOOK, 'DE-26.11');
try {
    // The creditor's data. The date is for the payments that bring none of their own.
    $message = new SEPA(SEPA_MSGTYPE_DDI);
    $message->setName('Turnverein München-Süd e.V.');
    $message->setIBAN('DE16701900000376033458');
    $message->setBIC('GENODEF1M01');
    $message->setCreditorIdentifier('DE98ZZZ09999999999');
    $message->setDDType(SEPA_DDTYPE_CORE);
    $message->setDate('2027-03-01');
    $message->setMessageId('BEITRAG-2027');
    add_payments($message, $argv[1]);
    file_put_contents($argv[2], $message->toXML());
} catch (SEPAException $failure) {
    fwrite(STDERR, $failure->getMessage() . "\n");
    exit(1);
}
