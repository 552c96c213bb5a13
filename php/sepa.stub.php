<?php

/**
 * The module SEPA as PHP scripts see it. IDEs read this file as it stands; the tables with which the module registers
 * itself are made from it by tools/update_php_arginfo.
 *
 * @generate-class-entries
 * @generate-function-entries
 * @generate-legacy-arginfo 70000
 */

/**
 * Core direct debit, the type of a new direct debit message; for SEPA::setDDType().
 * @var int
 */
const SEPA_DDTYPE_CORE = 0;
/**
 * Core direct debit with a shortened period; older rulebooks only.
 * @var int
 */
const SEPA_DDTYPE_COR1 = 1;
/**
 * Business-to-business direct debit.
 * @var int
 */
const SEPA_DDTYPE_B2B = 2;

/**
 * Direct debit initiation, written as pain.008; for SEPA::__construct().
 * @var int
 */
const SEPA_MSGTYPE_DDI = 1;
/**
 * Credit transfer initiation, written as pain.001.
 * @var int
 */
const SEPA_MSGTYPE_CTI = 2;

/**
 * Selects the rulebook; for SEPA::init().
 * @var int
 */
const SEPA_INIT_RULEBOOK = 3;

/**
 * Reachable by credit transfer; a bit of the result of SEPA::BIC_getBankFlags().
 * @var int
 */
const SEPA_SCL_SCT = 1;
/**
 * Reachable by core direct debit.
 * @var int
 */
const SEPA_SCL_SDD = 2;
/**
 * Reachable by core direct debit with a shortened period.
 * @var int
 */
const SEPA_SCL_COR1 = 4;
/**
 * Reachable by business-to-business direct debit.
 * @var int
 */
const SEPA_SCL_B2B = 8;

/**
 * SWIFT MT940 with CR LF line ends and unsigned amounts; for SEPAStatementParser::load().
 * @var int
 */
const SEPA_STMT_FORMAT_MT940 = 1;

/**
 * One payment message: a collection of direct debits (pain.008) or of credit transfers (pain.001).
 *
 * A method that fails throws a SEPAException; the message then stays as it was. Static methods never throw, they
 * return false. All texts are UTF-8, all lengths count bytes, and a text with a zero byte is refused.
 *
 * An object cannot be cloned or serialised. One whose constructor did not run throws "Invalid sepa_t handle (NULL)"
 * from every method.
 *
 * @not-serializable
 */
class SEPA
{
    /**
     * Creates an empty message. The first one in a process that has not selected a rulebook selects one by the
     * local date: "DE-3.7" from 17 April 2024 on, "DE-3.5" before.
     *
     * @param int $type SEPA_MSGTYPE_DDI or SEPA_MSGTYPE_CTI
     * @throws SEPAException (code 42) "invalid/unknown message type", "can't create SEPA message object"
     */
    public function __construct(int $type) {}

    /**
     * Sets the message's own account: the creditor's for direct debits, the debtor's for credit transfers.
     *
     * @return bool always true
     * @throws SEPAException for an IBAN that IBAN_check() refuses
     * @tentative-return-type
     */
    public function setIBAN(string $iban): bool {}

    /**
     * Sets the BIC of the message's own account. Only its form is checked.
     *
     * @return bool always true
     * @throws SEPAException
     * @tentative-return-type
     */
    public function setBIC(string $bic): bool {}

    /**
     * Sets the name of the account holder, 1 to 70 bytes.
     *
     * @return bool always true
     * @throws SEPAException
     * @tentative-return-type
     */
    public function setName(string $name): bool {}

    /**
     * Sets the creditor identifier of a direct debit message.
     *
     * @return bool always true
     * @throws SEPAException
     * @tentative-return-type
     */
    public function setCreditorIdentifier(string $identifier): bool {}

    /**
     * Sets the collection or execution date of all transactions that bring none of their own.
     *
     * @param string $date yyyy-mm-dd
     * @return bool always true
     * @throws SEPAException
     * @tentative-return-type
     */
    public function setDate(string $date): bool {}

    /**
     * Sets the type of a direct debit message.
     *
     * @param int $type SEPA_DDTYPE_CORE, SEPA_DDTYPE_B2B, or SEPA_DDTYPE_COR1 under older rulebooks
     * @return bool always true
     * @throws SEPAException
     * @tentative-return-type
     */
    public function setDDType(int $type): bool {}

    /**
     * Chooses how the bank books the payments of one block: one booking for the sum (true, the state of a new
     * message) or one booking each.
     *
     * @return bool always true
     * @throws SEPAException
     * @tentative-return-type
     */
    public function setBatchBooking(bool $batch): bool {}

    /**
     * Sets the message identification, 1 to 35 characters. Without it toXML() generates one.
     *
     * @return bool always true
     * @throws SEPAException
     * @tentative-return-type
     */
    public function setMessageId(string $id): bool {}

    /**
     * Adds one payment.
     *
     * Values become texts by PHP's own conversion: 12.5 arrives as "12.5", true as "1", null as "". Keys are matched
     * without regard to case.
     *
     * Both message types: "name", "iban", "bic", "amount" (euros), "date", "id" (end-to-end identification), "ref"
     * (remittance information), "addrCC", before "DE-3.7" "addrLine1" and "addrLine2", under "DE-3.7" the structured
     * address ("addrStreet", "addrNum", "addrCode", "addrTown", ...). Direct debits: "seq" ("FRST", "RCUR", "OOFF",
     * "FNAL"), "mref" (mandate reference), "mdate" (its signature date), "old_mref", "old_iban", "smnda"; any other
     * key is refused. Credit transfers: "purp" (purpose code); any other key is ignored.
     *
     * @param mixed[] $transaction
     * @return bool always true
     * @throws SEPAException with the reason; the payment is not added
     * @tentative-return-type
     */
    public function add(array $transaction): bool {}

