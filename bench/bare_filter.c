/* What the tool's filter is measured against: the least that a program around the library can do for each
 * line, or with an argument the same columns. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <velmora.h>

static void print_columns(const char* iban, int valid) {
    sepa_bank_t* bank = NULL;
    if (valid) sepa_iban_getBank(iban, &bank);
    const char* name = bank == NULL || bank->name == NULL ? "" : bank->name;
    const char* bic = bank == NULL || bank->bic == NULL ? "" : bank->bic;
    const char* city = bank == NULL || bank->city == NULL ? "" : bank->city;
    printf("%s\t%s\t%d\t\t\t%s\t%s\t%s\n", iban, valid ? "true" : "false", valid ? 0 : 7, name, bic, city);
    free(bank);
}

int main(int argc, char** argv) {
    char line[256];
    (void)argv;
    while (fgets(line, sizeof line, stdin) != NULL) {
        line[strcspn(line, "\r\n")] = '\0';
        const int valid = sepa_iban_check(line) == 1;
        if (argc > 1) {
            print_columns(line, valid);
        } else {
            putchar_unlocked(valid ? '0' : '7');
            putchar_unlocked('\n');
        }
    }
    return 0;
}
