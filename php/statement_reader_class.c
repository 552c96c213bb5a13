/* The class SEPAStatementReader: a statement parser that reads from memory, too, hands out one booking at a
 * time and ends with its object. */
#include "statement_arrays.h"

static zend_object_handlers handlers;

static zend_object* create_object(zend_class_entry* entry) {
    return create_bound_object(entry, &handlers);
}

static void release_parser(zend_object* std) {
    bound_object* object = bound_object_of(std);
    sepa_stmt_parser_free(object->handle);
    object->handle = NULL;
    zend_object_std_dtor(std);
}

PHP_METHOD(SEPAStatementReader, loadString) {
    zend_long format;
    char* data;
    size_t size;
    ZEND_PARSE_PARAMETERS_START(2, 2)
        Z_PARAM_LONG(format)
        Z_PARAM_STRING(data, size)
    ZEND_PARSE_PARAMETERS_END();

    if (throw_for_format(format)) return;
    sepa_stmt_parser_t* parser = this_object(execute_data)->handle;
    if (sepa_stmt_parser_loadMemory(parser, (uint32_t)format, data, size) == 1) RETURN_TRUE;
    throw_reason(sepa_stmt_parser_getError(parser));
}

PHP_METHOD(SEPAStatementReader, check) {
    if (zend_parse_parameters_none() == FAILURE) return;

    sepa_stmt_parser_t* parser = parser_or_throw(execute_data);
    if (!parser) return;
    array_init(return_value);
    const sepa_stmt_t* statement = sepa_stmt_parser_getStatement(parser);
    for (; statement; statement = statement->next) {
        double difference;
        int proved = sepa_stmt_parser_check(parser, statement, &difference);
        zval result;
        array_init_size(&result, 2);
        if (proved < 0) {
            add_assoc_null(&result, "ok");
            add_assoc_null(&result, "difference");
        } else {
            add_assoc_bool(&result, "ok", proved);
            add_assoc_double(&result, "difference", difference);
        }
        add_next_index_zval(return_value, &result);
    }
}

/* ------------------------------------------------------------------------------------------------------
 * A loop through the bookings. It holds the reader, and with it the records that it walks.
 * --------------------------------------------------------------------------------------------------- */

typedef struct {
    zend_object_iterator base; /* its data is the reader */
    const sepa_stmt_t* statement;
    const sepa_stmt_info_t* info;
    const sepa_stmt_tx_t* booking; /* null at the end */
    zend_ulong number;
    zval array; /* of the booking; undefined until it is asked for */
    date_text last;
} booking_loop;

static sepa_stmt_parser_t* parser_of(const booking_loop* loop) {
    return bound_object_of(Z_OBJ(loop->base.data))->handle;
}

static void forget_array(zend_object_iterator* iterator) {
    booking_loop* loop = (booking_loop*)iterator;
    zval_ptr_dtor(&loop->array);
    ZVAL_UNDEF(&loop->array);
}

/* Goes on to the first statement that has bookings. */
static void begin_statement(booking_loop* loop, const sepa_stmt_t* statement) {
    while (statement && !statement->first_tx)
        statement = statement->next;
    loop->statement = statement;
    loop->booking = statement ? statement->first_tx : NULL;
    loop->info = statement ? sepa_stmt_parser_getInfo(parser_of(loop), statement) : NULL;
}

static void rewind_loop(zend_object_iterator* iterator) {
    booking_loop* loop = (booking_loop*)iterator;
    forget_array(iterator);
    loop->number = 0;
    begin_statement(loop, sepa_stmt_parser_getStatement(parser_of(loop)));
}

static int is_valid(zend_object_iterator* iterator) {
    return ((booking_loop*)iterator)->booking ? SUCCESS : FAILURE;
}

static zval* current_array(zend_object_iterator* iterator) {
    booking_loop* loop = (booking_loop*)iterator;
    if (Z_ISUNDEF(loop->array))
        make_booking(&loop->array, parser_of(loop), loop->info, loop->booking, &loop->last);
    return &loop->array;
}

static void current_number(zend_object_iterator* iterator, zval* key) {
    ZVAL_LONG(key, (zend_long)((booking_loop*)iterator)->number);
}

static void move_forward(zend_object_iterator* iterator) {
    booking_loop* loop = (booking_loop*)iterator;
    forget_array(iterator);
    loop->number++;
    loop->booking = loop->booking->next;
    if (!loop->booking) begin_statement(loop, loop->statement->next);
}

static void end_loop(zend_object_iterator* iterator) {
    forget_array(iterator);
    release_date(&((booking_loop*)iterator)->last);
    zval_ptr_dtor(&iterator->data);
}

static const zend_object_iterator_funcs loop_functions = {
    .dtor = end_loop,
    .valid = is_valid,
    .get_current_data = current_array,
    .get_current_key = current_number,
    .move_forward = move_forward,
    .rewind = rewind_loop,
    .invalidate_current = forget_array,
};

static zend_object_iterator* get_iterator(zend_class_entry* entry, zval* reader, int by_reference) {
    (void)entry, (void)by_reference; /* changes to a booking reach nobody else */
    booking_loop* loop = ecalloc(1, sizeof *loop);
    zend_iterator_init(&loop->base);
    ZVAL_COPY(&loop->base.data, reader);
    loop->base.funcs = &loop_functions;
    ZVAL_UNDEF(&loop->array);
    return &loop->base;
}

PHP_METHOD(SEPAStatementReader, getBookings) {
    if (zend_parse_parameters_none() == FAILURE) return;
    if (parser_or_throw(execute_data)) engine_return_walk(return_value, getThis());
}

void statement_reader_init(zend_class_entry* entry) {
    bind_class(entry, &handlers, create_object, release_parser);
    engine_let_walk(entry, get_iterator);
}
