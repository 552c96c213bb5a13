#include "payments.h"

#include <errno.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

enum { MAX_COLUMNS = 32, MAX_ROW = 2048 };

/* Cuts a row at its semicolons and stores the cells' addresses, with a null behind the last. */
static void split(char* row, const char** cells) {
    int count = 0;
    row[strcspn(row, "\r\n")] = '\0';
    while (row && count < MAX_COLUMNS) {
        char* separator = strchr(row, ';');
        if (separator) *separator++ = '\0';
        cells[count++] = row;
        row = separator;
    }
    cells[count] = NULL;
}

/* Makes key, value, key, value, ..., null of the column names and a row's cells, without the empty ones. */
static void pair_up(const char* const* keys, const char* const* cells, const char** pairs) {
    for (; *keys && *cells; keys++, cells++) {
        if (**cells) {
            *pairs++ = *keys;
            *pairs++ = *cells;
        }
    }
    *pairs = NULL;
}

static const char* property(const char* const* pairs, const char* key) {
    for (; *pairs; pairs += 2)
        if (!strcmp(pairs[0], key)) return pairs[1];
    return "";
}

static void print_payment(const char* const* pairs) {
    const char* iban = property(pairs, "iban");
    sepa_bank_t* bank = NULL;
    int found = sepa_iban_getBank(iban, &bank);
    if (found != 1) /* a country whose bank codes the directory does not have: ask for the BIC */
        found = sepa_bic_getBank(property(pairs, "bic"), &bank);
    printf("  %-10s  %4s%4s  %8s  %-22s  %s (%s)\n", property(pairs, "date"), property(pairs, "seq"),
           property(pairs, "purp"), property(pairs, "amount"), iban, property(pairs, "name"),
           found == 1 ? bank->name : "bank unknown");
    free(bank);
}

int add_payments(sepa_t* message, const char* path) {
    char header[MAX_ROW], row[MAX_ROW];
    const char *keys[MAX_COLUMNS + 1], *cells[MAX_COLUMNS + 1], *pairs[2 * MAX_COLUMNS + 1];
    int added = 0, good = 1;
    double total = 0;

    FILE* file = fopen(path, "r");
    if (!file || !fgets(header, sizeof header, file)) {
        fprintf(stderr, "%s: %s\n", path, file ? "no header row" : strerror(errno));
        if (file) fclose(file);
        return 0;
    }
    split(header, keys);
    while (good && fgets(row, sizeof row, file)) {
        split(row, cells);
        pair_up(keys, cells, pairs);
        good = sepa_add(message, pairs);
        if (good) {
            print_payment(pairs);
            total += __sepa_strtod(property(pairs, "amount"), NULL);
            added++;
        } else {
            fprintf(stderr, "%s, payment %d: %s\n", path, added + 1, sepa_getError(message));
        }
    }
    fclose(file);
    if (good) printf("  %d payments, EUR %.2f\n", added, total);
    return good;
}

int save_document(sepa_t* message, const char* path) {
    char* xml = sepa_toXML(message);
    if (!xml) {
        fprintf(stderr, "%s\n", sepa_getError(message));
        return 0;
    }
    FILE* file = fopen(path, "w");
    int written = file && fputs(xml, file) >= 0;
    if (file && fclose(file)) written = 0;
    if (!written) fprintf(stderr, "%s: %s\n", path, strerror(errno));
    free(xml);
    return written;
}
