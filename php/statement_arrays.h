/* Statements and bookings as PHP arrays. */
#pragma once

#include "binding.h"
#include "record.h"

/* For methods of statement parsers: both throw where they have nothing to return. */
bool throw_for_format(zend_long format);
sepa_stmt_parser_t* parser_or_throw(zend_execute_data* execute_data);

/* Makes the keys of all arrays; at start-up, once. */
void make_statement_keys(void);

/* Returns all statements of a parser to PHP: a list of arrays, null without any. */
void return_statements(zval* return_value, sepa_stmt_parser_t* parser);

/* Makes the array of a booking of this statement. In the formats 53 and 940 it has what sepa_stmt_tx_info_t
 * knows, too. */
void make_booking(zval* array, sepa_stmt_parser_t* parser, const sepa_stmt_info_t* info,
                  const sepa_stmt_tx_t* booking, date_text* last);
