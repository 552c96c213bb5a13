<?php
// Measures the PHP binding: seconds, and peak memory of PHP and of the whole process.
//
//   php -d extension=build/libvelmora.so bench/php_bench.php              every workload, each in a process of its own
//   php -d extension=build/libvelmora.so bench/php_bench.php WORKLOAD...

if (!extension_loaded('SEPA')) {
    fwrite(STDERR, "The extension is not loaded.\n");
    exit(1);
}
ini_set('memory_limit', '-1');

const IBANS = ['DE89370400440532013000', 'DE44701500001739563912', 'DE41680900004410182764', 'DE21200505500506356823',
    'DE04370501983129819318', 'DE10100400000069249100', 'AT792011100012345678', 'CH4900700110000847218'];
const STATEMENT_FILE_SIZE = 30000000;

/** Adds and writes direct debits, beside making the same arrays and joining their texts. */
function direct_debits(int $count, bool $at_once = false): string
{
    SEPA::init(SEPA_INIT_RULEBOOK, 'DE-3.5');
    $made = hrtime(true);
    $payments = [];
    for ($i = 0; $i < $count; $i++) {
        $payments[] = ['name' => "Mitglied $i", 'iban' => IBANS[$i % 6], 'amount' => 10 + $i % 1000 / 100,
            'seq' => 'RCUR', 'mref' => "M-$i", 'mdate' => '2026-01-31', 'id' => "BEITRAG-$i",
            'ref' => "Mitgliedsbeitrag 2027, Mitglied $i"];
    }
    $joined = strlen(implode('', array_map('implode', $payments)));
    $start = hrtime(true);
    $message = $at_once ? new SEPAMessage(SEPA_MSGTYPE_DDI, 'DE-26.11') : new SEPA(SEPA_MSGTYPE_DDI);
    $message->setName('Turnverein');
    $message->setIBAN('DE89370400440532013000');
    $message->setBIC('COBADEFFXXX');
    $message->setCreditorIdentifier('DE98ZZZ09999999999');
    if ($at_once) {
        $message->addAll($payments);
    } else {
        foreach ($payments as $payment) {
            $message->add($payment);
        }
    }
    $added = hrtime(true);
    $document = $message->toXML();
    $written = hrtime(true);
    return sprintf('add %.3f s, toXML %.3f s, together %.3f s (%.2f times their making), %.1f MB of %.1f',
        ($added - $start) / 1e9, ($written - $added) / 1e9, ($written - $start) / 1e9,
        ($written - $start) / ($start - $made), strlen($document) / 1e6, $joined / 1e6);
}

/** Calls a static method a million times; the loop itself is taken off. */
function static_calls(callable $empty_loop, callable $loop): string
{
    $loop(1000);
    $times = [];
    foreach ([$empty_loop, $loop] as $run) {
        $best = PHP_INT_MAX;
        for ($round = 0; $round < 5; $round++) {
            $start = hrtime(true);
            $run(1000000);
            $best = min($best, hrtime(true) - $start);
        }
        $times[] = $best;
    }
    return sprintf('%.0f ns a call', ($times[1] - $times[0]) / 1e6);
}

function empty_loop(int $count): void
{
    for ($i = 0; $i < $count; $i++) {
        IBANS[$i & 7];
    }
}

function write_statement_file(string $path): void
{
    $file = fopen($path, 'w');
    for ($statement = 1; ftell($file) < STATEMENT_FILE_SIZE; $statement++) {
        $lines = ['', ":20:STARTUMSE", ':25:37040044/532013000', ":28C:$statement/1", ':60F:C270104EUR1000,00'];
        for ($i = 0; $i < 100; $i++) {
            $lines[] = sprintf(':61:2701040104C%d,%02dNMSCNONREF//BANKREF%d', $i, $i, $i);
            $lines[] = ":86:166?00GUTSCHRIFT?109310?20EREF+BEITRAG-$statement-$i?21KREF+NONREF?22SVWZ+Mitgliedsbeitrag";
            $lines[] = "?23 2027, Mitglied $i?30COBADEFFXXX?31DE89370400440532013000?32Erika Mustermann?34997";
        }
        $lines[] = ':62F:C270104EUR5950,00';
        $lines[] = "-";
        fwrite($file, implode("\r\n", $lines));
    }
    fwrite($file, "\r\n");
    fclose($file);
}

