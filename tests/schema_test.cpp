// Documents of every rulebook against the official schemas, judged by xmllint.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

#include "command.h"
#include "message_builder.h"

namespace {

using namespace velmora::test;

struct Rulebook {
    const char* name;
    const char* direct_debit_schema;
    const char* credit_transfer_schema;

    bool operator==(std::string_view other) const { return name == other; }
    bool structured_address() const { return *this == "DE-3.7"; }
    bool bic_required() const { return *this == "DE-2.6"; }
    bool german() const { return name[0] == 'D'; }
    bool cor1() const { return !bic_required() && (!german() || std::string_view(name) < "DE-3"); }
};

constexpr Rulebook rulebooks[] = {
    {"DE-2.6", "pain.008.002.02", "pain.001.002.03"}, {"DE-2.7", "pain.008.003.02", "pain.001.003.03"},
    {"AT-6", "pain.008.001.02", "pain.001.001.03"},   {"NL-6", "pain.008.001.02", "pain.001.001.03"},
    {"DE-2.8", "pain.008.003.02", "pain.001.003.03"}, {"DE-2.9", "pain.008.003.02", "pain.001.003.03"},
    {"DE-3.0", "pain.008.001.02", "pain.001.001.03"}, {"DE-3.1", "pain.008.001.02", "pain.001.001.03"},
    {"DE-3.5", "pain.008.001.02", "pain.001.001.03"}, {"DE-3.7", "pain.008.001.08", "pain.001.001.09"}};

void PrintTo(const Rulebook& rulebook, std::ostream* out) {
    *out << rulebook.name;
}

// Documents on their way to xmllint, each with the expected verdict.
class Documents {
public:
    Documents(const Rulebook& rulebook, std::uint32_t type)
        : rulebook_(rulebook), type_(type), folder_(std::filesystem::path(::testing::TempDir()) /
                                                    (std::string("velmora-") + rulebook.name + "-" +
                                                     std::to_string(type) + "-" + std::to_string(getpid()))) {
        std::filesystem::create_directory(folder_);
    }
    ~Documents() { std::filesystem::remove_all(folder_); }
    Documents(const Documents&) = delete;
    Documents& operator=(const Documents&) = delete;

    Message header() const { return complete_message(type_, rulebook_.name); }

    // One document with these payments.
    void add(const std::string& name, const std::vector<Pairs>& payments, bool valid = true) {
        add(name, header(), payments, valid);
    }

    void add(const std::string& name, const Message& message, const std::vector<Pairs>& payments,
             bool valid = true) {
        for (const Pairs& payment : payments)
            ASSERT_TRUE(velmora::test::add(message, payment)) << name << ": " << error(message);
        const std::string text = document(message);
        ASSERT_NE(text, "") << name << ": " << error(message);
        const std::string path = folder_ / (name + ".xml");
        std::ofstream(path) << text;
        expected_.push_back({path, valid});
    }

