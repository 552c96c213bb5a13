/* Statements and bookings as PHP arrays. */
#pragma once

#include "binding.h"
#include "record.h"

/* Whether load() knows the number. */
bool is_statement_format(zend_long format);

/* Makes the keys of all arrays; at start-up, once. */
void make_statement_keys(void);

/* Returns all statements of a parser to PHP: a list of arrays, null without any. */
void return_statements(zval* return_value, sepa_stmt_parser_t* parser, bool with_bookings);

/* Makes the array of one booking. In the formats 53 and 940 it has what sepa_stmt_tx_info_t knows, too. */
void make_booking(zval* array, sepa_stmt_parser_t* parser, const sepa_stmt_tx_t* booking, bool has_info,
                  date_text* last);
