#include "record.h"

void make_keys(record_member* members, size_t count) {
    for (size_t i = 0; i < count; i++) {
        const char* key = members[i].key;
        members[i].name = zend_new_interned_string(zend_string_init(key, strlen(key), 1));
    }
}

static zend_string* text_of(date_text* last, const struct tm* date) {
    if (!last->text || last->day != date->tm_mday || last->month != date->tm_mon ||
        last->year != date->tm_year) {
        char text[11];
        /* A date that a broken file put out of every range may not fit: strftime() then returns 0. */
        size_t length = strftime(text, sizeof text, "%Y-%m-%d", date);
        if (last->text) zend_string_release(last->text);
        *last = (date_text){date->tm_year, date->tm_mon, date->tm_mday, zend_string_init(text, length, 0)};
    }
    return zend_string_copy(last->text);
}

void release_date(date_text* last) {
    if (last->text) zend_string_release(last->text);
    last->text = NULL;
}

static bool text_value(zval* value, const char* text) {
    size_t length = strlen(text);
    if (length == 0) {
        ZVAL_EMPTY_STRING(value);
    } else {
        ZVAL_STRINGL(value, text, length);
    }
    return true;
}

/* Whether the value belongs into the array. */
static bool number_value(zval* value, zend_long number, bool always) {
    ZVAL_LONG(value, number);
    return always || number != 0;
}

static bool amount_value(zval* value, double amount, bool always) {
    ZVAL_DOUBLE(value, amount);
    return always || amount != 0;
}

static bool date_value(zval* value, const struct tm* date, date_text* last) {
    ZVAL_STR(value, text_of(last, date));
    return true;
}

static bool value_of(zval* value, member_kind kind, const void* member, date_text* last) {
    switch (kind) {
    case MEMBER_TEXT_IF_SET: {
        const char* text = *(char* const*)member;
        return text && text_value(value, text);
    }
    case MEMBER_TEXT_OR_NULL: {
        const char* text = *(char* const*)member;
        ZVAL_NULL(value);
        return !text || !*text || text_value(value, text);
    }
    case MEMBER_CHARS:
        return text_value(value, member);
    case MEMBER_CHARS_IF_SET:
        return *(const char*)member && text_value(value, member);
    case MEMBER_INT32:
        return number_value(value, *(const int32_t*)member, true);
    case MEMBER_UINT8:
        return number_value(value, *(const uint8_t*)member, true);
    case MEMBER_UINT16:
        return number_value(value, *(const uint16_t*)member, true);
    case MEMBER_UINT32:
        return number_value(value, *(const uint32_t*)member, true);
    case MEMBER_UINT32_IF_SET:
        return number_value(value, *(const uint32_t*)member, false);
    case MEMBER_UINT16_IF_SET:
        return number_value(value, *(const uint16_t*)member, false);
    case MEMBER_UINT64_IF_SET:
        return number_value(value, (zend_long) * (const uint64_t*)member, false);
    case MEMBER_BOOL:
        ZVAL_BOOL(value, *(const uint8_t*)member);
        return true;
    case MEMBER_DOUBLE:
        return amount_value(value, *(const double*)member, true);
    case MEMBER_DOUBLE_IF_SET:
        return amount_value(value, *(const double*)member, false);
    case MEMBER_EXACT:
        ZVAL_LONG(value, (zend_long) * (const int64_t*)member);
        return *(const int64_t*)member <= ZEND_LONG_MAX && *(const int64_t*)member != INT64_MAX;
    case MEMBER_DATE:
        return date_value(value, member, last);
    case MEMBER_DATE_IF_SET:
        return ((const struct tm*)member)->tm_year > 0 && date_value(value, member, last);
    }
    return false;
}

void put_members(zval* array, const record_member* members, size_t count, const void* record,
                 date_text* last) {
    for (size_t i = 0; i < count; i++) {
        zval value;
        if (value_of(&value, members[i].kind, (const char*)record + members[i].offset, last))
            zend_hash_add_new(Z_ARRVAL_P(array), members[i].name, &value);
    }
}
