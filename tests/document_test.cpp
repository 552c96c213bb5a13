#include <gtest/gtest.h>

#include <algorithm>
#include <ctime>
#include <fstream>
#include <list>
#include <random>
#include <regex>
#include <sstream>

#include "message_builder.h"

using namespace velmora::test;

namespace {

constexpr std::uint32_t ddi = SEPA_MSGTYPE_DDI, cti = SEPA_MSGTYPE_CTI;

std::string file_text(const std::string& name) {
    std::ifstream file(std::string(VELMORA_SOURCE_DIR "/tests/data/documents/") + name);
    std::stringstream text;
    text << file.rdbuf();
    return text.str();
}

std::string header_value(const std::string& document, const char* element) {
    return contents(document, element).at(0);
}

// A message with every element that the rulebook's document can hold.
Message rich_message(std::uint32_t type, const char* rulebook) {
    Message m = complete_message(type, rulebook);
    const bool oldest = std::string(rulebook) == "DE-2.6", structured = std::string(rulebook) == "DE-3.7";
    sepa_setName(m.get(), oldest ? "Mueller + Soehne" : "M\xC3\xBCller & S\xC3\xB6hne");
    const Pairs base = type == ddi ? direct_debit() : credit_transfer();
    const Pairs address =
        structured ? Pairs{{"addrDept", "D<1>"},  {"addrSubDept", "SD"}, {"addrStreet", "Weg & Steg"},
                           {"addrNum", "1a"},     {"addrBldg", "B"},     {"addrFloor", "F"},
                           {"addrPoBox", "P"},    {"addrRoom", "R"},     {"addrCode", "1010"},
                           {"addrTown", "Wien"},  {"addrLoc", "L"},      {"addrDstrct", "Di"},
                           {"addrCtrySub", "CS"}, {"addrCC", "AT"}}
                   : Pairs{{"addrCC", "AT"}, {"addrLine1", "Weg 1"}, {"addrLine2", "1010 Wien"}};
    const char* text = oldest ? "Beitrag + 2026" : "Beitrag & 100 %";
    EXPECT_EQ(add(m, with(with(base, address), {{"id", "E2E-1"}, {"ref", text}})), 1) << error(m);
    EXPECT_EQ(add(m, with(base, {{"addrCC", "AT"}, {"amount", "0.1"}})), 1) << error(m);
    if (type == cti) {
        sepa_setBatchBooking(m.get(), 0);
        EXPECT_EQ(add(m, with(base, {{"date", "2026-11-30"}, {"purp", "SALA"}, {"amount", "0.2"}})), 1);
        EXPECT_EQ(add(m, {{"iban", own_iban}, {"amount", "7"}, {"bic", oldest ? "COBADEFF" : "DEUTDEFF"}}),
                  1);
    } else {
        EXPECT_EQ(add(m, with(base, {{"date", "2026-11-30"}, {"seq", "OOFF"}, {"old_mref", "OLD"}})), 1);
        EXPECT_EQ(add(m, with(base, {{"seq", "FRST"}, {"old_iban", own_iban}, {"old_mref", "OLD"}})), 1);
        EXPECT_EQ(add(m, with(base, {{"seq", "FNAL"}, {"smnda", "1"}, {"old_iban", own_iban}})), 1);
        if (!oldest) {
            EXPECT_EQ(add(m, {{"iban", own_iban}, {"amount", "7"}, {"seq", "RCUR"}}), 1);
        }
    }
    return m;
}

// One rulebook of each kind against a document that was read line by line.
TEST(Document, MatchesItsSampleByteForByte) {
    for (const auto& [type, name] : {std::pair{ddi, "direct_debit"}, std::pair{cti, "credit_transfer"}}) {
        for (const char* rulebook : {"DE-2.6", "AT-6", "DE-2.9", "DE-3.5", "DE-3.7"}) {
            const Message m = rich_message(type, rulebook);
            const std::string text = std::regex_replace(
                document(m), std::regex("<CreDtTm>\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\dZ<"),
                "<CreDtTm>2026-01-02T03:04:05Z<");
            const std::string file = std::string(name) + "_" + rulebook + ".xml";
            // For a deliberate change of the documents: write the samples anew, then read them line by line.
            if (std::getenv("VELMORA_WRITE_SAMPLES") != nullptr)
                std::ofstream(std::string(VELMORA_SOURCE_DIR "/tests/data/documents/") + file) << text;
            EXPECT_EQ(text, file_text(file)) << file;
        }
    }
}

TEST(Document, SchemaOfEveryRulebook) {
    const char* const schemas[][2] = {{"008.002.02", "001.002.03"}, {"008.003.02", "001.003.03"},
                                      {"008.001.02", "001.001.03"}, {"008.001.02", "001.001.03"},
                                      {"008.003.02", "001.003.03"}, {"008.003.02", "001.003.03"},
                                      {"008.001.02", "001.001.03"}, {"008.001.02", "001.001.03"},
                                      {"008.001.02", "001.001.03"}, {"008.001.08", "001.001.09"}};
    for (std::size_t value = 0; value < 10; ++value)
        for (const std::uint32_t type : {ddi, cti}) {
            const Message m = complete_message(type, all_rulebooks[value]);
            ASSERT_EQ(add(m, type == ddi ? direct_debit() : credit_transfer()), 1);
            const std::string schema = std::string("pain.") + schemas[value][type - 1];
            const std::string urn = "urn:iso:std:iso:20022:tech:xsd:" + schema;
            std::string line =
                "\n<Document xmlns=\"" + urn + "\" xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\"";
            if (value != 2 && value != 3) line += " xsi:schemaLocation=\"" + urn + " " + schema + ".xsd\"";
            EXPECT_NE(document(m).find(line + ">\n"), std::string::npos) << all_rulebooks[value];
        }
}

TEST(Document, DirectDebitAsksForACompleteHeader) {
    const Message m = new_message(ddi, "DE-3.5");
    const auto refused = [&](const char* text) {
        EXPECT_EQ(document(m), "");
        EXPECT_EQ(error(m), text);
    };
    refused("Missing creditor IBAN");
    sepa_setIBAN(m.get(), own_iban);
    refused("Missing creditor BIC");
    sepa_setBIC(m.get(), "COBADEFF");
    refused("Missing creditor name");
    sepa_setName(m.get(), "Verein");
    refused("Missing creditor identifier");
    sepa_setCreditorIdentifier(m.get(), "DE98ZZZ09999999999");
    refused("No transactions available");
    add(m, direct_debit());
    EXPECT_NE(document(m), "");
}

TEST(Document, LocalInstruments) {
    const Message m = complete_message(ddi, "DE-2.9");
    add(m, direct_debit());
    const auto instrument = [&] { return contents(document(m), "Cd").at(1); };
    EXPECT_EQ(instrument(), "CORE");
    sepa_setDDType(m.get(), SEPA_DDTYPE_COR1);
    EXPECT_EQ(instrument(), "COR1");
    sepa_init(SEPA_INIT_RULEBOOK, "DE-2.6");
    EXPECT_EQ(instrument(), "COR1") << "the oldest rulebook writes what it would not accept";
    sepa_init(SEPA_INIT_RULEBOOK, "DE-3.0");
    EXPECT_EQ(document(m), "");
    EXPECT_EQ(error(m), "Unknown/unsupported LocalInstrumentCode (setDDType)");
    sepa_setDDType(m.get(), SEPA_DDTYPE_B2B);
    EXPECT_EQ(instrument(), "B2B");
}

TEST(Document, GeneratedIdentificationAndDateAreKept) {
    for (const std::uint32_t type : {ddi, cti}) {
        const auto fresh = [type] {
            Message m = new_message(type, "DE-3.5");
            sepa_setIBAN(m.get(), own_iban);
            sepa_setBIC(m.get(), "COBADEFF");
            sepa_setName(m.get(), "Verein");
            if (type == ddi) sepa_setCreditorIdentifier(m.get(), "DE98ZZZ09999999999");
            add(m, type == ddi ? direct_debit() : credit_transfer());
            return m;
        };
        const Message first = fresh(), second = fresh();
        const std::string id = header_value(document(first), "MsgId");
        EXPECT_TRUE(std::regex_match(id, std::regex("SEPA-\\d{14}-\\d{7}"))) << id;
        EXPECT_EQ(header_value(document(first), "MsgId"), id);
        const int number = std::stoi(id.substr(20)),
                  next = std::stoi(header_value(document(second), "MsgId").substr(20));
        EXPECT_EQ((number + 1) % 10000000, next);

        char today[11];
        const std::time_t now = std::time(nullptr);
        std::strftime(today, sizeof today, "%Y-%m-%d", std::localtime(&now));
        EXPECT_EQ(header_value(document(first), type == ddi ? "ReqdColltnDt" : "ReqdExctnDt"), today);
    }
}

TEST(Document, BlocksByDateThenSequenceType) {
    const Message m = complete_message(ddi, "DE-3.5");
    for (const auto& [date, sequence, id] :
         {std::tuple{"2024-05-03", "RCUR", "1"}, std::tuple{"2024-05-01", "FRST", "2"},
          std::tuple{"2024-05-03", "FRST", "3"}, std::tuple{"2024-05-03", "RCUR", "4"}})
        ASSERT_EQ(
            add(m, with(direct_debit(), {{"date", date}, {"seq", sequence}, {"id", id}, {"amount", "0.1"}})),
            1);
    const std::string text = document(m);
    using Texts = std::vector<std::string>;
    EXPECT_EQ(contents(text, "PmtInfId"), (Texts{"MSG-1-P1", "MSG-1-P2", "MSG-1-P3"}));
    EXPECT_EQ(contents(text, "ReqdColltnDt"), (Texts{"2024-05-01", "2024-05-03", "2024-05-03"}));
    EXPECT_EQ(contents(text, "SeqTp"), (Texts{"FRST", "FRST", "RCUR"}));
    EXPECT_EQ(contents(text, "EndToEndId"), (Texts{"2", "3", "1", "4"}));
    EXPECT_EQ(contents(text, "NbOfTxs"), (Texts{"4", "1", "1", "2"}));
    EXPECT_EQ(contents(text, "CtrlSum"), (Texts{"0.40", "0.10", "0.10", "0.20"}));
}

TEST(Document, CreditTransferWithoutAnything) {
    const Message m = new_message(cti, "DE-3.5");
    const std::string text = document(m);
    EXPECT_EQ(header_value(text, "NbOfTxs"), "0");
    EXPECT_EQ(header_value(text, "CtrlSum"), "0.00");
    EXPECT_EQ(text.find("PmtInf"), text.npos);
    EXPECT_EQ(text.find("<Nm>"), text.npos);
    EXPECT_TRUE(text.ends_with("\t</CstmrCdtTrfInitn>\n</Document>\n"));
    add(m, credit_transfer());
    const std::string with_payment = document(m);
    EXPECT_NE(with_payment.find("<DbtrAcct>\n\t\t\t\t<Id>\n\t\t\t\t</Id>\n\t\t\t</DbtrAcct>\n"), text.npos);
    EXPECT_NE(with_payment.find("<DbtrAgt>\n\t\t\t\t<FinInstnId>\n\t\t\t\t</FinInstnId>\n"), text.npos);
}

// The date list as it is described to callers: a date in front of another is linked through that one's back
// link and gets none itself. Returns the dates in order, or nothing when one of them cannot be reached.
std::vector<int> linked_dates(const std::vector<int>& arrivals) {
    struct Node {
        int date;
        Node *back, *next;
    };
    std::list<Node> nodes;
    Node *head = nullptr, *tail = nullptr;
    const auto reach = [&](int date) {
        Node* node = head;
        while (node != nullptr && node->date < date)
            node = node->next;
        return node;
    };
    for (const int date : arrivals) {
        Node* follower = reach(date);
        if (follower != nullptr && follower->date == date) continue;
        Node* node = &nodes.emplace_back(Node{date, nullptr, follower});
        if (follower == nullptr) {
            node->back = tail;
            (head == nullptr ? head : tail->next) = node;
            tail = node;
            continue;
        }
        if (follower == head) head = node;
        if (follower->back != nullptr) follower->back->next = node;
        follower->back = node;
    }
    for (const int date : arrivals) {
        const Node* node = reach(date);
        if (node == nullptr || node->date != date) return {};
    }
    std::vector<int> dates;
    for (const Node* node = head; node != nullptr; node = node->next)
        dates.push_back(node->date);
    return dates;
}

std::string day(int number) {
    std::tm date{};
    date.tm_year = 2026 - 1900;
    date.tm_mday = 1 + number;
    std::mktime(&date);
    char text[11];
    std::strftime(text, sizeof text, "%Y-%m-%d", &date);
    return text;
}

TEST(Document, OrdersOfDatesThatCannotBeWritten) {
    EXPECT_TRUE(linked_dates({1, 5, 3, 2}).empty());
    EXPECT_EQ(linked_dates({1, 5, 3, 4}), (std::vector{1, 3, 4, 5}));
    EXPECT_EQ(linked_dates({5, 3, 1, 2}), (std::vector{1, 2, 3, 5}));
    std::mt19937 random(5);
    int refused = 0, written = 0;
    std::vector<int> dates = {1, 2, 3, 4, 5};
    const auto check = [&](const std::vector<int>& arrivals, std::uint32_t type) {
        const Message m = complete_message(type, "DE-3.5");
        for (const int date : arrivals)
            ASSERT_EQ(
                add(m, with(type == ddi ? direct_debit() : credit_transfer(), {{"date", day(date).c_str()}})),
                1);
        const std::string text = document(m);
        const std::vector<int> expected = linked_dates(arrivals);
        if (expected.empty()) {
            ++refused;
            EXPECT_EQ(text, "");
            EXPECT_EQ(error(m), "Internal error (pmt not found)");
            return;
        }
        ++written;
        std::vector<std::string> days;
        std::transform(expected.begin(), expected.end(), std::back_inserter(days), day);
        EXPECT_EQ(contents(text, type == ddi ? "ReqdColltnDt" : "ReqdExctnDt"), days);
    };
    do {
        check(dates, ddi);
        check(dates, cti);
    } while (std::next_permutation(dates.begin(), dates.end()));
    for (int round = 0; round < 300; ++round) {
        std::vector<int> arrivals;
        // Mostly ascending with a few steps back, so that both outcomes occur.
        int at = 10;
        for (int i = 0; i < 12; ++i) {
            at = std::max(0, at + static_cast<int>(random() % 6) - 1);
            arrivals.push_back(at);
        }
        check(arrivals, round % 2 ? ddi : cti);
    }
    EXPECT_GT(refused, 50);
    EXPECT_GT(written, 50);
}

// Every payment of a large message is in the document once, in its place, and the totals agree.
TEST(Document, LargeMessagesLoseNothing) {
    const Message m = complete_message(ddi, "DE-3.7");
    constexpr int count = 5000;
    long long cents = 0;
    for (int i = 0; i < count; ++i) {
        char id[16], amount[16];
        std::snprintf(id, sizeof id, "E%d", i);
        std::snprintf(amount, sizeof amount, "%d.%02d", i, i % 100);
        cents += i * 100LL + i % 100;
        const std::string date = day(i % 300);
        ASSERT_EQ(add(m, with(direct_debit(),
                              {{"id", id}, {"amount", i == 0 ? "0.01" : amount}, {"date", date.c_str()}})),
                  1);
    }
    const std::string text = document(m);
    auto ids = contents(text, "EndToEndId");
    EXPECT_EQ(ids.size(), static_cast<std::size_t>(count));
    EXPECT_EQ(ids[1], "E300") << "the second payment of the first day";
    std::sort(ids.begin(), ids.end());
    EXPECT_EQ(std::unique(ids.begin(), ids.end()), ids.end());
    char sum[32];
    __sepa_d2str(sum, sizeof sum, static_cast<double>(cents + 1) / 100);
    EXPECT_EQ(header_value(text, "CtrlSum"), sum);
    EXPECT_EQ(contents(text, "PmtInfId").size(), 300u);
}

} // namespace
