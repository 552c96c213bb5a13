<?php
// Prints the bookings of an account statement file, camt or MT940, as a table.
//
//   php -d extension=build/libvelmora.so examples/statement.php FILE

function date_text(string $date): string
{
    return $date === '1900-01-00' ? '-' : $date;
}

/** One line a part of the text: it may hold line feeds, and long ones are cut. */
function print_detail(string $name, string $text): void
{
    foreach ($text === '' ? [] : explode("\n", $text) as $line) {
        preg_match_all('/.{1,60}/u', $line, $parts);
        foreach ($parts[0] ?: str_split($line, 60) as $part) { // MT940 may have another encoding
            printf("%39s%-12s %s\n", '', $name, $part);
            $name = '';
        }
    }
}

function print_booking(array $booking): void
{
    printf("  %-10s  %-10s  %12.2f  %s%s\n", $booking['booked'] ?? '-', $booking['valuta'], $booking['amount'],
        $booking['reversal'] ? 'Reversal: ' : '', $booking['txtext'] ?? '');
    foreach (['name' => 'Counterpart', 'account' => 'Account', 'purpose' => 'Purpose', 'svwz' => 'Purpose',
        'eref' => 'Reference', 'mref' => 'Mandate', 'cred' => 'Creditor', 'abwa' => 'Originator',
        'abwe' => 'Recipient', 'oamt' => 'Original sum', 'coam' => 'Compensation',
        'returnReason' => 'Returned'] as $key => $title) {
        print_detail($title, $booking[$key] ?? '');
    }
}

function print_statement(array $statement, array $proof): void
{
    printf("Account %s, statement %d, page %d\n\n", $statement['account'] ?? '?', $statement['number'] ?? 0,
        $statement['page'] ?? 0);
    printf("  %-10s  %-10s  %8s %s  %s\n", 'Booked', 'Value', 'Amount', $statement['openCurrency'], 'Booking');
    printf("  %-22s  %12.2f  Opening balance\n", date_text($statement['openDate']), $statement['openSaldo']);
    array_map('print_booking', $statement['tx']);
    printf("  %-22s  %12.2f  Closing balance%s\n\n", date_text($statement['closeDate']), $statement['closeSaldo'],
        $proof['ok'] ? '' : ', WHICH THE BOOKINGS DO NOT GIVE');
}

if ($argc !== 2) {
    fwrite(STDERR, "usage: statement.php FILE\n");
    exit(2);
}
try {
    // camt is XML: it begins with "<" or a byte order mark.
    $begin = ltrim((string) file_get_contents($argv[1], false, null, 0, 64));
    $is_camt = $begin !== '' && ($begin[0] === '<' || $begin[0] >= "\xEF");
    $reader = new SEPAStatementReader();
    $reader->load($is_camt ? SEPA_STMT_FORMAT_CAMT : SEPA_STMT_FORMAT_MT940_TOLERANT, $argv[1]);
    array_map('print_statement', $reader->getStatements() ?? [], $reader->check());
} catch (SEPAException $failure) {
    fwrite(STDERR, $failure->getMessage() . "\n");
    exit(1);
}
