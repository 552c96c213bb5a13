/* What the payment examples share: from a CSV file into a message, and from the message to a file. */
#ifndef PAYMENTS_H
#define PAYMENTS_H

#include <velmora.h>

/*
 * Adds the payments of a CSV file and prints a line about each. The first row names properties of sepa_add(),
 * every further row is one payment; cells are separated by semicolons, an empty one is a property the payment
 * does not have. Returns 1, or 0 with the reason on stderr.
 */
int add_payments(sepa_t* message, const char* path);

/* Writes the finished document to a file. Returns 1, or 0 with the reason on stderr. */
int save_document(sepa_t* message, const char* path);

#endif
