<?php

/**
 * The module velmora as PHP scripts see it: what the library can do beyond the module SEPA, which starts it. IDEs read
 * this file as it stands; the tables with which the module registers itself are made from it by
 * tools/update_php_arginfo.
 *
 * @generate-class-entries
 * @generate-function-entries
 * @generate-legacy-arginfo 70000
 */

/**
 * camt.052, camt.053 and camt.054 (ISO 20022), every version from 001.02 on; for load() and loadString().
 * @var int
 */
const SEPA_STMT_FORMAT_CAMT = 53;
/**
 * MT940 as banks really write it: any line ends, signed amounts.
 * @var int
 */
const SEPA_STMT_FORMAT_MT940_TOLERANT = 940;

/**
 * What the selected rulebook permits in names stays as it is; for SEPAText::convert().
 * @var int
 */
const SEPA_TEXT_KEEP = 0;
/**
 * Only the characters stay that every bank takes: letters, digits, space and ' ( ) + , - . / : ?
 * @var int
 */
const SEPA_TEXT_BASIC = 1;

/**
 * A payment message with a rulebook of its own: what SEPA does, with setters that return the object.
 *
 * @not-serializable
 */
class SEPAMessage extends SEPA
{
    /**
     * @param int $type SEPA_MSGTYPE_DDI or SEPA_MSGTYPE_CTI
     * @param string|null $rulebook "DE-26.11" or one of SEPA::init(); null follows SEPA::init()
     * @throws SEPAException (code 42) also for an unknown rulebook
     */
    public function __construct(int $type, ?string $rulebook = null) {}

    /**
     * Selects the rulebook of this message, which then no longer follows SEPA::init().
     *
     * @throws SEPAException for an unknown rulebook
     */
    public function setRulebook(string $rulebook): static {}

    /**
     * Sets what holds for the payments that do not say otherwise, for those that were added already, too.
     *
     * @param string $key "instant", "time", "urgent", "category", "ultDebtor" (credit transfers), "category",
     *                    "ultCreditor" (direct debits), "created" (yyyy-mm-ddThh:mm:ssZ, the time in the document)
     * @param mixed $value true is "1"; null and false take the default back
     * @throws SEPAException under rulebooks other than "DE-26.11", too
     */
    public function set(string $key, mixed $value): static {}

    /** @implementation-alias SEPA::setIBAN */
    public function setIBAN(string $iban): static {}

    /** @implementation-alias SEPA::setBIC */
    public function setBIC(string $bic): static {}

    /** @implementation-alias SEPA::setName */
    public function setName(string $name): static {}

    /** @implementation-alias SEPA::setCreditorIdentifier */
    public function setCreditorIdentifier(string $identifier): static {}

    /** @implementation-alias SEPA::setDate */
    public function setDate(string $date): static {}

    /** @implementation-alias SEPA::setDDType */
    public function setDDType(int $type): static {}

    /** @implementation-alias SEPA::setBatchBooking */
    public function setBatchBooking(bool $batch): static {}

    /** @implementation-alias SEPA::setMessageId */
    public function setMessageId(string $id): static {}

    /**
     * Checks a payment as add() would, without adding it. No later call behaves differently for it.
     *
     * @param mixed[] $payment
     * @return string|null the reason why add() would refuse it, null when it would take it
     */
    public function test(array $payment): ?string {}

    /**
     * Adds payments, all of them or none: a list, a generator, a result of a query.
     *
     * @param mixed[]|Traversable $payments arrays as for add()
     * @return int how many
     * @throws SEPAException "Payment 3: Invalid IBAN checksum", with the key of the payment. The code is its position
     *                       from 0 on, the previous exception has the reason alone. What the iterable itself throws
     *                       comes through.
     */
    public function addAll(iterable $payments): int {}

    /**
     * What is in the message: the number of payments, their sum in cents, and the blocks that toXML() would write.
     *
     * @return array{payments: int, cents: int, blocks: int}
     * @throws SEPAException where toXML() could not group the payments
     */
    public function getTotals(): array {}

    /**
     * Writes the document into a file, which appears whole or not at all.
     *
     * @return int bytes written
     * @throws SEPAException as toXML() does, and when the file cannot be written
     */
    public function save(string $filename): int {}
}

/**
 * A reader for one account statement file: what SEPAStatementParser does, the file also from memory, the bookings one
 * at a time, and the proof that they are complete. The file is released with the object.
 *
 * @not-serializable
 */
class SEPAStatementReader extends SEPAStatementParser
{
    /**
     * Reads a file that is in memory: from a ZIP archive, an upload, a database. A reader loads once.
     *
     * @param int $format SEPA_STMT_FORMAT_CAMT, SEPA_STMT_FORMAT_MT940_TOLERANT or SEPA_STMT_FORMAT_MT940
     * @return bool always true
     * @throws SEPAException as load() does
     */
    public function loadString(int $format, string $data): bool {}

    /**
     * The bookings of all statements behind one another, numbered from 0 on. Each is made when the loop comes to it:
     * the memory that a large file needs stays the same. Keys as in getStatements().
     *
     * @return iterable<int, array<string, mixed>>
     */
    public function getBookings(): iterable {}

    /**
     * Proves each statement: opening balance and bookings give the closing balance, to the cent.
     *
     * @return array<int, array{ok: ?bool, difference: ?float}> for each statement whether they do, and the closing
     *         balance less what the bookings give; both null where a balance is missing
     */
    public function check(): array {}
}

/**
 * Texts with the characters that banks take.
 */
