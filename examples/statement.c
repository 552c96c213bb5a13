/*
 * Prints the bookings of an MT940 account statement file as a table.
 *
 *   statement FILE.mt940
 */
#include <stdio.h>
#include <string.h>

#include "velmora.h"

/*
 * Business transaction codes of debits (gvc). Records keep no mark for debits, and their amounts are stored
 * 255 times: the code is what tells them apart.
 */
static int is_debit(const sepa_stmt_tx_t* tx) {
    static const unsigned debits[] = {83,  104, 105, 106, 107, 108, 109, 116, 117,
                                      118, 119, 177, 191, 193, 201, 808, 809};
    for (size_t i = 0; i < sizeof debits / sizeof *debits; i++)
        if (tx->gvc == debits[i]) return 1;
    return 0;
}

/* What the booking does to the balance. The reversal of a debit is a credit, and the other way round. */
static double effect_of(const sepa_stmt_tx_t* tx) {
    double amount = is_debit(tx) ? tx->amount / -255 : tx->amount;
    return tx->reversal ? -amount : amount;
}

static const char* date_text(const struct tm* date, char text[11]) {
    if (!date->tm_mday) return "-";
    strftime(text, 11, "%Y-%m-%d", date);
    return text;
}

/* One line a part of the text: it may hold line feeds, and long ones are cut. */
static void print_detail(const char* name, const char* text) {
    while (text && *text) {
        size_t part = strcspn(text, "\n");
        size_t length = part < 60 ? part : 60;
        printf("%39s%-12s %.*s\n", "", name, (int)length, text);
        text += part < 60 ? part + (text[part] == '\n') : length;
        name = "";
    }
}

static void print_booking(const sepa_stmt_tx_t* tx) {
    char booked[11], valuta[11];
    printf("  %-10s  %-10s  %12.2f  %s%s\n", date_text(&tx->booked, booked), date_text(&tx->valuta, valuta),
           effect_of(tx), tx->reversal ? "Reversal: " : "", tx->txtext ? tx->txtext : "");
    print_detail("Counterpart", tx->name);
    print_detail("Account", tx->account);
    print_detail("Purpose", tx->purpose);
    print_detail("Purpose", tx->svwz);
    print_detail("Reference", tx->eref);
    print_detail("Mandate", tx->mref);
    print_detail("Creditor", tx->cred);
    print_detail("Originator", tx->abwa);
    print_detail("Recipient", tx->abwe);
    print_detail("Original sum", tx->oamt);
    print_detail("Compensation", tx->coam);
}

static void print_statement(const sepa_stmt_t* statement) {
    char day[11];
    double balance = statement->openSaldo;
    printf("Account %s, statement %u, page %u\n\n", statement->account ? statement->account : "?",
           (unsigned)statement->number, (unsigned)statement->page);
    printf("  %-10s  %-10s  %8s %s  %s\n", "Booked", "Value", "Amount", statement->openCurrency, "Booking");
    printf("  %-22s  %12.2f  Opening balance\n", date_text(&statement->openDate, day), balance);
    for (const sepa_stmt_tx_t* tx = statement->first_tx; tx; tx = tx->next) {
        print_booking(tx);
        balance += effect_of(tx);
    }
    double difference = balance - statement->closeSaldo;
    printf("  %-22s  %12.2f  Closing balance%s\n\n", date_text(&statement->closeDate, day),
           statement->closeSaldo,
           difference > -0.005 && difference < 0.005 ? "" : ", WHICH THE BOOKINGS DO NOT GIVE");
}

int main(int argc, char** argv) {
    if (argc != 2) {
        fprintf(stderr, "usage: statement FILE.mt940\n");
        return 2;
    }
    sepa_stmt_parser_t* parser = sepa_stmt_parser_new();
    int done = parser && sepa_stmt_parser_load(parser, SEPA_STMT_FORMAT_MT940, argv[1]);
    if (!done) fprintf(stderr, "%s\n", parser ? sepa_stmt_parser_getError(parser) : "Out of memory");
    if (done)
        for (sepa_stmt_t* statement = sepa_stmt_parser_getStatement(parser); statement;
             statement = statement->next)
            print_statement(statement);
    sepa_stmt_parser_free(parser);
    return done ? 0 : 1;
}
