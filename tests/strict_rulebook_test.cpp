// Random messages under DE-26.11, with hostile values: what was accepted stands in the document, nothing else
// does, and the document is valid. The schemas are the official ones; what German banks ask for beyond them
// is here.
#include <gtest/gtest.h>

#include <expat.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <random>
#include <set>

#include "command.h"
#include "message_builder.h"

namespace {

using namespace velmora::test;
using Texts = std::vector<std::string>;
using Values = std::map<std::string, std::string>;

std::mt19937 random_numbers(2611); // NOLINT: the same messages every time

std::size_t any_below(std::size_t limit) {
    return random_numbers() % limit;
}
bool one_in(std::size_t n) {
    return any_below(n) == 0;
}
const std::string& any_of(const Texts& texts) {
    return texts[any_below(texts.size())];
}

std::string repeat(const std::string& text, std::size_t count) {
    std::string all;
    while (count-- > 0)
        all += text;
    return all;
}

// Values that some key accepts and others refuse.
const Texts hostile = {"",
                       " ",
                       "   ",
                       "é",
                       "M\xC3",
                       "\xC3\x28",
                       "\xED\xA0\x80",
                       "\xC0\xAF",
                       "a\nb",
                       "a\tb",
                       "\x7F",
                       "\xC2\x85",
                       "\xEF\xBF\xBE",
                       "<b>&amp;</b>",
                       "]]>",
                       "a & b",
                       "/a",
                       "a/",
                       "a//b",
                       "a/b",
                       "0",
                       "1",
                       "-1",
                       "1e600",
                       "1000000000",
                       "999999999.995",
                       "0.004",
                       "2027-02-29",
                       "2028-02-29",
                       "0000-01-01",
                       "2027-13-01",
                       "24:00",
                       "23:59:60",
                       "1:30",
                       "DE",
                       "SALA",
                       "sala",
                       "ÄÖÜß",
                       "ÄÖ",
                       "S<&A",
                       "RF18539007547034",
                       repeat("ä", 70),
                       repeat("ß", 71),
                       repeat("ü", 140),
                       repeat("x", 141),
                       repeat("x", 35),
                       repeat("x", 36),
                       "DE89370400440532013000",
                       "DE98ZZZ09999999999",
                       "DE98Z Z09999999999",
                       "DE36ZZZ",
                       "COBADEFFXXX",
                       "frst"};

const std::map<std::string, Texts> usual = {
    {"name", {"Eva Muster", "Müller & Söhne", "<Käse>", repeat("ö", 70)}},
    {"iban",
     {"AT611904300234573201", "CH9300762011623852957", "MK07250120000058984", "RS35260005601001611379"}},
    {"bic", {"RZOOAT2L732", "pofichbexxx", "COBADEFF"}},
    {"amount", {"0.01", "12.50", "0.1", "0.2", "999999999.99", "1234567.895"}},
    {"date", {"2026-12-01", "2027-07-15", "2026-12-31", "2026-11-30"}},
    {"id", {"E-1", "E/2 (x)", repeat("e", 35)}},
    {"instrId", {"I-1", "i:2"}},
    {"ref", {"Rechnung 1 & 2", "", repeat("ä", 140)}},
    {"reference", {"RF18539007547034", "rf18 5390 0754 7034", "RF40123456789012345678901", "RF741"}},
    {"purp", {"SALA", "S<&A"}},
    {"category", {"SALA", "TREA"}},
    {"ultDebtor", {"Tante & Co", "U"}},
    {"ultCreditor", {"Onkel", repeat("Ü", 70)}},
    {"addrCC", {"DE", "CH"}},
    {"addrTown", {"Köln", repeat("ä", 35)}},
    {"addrStreet", {"Straße & Weg"}},
    {"addrNum", {"12a"}},
    {"addrPoBox", {"4711"}},
    {"addrDept", {"Einkauf"}},
    {"addrLine1", {"c/o Muster"}},
    {"addrLine2", {"Hinterhaus <links>"}},
    {"seq", {"FRST", "rcur", "OOFF", "FNAL"}},
    {"mref", {"M-1", "M 2"}},
    {"mdate", {"2024-02-29", "2020-01-31"}},
    {"old_mref", {"OLD-1"}},
    {"old_iban", {"DE16701900000376033458"}},
    {"old_name", {"Früher & Co"}},
    {"old_ci", {"AT61ZZZ01234567890"}},
    {"smnda", {"1"}},
    {"instant", {"1"}},
    {"urgent", {"1"}},
    {"time", {"10:30", "10:30:00", "23:59:59", "00:00"}},
    {"unknown", {"x"}}};
const Texts required[] = {{}, {"name", "iban", "amount", "seq", "mref", "mdate"}, {"name", "iban", "amount"}};
const Texts keys_of_direct_debits = {"seq",      "mref",     "mdate",  "old_mref",
                                     "old_iban", "old_name", "old_ci", "smnda"},
            keys_of_credit_transfers = {"instant", "urgent", "time"};

Values any_payment(std::uint32_t type) {
    Values values;
    const auto put = [&](const std::string& key) {
        values[key] = any_of(one_in(25) ? hostile : usual.at(key));
    };
    for (const std::string& key : required[type])
        if (!one_in(60)) put(key);
    if (one_in(3))
        for (const char* key : {"addrTown", "addrCC"})
            put(key);
    const Texts& foreign = type == SEPA_MSGTYPE_DDI ? keys_of_credit_transfers : keys_of_direct_debits;
    for (std::size_t more = any_below(6); more > 0; --more) {
        const std::string& key = std::next(usual.begin(), static_cast<long>(any_below(usual.size())))->first;
        const bool unusual = key == "unknown" || std::count(foreign.begin(), foreign.end(), key) > 0;
        if (!unusual || one_in(10)) put(key);
    }
    return values;
}

std::string upper_case_without_spaces(std::string text) {
    std::erase(text, ' ');
    for (char& c : text)
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    return text;
}

std::string money(std::int64_t cents) {
    const std::string rest = std::to_string(cents % 100);
    return std::to_string(cents / 100) + (rest.size() < 2 ? ".0" : ".") + rest;
}

std::int64_t cents_of(const Values& payment) {
    return std::llround(std::strtod(payment.at("amount").c_str(), nullptr) * 100);
}

// What a message should hold.
struct Model {
    std::uint32_t type;
    Values header, defaults;
    std::vector<Values> payments;

