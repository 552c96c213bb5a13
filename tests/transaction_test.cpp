#include <gtest/gtest.h>

#include <cstring>

#include "message/message.h"
#include "message_builder.h"

using namespace velmora;
using namespace velmora::test;

namespace {

constexpr char swiss_bic[] = "POFICHBEXXX";

struct Case {
    const char* rulebook;
    std::uint32_t type;
    const char* key;
    const char* value;
    const char* error; // null: accepted
};

const std::string of_17(17, '1'), of_35(35, 'x'), of_36(36, 'x'), of_70(70, 'x'), of_71(71, 'x'),
    of_140(140, 'x'), of_141(141, 'x');

TEST(Add, EveryPropertyWithItsLimitsAndTexts) {
    constexpr std::uint32_t ddi = SEPA_MSGTYPE_DDI, cti = SEPA_MSGTYPE_CTI;
    const char* const name = "Invalid name (must be 1-70 characters)";
    const char* const line = "Invalid address line 1 (must be 1-70 chars)";
    const char* const needs_structure = "selected SEPA rulebook requires structured address data";
    const char* const id = "Invalid end-to-end ID (must be 1-35 characters)";
    const char* const mref = "Invalid mandate reference (must be 1-35 characters)";
    const char* const old_mref = "Invalid old mandate reference (must be 1-35 characters)";
    const char* const date = "Invalid execution date (format: yyyy-mm-dd)";
    const char* const mdate = "Invalid mandate signature date (format: yyyy-mm-dd)";
    const char* const ref = "Invalid unstructured remittance information (must be 0-140 characters)";
    const char* const purp = "Invalid purpose (must be 4 characters)";
    const Case cases[] = {
        {"DE-3.5", ddi, "name", nullptr, name},
        {"DE-3.5", ddi, "name", "", name},
        {"DE-3.5", ddi, "name", of_71.c_str(), name},
        {"DE-3.5", ddi, "name", of_70.c_str(), nullptr},
        {"DE-3.5", ddi, "NAME", "a\nb", "Invalid character '\n' in debtor name"},
        {"DE-3.5", cti, "Name", "a\\b", "Invalid character '\\' in creditor name"},
        {"DE-2.6", cti, "name", "M\xC3\xBCller", "Invalid character '\xC3' in creditor name"},
        {"DE-3.5", ddi, "iban", nullptr, "Invalid IBAN (NULL)"},
        {"DE-3.5", ddi, "iban", "XX00", "Invalid or unknown IBAN country code"},
        {"DE-3.5", cti, "iban", "AT611904300234573202", "Invalid IBAN checksum"},
        {"DE-3.5", ddi, "bic", nullptr, "Invalid BIC"},
        {"DE-3.5", ddi, "bic", "RZOOAT2L7322", "Invalid BIC"},
        {"DE-3.5", ddi, "bic", "RZOOAT2L7", "Invalid BIC format"},
        {"DE-3.5", ddi, "bic", "rzooat2l732", nullptr},
        {"DE-3.5", ddi, "addrCC", nullptr, "Invalid country code"},
        {"DE-3.5", ddi, "addrCC", "at", "Invalid country code"},
        {"DE-3.5", ddi, "addrCC", "A", "Invalid country code"},
        {"DE-3.5", ddi, "addrCC", "", "Invalid country code"},
        {"DE-3.5", ddi, "addrCC", "AUT", "Invalid country code"},
        {"DE-3.7", cti, "addrCC", "AT", nullptr},
        {"DE-3.5", ddi, "addrLine1", "", line},
        {"DE-3.5", ddi, "addrLine2", of_71.c_str(), line},
        {"DE-3.5", ddi, "addrLine2", nullptr, line},
        {"DE-3.5", ddi, "addrLine1", "a^b", "Invalid character '^' in address line 1"},
        {"DE-3.5", cti, "addrLine2", "a^b", "Invalid character '^' in address line 2"},
        {"AT-6", ddi, "addrLine2", "a^b", nullptr},
        {"DE-3.7", ddi, "addrLine1", "a", needs_structure},
        {"DE-3.7", cti, "addrLine2", nullptr, needs_structure},
        {"DE-3.7", ddi, "addrNum", of_17.c_str(), "Invalid format for 'addrNum'"},
        {"DE-3.7", cti, "ADDRtown", of_36.c_str(), "Invalid format for 'ADDRtown'"},
        {"DE-3.7", cti, "addrTown", of_35.c_str(), nullptr},
        {"DE-3.7", cti, "addrStreet", "", "Invalid format for 'addrStreet'"},
        {"DE-3.7", cti, "addrStreet", nullptr, "Invalid format for 'addrStreet'"},
        {"DE-3.7", ddi, "addrStreet", "any \\ byte \xFF", nullptr},
        {"DE-3.5", ddi, "addrDept", "x", "selected SEPA rulebook does not support structured address data"},
        {"DE-3.5", ddi, "addrStreet", "x", "Invalid transaction property 'addrStreet'"},
        {"DE-3.5", cti, "addrDept", nullptr, nullptr},
        {"DE-3.5", cti, "addrStreet", "", nullptr},
        {"DE-3.5", ddi, "seq", "fNaL", nullptr},
        {"DE-3.5", ddi, "seq", "", "Invalid/unknown sequence type"},
        {"DE-3.5", ddi, "seq", nullptr, "Invalid/unknown sequence type"},
        {"DE-3.5", cti, "seq", "junk", nullptr},
        {"DE-3.5", ddi, "date", "2026-12-3", date},
        {"DE-3.5", cti, "date", nullptr, date},
        {"DE-3.5", cti, "date", "2026-12-031", date},
        {"DE-3.5", cti, "date", "notaparser", nullptr},
        {"DE-3.5", ddi, "id", of_36.c_str(), id},
        {"DE-3.5", ddi, "id", "", id},
        {"DE-3.5", ddi, "id", "a&b", "Invalid character '&' in end-to-end ID"},
        {"DE-3.5", ddi, "id", "with space", nullptr},
        {"DE-2.9", ddi, "mref", "M 1", "Invalid character ' ' in mandate reference"},
        {"DE-3.0", ddi, "mref", "M 1", nullptr},
        {"DE-3.7", ddi, "mref", "M 1", nullptr},
        {"NL-6", ddi, "mref", "M 1", "Invalid character ' ' in mandate reference"},
        {"DE-3.0", ddi, "mref", "M$1", "Invalid character '$' in mandate reference"},
        {"DE-3.0", ddi, "mref", of_36.c_str(), mref},
        {"DE-3.0", ddi, "mref", nullptr, mref},
        {"DE-3.0", cti, "mref", nullptr, nullptr},
        {"DE-3.0", ddi, "mdate", "2024-01-1", mdate},
        {"DE-3.0", ddi, "mdate", "", mdate},
        {"DE-3.0", ddi, "old_mref", "M 1", "Invalid character ' ' in old mandate reference"},
        {"DE-3.0", ddi, "old_mref", "", old_mref},
        {"DE-3.0", ddi, "old_mref", of_35.c_str(), nullptr},
        {"DE-3.0", ddi, "old_iban", "DE89370400440532013001", "Invalid IBAN checksum"},
        {"DE-3.0", ddi, "old_iban", own_iban, nullptr},
        {"DE-3.0", ddi, "smnda", "true", "Invalid value 'true' for SMNDA flag"},
        {"DE-3.0", ddi, "smnda", "", "Invalid value '' for SMNDA flag"},
        {"DE-3.0", ddi, "smnda", "1", nullptr},
        {"DE-3.0", ddi, "ref", "", nullptr},
        {"DE-3.0", ddi, "ref", of_140.c_str(), nullptr},
        {"DE-3.0", ddi, "ref", of_141.c_str(), ref},
        {"DE-3.0", cti, "ref", nullptr, ref},
        {"DE-3.0", cti, "ref", "a^", "Invalid character '^' in unstructured remittance information"},
        {"DE-3.0", ddi, "purp", "SALA", "Invalid transaction property 'purp'"},
        {"DE-3.0", cti, "purp", "SALA", nullptr},
        {"DE-3.0", cti, "purp", "S\\<&", nullptr},
        {"DE-3.0", cti, "purp", "SAL", purp},
        {"DE-3.0", cti, "purp", nullptr, purp},
        {"DE-3.0", ddi, "", "", "Invalid transaction property ''"},
        {"DE-3.0", ddi, "0", nullptr, "Invalid transaction property '0'"},
        {"DE-3.0", cti, "nonsense", nullptr, nullptr},
        {"DE-3.0", ddi, "amount", nullptr, "Invalid amount"},
        {"DE-3.0", ddi, "amount", "", "Empty amount not allowed"},
        {"DE-3.0", ddi, "amount", "0", "Empty amount not allowed"},
        {"DE-3.0", ddi, "amount", "-1.00", "Negative or zero amount not allowed"},
        {"DE-3.0", ddi, "amount", "1,50", "Invalid amount"},
        {"DE-3.0", ddi, "amount", "1a", "Invalid amount"},
        {"DE-3.0", ddi, "amount", "1 ", "Invalid amount"},
        {"DE-3.0", ddi, "amount", "1e600", "Invalid amount"},
        {"DE-3.0", ddi, "amount", "1e400", "Invalid amount"},
        {"DE-3.0", ddi, "amount", "-1e400", "Negative or zero amount not allowed"},
        {"DE-3.0", ddi, "amount", "-1e600", "Invalid amount"},
        {"DE-3.0", ddi, "amount", "92233720368547758", "Invalid amount"},
        {"DE-3.0", ddi, "amount", "92233720368547000", nullptr},
        {"DE-3.0", ddi, "amount", "1e-600", "Invalid amount"},
        {"DE-3.0", ddi, "amount", "0e600", "Invalid amount"},
        {"DE-3.0", ddi, "amount", "0.004", "Amount missing"},
    };
    for (const Case& c : cases) {
        const Message m = complete_message(c.type, c.rulebook);
        const Pairs base = with(c.type == ddi ? direct_debit() : credit_transfer(), {{"name", "Eva Muster"}});
        Pairs pairs = base;
        pairs.emplace_back(c.key, c.value);
        const int result = add(m, pairs);
        EXPECT_EQ(result, c.error == nullptr) << c.rulebook << ' ' << c.key << ": " << error(m);
        if (c.error != nullptr) {
            EXPECT_EQ(error(m), c.error) << c.rulebook << ' ' << c.key;
        }
        EXPECT_EQ(m->transaction_count, static_cast<std::uint32_t>(result));
        EXPECT_EQ(m->control_sum, result == 1 ? m->last->amount : 0);
    }
}

TEST(Add, AsksForWhatIsMissing) {
    const Message m = complete_message(SEPA_MSGTYPE_DDI, "DE-3.5");
    EXPECT_EQ(sepa_add(m.get(), nullptr), 0);
    EXPECT_EQ(error(m), "No key-value list submitted");
    EXPECT_EQ(add(m, {}), 0);
    EXPECT_EQ(error(m), "IBAN missing");
    EXPECT_EQ(add(m, {{"iban", own_iban}}), 0);
    EXPECT_EQ(error(m), "Sequence type missing");
    EXPECT_EQ(add(m, {{"iban", own_iban}, {"seq", "FRST"}}), 0);
    EXPECT_EQ(error(m), "Amount missing");
    EXPECT_EQ(add(m, {{"iban", own_iban}, {"seq", "FRST"}, {"amount", "1"}}), 1);

    for (const std::uint32_t type : {SEPA_MSGTYPE_DDI, SEPA_MSGTYPE_CTI}) {
        const Message oldest = complete_message(type, "DE-2.6");
        EXPECT_EQ(add(oldest, {{"iban", own_iban}}), 0);
        EXPECT_EQ(error(oldest), "BIC missing");
        const Message newer = complete_message(type, "DE-2.7");
        EXPECT_EQ(add(newer, {{"iban", own_iban}, {"seq", "FRST"}, {"amount", "1"}}), 1);
    }
    const Message credit = complete_message(SEPA_MSGTYPE_CTI, "DE-3.5");
    EXPECT_EQ(add(credit, {{"iban", own_iban}}), 0);
    EXPECT_EQ(error(credit), "Amount missing");
}

TEST(Add, BanksOutsideTheEeaNeedAnAddress) {
    const char* const any_address = "Address required for BICs outside EEA";
    const char* const structured =
        "Structured address required for BICs outside EEA (at least town and country)";
    const struct {
        const char* rulebook;
        const char* bic;
        Pairs address;
        const char* error;
    } cases[] = {
        {"DE-3.0", swiss_bic, {}, nullptr},
        {"DE-3.1", swiss_bic, {}, any_address},
        {"DE-3.5", swiss_bic, {{"addrCC", "CH"}}, any_address},
        {"DE-3.5", "pofichbe", {{"addrLine2", "Bern"}}, nullptr},
        {"DE-3.5", "BARCGB22", {{"addrLine1", "London"}}, nullptr},
        {"DE-3.5", "BARCGB22", {}, any_address},
        {"DE-3.5", "DEUTDEFF", {}, nullptr},
        {"DE-3.7", swiss_bic, {}, structured},
        {"DE-3.7", swiss_bic, {{"addrStreet", "Weg"}}, structured},
        {"DE-3.7", swiss_bic, {{"addrTown", "Bern"}}, nullptr},
        {"DE-3.7", swiss_bic, {{"addrCC", "CH"}}, nullptr},
        {"AT-6", swiss_bic, {}, nullptr},
    };
    for (const auto& c : cases) {
        const Message m = complete_message(SEPA_MSGTYPE_DDI, c.rulebook);
        EXPECT_EQ(add(m, with(with(direct_debit(), {{"bic", c.bic}}), c.address)), c.error == nullptr)
            << c.rulebook;
        if (c.error != nullptr) {
            EXPECT_EQ(error(m), c.error);
        }
        const Message credit = complete_message(SEPA_MSGTYPE_CTI, c.rulebook);
        EXPECT_EQ(add(credit, with(credit_transfer(), {{"bic", c.bic}})), 1) << "credit transfers never ask";
    }
    for (const char* country : {"AD", "BL", "CH", "GB", "GG", "GI", "IM", "JE", "MC", "NC", "PF", "PM", "SM",
                                "TF", "VA", "WF", "AT", "NO", "LI"}) {
        const Message m = complete_message(SEPA_MSGTYPE_DDI, "DE-3.5");
        const std::string bic = std::string("BANK") + country + "22";
        const bool outside = std::strstr("AT NO LI", country) == nullptr;
        EXPECT_EQ(add(m, with(direct_debit(), {{"bic", bic.c_str()}})), !outside) << country;
    }
}

// An error text that is left on the message refuses every structured address key under DE-3.7.
TEST(Add, LeftoverErrorRefusesStructuredAddress) {
    const Message m = complete_message(SEPA_MSGTYPE_CTI, "DE-3.7");
    const Pairs pairs = with(credit_transfer(), {{"addrTown", "Wien"}});
    EXPECT_EQ(add(m, pairs), 1);
    EXPECT_EQ(sepa_setDate(m.get(), ""), 0);
    EXPECT_EQ(add(m, pairs), 0);
    EXPECT_EQ(error(m), "Invalid date");
    EXPECT_EQ(add(m, credit_transfer()), 1);
    EXPECT_EQ(m->transaction_count, 2u);
}

TEST(Add, StoresRoundedAmountsUpperCaseBicsAndTheLaterOfTwoValues) {
    const Message m = complete_message(SEPA_MSGTYPE_DDI, "DE-3.5");
    ASSERT_EQ(add(m, with(direct_debit(), {{"Amount", "0.125"}, {"BIC", "deutdeff"}, {"Name", "Anna"}})), 1)
        << error(m);
    EXPECT_EQ(m->last->amount, 0.13);
    EXPECT_STREQ((*m->last)[Field::bic].c_str(), "DEUTDEFF");
    EXPECT_STREQ((*m->last)[Field::name].c_str(), "Anna");
    ASSERT_EQ(add(m, with(direct_debit(), {{"amount", "99.995"}})), 1);
    EXPECT_EQ(m->transaction_count, 2u);
    EXPECT_DOUBLE_EQ(m->control_sum, 0.13 + 100.00);
    EXPECT_EQ(m->first->next, m->last);
}

} // namespace
