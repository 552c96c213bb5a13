/**
 * @file velmora.h
 * @brief libvelmora: SEPA payment files, account checks, bank directory and account statements.
 *
 * The library builds direct debit (ISO 20022 pain.008) and credit transfer (pain.001) files under German,
 * Austrian and Dutch rulebooks, checks IBANs, BICs, creditor identifiers and German account numbers,
 * answers questions about banks from a directory compiled into it, and reads account statements (MT940,
 * camt).
 *
 * Conventions that hold for every function below:
 *
 * 1. Results. Operations on a message, a statement parser or a report return 1 for success and 0 for failure.
 *    Checks and lookups return a small integer: 1 success, 0 not applicable or unsupported, -1 invalid
 *    input, -2 not found, -3 out of memory (where a function differs, its own text says so).
 * 2. Errors. A failing operation keeps an English text in its handle; sepa_getError(),
 *    sepa_stmt_parser_getError() and sepa_report_getError() return it. It stays valid until the next failing
 *    call on the same handle or until the handle is freed. Success does not clear it: read it only right
 * after a 0. Nothing is ever printed or logged.
 * 3. Ownership. Texts handed in are copied. A message owns its copies and overwrites them with zero bytes
 *    before it frees them. Texts and records handed out are one allocation each and belong to the caller,
 *    who releases each with one free(). Error texts, statement and report records belong to their handle.
 * 4. Null pointers. A null handle or a null text makes a call fail with the result named for invalid input;
 *    it never crashes. The free functions ignore null.
 * 5. Texts are zero-terminated UTF-8. Every length and limit counts bytes, not characters; but under the
 *    rulebook "DE-26.11" the limits of names, references and addresses count characters.
 * 6. Amounts are doubles in euros, dates are texts of the form yyyy-mm-dd.
 * 7. Threads. Every function may run on any number of threads at once, from the first call of the process on
 *    and after a fork, too; no call takes a lock. One handle belongs to one thread at a time. Two things are
 *    shared by the process, and both are atomic: the rulebook that sepa_init() selects, for messages without
 *    one of their own, and the counter in generated message ids.
 */
#ifndef VELMORA_H
#define VELMORA_H

#include <regex.h>
#include <stddef.h>
#include <stdint.h>
#include <time.h>

/** Version of the library and of the PHP module; build files and packages read it from here. */
#define VELMORA_VERSION "2.30"

/** Counts the releases that added functions; 1 is the first with the new statement formats. */
#define VELMORA_ADDITIONS 1

