/*
 * Prints the bookings of an account statement file, camt or MT940, as a table.
 *
 *   statement FILE
 */
#include <ctype.h>
#include <stdio.h>
#include <string.h>

#include "velmora.h"

static const char* date_text(const struct tm* date, char text[11]) {
    if (!date->tm_mday) return "-";
    strftime(text, 11, "%Y-%m-%d", date);
    return text;
}

/* One line a part of the text: it may hold line feeds, and long ones are cut. */
static void print_detail(const char* name, const char* text) {
    while (text && *text) {
        size_t part = strcspn(text, "\n");
        if (part > 60)
            for (part = 60; ((unsigned char)text[part] & 0xC0) == 0x80; part--) {
            } /* not inside a character */
        printf("%39s%-12s %.*s\n", "", name, (int)part, text);
        text += part + (text[part] == '\n');
        name = "";
    }
}

static void print_booking(const sepa_stmt_tx_t* tx, const sepa_stmt_tx_info_t* info) {
    char booked[11], valuta[11];
    printf("  %-10s  %-10s  %12.2f  %s%s\n", date_text(&tx->booked, booked), date_text(&tx->valuta, valuta),
           tx->amount, tx->reversal ? "Reversal: " : "", tx->txtext ? tx->txtext : "");
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
    print_detail("Returned", info->returnReason);
}

static void print_statement(sepa_stmt_parser_t* parser, const sepa_stmt_t* statement) {
    char day[11];
    double difference;
    printf("Account %s, statement %u, page %u\n\n", statement->account ? statement->account : "?",
           (unsigned)statement->number, (unsigned)statement->page);
    printf("  %-10s  %-10s  %8s %s  %s\n", "Booked", "Value", "Amount", statement->openCurrency, "Booking");
    printf("  %-22s  %12.2f  Opening balance\n", date_text(&statement->openDate, day), statement->openSaldo);
    for (const sepa_stmt_tx_t* tx = statement->first_tx; tx; tx = tx->next)
        print_booking(tx, sepa_stmt_parser_getTxInfo(parser, tx));
    int adds_up = sepa_stmt_parser_check(parser, statement, &difference) == 1;
    printf("  %-22s  %12.2f  Closing balance%s\n\n", date_text(&statement->closeDate, day),
           statement->closeSaldo, adds_up ? "" : ", WHICH THE BOOKINGS DO NOT GIVE");
}

/* camt is XML: it begins with "<" or a byte order mark. */
static uint32_t format_of(const char* path) {
    FILE* file = fopen(path, "rb");
    int first = ' ';
    while (file && isspace(first))
        first = fgetc(file);
    if (file) fclose(file);
    return first == '<' || first >= 0xEF ? SEPA_STMT_FORMAT_CAMT : SEPA_STMT_FORMAT_MT940_TOLERANT;
}

int main(int argc, char** argv) {
    if (argc != 2) {
        fprintf(stderr, "usage: statement FILE\n");
        return 2;
    }
    sepa_stmt_parser_t* parser = sepa_stmt_parser_new();
    int done = parser && sepa_stmt_parser_load(parser, format_of(argv[1]), argv[1]);
    if (!done) fprintf(stderr, "%s\n", parser ? sepa_stmt_parser_getError(parser) : "Out of memory");
    if (done)
        for (sepa_stmt_t* statement = sepa_stmt_parser_getStatement(parser); statement;
             statement = statement->next)
            print_statement(parser, statement);
    sepa_stmt_parser_free(parser);
    return done ? 0 : 1;
}
