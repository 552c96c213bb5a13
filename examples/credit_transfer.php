<?php
// Pays salaries and bills: reads credit transfers from a CSV file and writes the pain.001 document for the bank.
//
//   php -d extension=build/libvelmora.so examples/credit_transfer.php PAYMENTS.csv DOCUMENT.xml

require __DIR__ . '/payments.php';

if ($argc !== 3) {
    fwrite(STDERR, "usage: credit_transfer.php PAYMENTS.csv DOCUMENT.xml\n");
    exit(2);
}

try {
    // The debtor's data. The date is for the payments that bring none of their own.
    $message = (new SEPAMessage(SEPA_MSGTYPE_CTI, 'DE-26.11'))
        ->setName('Bäckerei Grünwald GmbH')
        ->setIBAN('DE08200505501964277436')
        ->setBIC('HASPDEHHXXX')
        ->setBatchBooking(false)
        ->setDate('2027-02-15')
        ->setMessageId('ZAHLLAUF-2027-01');
    add_payments($message, $argv[1]);
    $message->save($argv[2]);
} catch (SEPAException $failure) {
    fwrite(STDERR, $failure->getMessage() . "\n");
    exit(1);
}
