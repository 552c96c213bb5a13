/* The class SEPACheck: what is wrong with what people type, and what the bank directory knows. */
#include "binding.h"
#include "record.h"

#include <stdlib.h>

/* A finding as scripts see it. */
typedef struct {
    uint8_t valid;
    char name[14]; /* SEPA_FINDING_ has been left out */
    sepa_finding_t found;
} shown_finding;

/* clang-format off */
static const char finding_names[][sizeof ((shown_finding*)0)->name] = {
    [SEPA_FINDING_OK] = "OK", [SEPA_FINDING_EMPTY] = "EMPTY", [SEPA_FINDING_COUNTRY] = "COUNTRY",
    [SEPA_FINDING_TOO_SHORT] = "TOO_SHORT", [SEPA_FINDING_TOO_LONG] = "TOO_LONG",
    [SEPA_FINDING_CHARACTER] = "CHARACTER", [SEPA_FINDING_CLASS] = "CLASS",
    [SEPA_FINDING_CHECK_DIGITS] = "CHECK_DIGITS", [SEPA_FINDING_BANK_CODE] = "BANK_CODE",
    [SEPA_FINDING_ACCOUNT] = "ACCOUNT", [SEPA_FINDING_LOWER_CASE] = "LOWER_CASE",
    [SEPA_FINDING_SPACES] = "SPACES", [SEPA_FINDING_BIC_BANK] = "BIC_BANK",
    [SEPA_FINDING_BIC_COUNTRY] = "BIC_COUNTRY", [SEPA_FINDING_BIC_LOCATION] = "BIC_LOCATION",
    [SEPA_FINDING_UNCHECKED] = "UNCHECKED",
};

#define FOUND(name, kind) {#name, offsetof(shown_finding, found) + offsetof(sepa_finding_t, name), MEMBER_##kind, NULL}
static record_member finding_members[] = {
    MEMBER(shown_finding, valid, BOOL), FOUND(code, INT32), MEMBER(shown_finding, name, CHARS),
    FOUND(position, INT32), FOUND(length, INT32), FOUND(expected, INT32), FOUND(method, CHARS),
    FOUND(text, TEXT_OR_NULL),
};

#define BANK(name, kind) MEMBER(sepa_bank_t, name, kind)
static record_member bank_members[] = {
    BANK(name, TEXT_OR_NULL), BANK(postcode, TEXT_OR_NULL), BANK(city, TEXT_OR_NULL),
    BANK(country, TEXT_OR_NULL), BANK(bic, TEXT_OR_NULL), BANK(flags, UINT16),
};
/* clang-format on */

void check_class_init(void) {
    make_keys(finding_members, MEMBER_COUNT(finding_members));
    make_keys(bank_members, MEMBER_COUNT(bank_members));
}

static void return_finding(zval* return_value, int result, const sepa_finding_t* finding) {
    shown_finding shown = {.valid = result == 1, .found = *finding};
    if ((size_t)finding->code < MEMBER_COUNT(finding_names))
        memcpy(shown.name, finding_names[finding->code], sizeof shown.name);
    array_init_size(return_value, MEMBER_COUNT(finding_members));
    put_members(return_value, finding_members, MEMBER_COUNT(finding_members), &shown, NULL);
}

static sepa_finding_t finding_at(int code, size_t position, size_t length, const char* text) {
    return (sepa_finding_t){
        .code = code, .position = (int32_t)position, .length = (int32_t)length, .text = text};
}

static sepa_finding_t finding_without_place(int code, const char* text) {
    return (sepa_finding_t){.code = code, .position = -1, .text = text};
}

/* Whether the text has a zero byte; the finding says where, then. */
static bool find_zero_byte(const char* text, size_t length, sepa_finding_t* finding) {
    const char* zero = memchr(text, 0, length);
    if (!zero) return false;
    *finding = finding_at(SEPA_FINDING_CHARACTER, (size_t)(zero - text), 1, zero_byte_reason);
    return true;
}

static void explain(INTERNAL_FUNCTION_PARAMETERS, int (*explain_text)(const char*, sepa_finding_t*)) {
    char* text;
    size_t length;
    ZEND_PARSE_PARAMETERS_START(1, 1)
        Z_PARAM_STRING(text, length)
    ZEND_PARSE_PARAMETERS_END();

    sepa_finding_t finding;
    int result = find_zero_byte(text, length, &finding) ? -1 : explain_text(text, &finding);
    return_finding(return_value, result, &finding);
}

PHP_METHOD(SEPACheck, iban) {
    explain(INTERNAL_FUNCTION_PARAM_PASSTHRU, sepa_iban_explain);
}

PHP_METHOD(SEPACheck, bic) {
    explain(INTERNAL_FUNCTION_PARAM_PASSTHRU, sepa_bic_explain);
}