#ifdef __cplusplus
extern "C" {
#endif

/* The library is compiled with hidden visibility: what stands here is what leaves it. */
#pragma GCC visibility push(default)

/* ------------------------------------------------------------------------------------------------------
 * Messages
 * --------------------------------------------------------------------------------------------------- */

/** One payment message: a collection of direct debits or of credit transfers. Opaque. */
typedef struct sepa sepa_t;

/** Message types for sepa_new(). */
enum {
    SEPA_MSGTYPE_DDI = 1, /**< direct debit initiation, written as pain.008 */
    SEPA_MSGTYPE_CTI = 2  /**< credit transfer initiation, written as pain.001 */
};

/** Direct debit types for sepa_setDDType(). */
enum {
    SEPA_DDTYPE_CORE = 0, /**< core direct debit, the type of a new message */
    SEPA_DDTYPE_COR1 = 1, /**< core direct debit with a shortened period; older rulebooks only */
    SEPA_DDTYPE_B2B = 2   /**< business-to-business direct debit */
};

/** Options for sepa_init(). */
enum {
    SEPA_INIT_RULEBOOK = 3 /**< select the rulebook */
};

/**
 * Sets a process-wide option.
 *
 * @param option SEPA_INIT_RULEBOOK, the only one.
 * @param value  the rulebook, spelled exactly "DE-2.6", "DE-2.7", "AT-6", "NL-6", "DE-2.8", "DE-2.9",
 *               "DE-3.0", "DE-3.1", "DE-3.5", "DE-3.7" or "DE-26.11". It decides the schema version, the
 *               permitted characters and the required properties. It holds at once for every message of the
 *               process that has none of its own (sepa_setRulebook()), for those that exist too.
 * @return 1, or 0 for an unknown option, an unknown rulebook or null; the selection then stays as it was.
 */
int sepa_init(int option, const char* value);

/**
 * Creates an empty message.
 *
 * The first call in a process that has not selected a rulebook selects one by the local date and keeps it:
 * "DE-3.7" from 17 April 2024 on, "DE-3.5" before.
 *
 * @param type SEPA_MSGTYPE_DDI or SEPA_MSGTYPE_CTI; it cannot be changed later.
 * @return the message, to be released with sepa_free(); null for another type or without memory.
 */
sepa_t* sepa_new(uint32_t type);

/** Releases a message with everything in it. All its texts are overwritten first. Null is ignored. */
void sepa_free(sepa_t* message);

/**
 * Returns the text of the last failure of a message.
 *
 * @return the text, null when no call has failed yet, or "Invalid sepa_t handle (NULL)" for null.
 */
const char* sepa_getError(sepa_t* message);

/** Does nothing any more: no check keeps anything that could be released. Calls of it may stay. */
void sepa_cleanup(void);

/**
 * Sets the message's own account: the creditor's for direct debits, the debtor's for credit transfers.
 *
 * @param message a message of either type.
 * @param iban    an IBAN that sepa_iban_check() accepts.
 * @return 1, or 0 with the reason and the input: "Wrong IBAN length (DE12)", for example.
 */
int sepa_setIBAN(sepa_t* message, const char* iban);

/**
 * Sets the BIC of the message's own account; lower case is converted. Only the form is checked (ISO 9362),
 * not whether the directory knows it.
 *
 * @return 1, or 0: "sepa_setBIC: invalid BIC" (null, or longer than 11), "sepa_setBIC: invalid BIC format".
 */
int sepa_setBIC(sepa_t* message, const char* bic);

/**
 * Sets the name of the account holder.
 *
 * @param message a message of either type.
 * @param name    1 to 70 bytes of the characters that the rulebook permits in names.
 * @return 1, or 0: "sepa_setAccount: Name too short", "sepa_setAccount: Name too long",
 *         "sepa_setName: invalid character 'x' in name"; under "DE-26.11" also "Invalid UTF-8 in name",
 *         "Text must not consist of spaces".
 */
int sepa_setName(sepa_t* message, const char* name);

/**
 * Sets the creditor identifier of a direct debit message (EPC262-08: country, check digits, business code,
 * national identifier; check digits by ISO 7064 MOD 97-10 without the business code).
 *
 * @param message    a direct debit message; a credit transfer message keeps it without writing it.
 * @param identifier 7 to 35 characters, letters in upper case; under "DE-26.11" at least 8, and the business
 *                   code, too, is of letters and digits.
 * @return 1, or 0: "Creditor Identifier too short", "Creditor Identifier too long",
 *         "Invalid character in Creditor Identifier", "Invalid Creditor Identifier checksum".
 */
int sepa_setCreditorIdentifier(sepa_t* message, const char* identifier);

/**
 * Sets the collection or execution date of all transactions that bring none of their own. Without it
 * sepa_toXML() uses today's local date.
 *
 * @param message a message of either type.
 * @param date    ten characters, yyyy-mm-dd; not compared with today. A day of the calendar under "DE-26.11".
 * @return 1, or 0: "Invalid date" (null or another length), "Invalid date format".
 */
int sepa_setDate(sepa_t* message, const char* date);

/**
 * Sets the type of a direct debit message.
 *
 * @param message a direct debit message.
 * @param type    SEPA_DDTYPE_CORE, SEPA_DDTYPE_B2B, or SEPA_DDTYPE_COR1 under "DE-2.7", "AT-6", "NL-6",
 *                "DE-2.8" and "DE-2.9".
 * @return 1, or 0: "Not a direct debit message",
 *         "Unknown/unsupported LocalInstrumentCode (setDDType)",
 *         "COR1 is not allowed with selected SEPA rulebook".
 */
int sepa_setDDType(sepa_t* message, uint32_t type);

/**
 * Chooses how the bank books the payments of one block.
 *
 * @param message a message of either type.
 * @param batch   1 one booking for the sum (the state of a new message), 0 one booking each.
 * @return 1, or 0: "Invalid BatchBooking mode (only 0 or 1 allowed)".
 */
int sepa_setBatchBooking(sepa_t* message, uint8_t batch);

/**
 * Sets the message identification. Without it sepa_toXML() generates one.
 *
 * @param message a message of either type.
 * @param id      1 to 35 letters, digits, spaces and ' ( ) + , - . / : ? Under "DE-26.11" 1 to 30, without
 * "/" at either end and without "//".
 * @return 1, or 0: "Invalid message id"; under "DE-26.11" also "Slash not allowed here in message id", "Text
 *         must not consist of spaces".
 */
int sepa_setMessageId(sepa_t* message, const char* id);

/**
 * Adds one payment.
 *
 * @param message a message of either type.
 * @param pairs   texts key, value, key, value, ..., ended by a null key. Keys are matched without regard to
 *                case; a key given twice keeps its later value. All texts are copied.
 *
 * Keys for both message types, with their limits in bytes: "name" (1-70), "iban", "bic", "amount" (euros,
 * "." as decimal mark, rounded to cents), "date" (10), "id" (end-to-end identification, 1-35), "ref"
 * (remittance information, 0-140), "addrCC" (2 capital letters), and before "DE-3.7" "addrLine1" and
 * "addrLine2" (1-70 each). Under "DE-3.7" the structured address: "addrDept", "addrSubDept", "addrStreet",
 * "addrFloor", "addrRoom" (1-70), "addrNum", "addrPoBox", "addrCode" (1-16), "addrBldg", "addrTown",
 * "addrLoc", "addrDstrct", "addrCtrySub" (1-35).
 *
 * Direct debits also: "seq" ("FRST", "RCUR", "OOFF" or "FNAL", any case; required), "mref" (mandate
 * reference, 1-35), "mdate" (signature date, 10), "old_mref" (1-35), "old_iban", "smnda" ("1"); any other
 * key is refused. Credit transfers also: "purp" (purpose code, 4); any other key is ignored.
 *
 * "iban" and "amount" are always required, "bic" under "DE-2.6". Under "DE-3.7" a structured address key is
 * taken only while the message holds no error text: after any failed call on a message, start a new one.
 *
 * "DE-26.11" takes what German banks take since 15 November 2026, and what it takes makes a valid document:
 * - "addrLine1" and "addrLine2" stand beside the structured address. An address has "addrTown" and "addrCC".
 * - "name" is required; for direct debits "mref" and "mdate", too. Amounts end at 999999999.99. Dates are
 * days of the calendar. Texts are not of spaces alone. "id", "mref" and "instrId" have no "/" at either end
 * and no "//". Limits count characters. Credit transfers refuse unknown keys, too. IBANs of Andorra, Albania,
 * Moldova, Montenegro, North Macedonia, Serbia and the Vatican are taken.
 * - Further keys for both: "category" (category purpose, 4 capital letters), "purp", "reference" (creditor
 *   reference, ISO 11649; not with "ref"), "ultDebtor", "ultCreditor" (1-70), "instrId" (1-35). Credit
 * transfers: "instant" ("1"), "time" (hh:mm or hh:mm:ss, local time, instant payments only), "urgent" ("1",
 * not with "instant"). Direct debits: "old_name" (1-70), "old_ci", the creditor's former name and identifier.
 *
 * @return 1, or 0 with the reason; the message then stays as it was but for its error text.
 */
int sepa_add(sepa_t* message, const char* const* pairs);

/**
 * Selects a rulebook for one message. The message then no longer follows sepa_init() and reads nothing
 * process-wide: messages of different rulebooks stand side by side, on different threads, too.
 *
 * What is in the message already is not checked again, but "DE-26.11" checks it before it writes it, and what
 * only that rulebook can write makes sepa_toXML() fail under others: "Not supported by the selected SEPA
 * rulebook".
 *
 * @param message  a message of either type.
 * @param rulebook as for sepa_init().
 * @return 1, or 0: "Unknown SEPA rulebook 'x'"; the message then stays as it was.
 */
int sepa_setRulebook(sepa_t* message, const char* rulebook);

/**
 * Sets what holds for the payments that do not say otherwise, also for those that were added already.
 *
 * Credit transfers: "instant", "time", "urgent", "category" and "ultDebtor", with the values of sepa_add().
 * Direct debits: "category" and "ultCreditor". Both: "created", the time in the document
 * (yyyy-mm-ddThh:mm:ssZ, UTC) instead of the time of writing, for files that can be made again byte for byte.
 * A payment's own "urgent" or "instant" counts before a default that contradicts it; "time" is for those
 * payments alone that are instant.
 *
 * @param message a message under "DE-26.11".
 * @param key     one of those above, in any case.
 * @param value   null takes the default back.
 * @return 1, or 0 with the reason; the default then stays as it was: "Not supported by the selected SEPA
 *         rulebook", "Invalid message property 'x'", "Invalid creation time", or the texts of sepa_add().
 */
int sepa_set(sepa_t* message, const char* key, const char* value);

/**
 * Checks a payment as sepa_add() would, without adding it. No later call behaves differently for it: a
 * failure here does not count as one that refuses addresses under "DE-3.7".
 *
 * @return 1, or 0 with the reason, which sepa_getError() returns.
 */
int sepa_test(sepa_t* message, const char* const* pairs);

/** What is in a message. */
typedef struct sepa_totals {
    uint64_t payments; /**< number of payments */
    int64_t cents;     /**< their sum in cents, exactly; the largest number when it does not fit */
    uint64_t blocks;   /**< blocks ("PmtInf") that sepa_toXML() would write */
} sepa_totals_t;

/**
 * Tells what is in a message. Nothing in it changes, and a failure here, too, makes no later call fail.
 *
 * @param message a message of either type, under every rulebook.
 * @param totals  where the answer is stored.
 * @return 1, or 0 for null, without memory, or when sepa_toXML() could not group the dates ("Internal error
 *         (pmt not found)"); payments and cents are told even then.
 */
int sepa_getTotals(sepa_t* message, sepa_totals_t* totals);

/**
 * Checks a creditor reference (ISO 11649): "RF", check digits from 02 to 98 (ISO 7064 MOD 97-10), 1 to 21
 * letters or digits.
 *
 * @param reference compact form, upper case, without spaces.
 * @return 1 valid, -1 not.
 */
int sepa_reference_check(const char* reference);

/**
 * Makes a creditor reference.
 *
 * @param text      1 to 21 letters or digits; lower case is converted, spaces are left out.
 * @param reference at least 26 bytes. Cleared first.
 * @return 1 made, -1 when the text cannot be part of a reference.
 */
int sepa_reference_make(const char* text, char* reference);

/**
 * Writes the message as an XML document in the schema version of the selected rulebook.
 *
 * A missing message identification and a missing date are filled in and kept, so that a second call writes
 * the same ones. What the setters and sepa_add() accepted is not checked again, unless that was under other
 * rules than those of "DE-26.11" by which it is written.
 *
 * @return the whole document, UTF-8, to be released with free(); null on failure.
 */
char* sepa_toXML(sepa_t* message);

/* ------------------------------------------------------------------------------------------------------
 * Accounts and banks
 * --------------------------------------------------------------------------------------------------- */

/** SEPA schemes in which a BIC is reachable: bits of sepa_bank_t::flags. */
enum {
    SEPA_SCL_SCT = 1,  /**< credit transfer */
    SEPA_SCL_SDD = 2,  /**< core direct debit */
    SEPA_SCL_COR1 = 4, /**< core direct debit with a shortened period */
    SEPA_SCL_B2B = 8   /**< business-to-business direct debit */
};

/**
 * A bank as the directory knows it. One allocation: release it with one free().
 *
 * Found by bank code or IBAN a bank has all texts, but any of them may be empty: most Swiss records name no
 * country, two Austrian ones no postal code and town, some banks have no BIC. Found by BIC it has no address:
 * postcode and city are null then.
 */
typedef struct sepa_bank {
    const char* name;     /**< name of the bank */
    const char* postcode; /**< of the bank's address */
    const char* city;     /**< of the bank's address */
    const char* country;  /**< two letters */
    const char* bic;      /**< eleven characters; empty when the bank has none */
    uint16_t flags;       /**< SEPA_SCL_ bits from sepa_bic_getBank(), otherwise 0 */
} sepa_bank_t;

/**
 * Checks an IBAN (ISO 13616): country, length, national format, check digits and, for German IBANs, the
 * bank code against the directory and the account number by the bank's check-digit method.
 *
 * @param iban compact form, upper case, without spaces.
 * @return 1 valid, -1 not. A German account that its method cannot check counts as valid.
 */
int sepa_iban_check(const char* iban);

/** What is wrong with a text, as sepa_finding_t::code says. */
enum {
    SEPA_FINDING_OK = 0,        /**< valid, and checked as far as there is anything to check */
    SEPA_FINDING_EMPTY = 1,     /**< no text, or an empty one */
    SEPA_FINDING_COUNTRY = 2,   /**< unknown country */
    SEPA_FINDING_TOO_SHORT = 3, /**< something is missing; its place is the text's end */
    SEPA_FINDING_TOO_LONG = 4,  /**< its place is what is too much */
    SEPA_FINDING_CHARACTER =
        5,                  /**< neither letter nor digit; in the branch of a BIC not one that may be there */
    SEPA_FINDING_CLASS = 6, /**< a letter where a digit belongs or the reverse, or a small letter */
    SEPA_FINDING_CHECK_DIGITS =
        7, /**< the check digits do not fit; they have no place, any digit may be wrong */
    SEPA_FINDING_BANK_CODE = 8,   /**< not in the directory */
    SEPA_FINDING_ACCOUNT = 9,     /**< the account's own check digit does not fit */
    SEPA_FINDING_LOWER_CASE = 10, /**< right but for small letters: sepa_iban_normalise() helps */
    SEPA_FINDING_SPACES = 11,     /**< right but for blanks or "IBAN" in front: sepa_iban_normalise() helps */
    SEPA_FINDING_BIC_BANK = 12,   /**< wrong character among the first four of a BIC */
    SEPA_FINDING_BIC_COUNTRY = 13,  /**< wrong character among the two of the country */
    SEPA_FINDING_BIC_LOCATION = 14, /**< wrong character among the two of the location */
    SEPA_FINDING_UNCHECKED = 15     /**< valid, but nothing could be checked beyond the form */
};

/** What an explanation found: the first fault, in the order in which the checks test. */
typedef struct sepa_finding {
    int32_t code;     /**< SEPA_FINDING_; values never change, new ones may come behind them */
    int32_t position; /**< first byte of the fault in the text handed in, from 0; -1 when it has no place */
    int32_t length;   /**< its bytes; 0 when it has no place, or when something is missing there */
    int32_t expected; /**< the length wanted, or the check digits (2 to 98) that would fit; otherwise 0 */
    char method[3];   /**< check-digit method, for SEPA_FINDING_ACCOUNT and a German SEPA_FINDING_UNCHECKED */
    const char* text; /**< English, constant; of a refused IBAN what sepa_setIBAN() says */
} sepa_finding_t;

/**
 * Explains why an IBAN is refused.
 *
 * Agrees with sepa_iban_check() on every text but IBANs of the seven countries that the rulebook "DE-26.11"
 * has beyond that check: Andorra, Albania, Moldova, Montenegro, North Macedonia, Serbia and Vatican City.
 *
 * @param iban    any text.
 * @param finding filled in any case; may be null.
 * @return 1 valid (SEPA_FINDING_OK or SEPA_FINDING_UNCHECKED), -1 not.
 */
int sepa_iban_explain(const char* iban, sepa_finding_t* finding);

/**
 * Explains why a BIC is refused. Agrees with sepa_setBIC(): lower case is accepted, and a BIC need not be in
 * the directory; one that is not there is SEPA_FINDING_UNCHECKED.
 *
 * @param bic     any text.
 * @param finding filled in any case; may be null.
 * @return 1 valid, -1 not.
 */
int sepa_bic_explain(const char* bic, sepa_finding_t* finding);

/**
 * Explains what is wrong with a German account: its characters, its length, the bank code, the check digit by
 * the bank's method.
 *
 * @param account   1 to 10 digits; leading zeros may be left out. The finding's position counts in it.
 * @param bank_code 8 digits. When they are at fault the position is -1.
 * @param finding   filled in any case; may be null.
 * @return 1 valid, -1 not.
 */
int sepa_account_explain(const char* account, const char* bank_code, sepa_finding_t* finding);

/**
 * Brings a typed IBAN into its compact form: blanks (ASCII ones and spaces that do not break) and "IBAN" or
 * "IBAN:" in front are left out, letters converted to upper case. Nothing is checked.
 *
 * @param text any text.
 * @param iban where the IBAN is stored; may be `text` itself.
 * @param size bytes in iban; 35 hold every IBAN.
 * @return 1, or -1 for null or when the IBAN does not fit; iban is then empty.
 */
int sepa_iban_normalise(const char* text, char* iban, size_t size);

/**
 * Finds what could be meant by a German IBAN with a typing error: valid IBANs that differ by two neighbours
 * swapped, then those that differ by one digit. Show them as what could be meant and never take one unasked:
 * with two errors all of them are wrong.
 *
 * @param iban       a German IBAN that sepa_iban_check() refuses, of the right length and of digits; blanks
 * and lower case are allowed.
 * @param candidates where the candidates are stored, one blank between them; empty when there are none.
 * @param size       bytes in candidates; 69 hold three. A smaller place gets as many as fit.
 * @return the number of candidates stored, 0 to 3; 0 for valid IBANs, those of other countries and null.
 */
int sepa_iban_suggest(const char* iban, char* candidates, size_t size);

/**
 * Finds the bank behind an Austrian, German, Liechtenstein or Swiss IBAN.
 *
 * @param iban compact form, upper case, without spaces.
 * @param bank where the record is stored; may be null when only the result matters.
 * @return 1 found, 0 another country, -1 invalid IBAN, -2 unknown bank, -3 out of memory.
 */
int sepa_iban_getBank(const char* iban, sepa_bank_t** bank);

/**
 * Builds the IBAN for a German bank code and account number by the Deutsche Bundesbank's IBAN rules.
 *
 * @param country   "DE".
 * @param account   1 to 10 digits; leading zeros may be left out.
 * @param bank_code 8 digits.
 * @param iban      at least 35 bytes, or null. Cleared first; filled with the IBAN and zero bytes.
 * @param status    how the IBAN came about, or null: 0 from the data as given, 1 account replaced, 10 bank
 *                  code unknown, 12 no IBANs for this bank code, 13 the bank code's successor was used,
 *                  15 bank code replaced, 50 no IBAN for this account range.
 * @return 1 built, 0 another country or an IBAN rule that the library does not know, -1 invalid input or no
 *         IBAN by the bank's rule, -3 unknown bank code.
 */
int sepa_iban_convert(const char* country, const char* account, const char* bank_code, char* iban,
                      uint8_t* status);

/**
 * Like sepa_iban_convert(), and tells what the check of the account gave once the bank's rule had its say.
 * Most rules build IBANs for accounts whose check digit is wrong: ask the customer again then.
 *
 * @param country        as there.
 * @param account        as there.
 * @param bank_code      as there.
 * @param iban           as there.
 * @param status         as there, or null.
 * @param account_result 1 valid, 0 not checkable, -1 invalid, 2 as sepa_account_check() says, or null. It
 *                       stands there without an IBAN, too, once the bank is found; 0 before.
 * @return as there.
 */
int sepa_iban_convert2(const char* country, const char* account, const char* bank_code, char* iban,
                       int* status, int* account_result);

/**
 * Finds the BIC for an Austrian, German, Liechtenstein or Swiss IBAN. The check digits are not tested.
 *
 * @param iban compact form, upper case, without spaces.
 * @param bic  at least 12 bytes. Cleared first; stays empty when the bank has no BIC.
 * @return 1 found, 0 another country, -1 wrong length or null, -3 unknown bank.
 */
int sepa_iban_getBIC(const char* iban, char* bic);

/**
 * Finds the bank behind a national bank code.
 *
 * @param country "AT", "CH", "DE" or "LI", upper case.
 * @param bank_id the bank code, up to 5 characters (Germany: 8); shorter ones are filled with leading zeros.
 * @param bank    where the record is stored; may be null when only the result matters.
 * @return 1 found, 0 another country, -2 unknown bank code, -3 out of memory.
 */
int sepa_bankid_check(const char* country, const char* bank_id, sepa_bank_t** bank);

/**
 * Walks the directory.
 *
 * @param country "AT", "CH", "DE" or "LI" for the country's bank codes, ascending; Liechtenstein's are the
 *                Swiss ones, as in sepa_bankid_check(). Null for all bank codes and behind them all BICs.
 * @param index   how many records have been handed out, 0 at first; raised by one with each.
 * @param code    12 bytes for the bank code or BIC, or null.
 * @param bank    where the record is stored, as sepa_bankid_check() and sepa_bic_getBank() give it, or null.
 * @return 1, 0 at the end or for another country, -1 without an index, -3 out of memory.
 */
int sepa_bank_next(const char* country, uint32_t* index, char* code, sepa_bank_t** bank);

/**
 * Tells by which methods a German bank's account numbers are checked and its IBANs are built.
 *
 * @param bank_code 8 digits.
 * @param method    3 bytes for the two characters of the check-digit method, or null. Read as a hexadecimal
 *                  number they are what sepa_account_check() takes.
 * @param iban_rule where the number of the IBAN rule times 100 plus its version is stored, or null.
 * @return 1, -1 not eight characters or null, -2 unknown bank code; nothing is stored then.
 */
int sepa_bankid_method(const char* bank_code, char* method, int* iban_rule);

/**
 * Tells from which day on the directory's bank codes of a country hold.
 *
 * @param country "AT", "CH", "DE" or "LI", upper case.
 * @return yyyy-mm-dd, constant; the first of the month when the publisher names no day. Null for another
 *         country.
 */
const char* sepa_data_date(const char* country);

/**
 * Finds a bank and its SEPA reachability by BIC (ISO 9362).
 *
 * @param bic  8 or 11 letters and digits, any case; 8 stand for the head office ("XXX").
 * @param bank where the record is stored (name, country, BIC and flags; no address); may be null.
 * @return 1 found, -2 invalid or unknown BIC, -3 out of memory.
 */
int sepa_bic_getBank(const char* bic, sepa_bank_t** bank);

/**
 * Checks a German account number by a check-digit method of the Deutsche Bundesbank ("Prüfzifferberechnungs-
 * methoden zur Prüfung von Kontonummern").
 *
 * @param account 1 to 10 digits; leading zeros may be left out.
 * @param method  the method's two characters read as a hexadecimal number: 0x13 for 13, 0xB6 for B6.
 * @return 1 valid, 0 not checkable (no check digit, or no such method here), 2 valid after the account is
 *         read as lacking its sub-account (method 76 only), -1 invalid.
 */
int sepa_account_check(const char* account, uint8_t method);

/**
 * Like sepa_account_check(), for callers who know the bank code: methods 52, 53, B6 and C0 need it and are
 * checked here only.
 *
 * @param account   1 to 10 digits; leading zeros may be left out.
 * @param bank_code exactly 8 characters; otherwise the result is -1.
 * @param method    the method's two characters read as a hexadecimal number.
 * @return as sepa_account_check().
 */
int sepa_account_check2(const char* account, const char* bank_code, uint8_t method);

/* ------------------------------------------------------------------------------------------------------
 * Account statements (MT940, camt)
 * --------------------------------------------------------------------------------------------------- */

/** Statement formats for sepa_stmt_parser_load(). */
enum {
    SEPA_STMT_FORMAT_MT940 = 1, /**< SWIFT MT940 with the German structured :86: field, CR LF line ends */
    SEPA_STMT_FORMAT_CAMT = 53, /**< ISO 20022 camt.052, camt.053 and camt.054, any version from 001.02 on */
    SEPA_STMT_FORMAT_MT940_TOLERANT = 940 /**< MT940 as banks really write it: any line end, signed amounts */
};

/** A parser with the statements of one file. Opaque. */
typedef struct sepa_stmt_parser sepa_stmt_parser_t;

/**
 * One booking (":61:" with its ":86:"; an "Ntry" of a camt file, or one of its parts where they add up). All
 * texts belong to the parser; a text that the statement does not have is null. Dates have day, month (0-11)
 * and year (since 1900) only. sepa_stmt_parser_getTxInfo() has more.
 */
typedef struct sepa_stmt_tx {
    struct tm valuta; /**< value date */
    struct tm booked; /**< booking date; all zero when the line has none */
    uint8_t reversal; /**< 1 for a reversal ("RC", "RD") */
    double amount; /**< in the formats 53 and 940 negative for a debit, whether a reversal or not. In format 1
                      a debit counts 255 times and is not negative: use sepa_stmt_tx_info_t::signedAmount */
    char code[4];  /**< transaction type, three characters */
    char* ref;     /**< customer reference */
    char* bankref; /**< bank reference */
    char* txtext;  /**< posting text (?00) */
    char* primanota;           /**< journal number (?10) */
    uint32_t gvc;              /**< business transaction code, three digits */
    uint32_t extcode;          /**< text key extension (?34) */
    char bank[13];             /**< counterpart's bank code or BIC (?30) */
    char account[35];          /**< counterpart's account or IBAN (?31) */
    char name[55];             /**< counterpart's name (?32, ?33) */
    char* purpose;             /**< purpose lines before the first keyword, joined with line feeds */
    char* eref;                /**< EREF+: end-to-end reference */
    char* kref;                /**< KREF+: customer reference */
    char* mref;                /**< MREF+: mandate reference */
    char* cred;                /**< CRED+: creditor identifier */
    char* debt;                /**< DEBT+: originator identifier */
    char* purp;                /**< PURP+: purpose code */
    char* coam;                /**< COAM+: compensation amount, "." as decimal mark */
    char* oamt;                /**< OAMT+: original amount, "." as decimal mark */
    char* svwz;                /**< SVWZ+: remittance information */
    char* abwa;                /**< ABWA+: ultimate originator */
    char* abwe;                /**< ABWE+: ultimate recipient */
    struct sepa_stmt_tx* next; /**< the next booking of the statement */
} sepa_stmt_tx_t;

/** One statement (":20:"). Ownership and dates as in sepa_stmt_tx_t. */
typedef struct sepa_stmt {
    char* ref;                /**< the bank's reference for the statement */
    char* account;            /**< account as the bank writes it (":25:"), or null */
    uint32_t number;          /**< statement number */
    uint32_t page;            /**< page of that statement, 0 when not given */
    struct tm openDate;       /**< date of the opening balance */
    struct tm closeDate;      /**< date of the closing balance */
    double openSaldo;         /**< opening balance, negative for a debit balance */
    double closeSaldo;        /**< closing balance, negative for a debit balance */
    char openCurrency[4];     /**< three letters, empty without an opening balance */
    char closeCurrency[4];    /**< three letters, empty without a closing balance */
    sepa_stmt_tx_t* first_tx; /**< bookings in the order of the file, null when there are none */
    sepa_stmt_tx_t* last_tx;  /**< the last of them */
    struct sepa_stmt* next;   /**< the next statement of the file */
} sepa_stmt_t;

/** A balance of a statement in the formats 53 and 940. */
typedef struct sepa_stmt_balance {
    char code[5];     /**< OPBD, PRCD, CLBD, ITBD, OPAV, CLAV, ITAV, FWAV, XPCD, INFO (ISO 20022 external code
                           set), or the first four bytes of a bank's own code */
    char currency[4]; /**< three letters */
    uint8_t interim;  /**< 1 for the balance of a page or of the moment */
    double amount;    /**< negative for a debit balance */
    struct tm date;   /**< day, month (0-11) and year (since 1900) */
} sepa_stmt_balance_t;

/**
 * What the formats 53 and 940 know about a statement beyond sepa_stmt_t. It belongs to the parser and may
 * grow at its end. A text that the file does not have is null.
 */
typedef struct sepa_stmt_info {
    uint16_t kind;         /**< 52, 53 or 54: camt.052, camt.053, camt.054; 940: MT940 */
    uint16_t version;      /**< of the camt message: 2, 8, ...; 0 when its namespace does not tell */
    char* messageId;       /**< identification of the file's message */
    char* created;         /**< date and time of creation as written */
    char* from;            /**< begin of the period as written */
    char* to;              /**< end of the period as written */
    uint8_t lastPage;      /**< 1 when this is the last page, or when the file does not count pages */
    char copy[5];          /**< COPY, DUPL or CODU for a copy or a duplicate, else empty */
    char* owner;           /**< the account's owner */
    char bic[12];          /**< the bank that keeps the account */
    char currency[4];      /**< the account's currency */
    char* text;            /**< the bank's words about the whole statement */
    uint8_t utf8;          /**< 1: the whole file is valid UTF-8 (always for camt) */
    uint32_t balanceCount; /**< how many balances follow */
    const sepa_stmt_balance_t* balances; /**< all balances in the order of the file */
    uint64_t entries;                    /**< number of entries as the file counts them, 0 when it does not */
    uint64_t creditEntries;              /**< those to the account's credit */
    uint64_t debitEntries;               /**< those to the account's debit */
    double entrySum;                     /**< sum of all entries as the file tells it */
    double creditSum;                    /**< sum of the credits */
    double debitSum;                     /**< sum of the debits */
} sepa_stmt_info_t;

/**
 * What is known about a booking beyond sepa_stmt_tx_t. It belongs to the parser and may grow at its end. A
 * text that the file does not have is null or empty. For format 1 only debit, currency and signedAmount are
 * set.
 */
typedef struct sepa_stmt_tx_info {
    uint8_t debit;        /**< 1: the booking takes money off the account */
    char status[5];       /**< BOOK, PDNG, INFO, FUTR, or the first four bytes of a bank's own status */
    char currency[4];     /**< of the amount */
    int64_t signedAmount; /**< in 1/100,000 of the currency unit, exact, negative for a debit; INT64_MAX when
                             the amount is too large or has more than five decimals */
    uint32_t entry;       /**< number of the entry in its statement, from 1 */
    uint32_t part;        /**< number of this part of the entry, from 1; 0: the record is the entry itself */
    uint32_t parts;       /**< how many parts the entry has */
    double entryAmount;   /**< amount of the whole entry, negative for a debit */
    uint32_t batchCount;  /**< payments in the batch */
    char* batchMessageId; /**< message identification of the batch */
    char* batchPaymentId; /**< payment information identification of the batch */
    char* fullName;       /**< the counterpart's name uncut (sepa_stmt_tx_t::name holds 54 bytes) */
    char* ultimateDebtor; /**< on whose behalf was paid */
    char* ultimateCreditor;     /**< for whom the money is */
    char* returnReason;         /**< why a payment came back: ISO 20022 reason code or the bank's own */
    char* returnText;           /**< the same in words, joined with line feeds */
    char* creditorReference;    /**< structured reference (ISO 11649) */
    char domain[5];             /**< bank transaction code: domain */
    char family[5];             /**< family */
    char subFamily[5];          /**< sub-family */
    char* proprietaryCode;      /**< the bank's own transaction code, whole */
    char* proprietaryIssuer;    /**< who defined it */
    double charges;             /**< sum of the charges, negative when they were taken */
    char chargesCurrency[4];    /**< their currency */
    double instructedAmount;    /**< amount as instructed, with the sign of the booking */
    char instructedCurrency[4]; /**< its currency */
    char* exchangeRate;         /**< as written */
    char* messageId;            /**< message identification of the payment's file */
    char* paymentId;            /**< payment information identification */
    char* instructionId;        /**< instruction identification */
    char* transactionId;        /**< transaction identification of the clearing */
    char* uetr;                 /**< unique end-to-end transaction reference */
    char* entryReference;       /**< the bank's reference of the entry in the statement */
    char* proprietaryReference; /**< the first reference of the bank's own kind */
    char* text; /**< further words of the bank; in format 940 all that has no field of its own */
} sepa_stmt_tx_info_t;

/** Creates a parser for one file. @return the parser, or null without memory. */
sepa_stmt_parser_t* sepa_stmt_parser_new(void);

/**
 * Reads a statement file. A parser loads once, even if that fails.
 *
 * In format 1, content that the parser does not understand never fails the load: it only cuts a statement
 * short. In the formats 53 and 940 a damaged file fails the load, and nothing of it is kept: half a statement
 * must not be booked.
 *
 * @param parser a parser that has not loaded anything yet.
 * @param format SEPA_STMT_FORMAT_MT940, SEPA_STMT_FORMAT_CAMT or SEPA_STMT_FORMAT_MT940_TOLERANT.
 * @param path   the file.
 * @return 1, or 0 with the reason; there are no statements then.
 */
int sepa_stmt_parser_load(sepa_stmt_parser_t* parser, uint32_t format, const char* path);

/**
 * Like sepa_stmt_parser_load(), for a file that lies in memory already.
 *
 * @param parser a parser that has not loaded anything yet.
 * @param format as for sepa_stmt_parser_load().
 * @param data   the bytes; they are copied.
 * @param size   how many; without any the load fails with "Input file is empty".
 * @return 1, or 0 with the reason.
 */
int sepa_stmt_parser_loadMemory(sepa_stmt_parser_t* parser, uint32_t format, const char* data, size_t size);

/** @return the first statement of the loaded file, or null when there is none. */
sepa_stmt_t* sepa_stmt_parser_getStatement(sepa_stmt_parser_t* parser);

/**
 * Tells more about a statement.
 *
 * @return the record, valid as long as the parser; null in format 1, for null, and for a statement that is
 * not one of this parser's.
 */
const sepa_stmt_info_t* sepa_stmt_parser_getInfo(sepa_stmt_parser_t* parser, const sepa_stmt_t* statement);

/**
 * Tells more about a booking.
 *
 * @return the record, valid as long as the parser, in format 1 until the next call on it; null for null and
 * for a booking that is not one of this parser's.
 */
const sepa_stmt_tx_info_t* sepa_stmt_parser_getTxInfo(sepa_stmt_parser_t* parser,
                                                      const sepa_stmt_tx_t* booking);

/**
 * Proves a statement: opening balance and bookings give the closing balance. All sums are exact; bookings
 * whose status is neither empty nor BOOK do not count.
 *
 * @param parser     a parser that has loaded a file.
 * @param statement  one of its statements.
 * @param difference where closing balance less opening balance and bookings is stored; 0 when there is
 * nothing to compare. May be null.
 * @return 1 proved, 0 not, -1 when a balance is missing, for null, and for a statement that is not one of
 * this parser's.
 */
int sepa_stmt_parser_check(sepa_stmt_parser_t* parser, const sepa_stmt_t* statement, double* difference);

/** @return the text of the last failure, empty when there was none; for null a text that says so. */
const char* sepa_stmt_parser_getError(sepa_stmt_parser_t* parser);

/** Releases a parser with all statements and texts. Null is ignored. */
void sepa_stmt_parser_free(sepa_stmt_parser_t* parser);

/* ------------------------------------------------------------------------------------------------------
 * Texts
 * --------------------------------------------------------------------------------------------------- */

/** What sepa_text_convert() leaves as it is. */
enum {
    SEPA_TEXT_KEEP = 0, /**< what the selected rulebook permits in names: umlauts stay in Germany */
    SEPA_TEXT_BASIC =
        1 /**< the characters that every bank takes: letters, digits, space and ' ( ) + , - . / : ? */
};

/** What sepa_text_convert() did. A letter with the combining mark behind it is one character. */
typedef struct sepa_text_report {
    uint32_t changed;  /**< characters written in another way, or left out because they cannot be seen */
    uint32_t replaced; /**< characters without an equivalent, now "." */
    uint32_t cut;      /**< characters lost behind the limit */
    int32_t first;     /**< where the first of them stands, in bytes; -1 when the text stayed as it was */
} sepa_text_report_t;

/**
 * Writes a name or remittance text with the characters that banks take: "Łódź" as "Lodz", "10 €" as
 * "10 EUR", "Παπαδόπουλος" as "Papadopoulos". Accents go, umlauts become "ae", "oe", "ue" and "ss" where they
 * may not stay, Greek follows ELOT 743, Cyrillic the Bulgarian table, and what has no equivalent is ".". A
 * converted text stays as it is when it is converted again.
 *
 * @param text   UTF-8; letters may be composed or decomposed.
 * @param mode   SEPA_TEXT_KEEP or SEPA_TEXT_BASIC.
 * @param limit  the longest result, 0 for no limit, counted as the selected rulebook counts its limits:
 * bytes, under "DE-26.11" characters. The result ends before the first replacement that does not fit.
 * @param out    receives the result, cut to its size between two characters and terminated; null with size 0
 *               when only the length matters. Must not overlap the text.
 * @param size   bytes in out.
 * @param report receives what was done, or null.
 * @return bytes of the whole result without its terminating zero byte, also when out was too small; -1 for
 *         null, an unknown mode and a text that is not UTF-8: out is then empty.
 */
int sepa_text_convert(const char* text, uint32_t mode, size_t limit, char* out, size_t size,
                      sepa_text_report_t* report);

/* ------------------------------------------------------------------------------------------------------
 * Status reports (pain.002)
 * --------------------------------------------------------------------------------------------------- */

/** What the bank says about a file that was sent. Opaque. */
typedef struct sepa_report sepa_report_t;

/** What an item of a report is about: sepa_report_item_t::level. */
enum {
    SEPA_REPORT_GROUP = 0,  /**< the whole file */
    SEPA_REPORT_BLOCK = 1,  /**< one payment block of it */
    SEPA_REPORT_PAYMENT = 2 /**< one payment */
};

/**
 * One statement of the bank about a file, a payment block or a payment. It belongs to its report and may grow
 * at its end. A text that the report does not have is null or empty.
 */
typedef struct sepa_report_item {
    uint8_t level;     /**< SEPA_REPORT_GROUP, SEPA_REPORT_BLOCK or SEPA_REPORT_PAYMENT */
    char status[5];    /**< status code (ISO 20022): ACCP, RJCT, ...; without one of its own that of the level
                            above */
    char* messageId;   /**< message identification of the file that was sent */
    char* messageName; /**< its schema: pain.001.001.09, ... */
    char* blockId;     /**< payment information identification */
    char* instructionId; /**< instruction identification */
    char* endToEndId;    /**< end-to-end identification */
    char* uetr;          /**< unique end-to-end transaction reference */
    char* statusId;      /**< the bank's identification of this status */
    char* reference;     /**< the bank's reference of the payment */
    char* reason;        /**< the first reason: ISO 20022 reason code or the bank's own */
    char* reasons;       /**< all reasons, a blank between them */
    char* text;       /**< the bank's words, a line feed between them; with RVMC the name that the bank has */
    double amount;    /**< of a payment as instructed, else the control sum; 0 when not given */
    char currency[4]; /**< of a payment's amount */
    uint32_t count;   /**< payments in the file or block, 0 when not given */
    char* name;       /**< the counterpart: creditor of a credit transfer, debtor of a direct debit */
    char iban[35];    /**< its account */
    char* mandate;    /**< mandate identification */
    char date[11];    /**< requested day of execution or collection, yyyy-mm-dd */
    struct sepa_report_item* next; /**< the next one in the order of the file */
} sepa_report_item_t;

/** Creates a report. @return the report, or null without memory. */
sepa_report_t* sepa_report_new(void);

/**
 * Reads a status report: ISO 20022 pain.002 of any version from 001.03 on. A report loads once, even if that
 * fails; a damaged file fails, and nothing of it is kept.
 *
 * @param report a report that has not loaded anything yet.
 * @param path   the file.
 * @return 1, or 0 with the reason.
 */
int sepa_report_load(sepa_report_t* report, const char* path);

/**
 * Like sepa_report_load(), for a file that lies in memory already.
 *
 * @param report a report that has not loaded anything yet.
 * @param data   the bytes; they are copied.
 * @param size   how many.
 * @return 1, or 0 with the reason.
 */
int sepa_report_loadMemory(sepa_report_t* report, const char* data, size_t size);

/** @return the first item of the loaded report, or null when there is none. */
const sepa_report_item_t* sepa_report_getItem(sepa_report_t* report);

/**
 * Tells what became of a payment.
 *
 * A payment that the report names is answered with its item, the first of them. For another one the refusal
 * of the whole file holds, or that of a payment block if exactly one is refused.
 *
 * @param report     a loaded report.
 * @param endToEndId end-to-end identification of the payment.
 * @param item       where the item is stored, null without one. May be null.
 * @return 1, or 0 when the report does not say anything about it.
 */
int sepa_report_match(const sepa_report_t* report, const char* endToEndId, const sepa_report_item_t** item);

/** @return the text of the last failure, empty when there was none; for null a text that says so. */
const char* sepa_report_getError(sepa_report_t* report);

/** Releases a report with all items and texts. Null is ignored. */
void sepa_report_free(sepa_report_t* report);

/**
 * Explains the codes that banks give: why a payment was refused or came back (ISO 20022 external reason
 * codes), and in which status it is.
 *
 * @param code four characters: sepa_report_item_t::reason or status, sepa_stmt_tx_info_t::returnReason.
 * @return a constant English text, or null for null and for a code that the library does not know.
 */
const char* sepa_reason_text(const char* code);

/* ------------------------------------------------------------------------------------------------------
 * Numbers and patterns
 * --------------------------------------------------------------------------------------------------- */

/**
 * Parses a decimal number with "." as decimal mark whatever the locale: white space, sign, digits, exponent.
 * The first 18 digits count. No hexadecimal forms, "inf" or "nan".
 *
 * @param text the number, with anything behind it.
 * @param end  where the address of the first character not consumed is stored, or null; the start of the text
 *             when it holds no number.
 * @return the number; 0 without digits. An exponent beyond 511 sets errno to ERANGE.
 */
double __sepa_strtod(const char* text, char** end);

/**
 * Writes an amount with exactly two decimals, "." as decimal mark and no grouping; halves of a cent go away
 * from zero.
 *
 * @param buf    receives the text, cut to its size but always terminated.
 * @param size   bytes in buf; with 0 nothing is written.
 * @param amount euros.
 * @return the address of the terminating zero byte.
 */
char* __sepa_d2str(char* buf, size_t size, double amount);

/**
 * The C library's pattern functions. Null until libc_regex_init(), which every check of an IBAN or a BIC
 * calls, sepa_setBIC() and the check of a structured address field, too. The checks themselves do without
 * them; a caller may put functions of its own in their place.
 */
extern int (*libc_regcomp)(regex_t* pattern, const char* text, int flags);
/** @see libc_regcomp */
extern int (*libc_regexec)(const regex_t* pattern, const char* text, size_t count, regmatch_t* matches,
                           int flags);
/** @see libc_regcomp */
extern void (*libc_regfree)(regex_t* pattern);

/**
 * Fills those of the three pointers above that are null, unless libc_regcomp is set. Safe in any number of
 * threads.
 */
void libc_regex_init(void);

#pragma GCC visibility pop

#ifdef __cplusplus
}
#endif

#endif