final class SEPAText
{
    /**
     * Writes a name or a remittance text in the characters that banks take: "Łódź" as "Lodz", "10 €" as "10 EUR".
     * What has no equivalent becomes ".".
     *
     * @param int $mode SEPA_TEXT_KEEP or SEPA_TEXT_BASIC
     * @param int $limit the longest result as the selected rulebook counts, 0 for none: 70 for names, 140 for
     *                   remittance texts
     * @param int[] $report set to "changed" (characters written in another way), "replaced" (by "."), "cut" (lost
     *                      behind the limit) and "first" (where the first of them stands, in bytes; -1 without any)
     * @throws SEPAException for a text that is not UTF-8 or contains a zero byte
     */
    public static function convert(string $text, int $mode = SEPA_TEXT_KEEP, int $limit = 0, ?array &$report = null): string {}
}

/**
 * What is wrong with what people type, and what the bank directory knows. No method throws; a text with a zero byte
 * is wrong like any other.
 *
 * What is wrong is an array: "valid" (bool), "code" and "name" (7 and "CHECK_DIGITS" for SEPA_FINDING_CHECK_DIGITS,
 * 0 and "OK", or 15 and "UNCHECKED" for what is valid but for parts that cannot be checked), "position" and "length" of the fault in
 * bytes (-1 and 0 when it has no place), "expected" (the length or the check digits that would fit, else 0), "method"
 * (the account's check method, else empty) and "text" (English).
 */
final class SEPACheck
{
    /**
     * @return array{valid:bool,code:int,name:string,position:int,length:int,expected:int,method:string,text:string}
     */
    public static function iban(string $iban): array {}

    /**
     * Only the form counts: code 15 says that the directory does not have the BIC.
     *
     * @return array{valid:bool,code:int,name:string,position:int,length:int,expected:int,method:string,text:string}
     */
    public static function bic(string $bic): array {}

    /**
     * A German account; the position counts in its number.
     *
     * @return array{valid:bool,code:int,name:string,position:int,length:int,expected:int,method:string,text:string}
     */
    public static function account(string $account, string $bankCode): array {}

    /**
     * A creditor identifier (EPC262-08).
     *
     * @return array{valid:bool,code:int,name:string,position:int,length:int,expected:int,method:string,text:string}
     */
    public static function creditorIdentifier(string $identifier): array {}

    /**
     * A creditor reference (ISO 11649) in capitals, without spaces.
     *
     * @return array{valid:bool,code:int,name:string,position:int,length:int,expected:int,method:string,text:string}
     */
    public static function reference(string $reference): array {}

    /**
     * An IBAN as it was typed, without blanks and "IBAN" in front, in capitals. Nothing is checked.
     *
     * @return string|null null when it is far too long for an IBAN (64 or more), or has a zero byte
     */
    public static function normalise(string $text): ?string {}

    /**
     * Valid IBANs that could be meant by a German one with a typing error: show them, never take one unasked.
     *
     * @return string[] at most three
     */
    public static function suggest(string $iban): array {}

    /**
     * The IBAN for a German bank code and account number.
     *
     * @return array{iban:?string,bic:?string,status:int,account:string} the status as of SEPA::IBAN_convert(); what
     *         the check of the account gave once the bank's rule had its say: "valid", "invalid" or "unchecked"
     */
    public static function convert(string $bankCode, string $account): array {}

    /**
     * The bank behind an IBAN, a BIC or a bank code.
     *
     * @param string $country of the bank code: "AT", "CH", "DE" or "LI"
     * @return array{name:?string,postcode:?string,city:?string,country:?string,bic:?string,flags:int}|null flags as
     *         of SEPA::BIC_getBankFlags(); null for an unknown bank
     */
    public static function bank(string $ibanOrBicOrCode, string $country = 'DE'): ?array {}

    /**
     * The day from which the country's bank data hold.
     *
     * @return string|null yyyy-mm-dd, null for an unknown country
     */
    public static function dataDate(string $country = 'DE'): ?string {}
}

/**
 * What the bank says about a file that was sent (pain.002).
 *
 * @not-serializable
 */
final class SEPAReport
{
    /** @throws SEPAException (code 42) "can't create SEPAReport object" */
    public function __construct() {}

    /**
     * Reads a file. A report loads once.
     *
     * @return bool always true
     * @throws SEPAException with the reason why the file could not be read
     */
    public function load(string $filename): bool {}

    /**
     * Reads a file that is in memory.
     *
     * @return bool always true
     * @throws SEPAException as load() does
     */
    public function loadString(string $data): bool {}

    /**
     * What the report says about the file, its blocks and its payments, in its order.
     *
     * Each item has "level" (0 the file, 1 a block, 2 a payment) and "status" ("ACCP", "RJCT", ...; of the level above
     * where it has none, empty when there is none at all), and what it knows of: messageId, messageName, blockId,
     * instructionId, endToEndId, uetr, statusId, reference, reason, reasons, text, amount, currency, count, name, iban,
     * mandate, date.
     *
     * @return array<int, array<string, mixed>>
     */
    public function getItems(): array {}

    /**
     * The item that tells what became of a payment: its own, or the one that refuses its block or file whole.
     *
     * @return array<string, mixed>|null null when the report does not mention it
     */
    public function match(string $endToEndId): ?array {}

    /**
     * A reason code in words.
     *
     * @param string $code "AC01", ...
     * @return string|null English; null for an unknown code
     */
    public static function reasonText(string $code): ?string {}
}
