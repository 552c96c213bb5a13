// What is known while a camt message is being read: of the message, the statement, the entry and its part.
// Texts are pieces of the document; null while none has been met. The first value of a field stays.
#pragma once

#include <cstddef>
#include <cstdint>
#include <ctime>

namespace velmora::camt {

enum class Sign : std::uint8_t { unknown, credit, debit };

struct Amount {
    char* text;
    std::int64_t exact; // not negative; no_exact_amount when it has no exact value
    double nearest;
    char currency[4];

    bool is_given() const { return text != nullptr; }
};

// A sum of signed amounts in one currency; amounts in others are left out.
struct Sum {
    std::int64_t exact;
    double nearest;
    bool is_given;
    bool is_inexact;
    char currency[4];

    void add(const Amount& amount, Sign sign);
    double value() const;
};

struct Charge {
    Amount amount;
    Sign sign;
    std::uint8_t is_included;
};

struct Charges {
    Amount total; // of the element "Chrgs" being read
    Charge single;
    Charge record;
    Sum totals;
    Sum singles;
    Sum records;

    const Sum* chosen() const;
};

struct Codes {
    char domain[5];
    char family[5];
    char sub_family[5];
    char* proprietary;
    char* issuer;
};

// What an entry and its parts both have.
struct Details {
    Amount amount;
    Sign sign;
    Codes codes;
    Amount instructed;
    Amount transaction;
    char* exchange_rate;
    Charges charges;
    char* bank_reference;
};

struct Party {
    char* name;
    char* agent_name; // where a bank takes the party's place
    char* iban;
    char* account;
    char* bic;
    char* clearing_member;
    char* private_id;
    char* organisation_id;
    char* ultimate_name;

    char* any_name() const { return name != nullptr ? name : agent_name; }
    char* any_account() const { return iban != nullptr ? iban : account; }
    char* any_id() const { return private_id != nullptr ? private_id : organisation_id; }
};

struct Batch {
    char* message_id;
    char* payment_id;
    std::uint32_t count;

    bool is_given() const { return message_id != nullptr || payment_id != nullptr || count != 0; }
};

struct Part {
    Details details;
    Batch batch;
    Party debtor;
    Party creditor;
    char* message_id;
    char* payment_id;
    char* instruction_id;
    char* end_to_end_id;
    char* transaction_id;
    char* mandate_id;
    char* uetr;
    char* proprietary_reference;
    char* purpose;
    char* proprietary_purpose;
    char* creditor_reference;
    char* return_reason;
    char* text;
    std::uint8_t is_return;
};

struct Entry {
    Details details;
    char* reference;
    char status[5];
    std::uint8_t reversal;
    struct tm booked;
    struct tm valuta;
    char* text;
    Batch batch;       // of the details being read
    Batch first_batch; // of those before
    std::uint32_t parts;
};

struct Balance {
    Amount amount;
    Sign sign;
    char code[5];
    char sub_type[5];
    struct tm date;
};

struct Page {
    char* number;
    std::uint8_t is_last;
};

struct Totals {
    std::uint64_t count;
    double sum;
};

struct Statement {
    char* id;
    char* electronic_number;
    char* legal_number;
    Page page;
    char* created;
    char* from;
    char* to;
    char copy[5];
    char* iban;
    char* account;
    char currency[4];
    char* owner;
    char bic[12];
    char* text;
    Totals all;
    Totals credits;
    Totals debits;
    std::uint32_t entries;
};

struct Message {
    char* id;
    char* created;
    Page page;
    std::uint16_t kind;
    std::uint16_t version;
};

struct Fields {
    Message message;
    Statement statement;
    Balance balance;
    Entry entry;
    Part part;
};

} // namespace velmora::camt
