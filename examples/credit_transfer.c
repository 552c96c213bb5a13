/*
 * Pays salaries and bills: reads credit transfers from a CSV file and writes the pain.001 document for the
 * bank.
 *
 *   credit_transfer PAYMENTS.csv DOCUMENT.xml
 */
#include <stdio.h>

#include "payments.h"

/* The debtor's data. The date is for the payments that bring none of their own. */
static int set_debtor(sepa_t* message) {
    int done = sepa_setName(message, "Bäckerei Grünwald GmbH") &&
               sepa_setIBAN(message, "DE08200505501964277436") && sepa_setBIC(message, "HASPDEHHXXX") &&
               sepa_setBatchBooking(message, 0) && sepa_setDate(message, "2027-02-15") &&
               sepa_setMessageId(message, "ZAHLLAUF-2027-01");
    if (!done) fprintf(stderr, "%s\n", sepa_getError(message));
    return done;
}

int main(int argc, char** argv) {
    if (argc != 3) {
        fprintf(stderr, "usage: credit_transfer PAYMENTS.csv DOCUMENT.xml\n");
        return 2;
    }
    sepa_init(SEPA_INIT_RULEBOOK, "DE-26.11");
    sepa_t* message = sepa_new(SEPA_MSGTYPE_CTI);
    int done =
        message && set_debtor(message) && add_payments(message, argv[1]) && save_document(message, argv[2]);
    sepa_free(message);
    return done ? 0 : 1;
}