    void validate(const std::string& schema) const {
        std::string command = "xmllint --noout --nonet --schema " VELMORA_SCHEMAS "/" + schema + ".xsd";
        for (const Expected& document : expected_)
            command += " '" + document.path + "'";
        const std::string verdict = run(command).output;
        for (const Expected& document : expected_)
            EXPECT_EQ(verdict.find(document.path + " validates\n") != verdict.npos, document.valid)
                << document.path << "\n"
                << verdict;
    }

private:
    struct Expected {
        std::string path;
        bool valid;
    };
    const Rulebook rulebook_;
    const std::uint32_t type_;
    const std::filesystem::path folder_;
    std::vector<Expected> expected_;
};

// What free texts may hold under a rulebook.
std::string characters(const Rulebook& rulebook) {
    std::string text = "Az09 '()+,-./:?";
    if (!rulebook.bic_required()) text += "$%&*ÄÖÜäöüß";
    if (rulebook == "AT-6") text += "!\"#;=@[]^_{}~<>|€";
    return text;
}

Pairs without(Pairs pairs, std::string_view key) {
    std::erase_if(pairs, [&](const auto& pair) { return pair.first == key; });
    return pairs;
}

// The payment's required properties and those that every document here needs to be valid.
Pairs payment(std::uint32_t type, const Rulebook& rulebook) {
    Pairs pairs = {{"iban", "DE37701900002246044670"}, {"name", "Heike Petersen"}, {"amount", "12.50"}};
    if (type == SEPA_MSGTYPE_DDI)
        pairs = with(pairs, {{"seq", "RCUR"}, {"mref", "M-2020-017"}, {"mdate", "2020-02-29"}});
    else
        pairs = with(pairs, {{"ref", "Rechnung 2026-17"}});
    if (rulebook.bic_required()) pairs = with(pairs, {{"bic", "GENODEF1M01"}});
    return pairs;
}

std::vector<Pairs> addresses(const Pairs& base, const Rulebook& rulebook, std::uint32_t type) {
    if (rulebook.structured_address())
        return {with(base, {{"addrCC", "CH"}}), with(base, {{"addrTown", "Zürich"}}),
                with(base, {{"addrDept", "Einkauf & Lager"},
                            {"addrSubDept", "<Süd>"},
                            {"addrStreet", "Straße"},
                            {"addrNum", "12a"},
                            {"addrBldg", "Haus B"},
                            {"addrFloor", "3. OG"},
                            {"addrPoBox", "4711"},
                            {"addrRoom", "307"},
                            {"addrCode", "8001"},
                            {"addrTown", "Zürich"},
                            {"addrLoc", "Enge"},
                            {"addrDstrct", "Kreis 2"},
                            {"addrCtrySub", "ZH"},
                            {"addrCC", "CH"}})};
    std::vector<Pairs> list = {with(base, {{"addrCC", "CH"}}),
                               with(base, {{"addrLine1", "Bahnhofstrasse 9"}}),
                               with(base, {{"addrLine1", "Bahnhofstrasse 9"}, {"addrLine2", "8001 Zurich"}})};
    // Credit transfers write the country behind the lines; the schemas want it in front.
    if (type == SEPA_MSGTYPE_DDI)
        list.push_back(
            with(base, {{"addrCC", "CH"}, {"addrLine1", "Bahnhofstrasse 9"}, {"addrLine2", "8001 Zurich"}}));
    return list;
}

std::vector<Pairs> on_several_dates(const Pairs& base, std::uint32_t type) {
    std::vector<Pairs> list;
    for (const char* date : {"2026-12-01", "2026-12-15", "2026-12-31", "2027-01-04"}) {
        for (const char* sequence : {"frst", "RCUR", "ooff", "FNAL"}) {
            list.push_back(with(base, {{"date", date}}));
            if (type == SEPA_MSGTYPE_DDI) list.back() = with(list.back(), {{"seq", sequence}});
        }
    }
    list.push_back(base);
    return list;
}

// Documents that make sense for both message types.
void add_common(Documents& documents, const Rulebook& rulebook, std::uint32_t type) {
    const Pairs base = payment(type, rulebook);
    const std::string text = characters(rulebook);
    const std::string longest_name(70, 'n'), longest_text(140, 'r'), longest_id(35, 'i');

    documents.add("smallest", {base});
    documents.add("address", addresses(base, rulebook, type));
    documents.add("dates", on_several_dates(base, type));
    documents.add("characters",
                  {with(base, {{"name", text.c_str()}, {"ref", text.c_str()}, {"id", "A-1 (b)/c:d?'e,+."}})});
    documents.add("limits", {with(base, {{"name", longest_name.c_str()},
                                         {"ref", longest_text.c_str()},
                                         {"id", longest_id.c_str()},
                                         {"bic", "GENODEF1M01"},
                                         {"amount", "999999999.99"}}),
                             with(base, {{"amount", "0.005"}})});

    const Message generated = new_message(type, rulebook.name);
    sepa_setIBAN(generated.get(), own_iban);
    sepa_setBIC(generated.get(), "COBADEFF");
    sepa_setName(generated.get(), "Verein Musterstadt");
    sepa_setCreditorIdentifier(generated.get(), "DE98ZZZ09999999999");
    sepa_setBatchBooking(generated.get(), 0);
    documents.add("generated", generated, {base});
}

class Schema : public ::testing::TestWithParam<Rulebook> {};

TEST_P(Schema, DirectDebits) {
    const Rulebook& rulebook = GetParam();
    const Pairs base = payment(SEPA_MSGTYPE_DDI, rulebook);
    Documents documents(rulebook, SEPA_MSGTYPE_DDI);
    add_common(documents, rulebook, SEPA_MSGTYPE_DDI);

    const Pairs other_reference = with(base, {{"old_mref", "OLD-17"}});
    const Pairs other_account = with(base, {{"old_iban", "DE16701900000376033458"}});
    const Pairs other_bank = with(base, {{"smnda", "1"}, {"seq", "FRST"}});
    documents.add("amended", {other_reference, other_account, with(other_reference, other_account)});
    documents.add("amended-new-bank", {other_bank, with(other_bank, {{"old_mref", "OLD-17"}})},
                  rulebook.german());

    for (const std::uint32_t type : {SEPA_DDTYPE_CORE, SEPA_DDTYPE_COR1, SEPA_DDTYPE_B2B}) {
        const Message message = documents.header();
        if (type == SEPA_DDTYPE_COR1 && !rulebook.cor1()) continue;
        ASSERT_TRUE(sepa_setDDType(message.get(), type));
        documents.add("type-" + std::to_string(type), message, {base});
    }

    const Message ampersand = documents.header();
    if (!rulebook.bic_required()) {
        ASSERT_TRUE(sepa_setName(ampersand.get(), "Müller & Söhne"));
    }
    documents.add("own-name", ampersand, {base});

    documents.add("without-debtor-name", {without(base, "name")}, false);
    documents.validate(rulebook.direct_debit_schema);
}

TEST_P(Schema, CreditTransfers) {
    const Rulebook& rulebook = GetParam();
    const Pairs base = payment(SEPA_MSGTYPE_CTI, rulebook);
    Documents documents(rulebook, SEPA_MSGTYPE_CTI);
    add_common(documents, rulebook, SEPA_MSGTYPE_CTI);

    documents.add("purpose", {with(base, {{"purp", "SALA"}, {"bic", "RZOOAT2L"}})});
    documents.add("without-remittance-text", {without(base, "ref")}, rulebook.structured_address());
    documents.add("without-payments", std::vector<Pairs>{}, false);
    if (!rulebook.structured_address())
        documents.add("address-lines-and-country",
                      {with(base, {{"addrLine1", "Bahnhofstrasse 9"}, {"addrCC", "CH"}})}, false);
    if (!rulebook.bic_required()) {
        const Message ampersand = documents.header();
        ASSERT_TRUE(sepa_setName(ampersand.get(), "Müller & Söhne"));
        documents.add("own-name-with-ampersand", ampersand, {base}, false);
    }
    documents.validate(rulebook.credit_transfer_schema);
}

INSTANTIATE_TEST_SUITE_P(Rulebooks, Schema, ::testing::ValuesIn(rulebooks), [](const auto& rulebook) {
    std::string name = rulebook.param.name;
    for (char& c : name)
        if (c == '-' || c == '.') c = '_';
    return name;
});

} // namespace