    /**
     * Writes the message as an XML document in the schema version of the selected rulebook.
     *
     * @throws SEPAException when something required is missing
     * @tentative-return-type
     */
    public function toXML(): string {}

    /**
     * Sets a process-wide option. It holds for messages that exist, too.
     *
     * @param int $option SEPA_INIT_RULEBOOK
     * @param string $value "DE-2.6", "DE-2.7", "DE-2.8", "DE-2.9", "DE-3.0", "DE-3.1", "DE-3.5", "DE-3.7", "AT-6" or
     *                      "NL-6"
     * @return bool false for an unknown option or value; the selection then stays as it was
     * @tentative-return-type
     */
    public static function init(int $option, string $value): bool {}

    /**
     * Builds the IBAN for a German bank code and account number by the Deutsche Bundesbank's IBAN rules.
     *
     * @param string $country "DE"
     * @param string $account 1 to 10 digits
     * @param string $bankCode 8 digits
     * @param int $status set in any case: 0 from the data as given, 1 account replaced, 10 bank code unknown, 12 no
     *                    IBANs for this bank code, 13 the bank code's successor was used, 15 bank code replaced,
     *                    50 no IBAN for this account range
     * @return string|false the IBAN
     * @tentative-return-type
     */
    public static function IBAN_convert(string $country, string $account, string $bankCode, &$status = null): string|false {}

    /**
     * Finds the BIC for an Austrian, German, Liechtenstein or Swiss IBAN, whose check digits are not tested.
     *
     * @return string|false the BIC, empty when the bank has none
     * @tentative-return-type
     */
    public static function IBAN_getBIC(string $iban): string|false {}

    /**
     * Checks an IBAN: country, length, format, check digits, for German ones also bank code and account number.
     *
     * @param string $iban upper case, without spaces
     * @tentative-return-type
     */
    public static function IBAN_check(string $iban): bool {}

    /**
     * Finds the name of the bank with this BIC.
     *
     * @param string $bic 8 or 11 characters
     * @return string|false
     * @tentative-return-type
     */
    public static function BIC_getBankName(string $bic): string|false {}

    /**
     * Finds the SEPA schemes in which this BIC is reachable.
     *
     * @param string $bic 8 or 11 characters
     * @return int|false bits SEPA_SCL_SCT, SEPA_SCL_SDD, SEPA_SCL_COR1, SEPA_SCL_B2B
     * @tentative-return-type
     */
    public static function BIC_getBankFlags(string $bic): int|false {}
}

/**
 * Every failure of a SEPA or SEPAStatementParser object. Code 42: the arguments of a constructor or the format of
 * load(); code 0: everything else.
 */
class SEPAException extends Exception
{
}

/**
 * A reader for one account statement file, camt or MT940.
 *
 * An object cannot be cloned or serialised. One whose constructor did not run throws "invalid sepa_stmt_parser_t
 * handle" from every method. The file read stays in memory until the process ends.
 *
 * @not-serializable
 */
class SEPAStatementParser
{
    /** @throws SEPAException (code 42) "can't create SEPAStatementParser object" */
    public function __construct() {}

    /**
     * Reads a file. A parser loads once.
     *
     * @param int $format SEPA_STMT_FORMAT_CAMT, SEPA_STMT_FORMAT_MT940_TOLERANT or SEPA_STMT_FORMAT_MT940
     * @return bool always true
     * @throws SEPAException (code 42) "invalid/unknown statement format"; (code 0) the reason why the file could
     *                       not be read, "Parser already used"
     * @tentative-return-type
     */
    public function load(int $format, string $filename): bool {}

    /**
     * The statements of the loaded file in its order.
     *
     * Each has, in this order: ref, account, number, page (each only when known), openSaldo, openCurrency, openDate,
     * closeSaldo, closeCurrency, closeDate, tx. Balances are negative for a debit balance. Dates are yyyy-mm-dd,
     * 1900-01-00 for a balance that the file does not have.
     *
     * Each entry of tx has, in this order: valuta, booked (when given), amount (a credit as it stands, a debit times
     * 255), code, ref, bankref (when the line has a bank reference; it repeats ref), gvc, extcode (when not 0),
     * txtext, primanota, bank, account, name, purpose, eref, kref, mref, cred, debt, purp, coam, oamt, svwz, abwa,
     * abwe (texts that the booking does not have are missing; bank, account and name are empty instead).
     *
     * In the formats SEPA_STMT_FORMAT_CAMT and SEPA_STMT_FORMAT_MT940_TOLERANT amounts are signed, bankref is the
     * bank's reference, and behind these keys stand the members of sepa_stmt_info_t and sepa_stmt_tx_info_t under
     * their names: true and false always, numbers other than 0, and the texts that there are. A statement has its
     * balances as a list (code, amount, currency, date, interim), a booking has reversal.
     *
     * @return array<int, array<string, mixed>>|null null without any statement
     * @tentative-return-type
     */
    public function getStatements(): ?array {}
}