PHP_METHOD(SEPACheck, account) {
    char *account, *bank_code;
    size_t account_length, bank_code_length;
    ZEND_PARSE_PARAMETERS_START(2, 2)
        Z_PARAM_STRING(account, account_length)
        Z_PARAM_STRING(bank_code, bank_code_length)
    ZEND_PARSE_PARAMETERS_END();

    sepa_finding_t finding;
    int result = -1;
    if (has_zero_byte(bank_code, bank_code_length)) {
        finding = finding_without_place(SEPA_FINDING_BANK_CODE, zero_byte_reason);
    } else if (!find_zero_byte(account, account_length, &finding)) {
        result = sepa_account_explain(account, bank_code, &finding);
    }
    return_finding(return_value, result, &finding);
}

/* What a text looks like whose check in the library tells a reason and no place: a capital letter for each
 * "A", a digit for each "0", any other character itself; behind these capital letters and digits. */
typedef struct {
    const char* begin;
    size_t shortest, longest;
} text_form;

static bool is_capital(char c) {
    return c >= 'A' && c <= 'Z';
}

static bool is_digit(char c) {
    return c >= '0' && c <= '9';
}

static bool fits(char c, char form) {
    if (form == 'A') return is_capital(c);
    if (form == '0') return is_digit(c);
    return form ? c == form : is_capital(c) || is_digit(c);
}

/* Explains a text that is known to be wrong. */
static sepa_finding_t find_place(const char* text, const text_form* form) {
    size_t length = strlen(text), begin = strlen(form->begin), at = 0;
    if (length == 0) return finding_without_place(SEPA_FINDING_EMPTY, NULL);
    if (length < form->shortest || length > form->longest) {
        bool is_short = length < form->shortest;
        sepa_finding_t finding =
            is_short ? finding_at(SEPA_FINDING_TOO_SHORT, length, 0, NULL)
                     : finding_at(SEPA_FINDING_TOO_LONG, form->longest, length - form->longest, NULL);
        finding.expected = (int32_t)(is_short ? form->shortest : form->longest);
        return finding;
    }
    while (at < length && fits(text[at], at < begin ? form->begin[at] : '\0'))
        at++;
    if (at == length) return finding_without_place(SEPA_FINDING_CHECK_DIGITS, NULL);
    bool is_other_class = is_digit(text[at]) || is_capital((char)(text[at] & ~0x20));
    return finding_at(is_other_class ? SEPA_FINDING_CLASS : SEPA_FINDING_CHARACTER, at, 1, NULL);
}

/* ISO 11649. */
static int explain_reference(const char* reference, sepa_finding_t* finding) {
    static const text_form form = {"RF00", 5, 25};
    if (sepa_reference_check(reference) == 1) {
        *finding = finding_without_place(SEPA_FINDING_OK, "Valid");
        return 1;
    }
    *finding = find_place(reference, &form);
    finding->text = "Invalid creditor reference";
    char right[26];
    if (finding->code == SEPA_FINDING_CHECK_DIGITS && sepa_reference_make(reference + 4, right) == 1) {
        finding->text = "Invalid creditor reference checksum";
        finding->expected = (right[2] - '0') * 10 + right[3] - '0';
    }
    return -1;
}

/* The check digits that the message would take in the identifier, or 0. */
static int32_t find_check_digits(sepa_t* message, const char* identifier) {
    char tried[36];
    size_t length = strlen(identifier);
    if (length >= sizeof tried) return 0;
    memcpy(tried, identifier, length + 1);
    for (int digits = 2; digits <= 98; digits++) {
        tried[2] = (char)('0' + digits / 10);
        tried[3] = (char)('0' + digits % 10);
        if (sepa_setCreditorIdentifier(message, tried)) return digits;
    }
    return 0;
}

/* EPC262-08, by the rulebook that looks at all of it. Its check is the setter of a message. */
PHP_METHOD(SEPACheck, creditorIdentifier) {
    static const text_form form = {"AA00", 8, 35};
    char* identifier;
    size_t length;
    ZEND_PARSE_PARAMETERS_START(1, 1)
        Z_PARAM_STRING(identifier, length)
    ZEND_PARSE_PARAMETERS_END();

    sepa_t* message = sepa_new(SEPA_MSGTYPE_DDI);
    sepa_finding_t finding;
    bool is_valid = false;
    if (!find_zero_byte(identifier, length, &finding)) {
        is_valid = sepa_setRulebook(message, "DE-26.11") && sepa_setCreditorIdentifier(message, identifier);
        finding = is_valid ? finding_without_place(SEPA_FINDING_OK, "Valid") : find_place(identifier, &form);
        if (!is_valid) finding.text = sepa_getError(message);
        if (finding.code == SEPA_FINDING_CHECK_DIGITS)
            finding.expected = find_check_digits(message, identifier);
    }
    return_finding(return_value, is_valid, &finding);
    sepa_free(message);
}

PHP_METHOD(SEPACheck, reference) {
    explain(INTERNAL_FUNCTION_PARAM_PASSTHRU, explain_reference);
}

/* ------------------------------------------------------------------------------------------------------
 * Help with what was typed
 * --------------------------------------------------------------------------------------------------- */

