/* Records of the library as PHP arrays: what stands under which key is a table of members. */
#pragma once

#include "engine.h"

#include <stdbool.h>
#include <time.h>

/* What a member is in its record. One that is "if set" has no key in the array while it is null, empty or 0.
 */
typedef enum {
    MEMBER_TEXT_IF_SET,  /* char* */
    MEMBER_TEXT_OR_NULL, /* char*; PHP's null when it is null or empty */
    MEMBER_CHARS,        /* char[] */
    MEMBER_CHARS_IF_SET, /* char[] */
    MEMBER_INT32,
    MEMBER_UINT8,
    MEMBER_UINT16,
    MEMBER_UINT32,
    MEMBER_UINT32_IF_SET,
    MEMBER_UINT16_IF_SET,
    MEMBER_UINT64_IF_SET,
    MEMBER_BOOL, /* uint8_t */
    MEMBER_DOUBLE,
    MEMBER_DOUBLE_IF_SET,
    MEMBER_EXACT, /* int64_t, INT64_MAX when the value does not fit */
    MEMBER_DATE,  /* struct tm */
    MEMBER_DATE_IF_SET,
} member_kind;

typedef struct {
    char key[20];
    uint16_t offset;
    uint16_t kind;
    zend_string* name; /* the key with its hash: a large file puts it into 100,000 arrays */
} record_member;

/* A row of a table; the key is the member's name. */
#define MEMBER(record, member, kind)                                                                         \
    { #member, offsetof(record, member), MEMBER_##kind, NULL }

#define MEMBER_COUNT(members) (sizeof(members) / sizeof *(members))

/* Dates come in order: equal ones in a row share one text. Starts as zero bytes. */
typedef struct {
    int year, month, day;
    zend_string* text; /* null before the first date */
} date_text;

/* Makes the keys of a table; at start-up, once. */
void make_keys(record_member* members, size_t count);

/* Puts the members of a record into an array that has none of them. Without dates `last` may be null. */
void put_members(zval* array, const record_member* members, size_t count, const void* record,
                 date_text* last);

void release_date(date_text* last);
