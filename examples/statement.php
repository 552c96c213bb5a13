<?php
// Prints the bookings of an MT940 account statement file as a table.
//
//   php -d extension=build/libvelmora.so examples/statement.php FILE.mt940

// Business transaction codes of debits (gvc). Bookings keep no mark for debits, and their amounts are 255 times what
// they were: the code is what tells them apart.
const DEBITS = [83, 104, 105, 106, 107, 108, 109, 116, 117, 118, 119, 177, 191, 193, 201, 808, 809];

// Bookings do not tell reversals either, but the banks' posting texts do.
function is_reversal(array $booking): bool
{
    return strpos($booking['txtext'] ?? '', 'STORNO') === 0;
}

/** What the booking does to the balance. The reversal of a debit is a credit, and the other way round. */
function effect_of(array $booking): float
{
    $amount = in_array($booking['gvc'], DEBITS, true) ? $booking['amount'] / -255 : $booking['amount'];
    return is_reversal($booking) ? -$amount : $amount;
}

function date_text(string $date): string
{
    return $date === '1900-01-00' ? '-' : $date;
}

/** One line a part of the text: it may hold line feeds, and long ones are cut. */
function print_detail(string $name, string $text): void
{
    if ($text === '') {
        return;
    }
    foreach (explode("\n", $text) as $line) {
        foreach (str_split($line, 60) as $part) {
            printf("%39s%-12s %s\n", '', $name, $part);
            $name = '';
        }
    }
}

function print_booking(array $booking): void
{
    printf("  %-10s  %-10s  %12.2f  %s%s\n", $booking['booked'] ?? '-', $booking['valuta'], effect_of($booking),
        is_reversal($booking) ? 'Reversal: ' : '', $booking['txtext'] ?? '');
    foreach (['name' => 'Counterpart', 'account' => 'Account', 'purpose' => 'Purpose', 'svwz' => 'Purpose',
        'eref' => 'Reference', 'mref' => 'Mandate', 'cred' => 'Creditor', 'abwa' => 'Originator',
        'abwe' => 'Recipient', 'oamt' => 'Original sum', 'coam' => 'Compensation'] as $key => $title) {
        print_detail($title, $booking[$key] ?? '');
    }
}

function print_statement(array $statement): void
{
    $balance = $statement['openSaldo'];
    printf("Account %s, statement %d, page %d\n\n", $statement['account'] ?? '?', $statement['number'] ?? 0,
        $statement['page'] ?? 0);
    printf("  %-10s  %-10s  %8s %s  %s\n", 'Booked', 'Value', 'Amount', $statement['openCurrency'], 'Booking');
    printf("  %-22s  %12.2f  Opening balance\n", date_text($statement['openDate']), $balance);
    foreach ($statement['tx'] as $booking) {
        print_booking($booking);
        $balance += effect_of($booking);
    }
    printf("  %-22s  %12.2f  Closing balance%s\n\n", date_text($statement['closeDate']), $statement['closeSaldo'],
        abs($balance - $statement['closeSaldo']) < 0.005 ? '' : ', WHICH THE BOOKINGS DO NOT GIVE');
}

if ($argc !== 2) {
    fwrite(STDERR, "usage: statement.php FILE.mt940\n");
    exit(2);
}
try {
    $parser = new SEPAStatementParser();
    $parser->load(SEPA_STMT_FORMAT_MT940, $argv[1]);
    array_map('print_statement', $parser->getStatements() ?? []);
} catch (SEPAException $failure) {
    fwrite(STDERR, $failure->getMessage() . "\n");
    exit(1);
}
