/*
 * Collects membership fees: reads direct debits from a CSV file and writes the pain.008 document for the
 * bank.
 *
 *   direct_debit PAYMENTS.csv DOCUMENT.xml
 */
#include <stdio.h>

#include "payments.h"

/* The creditor's data. The date is for the payments that bring none of their own. */
static int set_creditor(sepa_t* message) {
    int done = sepa_setName(message, "Turnverein München-Süd e.V.") &&
               sepa_setIBAN(message, "DE16701900000376033458") && sepa_setBIC(message, "GENODEF1M01") &&
               sepa_setCreditorIdentifier(message, "DE98ZZZ09999999999") &&
               sepa_setDDType(message, SEPA_DDTYPE_CORE) && sepa_setDate(message, "2027-03-01") &&
               sepa_setMessageId(message, "BEITRAG-2027");
    if (!done) fprintf(stderr, "%s\n", sepa_getError(message));
    return done;
}

int main(int argc, char** argv) {
    if (argc != 3) {
        fprintf(stderr, "usage: direct_debit PAYMENTS.csv DOCUMENT.xml\n");
        return 2;
    }
    sepa_init(SEPA_INIT_RULEBOOK, "DE-26.11");
    sepa_t* message = sepa_new(SEPA_MSGTYPE_DDI);
    int done =
        message && set_creditor(message) && add_payments(message, argv[1]) && save_document(message, argv[2]);
    sepa_free(message);
    return done ? 0 : 1;
}
