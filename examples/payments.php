<?php
// The part that the payment examples share: from a CSV file into a message.

/**
 * The payments of a CSV file, one at a time. The first row names properties of SEPA::add(), every further row is one
 * payment; cells are separated by semicolons, an empty one is a property the payment does not have.
 */
function read_payments(string $path): iterable
{
    $file = new SplFileObject($path);
    $file->setFlags(SplFileObject::DROP_NEW_LINE | SplFileObject::READ_AHEAD | SplFileObject::SKIP_EMPTY);
    $keys = null;
    foreach ($file as $number => $row) {
        $cells = explode(';', $row);
        if ($keys === null) {
            $keys = $cells;
        } else {
            yield "in line " . ($number + 1) => array_filter(array_combine($keys, $cells), 'strlen');
        }
    }
}

/** Adds all payments of the file, or none when one is refused, and prints a line about each. */
function add_payments(SEPAMessage $message, string $path): void
{
    $message->addAll(read_payments($path));
    foreach (read_payments($path) as $payment) {
        print_payment($payment);
    }
    $totals = $message->getTotals();
    printf("  %d payments, EUR %d.%02d\n", $totals['payments'], intdiv($totals['cents'], 100), $totals['cents'] % 100);
}

function print_payment(array $payment): void
{
    // A country whose bank codes the directory does not have: ask for the BIC.
    $bank = SEPACheck::bank($payment['iban']) ?? SEPACheck::bank($payment['bic'] ?? '');
    printf("  %-10s  %4s%4s  %8s  %-22s  %s (%s)\n", $payment['date'] ?? '', $payment['seq'] ?? '',
        $payment['purp'] ?? '', $payment['amount'], $payment['iban'], $payment['name'],
        $bank['name'] ?? $payment['bic'] ?? 'bank unknown');
}