PHP_METHOD(SEPACheck, normalise) {
    char* text;
    size_t length;
    ZEND_PARSE_PARAMETERS_START(1, 1)
        Z_PARAM_STRING(text, length)
    ZEND_PARSE_PARAMETERS_END();

    char iban[64];
    if (has_zero_byte(text, length) || sepa_iban_normalise(text, iban, sizeof iban) != 1) return;
    RETURN_STRING(iban);
}

PHP_METHOD(SEPACheck, suggest) {
    char* iban;
    size_t length;
    ZEND_PARSE_PARAMETERS_START(1, 1)
        Z_PARAM_STRING(iban, length)
    ZEND_PARSE_PARAMETERS_END();

    char candidates[128] = "";
    array_init(return_value);
    if (has_zero_byte(iban, length) || sepa_iban_suggest(iban, candidates, sizeof candidates) < 1) return;
    for (const char* at = candidates; *at;) {
        size_t size = strcspn(at, " ");
        add_next_index_stringl(return_value, at, size);
        at += size + (at[size] == ' ');
    }
}

/* ------------------------------------------------------------------------------------------------------
 * The directory
 * --------------------------------------------------------------------------------------------------- */

PHP_METHOD(SEPACheck, convert) {
    char *bank_code, *account;
    size_t bank_code_length, account_length;
    ZEND_PARSE_PARAMETERS_START(2, 2)
        Z_PARAM_STRING(bank_code, bank_code_length)
        Z_PARAM_STRING(account, account_length)
    ZEND_PARSE_PARAMETERS_END();

    char iban[36] = "", bic[12] = "";
    int status = 0, account_result = 0;
    /* Letters, which the library puts into the IBAN as they are, make no account. */
    bool is_built = !has_zero_byte(bank_code, bank_code_length) &&
                    strspn(account, "0123456789") == account_length &&
                    sepa_iban_convert2("DE", account, bank_code, iban, &status, &account_result) == 1;
    bool has_bic = is_built && sepa_iban_getBIC(iban, bic) == 1 && *bic;
    array_init_size(return_value, 4);
    if (is_built) {
        add_assoc_string(return_value, "iban", iban);
    } else {
        add_assoc_null(return_value, "iban");
    }
    if (has_bic) {
        add_assoc_string(return_value, "bic", bic);
    } else {
        add_assoc_null(return_value, "bic");
    }
    add_assoc_long(return_value, "status", status);
    add_assoc_string(return_value, "account",
                     account_result < 0    ? "invalid"
                     : account_result == 0 ? "unchecked"
                                           : "valid");
}

/* The text is a bank code when it is short or of eight digits, a BIC when it is as long as one, else an IBAN,
 * whose country becomes the bank's. */
static int find_bank(const char* text, char country[3], sepa_bank_t** bank) {
    char iban[64];
    size_t length = strlen(text);
    if (length < 8 || (length == 8 && strspn(text, "0123456789") == 8))
        return sepa_bankid_check(country, text, bank);
    if (length == 8 || length == 11) return sepa_bic_getBank(text, bank);
    if (sepa_iban_normalise(text, iban, sizeof iban) != 1) return -1;
    memcpy(country, iban, 2);
    return sepa_iban_getBank(iban, bank);
}

PHP_METHOD(SEPACheck, bank) {
    char *text, *given_country = NULL;
    size_t length, country_length = 2;
    ZEND_PARSE_PARAMETERS_START(1, 2)
        Z_PARAM_STRING(text, length)
        Z_PARAM_OPTIONAL
        Z_PARAM_STRING(given_country, country_length)
    ZEND_PARSE_PARAMETERS_END();

    sepa_bank_t *bank, *same;
    char country[3] = "DE";
    if (has_zero_byte(text, length) || country_length != 2) return;
    if (given_country) memcpy(country, given_country, 2);
    if (find_bank(text, country, &bank) != 1) return;
    /* Switzerland's list leaves the country out where it is the own one. */
    if (!bank->country || !*bank->country) bank->country = country;
    /* The list of BICs knows in which schemes a bank is reached, the countries' lists know its address. */
    if (!bank->flags && bank->bic && *bank->bic && sepa_bic_getBank(bank->bic, &same) == 1) {
        bank->flags = same->flags;
        free(same);
    }
    array_init_size(return_value, MEMBER_COUNT(bank_members));
    put_members(return_value, bank_members, MEMBER_COUNT(bank_members), bank, NULL);
    free(bank);
}

PHP_METHOD(SEPACheck, dataDate) {
    char* country = NULL;
    size_t length = 0;
    ZEND_PARSE_PARAMETERS_START(0, 1)
        Z_PARAM_OPTIONAL
        Z_PARAM_STRING(country, length)
    ZEND_PARSE_PARAMETERS_END();

    const char* date =
        country && has_zero_byte(country, length) ? NULL : sepa_data_date(country ? country : "DE");
    if (date) RETURN_STRING(date);
}
