// Messages to measure with: typical payments, with everything a bill collector or payroll gives.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <memory>

#include "velmora.h"

namespace payments {

struct FreeMessage {
    void operator()(sepa_t* message) const { sepa_free(message); }
};
using Message = std::unique_ptr<sepa_t, FreeMessage>;
using Text = std::unique_ptr<char, decltype(&std::free)>;

// What differs from payment to payment.
struct Payment {
    char id[24], amount[16], mandate[24], date[11];
};

inline Payment payment(long number, long dates) {
    Payment p;
    std::snprintf(p.id, sizeof p.id, "RE-2026-%07ld", number);
    std::snprintf(p.amount, sizeof p.amount, "%ld.%02ld", 10 + number % 990, number % 100);
    std::snprintf(p.mandate, sizeof p.mandate, "M-%07ld", number);
    const long day = number % dates;
    std::snprintf(p.date, sizeof p.date, "%04ld-%02ld-%02ld", 2026 + day / 336, day / 28 % 12 + 1,
                  day % 28 + 1);
    return p;
}

constexpr char iban[] = "DE37701900002246044670";
constexpr char bic[] = "GENODEF1M01";
constexpr char name[] = "Mühlenwerke Süd GmbH & Co. KG";
constexpr char reference[] = "Rechnung 88213 vom 12.01.2027, Kundennummer 4711";
constexpr char mandate_date[] = "2024-03-15";

inline int add(sepa_t* message, std::uint32_t type, const Payment& p) {
    const char* const debit[] = {"name",   name,   "iban", iban,      "bic",   bic,          "amount",
                                 p.amount, "date", p.date, "id",      p.id,    "ref",        reference,
                                 "seq",    "RCUR", "mref", p.mandate, "mdate", mandate_date, nullptr};
    const char* const credit[] = {"name", name,   "iban", iban, "bic", bic,       "amount", p.amount,
                                  "date", p.date, "id",   p.id, "ref", reference, nullptr};
    return sepa_add(message, type == SEPA_MSGTYPE_DDI ? debit : credit);
}

constexpr char default_rulebook[] = "DE-3.7";

inline Message new_message(std::uint32_t type, const char* rulebook = default_rulebook) {
    sepa_init(SEPA_INIT_RULEBOOK, rulebook);
    Message message(sepa_new(type));
    sepa_setName(message.get(), "Turnverein München-Süd e.V.");
    sepa_setIBAN(message.get(), "DE16701900000376033458");
    sepa_setBIC(message.get(), bic);
    sepa_setCreditorIdentifier(message.get(), "DE98ZZZ09999999999");
    return message;
}

inline Message filled_message(std::uint32_t type, long payments, long dates) {
    Message message = new_message(type);
    for (long i = 0; i < payments; i++)
        if (!add(message.get(), type, payment(i, dates))) return nullptr;
    return message;
}

} // namespace payments
