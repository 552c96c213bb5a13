<?php
// The part that the payment examples share: from a CSV file into a message.

/**
 * Adds the payments of a CSV file and prints a line about each. The first row names properties of SEPA::add(), every
 * further row is one payment; cells are separated by semicolons, an empty one is a property the payment does not have.
 */
function add_payments(SEPA $message, string $path): void
{
    $rows = file($path, FILE_IGNORE_NEW_LINES | FILE_SKIP_EMPTY_LINES);
    if (!$rows) {
        throw new RuntimeException("$path: no header row");
    }
    $keys = explode(';', array_shift($rows));
    $total = 0.0;
    foreach ($rows as $row) {
        $payment = array_filter(array_combine($keys, explode(';', $row)), 'strlen');
        $message->add($payment);
        print_payment($payment);
        $total += (float) $payment['amount'];
    }
    printf("  %d payments, EUR %.2f\n", count($rows), $total);
}

function print_payment(array $payment): void
{
    // A country whose bank codes the directory does not have: ask for the BIC.
    $bic = SEPA::IBAN_getBIC($payment['iban']) ?: $payment['bic'] ?? '';
    printf("  %-10s  %4s%4s  %8s  %-22s  %s (%s)\n", $payment['date'] ?? '', $payment['seq'] ?? '',
        $payment['purp'] ?? '', $payment['amount'], $payment['iban'], $payment['name'],
        SEPA::BIC_getBankName($bic) ?: $bic);
}
