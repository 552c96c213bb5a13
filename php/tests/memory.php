<?php
// Runs under valgrind: takes every way through the binding, failures included. What is left at the end must be the
// statement parsers with their files, which live as long as the process.

require __DIR__ . '/shared.inc';

class Orphan extends SEPA
{
    public $itself;
    public function __construct() {}
}

function message_of_each_kind(): int
{
    $bytes = 0;
    foreach ([direct_debits(), credit_transfers()] as $message) {
        foreach (['setIBAN', 'setBIC', 'setName', 'setCreditorIdentifier', 'setDate', 'setMessageId'] as $setter) {
            attempt(function () use ($message, $setter) { return $message->$setter("\xff\0"); });
            attempt(function () use ($message, $setter) { return $message->$setter(str_repeat('A', 5000)); });
            attempt(function () use ($message, $setter) { return $message->$setter(); });
        }
        for ($i = 0; $i < 20; $i++) {
            $message->add(payment(['amount' => $i + 0.5, 'id' => 'E' . $i, 'ref' => str_repeat('x', 7 * $i)]));
            attempt(function () use ($message) { return $message->add(['name' => 'x', 5 => 1.5, 'iban' => 'DE1']); });
            attempt(function () use ($message) { return $message->add(['ref' => uniqid(), 'name' => new stdClass]); });
            attempt(function () use ($message) { return $message->add(range(0, 100)); });
        }
        $bytes += strlen($message->toXML());
        attempt(function () use ($message) { $message->__construct(9); });
        $message->__construct(SEPA_MSGTYPE_CTI);
        attempt(function () use ($message) { return $message->toXML(); });
        attempt(function () use ($message) { return clone $message; });
        attempt(function () use ($message) { return serialize($message); });
    }
    $orphan = new Orphan;
    $orphan->itself = $orphan;
    attempt(function () use ($orphan) { return $orphan->add(payment()); });
    return $bytes;
}

function accounts(): void
{
    SEPA::IBAN_check('DE89370400440532013000');
    SEPA::IBAN_getBIC('DE89370400440532013000');
    SEPA::BIC_getBankName('COBADEFFXXX');
    SEPA::BIC_getBankFlags('COBADEFFXXX');
    $status = new stdClass;
    SEPA::IBAN_convert('DE', '532013000', '37040044', $status);
    foreach (['', "\0", str_repeat('D', 10000)] as $bad) {
        SEPA::IBAN_check($bad);
        SEPA::IBAN_getBIC($bad);
        SEPA::BIC_getBankName($bad);
        SEPA::BIC_getBankFlags($bad);
        $status = [$bad];
        SEPA::IBAN_convert($bad, $bad, $bad, $status);
    }
}

function statements(): int
{
    $path = statement_file('', ':20:A', ':25:K', ':60F:C230101EUR1,', ':61:2301020103D12,50NMSCKUNDE//BANK',
        ':86:105?00TEXT?20EREF+E1?21SVWZ+Miete?22Januar?30COBADEFF?31' . str_repeat('9', 99) . '?32' .
        str_repeat('N', 99) . '?33' . str_repeat('M', 99), '-');
    $parser = new SEPAStatementParser;
    $count = count($parser->getStatements() ?? []);
    attempt(function () use ($parser) { return $parser->load(2, 'x'); });
    $parser->load(1, $path);
    attempt(function () use ($parser) { return $parser->load(1, 'x'); });
    $count += count($parser->getStatements()) + count($parser->getStatements());
    $again = new SEPAStatementParser;
    attempt(function () use ($again) { return $again->load(1, '/nonexistent'); });
    $again->__construct();
    $again->load(1, $path);
    attempt(function () use ($again) { return clone $again; });
    return $count;
}

for ($round = 0; $round < 5; $round++) {
    $bytes = message_of_each_kind();
    accounts();
    $statements = statements();
    gc_collect_cycles();
}
echo "$bytes bytes, $statements statements\n";
