#include "velmora.h"

int sepa_account_check(const char*, uint8_t) { return 0; }
int sepa_account_check2(const char*, const char*, uint8_t) { return 0; }