/** Loads and reads an MT940 file. */
function statements(): string
{
    $path = tempnam(sys_get_temp_dir(), 'mt940');
    register_shutdown_function('unlink', $path);
    write_statement_file($path);
    $start = hrtime(true);
    $parser = new SEPAStatementParser;
    $parser->load(SEPA_STMT_FORMAT_MT940, $path);
    $loaded = hrtime(true);
    $statements = $parser->getStatements();
    $read = hrtime(true);
    return sprintf('load %.3f s, getStatements %.3f s, %.1f MB file, %d bookings', ($loaded - $start) / 1e9,
        ($read - $loaded) / 1e9, filesize($path) / 1e6, array_sum(array_map('count', array_column($statements, 'tx'))));
}

/** Loads a camt file of 39,000 entries, some of them batches, and reads it in a loop and as nested arrays. */
function camt(): string
{
    $sample = file_get_contents(__DIR__ . '/../examples/statement.xml');
    $begin = strpos($sample, '<Ntry>');
    $end = strrpos($sample, '</Ntry>') + strlen('</Ntry>');
    preg_match_all('~<Ntry>.*?</Ntry>~s', $sample, $entries);
    $entries = $entries[0];
    $path = tempnam(sys_get_temp_dir(), 'camt');
    register_shutdown_function('unlink', $path);
    $file = fopen($path, 'w');
    fwrite($file, substr($sample, 0, $begin));
    for ($i = 0; $i < 39000; $i++) {
        fwrite($file, $entries[$i % count($entries)] . "\n");
    }
    fwrite($file, substr($sample, $end));
    fclose($file);
    $start = hrtime(true);
    $reader = new SEPAStatementReader;
    $reader->load(SEPA_STMT_FORMAT_CAMT, $path);
    $loaded = hrtime(true);
    $count = 0;
    foreach ($reader->getBookings() as $booking) {
        $count++;
    }
    $walked = hrtime(true);
    $statements = $reader->getStatements();
    $read = hrtime(true);
    return sprintf('load %.3f s, getBookings %.3f s, getStatements %.3f s, %.1f MB file, %d bookings',
        ($loaded - $start) / 1e9, ($walked - $loaded) / 1e9, ($read - $walked) / 1e9, filesize($path) / 1e6, $count);
}

$workloads = [
    'direct_debits_10000' => function () { return direct_debits(10000); },
    'direct_debits_100000' => function () { return direct_debits(100000); },
    'addAll_100000' => function () { return direct_debits(100000, true); },
    'IBAN_check' => function () {
        return static_calls('empty_loop', function ($count) {
            for ($i = 0; $i < $count; $i++) {
                SEPA::IBAN_check(IBANS[$i & 7]);
            }
        });
    },
    'IBAN_check_invalid' => function () {
        // Refused at once: what is left is the call itself.
        return static_calls('empty_loop', function ($count) {
            for ($i = 0; $i < $count; $i++) {
                SEPA::IBAN_check('');
            }
        });
    },
    'BIC_getBankName' => function () {
        return static_calls('empty_loop', function ($count) {
            for ($i = 0; $i < $count; $i++) {
                SEPA::BIC_getBankName('COBADEFFXXX');
            }
        });
    },
    'statements' => 'statements',
    'camt' => 'camt',
];

/** The highest resident memory of the process so far, in MB. */
function peak_memory(): float
{
    preg_match('/^VmHWM:\s+(\d+)/m', file_get_contents('/proc/self/status'), $found);
    return $found[1] / 1024;
}

$chosen = array_slice($argv, 1);
if (!$chosen) {
    preg_match('/^model name\s*:\s*(.*)$/m', file_get_contents('/proc/cpuinfo'), $processor);
    printf("PHP %s, libvelmora %s, %s\n", PHP_VERSION, phpversion('SEPA'), $processor[1] ?? php_uname('m'));
    $library = preg_match('~^\S+ \S+ \S+ \S+ \S+ +(/.*(?:libvelmora|sepa)\.so\S*)$~m',
        file_get_contents('/proc/self/maps'), $found) ? $found[1] : 'sepa';
    foreach (array_keys($workloads) as $name) {
        passthru(implode(' ', array_map('escapeshellarg',
            [PHP_BINARY, '-n', '-d', "extension=$library", __FILE__, $name])));
    }
} else {
    foreach ($chosen as $name) {
        $before = peak_memory();
        printf("%-22s %s", $name, $workloads[$name]());
        printf("; peak memory: PHP %.0f MB, process %.0f MB (%.0f MB at the start)\n",
            memory_get_peak_usage(true) / 1048576, peak_memory(), $before);
    }
}
