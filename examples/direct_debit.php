<?php
// Collects membership fees: reads direct debits from a CSV file and writes the pain.008 document for the bank.
//
//   php -d extension=build/libvelmora.so examples/direct_debit.php PAYMENTS.csv DOCUMENT.xml

require __DIR__ . '/payments.php';

if ($argc !== 3) {
    fwrite(STDERR, "usage: direct_debit.php PAYMENTS.csv DOCUMENT.xml\n");
    exit(2);
}

try {
    // The creditor's data. The date is for the payments that bring none of their own.
    $message = (new SEPAMessage(SEPA_MSGTYPE_DDI, 'DE-26.11'))
        ->setName('Turnverein München-Süd e.V.')
        ->setIBAN('DE16701900000376033458')
        ->setBIC('GENODEF1M01')
        ->setCreditorIdentifier('DE98ZZZ09999999999')
        ->setDDType(SEPA_DDTYPE_CORE)
        ->setDate('2027-03-01')
        ->setMessageId('BEITRAG-2027');
    add_payments($message, $argv[1]);
    $message->save($argv[2]);
} catch (SEPAException $failure) {
    fwrite(STDERR, $failure->getMessage() . "\n");
    exit(1);
}
