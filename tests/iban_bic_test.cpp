#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "bank/directory.h"
#include "velmora.h"

namespace {

using namespace velmora;

// The BIC, or the result when it is not 1. Exactly twelve bytes may change.
std::string bic_of(const char* iban) {
    char buffer[16];
    std::memset(buffer, '#', sizeof buffer);
    const int result = sepa_iban_getBIC(iban, buffer);
    const std::string bic = buffer;
    EXPECT_EQ(std::string(buffer, sizeof buffer), bic + std::string(12 - bic.size(), '\0') + "####");
    EXPECT_TRUE(result == 1 || bic.empty());
    return result == 1 ? bic : std::to_string(result);
}

TEST(IbanBic, EveryBankOfTheDirectory) {
    int overridden = 0;
    for (int slot = 0; slot < directory_size(); ++slot) {
        const std::string record(directory_record(slot));
        if (record[0] != '_') continue;
        const std::string country = record.substr(1, 2);
        const std::string bank_code = record.substr(3, country == "DE" ? 8 : 5);
        const std::size_t length = country == "DE" ? 22 : country == "AT" ? 20 : 21;
        const std::string body = bank_code + std::string(length - 4 - bank_code.size(), '0');

        DirectoryEntry bank;
        if (directory_lookup(country.c_str(), bank_code.c_str(), &bank) != 1) {
            EXPECT_EQ(bic_of((country + "00" + body).c_str()), "-3");
            continue;
        }
        std::string expected = bank.bic;
        const unsigned rule = bank.iban_rule / 100;
        if (rule == 14 || (rule == 5 && bank_code[3] == '4' && bank_code.substr(4, 2) != "11")) {
            expected = rule == 14 ? "DAAEDEDDXXX" : "COBADEFFXXX";
            overridden += expected != bank.bic;
        }
        EXPECT_EQ(bic_of((country + "00" + body).c_str()), expected) << record;
        if (country != "CH") continue;
        EXPECT_EQ(bic_of(("LI00" + body).c_str()), expected) << record;
    }
    EXPECT_GT(overridden, 0);
}

TEST(IbanBic, OneOfEachKind) {
    EXPECT_EQ(bic_of("DE89370400440532013000"), "COBADEFFXXX");
    EXPECT_EQ(bic_of("DE00100400000000000000"), "COBADEFFXXX"); // the directory's is COBADEBBXXX
    EXPECT_EQ(bic_of("DE00200411330000000000"), "COBADEHD001"); // fifth and sixth digit 11
    EXPECT_EQ(bic_of("DE00370800400000000000"), "DRESDEFF370"); // fourth digit 8
    EXPECT_EQ(bic_of("DE00300606010000000000"), "DAAEDEDDXXX");
    EXPECT_EQ(bic_of("DE00733116000000000000"), "");
    EXPECT_EQ(bic_of("DE00999999990000000000"), "-3");
    EXPECT_EQ(bic_of("FR7630006000011234567890189"), "0");
    for (const char* iban : {"de89370400440532013000", "D", "", "A", "\xff\xff"})
        EXPECT_EQ(bic_of(iban), "0") << iban;
    for (const char* iban : {"DE0030060601000000000", "DE003006060100000000000", "DE", "AT", "CH", "LI",
                             "AT0034732000000000000", "CH0030196000000000000000", "LI00301960000000000000"})
        EXPECT_EQ(bic_of(iban), "-1") << iban;
    EXPECT_EQ(bic_of(nullptr), "-1");
    EXPECT_EQ(sepa_iban_getBIC("DE89370400440532013000", nullptr), -1);
}

} // namespace
