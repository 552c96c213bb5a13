/* A user's program. */
#include <stdio.h>
#include <velmora.h>

int main(void) {
    const char* iban = "DE89370400440532013000";
    char bic[12];
    if (sepa_iban_check(iban) != 1 || sepa_iban_getBIC(iban, bic) != 1) return 1;
    printf("%s: %s is at %s\n", VELMORA_VERSION, iban, bic);
    return 0;
}
