/*
 * The public header in the language of its users: compiled as C99, C11, C++11 and C++20 and linked with
 * -lvelmora. It calls every function with nothing at all, which must never crash, and once in earnest.
 */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <velmora.h>

static int failures = 0;

#define CHECK(condition)                                                                                     \
    do {                                                                                                     \
        if (!(condition)) {                                                                                  \
            fprintf(stderr, "line %d: %s\n", __LINE__, #condition);                                          \
            failures++;                                                                                      \
        }                                                                                                    \
    } while (0)

static int same(const char* text, const char* expected) {
    return text && !strcmp(text, expected);
}

static void check_nothing(void) {
    char iban[35] = "x", bic[12] = "x", digits[2] = "x";
    uint8_t status = 9;
    sepa_bank_t* bank = NULL;

    CHECK(sepa_init(SEPA_INIT_RULEBOOK, NULL) == 0 && sepa_init(0, "DE-3.7") == 0);
    CHECK(!sepa_new(0));
    sepa_free(NULL);
    CHECK(same(sepa_getError(NULL), "Invalid sepa_t handle (NULL)"));
    CHECK(!sepa_setIBAN(NULL, NULL) && !sepa_setBIC(NULL, NULL) && !sepa_setName(NULL, NULL));
    CHECK(!sepa_setCreditorIdentifier(NULL, NULL) && !sepa_setDate(NULL, NULL) && !sepa_setDDType(NULL, 0));
    CHECK(!sepa_setBatchBooking(NULL, 0) && !sepa_setMessageId(NULL, NULL) && !sepa_add(NULL, NULL));
    CHECK(!sepa_toXML(NULL));

    CHECK(sepa_iban_check(NULL) == -1 && sepa_iban_getBank(NULL, &bank) == -1);
    CHECK(sepa_iban_convert(NULL, NULL, NULL, NULL, NULL) <= 0);
    CHECK(sepa_iban_convert("DE", NULL, NULL, iban, &status) <= 0 && !*iban);
    CHECK(sepa_iban_getBIC(NULL, bic) == -1 && sepa_bankid_check(NULL, NULL, &bank) <= 0);
    CHECK(sepa_bankid_check("DE", NULL, &bank) == -2 && sepa_bic_getBank(NULL, &bank) == -2 && !bank);
    CHECK(sepa_account_check(NULL, 0) == -1 && sepa_account_check2(NULL, NULL, 0) == -1);

    sepa_stmt_parser_free(NULL);
    CHECK(!sepa_stmt_parser_load(NULL, SEPA_STMT_FORMAT_MT940, NULL) && !sepa_stmt_parser_getStatement(NULL));
    CHECK(sepa_stmt_parser_getError(NULL) != NULL);

    CHECK(__sepa_d2str(digits, 0, 1.0) == digits && *digits == 'x');
    sepa_cleanup();
}

static void check_message(void) {
    static const char* const payment[] = {"name",   "Käthe Groß", "iban",  "DE89370400440532013000",
                                          "amount", "12.34",      "seq",   "RCUR",
                                          "mref",   "M-1",        "mdate", "2026-01-02",
                                          NULL};
    sepa_t* message;
    char* xml;

    CHECK(sepa_init(SEPA_INIT_RULEBOOK, "DE-3.7") == 1);
    message = sepa_new(SEPA_MSGTYPE_DDI);
    CHECK(message != NULL && sepa_getError(message) == NULL);
    CHECK(!sepa_setName(message, "") && same(sepa_getError(message), "sepa_setAccount: Name too short"));
    CHECK(sepa_setName(message, "Turnverein") && sepa_setIBAN(message, "DE16701900000376033458"));
    CHECK(sepa_setBIC(message, "genodef1m01") && sepa_setCreditorIdentifier(message, "DE98ZZZ09999999999"));
    CHECK(sepa_setDate(message, "2027-01-04") && sepa_setDDType(message, SEPA_DDTYPE_CORE));
    CHECK(sepa_setBatchBooking(message, 1) && sepa_setMessageId(message, "M1"));
    CHECK(sepa_add(message, payment));
    xml = sepa_toXML(message);
    CHECK(xml && strstr(xml, "<InstdAmt Ccy=\"EUR\">12.34</InstdAmt>") &&
          strstr(xml, "<BICFI>GENODEF1M01</BICFI>"));
    free(xml);
    sepa_free(message);
}

static void check_accounts(void) {
    char text[32], *end;
    sepa_bank_t* bank = NULL;

    CHECK(sepa_iban_check("DE89370400440532013000") == 1 && sepa_iban_check("DE89370400440532013001") == -1);
    CHECK(sepa_bankid_check("DE", "37040044", &bank) == 1 && bank && same(bank->bic, "COBADEFFXXX"));
    free(bank);
    CHECK(sepa_account_check("532013000", 0x13) == 1);
    CHECK(__sepa_strtod("1.50 EUR", &end) == 1.5 && same(end, " EUR"));
    CHECK(__sepa_d2str(text, sizeof text, 1.5) == text + 4 && same(text, "1.50"));
    libc_regex_init();
    CHECK(libc_regcomp && libc_regexec && libc_regfree);
}

int main(void) {
    check_nothing();
    check_message();
    check_accounts();
    return failures ? EXIT_FAILURE : EXIT_SUCCESS;
}
