#include "header_c_test.c"
