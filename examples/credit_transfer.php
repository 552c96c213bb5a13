<?php
// Pays salaries and bills: reads credit transfers from a CSV file and writes the pain.001 document for the bank.
//
//   php -d extension=build/libvelmora.so examples/credit_transfer.php PAYMENTS.csv DOCUMENT.xml

require __DIR__ . '/payments.php';

if ($argc !== 3) {
    fwrite(STDERR, "usage: credit_transfer.php PAYMENTS.csv DOCUMENT.xml\n");
    exit(2);
}

SEPA::init(SEPA_INIT_RULEBOOK, 'DE-26.11');
try {
    // The debtor's data. The date is for the payments that bring none of their own.
    $message = new SEPA(SEPA_MSGTYPE_CTI);
    $message->setName('Bäckerei Grünwald GmbH');
    $message->setIBAN('DE08200505501964277436');
    $message->setBIC('HASPDEHHXXX');
    $message->setBatchBooking(false);
    $message->setDate('2027-02-15');
    $message->setMessageId('ZAHLLAUF-2027-01');
    add_payments($message, $argv[1]);
    file_put_contents($argv[2], $message->toXML());
} catch (SEPAException $failure) {
    fwrite(STDERR, $failure->getMessage() . "\n");
    exit(1);
}