    std::string own_or_default(const Values& payment, const std::string& key) const {
        const Values& from = payment.contains(key) ? payment : defaults;
        return from.contains(key) ? from.at(key) : "";
    }
    bool is_instant(const Values& p) const {
        return p.contains("instant") || p.contains("time") ||
               (!p.contains("urgent") && defaults.contains("instant"));
    }
    std::string date(const Values& p) const { return p.contains("date") ? p.at("date") : header.at("date"); }
    std::string time(const Values& p) const {
        const std::string time = is_instant(p) ? own_or_default(p, "time") : "";
        return time.size() == 5 ? time + ":00" : time;
    }
    // What a block has in common, in the order of the blocks.
    auto block_key(const Values& p) const {
        static const std::string sequences = "FRSTRCUROOFFFNAL";
        const bool urgent = p.contains("urgent") || (!is_instant(p) && defaults.contains("urgent"));
        const std::size_t sequence =
            type == SEPA_MSGTYPE_DDI ? sequences.find(upper_case_without_spaces(p.at("seq"))) : 0;
        return std::tuple(date(p), sequence,
                          is_instant(p) ? 2
                          : urgent      ? 1
                                        : 0,
                          time(p), own_or_default(p, "category"));
    }
};

// The elements without others in them, as "path=text" and sorted.
using Leaves = std::multiset<std::string>;

Leaves payment_leaves(const Model& model, const Values& p) {
    const bool debit = model.type == SEPA_MSGTYPE_DDI;
    const std::string party = debit ? "Dbtr" : "Cdtr";
    Leaves leaves;
    const auto put = [&](const char* key, const std::string& path) {
        if (p.contains(key) && !p.at(key).empty()) leaves.insert(path + "=" + p.at(key));
    };
    leaves.insert("PmtId/EndToEndId=" + (p.contains("id") ? p.at("id") : "NOTPROVIDED"));
    put("instrId", "PmtId/InstrId");
    leaves.insert((debit ? "InstdAmt=" : "Amt/InstdAmt=") + money(cents_of(p)));
    put("name", party + "/Nm");
    put("iban", party + "Acct/Id/IBAN");
    if (p.contains("bic"))
        leaves.insert(party + "Agt/FinInstnId/BICFI=" + upper_case_without_spaces(p.at("bic")));
    else if (debit)
        leaves.insert("DbtrAgt/FinInstnId/Othr/Id=NOTPROVIDED");
    const std::pair<const char*, const char*> address[] = {
        {"addrCC", "Ctry"},     {"addrTown", "TwnNm"}, {"addrStreet", "StrtNm"}, {"addrNum", "BldgNb"},
        {"addrPoBox", "PstBx"}, {"addrDept", "Dept"},  {"addrLine1", "AdrLine"}, {"addrLine2", "AdrLine"}};
    for (const auto& [key, element] : address)
        put(key, party + "/PstlAdr/" + element);
    for (const auto& [key, element] :
         {std::pair("ultDebtor", "UltmtDbtr"), std::pair("ultCreditor", "UltmtCdtr")})
        if (const std::string name = model.own_or_default(p, key); !name.empty())
            leaves.insert(std::string(element) + "/Nm=" + name);
    put("purp", "Purp/Cd");
    put("ref", "RmtInf/Ustrd");
    if (p.contains("reference")) {
        const std::string in = "RmtInf/Strd/CdtrRefInf/";
        leaves.insert({in + "Tp/CdOrPrtry/Cd=SCOR", in + "Tp/Issr=ISO",
                       in + "Ref=" + upper_case_without_spaces(p.at("reference"))});
    }
    if (!debit) return leaves;
    const std::string mandate = "DrctDbtTx/MndtRltdInf/", before = mandate + "AmdmntInfDtls/";
    put("mref", mandate + "MndtId");
    put("mdate", mandate + "DtOfSgntr");
    for (const char* key : {"old_mref", "old_iban", "old_name", "old_ci", "smnda"})
        if (p.contains(key) && leaves.count(mandate + "AmdmntInd=true") == 0)
            leaves.insert(mandate + "AmdmntInd=true");
    put("old_mref", before + "OrgnlMndtId");
    put("old_name", before + "OrgnlCdtrSchmeId/Nm");
    put("old_ci", before + "OrgnlCdtrSchmeId/Id/PrvtId/Othr/Id");
    if (p.contains("old_ci")) leaves.insert(before + "OrgnlCdtrSchmeId/Id/PrvtId/Othr/SchmeNm/Prtry=SEPA");
    put("old_iban", before + "OrgnlDbtrAcct/Id/IBAN");
    if (p.contains("smnda")) leaves.insert(before + "OrgnlDbtrAcct/Id/Othr/Id=SMNDA");
    return leaves;
}

Leaves block_leaves(const Model& model, const std::vector<Values>& payments, std::size_t number) {
    const bool debit = model.type == SEPA_MSGTYPE_DDI;
    const std::string party = debit ? "Cdtr" : "Dbtr";
    const Values &header = model.header, &first = payments.front();
    const auto [date, sequence, service, time, category] = model.block_key(first);
    std::int64_t sum = 0;
    for (const Values& payment : payments)
        sum += cents_of(payment);
    Leaves leaves = {"PmtInfId=" + header.at("id") + "-P" + std::to_string(number),
                     debit ? "PmtMtd=DD" : "PmtMtd=TRF",
                     "BtchBookg=true",
                     "NbOfTxs=" + std::to_string(payments.size()),
                     "CtrlSum=" + money(sum),
                     service == 1 ? "PmtTpInf/SvcLvl/Cd=URGP" : "PmtTpInf/SvcLvl/Cd=SEPA",
                     party + "/Nm=" + header.at("name"),
                     party + "Acct/Id/IBAN=" + header.at("iban"),
                     party + "Agt/FinInstnId/" +
                         (header.contains("bic") ? "BICFI=" + upper_case_without_spaces(header.at("bic"))
                                                 : "Othr/Id=NOTPROVIDED"),
                     "ChrgBr=SLEV"};
    if (!category.empty()) leaves.insert("PmtTpInf/CtgyPurp/Cd=" + category);
    if (debit)
        leaves.insert({"PmtTpInf/LclInstrm/Cd=CORE",
                       "PmtTpInf/SeqTp=" + upper_case_without_spaces(first.at("seq")), "ReqdColltnDt=" + date,
                       "CdtrSchmeId/Id/PrvtId/Othr/Id=" + header.at("identifier"),
                       "CdtrSchmeId/Id/PrvtId/Othr/SchmeNm/Prtry=SEPA"});
    else if (time.empty())
        leaves.insert("ReqdExctnDt/Dt=" + date);
    else
        leaves.insert("ReqdExctnDt/DtTm=" + date + "T" + time +
                      (date.substr(5, 2) == "07" ? "+02:00" : "+01:00"));
    if (service == 2) leaves.insert("PmtTpInf/LclInstrm/Cd=INST");
    return leaves;
}

// The group header, then each block followed by its payments.
std::vector<Leaves> expected_parts(Model model) {
    std::int64_t sum = 0;
    for (const Values& payment : model.payments)
        sum += cents_of(payment);
    std::vector<Leaves> parts = {{"MsgId=" + model.header.at("id"), "CreDtTm=" + model.defaults.at("created"),
                                  "NbOfTxs=" + std::to_string(model.payments.size()), "CtrlSum=" + money(sum),
                                  "InitgPty/Nm=" + model.header.at("name")}};
    const auto before = [&](const Values& a, const Values& b) {
        return model.block_key(a) < model.block_key(b);
    };
    std::stable_sort(model.payments.begin(), model.payments.end(), before);
    std::size_t number = 0;
    for (auto begin = model.payments.begin(), end = begin; begin != model.payments.end(); begin = end) {
        end = std::upper_bound(begin, model.payments.end(), *begin, before);
        parts.push_back(block_leaves(model, {begin, end}, ++number));
        for (auto payment = begin; payment != end; ++payment)
            parts.push_back(payment_leaves(model, *payment));
    }
    return parts;
}

struct Reading {
    std::vector<Leaves> parts;
    Texts path, texts;
    std::vector<std::size_t> part_of = {0}, depth_of = {0}; // of the open parts
    bool is_leaf = false;
};

std::vector<Leaves> parts_of(const std::string& document) {
    Reading reading;
    XML_Parser parser = XML_ParserCreate(nullptr);
    XML_SetUserData(parser, &reading);
    const auto open = [](void* data, const char* name, const char**) {
        auto& r = *static_cast<Reading*>(data);
        r.path.emplace_back(name), r.texts.emplace_back(), r.is_leaf = true;
        const Texts beginnings = {"GrpHdr", "PmtInf", "CdtTrfTxInf", "DrctDbtTxInf"};
        if (std::count(beginnings.begin(), beginnings.end(), name) == 0) return;
        r.part_of.push_back(r.parts.size()), r.depth_of.push_back(r.path.size()), r.parts.emplace_back();
    };
    const auto close = [](void* data, const char*) {
        auto& r = *static_cast<Reading*>(data);
        std::string path;
        for (std::size_t i = r.depth_of.back(); i < r.path.size(); ++i)
            path += (path.empty() ? "" : "/") + r.path[i];
        if (r.is_leaf) r.parts.at(r.part_of.back()).insert(path + "=" + r.texts.back());
        if (r.path.size() == r.depth_of.back()) r.part_of.pop_back(), r.depth_of.pop_back();
        r.path.pop_back(), r.texts.pop_back(), r.is_leaf = false;
    };
    XML_SetElementHandler(parser, open, close);
    XML_SetCharacterDataHandler(parser, [](void* data, const char* text, int length) {
        static_cast<Reading*>(data)->texts.back().append(text, static_cast<std::size_t>(length));
    });
    EXPECT_EQ(XML_Parse(parser, document.data(), static_cast<int>(document.size()), 1), XML_STATUS_OK)
        << document;
    XML_ParserFree(parser);
    return reading.parts;
}

// What banks ask for beyond the official schemas.
void expect_national_rules(const std::vector<Leaves>& parts) {
    std::set<std::string> block_ids;
    for (const Leaves& part : parts) {
        int lines = 0, remittances = 0;
        bool address = false, town = false, country = false;
        for (const std::string& leaf : part) {
            const std::string path = leaf.substr(0, leaf.find('=')), text = leaf.substr(path.size() + 1);
            const auto ends_with = [&](const std::string& name) { return path.ends_with(name); };
            EXPECT_NE(text.find_first_not_of(' '), text.npos) << leaf;
            address |= path.find("PstlAdr/") != path.npos, town |= ends_with("TwnNm"),
                country |= ends_with("Ctry");
            lines += ends_with("AdrLine"), remittances += ends_with("Ustrd") || ends_with("/Ref");
            if (ends_with("InstdAmt")) {
                EXPECT_LE(text.size(), 12U) << leaf;
            }
            if (path == "PmtInfId") {
                EXPECT_TRUE(text.size() <= 35 && block_ids.insert(text).second) << leaf;
            }
            for (const char* id : {"MsgId", "EndToEndId", "InstrId", "/MndtId"})
                if (ends_with(id)) {
                    EXPECT_TRUE(text[0] != '/' && text.back() != '/' && text.find("//") == text.npos) << leaf;
                }
        }
        EXPECT_TRUE(lines <= 2 && remittances <= 1 && (!address || (town && country)));
    }
}

using Setter = int (*)(sepa_t*, const char*);

Model any_message(std::uint32_t type, sepa_t* message) {
    Model model{type, {}, {}, {}};
    const auto set = [&](const char* field, Setter setter, const Texts& good) {
        for (const Texts& from : {hostile, good, hostile}) {
            const std::string& value = any_of(from);
            if (setter(message, value.c_str()) == 1) model.header[field] = value;
        }
    };
    set("iban", sepa_setIBAN, {own_iban, "AD1200012030200359100100"});
    set("name", sepa_setName, {"Verein & Söhne", repeat("ß", 70)});
    set("date", sepa_setDate, {"2026-12-01", "2028-02-29"});
    set("id", sepa_setMessageId, {"MSG-1", repeat("m", 30)});
    if (!one_in(3)) set("bic", sepa_setBIC, {"cobadeff"});
    if (type == SEPA_MSGTYPE_DDI)
        set("identifier", sepa_setCreditorIdentifier, {"DE98ZZZ09999999999", "DE98aB109999999999"});

    const auto set_default = [&](const std::string& key, const std::string& value) {
        if (sepa_set(message, key.c_str(), value.c_str()) == 1) model.defaults[key] = value;
    };
    set_default("created", "2026-11-21T08:00:00Z");
    for (int count = 3 + static_cast<int>(any_below(9)); count > 0; --count) {
        if (one_in(4)) {
            const Texts keys = {"created",  "instant",   "urgent",      "time",
                                "category", "ultDebtor", "ultCreditor", "name"};
            const std::string& key = any_of(keys);
            if (one_in(3))
                set_default(key, any_of(hostile));
            else if (key != "created")
                set_default(key, any_of(usual.at(key)));
        }
        const Values payment = any_payment(type);
        std::vector<const char*> pairs;
        for (const auto& [key, value] : payment)
            pairs.insert(pairs.end(), {key.c_str(), value.c_str()});
        pairs.push_back(nullptr);
        const int tried = sepa_test(message, pairs.data());
        const std::string reason = tried == 1 ? "" : sepa_getError(message);
        EXPECT_EQ(sepa_add(message, pairs.data()), tried);
        if (tried == 1) model.payments.push_back(payment);
        if (tried != 1) {
            EXPECT_EQ(sepa_getError(message), reason);
        }
    }
    return model;
}

TEST(StrictRulebook, WhatIsAcceptedIsWrittenAndValid) {
    setenv("TZ", "CET-1CEST,M3.5.0,M10.5.0/3", 1);
    const std::filesystem::path folder = testing::TempDir() + "velmora-strict-" + std::to_string(getpid());
    for (const std::uint32_t type : {SEPA_MSGTYPE_DDI, SEPA_MSGTYPE_CTI}) {
        std::filesystem::create_directory(folder);
        std::size_t payments = 0;
        for (int n = 0; n < 400 && !HasFailure(); ++n) {
            const Message message(sepa_new(type));
            ASSERT_EQ(sepa_setRulebook(message.get(), "DE-26.11"), 1);
            const Model model = any_message(type, message.get());
            const std::string text = document(message);
            sepa_totals_t totals;
            EXPECT_EQ(sepa_getTotals(message.get(), &totals), 1);
            EXPECT_EQ(totals.payments, model.payments.size());
            payments += model.payments.size();
            if (model.payments.empty()) {
                EXPECT_EQ(error(message), "No transactions available");
                continue;
            }
            const std::vector<Leaves> parts = parts_of(text);
            const std::vector<Leaves> expected = expected_parts(model);
            ASSERT_EQ(parts.size(), expected.size()) << text;
            for (std::size_t i = 0; i < parts.size(); ++i)
                EXPECT_EQ(parts[i], expected[i]) << text;
            EXPECT_EQ(parts.size(), 1 + totals.blocks + totals.payments);
            expect_national_rules(parts);
            std::ofstream(folder / std::to_string(n)) << text;
        }
        EXPECT_GT(payments, 1000U);
        // What looser rules accepted is written if it would be accepted now.
        std::size_t documents = 0;
        for (int n = 0; n < 400; ++n) {
            const Message message(sepa_new(type));
            ASSERT_EQ(sepa_setRulebook(message.get(), one_in(2) ? "DE-3.7" : "AT-6"), 1);
            any_message(type, message.get());
            ASSERT_EQ(sepa_setRulebook(message.get(), "DE-26.11"), 1);
            const std::string text = document(message);
            if (text.empty()) continue;
            expect_national_rules(parts_of(text));
            std::ofstream(folder / ("loose" + std::to_string(n))) << text;
            ++documents;
        }
        EXPECT_GT(documents, 20U);
        const char* name = type == SEPA_MSGTYPE_DDI ? "/pain.008.001.08.xsd" : "/pain.001.001.09.xsd";
        const std::string schema = VELMORA_SCHEMAS + std::string(name);
        if (std::filesystem::exists(schema)) { // an old Debian has not all
            const CommandResult verdict = run("xmllint --noout --nonet --schema " + schema + " " +
                                              folder.string() + "/* 2>&1 | grep -v ' validates$'");
            EXPECT_EQ(verdict.output, "");
        }
        std::filesystem::remove_all(folder);
    }
}

// A message identification is cut from the thousandth block on, and the blocks still have names of their own.
TEST(StrictRulebook, ThousandsOfBlocks) {
    const Message message = complete_message(SEPA_MSGTYPE_CTI, "DE-26.11");
    ASSERT_EQ(sepa_setMessageId(message.get(), repeat("m", 30).c_str()), 1);
    std::string category = "AAAA";
    for (std::size_t n = 0; n < 1001; ++n) {
        category[2] = static_cast<char>('A' + n / 26 % 26), category[3] = static_cast<char>('A' + n % 26);
        category[1] = static_cast<char>('A' + n / 676);
        ASSERT_EQ(add(message, with(credit_transfer(), {{"category", category.c_str()}})), 1);
    }
    const std::vector<Leaves> parts = parts_of(document(message));
    expect_national_rules(parts);
    EXPECT_EQ(parts.size(), 1U + 2 * 1001);
    EXPECT_EQ(parts[parts.size() - 2].count("PmtInfId=" + repeat("m", 29) + "-P1001"), 1U);
}

// Around the changes of the clocks: the hour that is left out, the one that comes twice, and far from either.
TEST(StrictRulebook, TimesHaveTheOffsetOfTheirDay) {
    setenv("TZ", "CET-1CEST,M3.5.0,M10.5.0/3", 1);
    const char* const times[][3] = {{"2027-03-28", "01:59:59", "+01:00"}, {"2027-03-28", "02:30", "+01:00"},
                                    {"2027-03-28", "03:00", "+02:00"},    {"2027-10-31", "02:30", "+02:00"},
                                    {"2027-10-31", "03:00", "+01:00"},    {"9999-12-31", "12:00", "+01:00"}};
    for (const auto& [date, time, offset] : times) {
        const Message message = complete_message(SEPA_MSGTYPE_CTI, "DE-26.11");
        ASSERT_EQ(add(message, with(credit_transfer(), {{"date", date}, {"instant", "1"}, {"time", time}})),
                  1);
        EXPECT_NE(document(message).find(std::string(offset) + "</DtTm>"), std::string::npos) << date << time;
    }
}

} // namespace
