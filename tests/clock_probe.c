/*
 * What the library makes of the present time. Run under libfaketime by the clock tests.
 *
 *   clock_probe document           two direct debit documents with nothing set that the clock can fill in
 *   clock_probe bank BANK_CODE     name and postal code of a German bank
 */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>
#include <velmora.h>

static int print_document(void) {
    static const char* const payment[] = {
        "name",  "Käthe Groß", "iban", "DE89370400440532013000", "amount", "1", "seq", "RCUR", "mref", "M-1",
        "mdate", "2020-01-02", NULL};
    sepa_t* message = sepa_new(SEPA_MSGTYPE_DDI);
    char* xml = NULL;
    if (sepa_setName(message, "Turnverein") && sepa_setIBAN(message, "DE89370400440532013000") &&
        sepa_setBIC(message, "COBADEFFXXX") && sepa_setCreditorIdentifier(message, "DE98ZZZ09999999999") &&
        sepa_add(message, payment))
        xml = sepa_toXML(message);
    if (xml) fputs(xml, stdout);
    free(xml);
    sepa_free(message);
    return xml != NULL;
}

static int print_bank(const char* bank_code) {
    sepa_bank_t* bank;
    if (sepa_bankid_check("DE", bank_code, &bank) != 1) return 0;
    printf("%s, %s\n", bank->name, bank->postcode);
    free(bank);
    return 1;
}

int main(int argc, char** argv) {
    int done = 0;
    if (argc == 2 && !strcmp(argv[1], "document")) {
        printf("process %ld\n", (long)getpid());
        done = print_document() && print_document();
    } else if (argc == 3 && !strcmp(argv[1], "bank")) {
        done = print_bank(argv[2]);
    }
    return done ? EXIT_SUCCESS : EXIT_FAILURE;
}
