// The tables of calls on the C interface; tests/data/calls/README tells their form.
#include <gtest/gtest.h>

#include <cerrno>
#include <clocale>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <nlohmann/json.hpp>
#include <regex>
#include <sstream>

#include "command.h"
#include "failing_heap.h"
#include "message_builder.h"

namespace {

using namespace velmora::test;
using json = nlohmann::ordered_json;

// The tables hold in every locale. Null when there is none of the name that is asked for.
const char* const test_locale = std::setlocale(LC_ALL, std::getenv("VELMORA_TEST_LOCALE"));

// For numbers of the test's own.
struct InCLocale {
    locale_t outer = uselocale(newlocale(LC_ALL_MASK, "C", nullptr));
    ~InCLocale() { uselocale(outer); }
};

std::string expand(const std::string& text) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        int number = 0, length = 0;
        if (std::sscanf(&text[i], "\\x%2x%n", reinterpret_cast<unsigned*>(&number), &length) == 1)
            result += static_cast<char>(number);
        else if (std::sscanf(&text[i], "{%d}%n", &number, &length); length > 0)
            result.append(static_cast<std::size_t>(number - 1), result.back());
        else
            result += text[i], length = 1;
        i += static_cast<std::size_t>(length - 1);
    }
    return result;
}

json expanded(json value) {
    if (value.is_string()) return expand(value.get<std::string>());
    if (value.is_structured())
        for (json& item : value)
            item = expanded(item);
    return value;
}

const char* text_of(const json& value) {
    return value.is_string() ? value.get_ref<const std::string&>().c_str() : nullptr;
}

// Every call is made with failing allocations, until it has what it needs: the failures before are told,
// nothing leaks, and no account data stay behind in freed memory.
struct Caller {
    std::string rulebook;
    std::uint32_t type;
    Message message = new_message(type, rulebook.c_str());

    void end() {
        call_watched([&] { return message = nullptr, true; });
    }

    // With the text of any failure on it such a message refuses structured addresses.
    bool must_not_fail() const { return rulebook == "DE-3.7"; }

    // A setter that took its value without memory for it, as that of the message id does, is called again.
    template <typename Call>
    json told(Call call, bool again = false) const {
        const auto is_enough = [&](int result) {
            if (result == 1) return !again;
            EXPECT_TRUE(
                std::regex_match(error(message), std::regex("(.* )?(Out of memory|\\w+\\(\\) failed)")))
                << error(message);
            return false;
        };
        const int result =
            must_not_fail() ? call_watched(call) : call_with_failing_allocations(call, is_enough);
        return result == 1 ? json(true) : json(error(message));
    }

    int add_pairs(const json& properties, const Pairs& others = {},
                  int (*add_or_test)(sepa_t*, const char* const*) = sepa_add) const {
        Pairs pairs;
        for (const auto& property : properties.items())
            pairs.emplace_back(property.key().c_str(), text_of(property.value()));
        for (const auto& other : others)
            if (!properties.contains(other.first)) pairs.push_back(other);
        return call_with_pairs(add_or_test, message, pairs);
    }
    int add_with(const json& properties) const {
        return add_pairs(properties, type == SEPA_MSGTYPE_DDI ? direct_debit() : credit_transfer());
    }
    json begin() {
        end();
        message = complete_message(type, rulebook.c_str());
        return true;
    }
    json try_alone(const json& properties) {
        const json result = told([&] {
            heap.watching = false;
            begin();
            heap.watching = true;
            return add_with(properties);
        });
        if (result != true) {
            EXPECT_EQ(document(message).find("<NbOfTxs>1<"), std::string::npos) << "it was added";
        }
        return result;
    }
    json from_document(const std::function<json(const std::string&)>& what) const {
        char* document = nullptr;
        const json result = told([&] { return (document = sepa_toXML(message.get())) != nullptr; });
        const std::unique_ptr<char, decltype(&std::free)> owner(document, &std::free);
        return result == true ? what(document) : result;
    }
    json days_of(const std::string& days) {
        begin();
        std::istringstream in(days);
        for (int day; in >> day;) {
            char date[] = "2027-01-00";
            date[8] = static_cast<char>('0' + day / 10), date[9] = static_cast<char>('0' + day % 10);
            EXPECT_EQ(told([&] { return add_with({{"date", date}}); }), true);
        }
        return from_document([](const std::string& text) -> json {
            std::string found;
            for (std::size_t at = 0; (at = text.find(">2027-01-", at)) != text.npos; at += 9)
                found += (found.empty() ? "" : ", ") + std::to_string(std::stoi(text.substr(at + 9, 2)));
            return found;
        });
    }
};

json bank(const char* bic, const std::function<json(const sepa_bank_t&)>& what) {
    sepa_bank_t* found = nullptr;
    const auto look_up = [&] { return sepa_bic_getBank(bic, &found); };
    if (call_with_failing_allocations(look_up, [](int result) { return result != -3; }) != 1) return false;
    const std::unique_ptr<sepa_bank_t, decltype(&std::free)> owner(found, &std::free);
    return what(*found);
}

// What is called: the message, the first argument as a text, all arguments.
using Call = json (*)(Caller& on, const char* text, const json& a);

template <int (*setter)(sepa_t*, const char*)>
json set(Caller& on, const char* text, const json&) {
    return on.told([&] { return setter(on.message.get(), text); }, true);
}

const std::map<std::string, Call> calls = {
    {"setIBAN", set<sepa_setIBAN>},
    {"setBIC", set<sepa_setBIC>},
    {"setName", set<sepa_setName>},
    {"setCreditorIdentifier", set<sepa_setCreditorIdentifier>},
    {"setDate", set<sepa_setDate>},
    {"setMessageId", set<sepa_setMessageId>},
    {"setDDType", [](Caller& on, auto,
                     auto& a) { return on.told([&] { return sepa_setDDType(on.message.get(), a[0]); }); }},
    {"setBatchBooking",
     [](Caller& on, auto, auto& a) {
         return on.told([&] { return sepa_setBatchBooking(on.message.get(), a[0]); });
     }},
    {"getError",
     [](Caller& on, auto, auto&) {
         return sepa_getError(on.message.get()) != nullptr ? json(error(on.message)) : json();
     }},
    {"add",
     [](Caller& on, auto, auto& a) {
         return on.told(
             [&] { return a[0].is_null() ? sepa_add(on.message.get(), nullptr) : on.add_pairs(a[0]); });
     }},
    {"test",
     [](Caller& on, auto, auto& a) { return on.told([&] { return on.add_pairs(a[0], {}, sepa_test); }); }},
    {"setRulebook", set<sepa_setRulebook>},
    {"set", [](Caller& on, const char* key,
               auto& a) { return on.told([&] { return sepa_set(on.message.get(), key, text_of(a[1])); }); }},
    {"totals",
     [](Caller& on, auto, auto&) {
         sepa_totals_t totals{};
         const json result = on.told([&] { return sepa_getTotals(on.message.get(), &totals); });
         return result != true
                    ? result
                    : json(std::to_string(totals.payments) + " payments, " + std::to_string(totals.cents) +
                           " cents, " + std::to_string(totals.blocks) + " blocks");
     }},
    {"init", [](Caller&, auto, auto& a) -> json { return sepa_init(a[0], text_of(a[1])) == 1; }},
    {"toXML", [](Caller& on, auto, auto&) { return on.from_document([](auto&) { return true; }); }},

    {"header", [](Caller& on, auto, auto&) { return on.begin(); }},
    {"try", [](Caller& on, auto, auto& a) { return on.try_alone(a[0]); }},
    {"add_with", [](Caller& on, auto, auto& a) { return on.told([&] { return on.add_with(a[0]); }); }},
    {"dates", [](Caller& on, const char* text, auto&) { return on.days_of(text); }},
    {"document",
     [](Caller& on, const char* text, auto&) {
         return on.from_document([&](const std::string& document) -> json {
             std::string all;
             for (const std::string& content : contents(document, text))
                 all += (all.empty() ? "" : ", ") + content;
             return all;
         });
     }},
    {"sample",
     [](Caller& on, const char* name, auto&) {
         return on.from_document([&](const std::string& document) -> json {
             const std::string path =
                 VELMORA_SOURCE_DIR "/tests/data/documents/" + std::string(name) + ".xml";
             const std::string text = std::regex_replace(document, std::regex("<CreDtTm>[-0-9T:]+Z<"),
                                                         "<CreDtTm>2026-01-02T03:04:05Z<");
             // For a deliberate change of the documents: write the samples anew, then read them line by line.
             if (std::getenv("VELMORA_WRITE_SAMPLES") != nullptr) std::ofstream(path) << text;
             std::stringstream sample;
             sample << std::ifstream(path).rdbuf();
             return text == sample.str() ? json(true) : json(text);
         });
     }},
    {"valid",
     [](Caller& on, auto, auto&) {
         return on.from_document([](const std::string& document) -> json {
             const std::string path = testing::TempDir() + "velmora-" + std::to_string(getpid()) + ".xml";
             std::ofstream(path) << document;
             const std::string schema =
                 document.substr(document.find("pain."), sizeof("pain.001.001.03") - 1);
             const std::string file = VELMORA_SCHEMAS "/" + schema + ".xsd";
             if (access(file.c_str(), R_OK) != 0)
                 return json::value_t::discarded; // an old Debian has not all
             const CommandResult verdict = run("xmllint --noout --nonet --schema " + file + " " + path +
                                               "; code=$?; rm " + path + "; exit $code");
             if (verdict.status == 0 || verdict.status == 3) return verdict.status == 0;
             return verdict.output.find("parser error") != verdict.output.npos ? "not XML" : verdict.output;
         });
     }},
    {"root",
     [](Caller& on, auto, auto&) {
         return on.from_document([](const std::string& document) -> json {
             const std::size_t begin = document.find('\n') + 1;
             return document.substr(begin, document.find('\n', begin) - begin);
         });
     }},

    {"IBAN_check", [](Caller&, const char* text, auto&) -> json { return sepa_iban_check(text) == 1; }},
    {"IBAN_getBIC",
     [](Caller&, const char* text, auto&) {
         char bic[12];
         return sepa_iban_getBIC(text, bic) == 1 ? json(bic) : json(false);
     }},
    {"IBAN_convert",
     [](Caller&, const char* country, auto& a) {
         char iban[35];
         return sepa_iban_convert(country, text_of(a[1]), text_of(a[2]), iban, nullptr) == 1 ? json(iban)
                                                                                             : json(false);
     }},
    {"BIC_getBankName",
     [](Caller&, const char* bic, auto&) { return bank(bic, [](auto& found) { return json(found.name); }); }},
    {"BIC_getBankFlags", [](Caller&, const char* bic,
                            auto&) { return bank(bic, [](auto& found) { return json(found.flags); }); }},
    {"strtod",
     [](Caller&, const char* text, auto&) {
         char *end = nullptr, result[64];
         errno = EINTR; // is never cleared
         const double number = __sepa_strtod(text, &end);
         const int error = errno;
         const InCLocale numbers;
         std::snprintf(result, sizeof result, "%.17g %td%s", number, end - text,
                       error == ERANGE  ? " out of range"
                       : error != EINTR ? "?"
                                        : "");
         return json(result);
     }},
    {"d2str",
     [](Caller&, const char* amount, auto&) {
         char text[64];
         const double number = (InCLocale(), std::strtod(amount, nullptr));
         const char* const end = __sepa_d2str(text, sizeof text, number);
         return json(std::string(text, static_cast<std::size_t>(end - text)));
     }},
};

// The rows below one heading, for each of its rulebooks and types.
void make_calls(const std::string& heading, const std::vector<std::string>& rows) {
    static const std::regex form(R"((?:C )?(\w+) (\[.*\]) -> (.*))");
    std::istringstream names(heading.substr(0, heading.find(',')));
    std::vector<std::string> rulebooks{std::istream_iterator<std::string>(names), {}};
    if (heading.starts_with("all,")) rulebooks.assign(std::begin(all_rulebooks), std::end(all_rulebooks));
    for (const std::string& rulebook : rulebooks)
        for (const std::uint32_t type : {SEPA_MSGTYPE_DDI, SEPA_MSGTYPE_CTI}) {
            const char* const other = type == SEPA_MSGTYPE_DDI ? ", credit transfer" : ", direct debit";
            if (heading.ends_with(other)) continue;
            ASSERT_EQ(sepa_init(SEPA_INIT_RULEBOOK, rulebook.c_str()), 1) << heading;
            const long live = heap.live;
            heap.unwiped = 0;
            Caller caller = {rulebook, type};
            for (const std::string& row : rows) {
                std::smatch parts;
                ASSERT_TRUE(std::regex_match(row, parts, form)) << row;
                ASSERT_TRUE(calls.contains(parts[1])) << row;
                const json arguments = expanded(json::parse(parts[2].str()));
                const json result = calls.at(parts[1])(
                    caller, arguments.empty() ? nullptr : text_of(arguments[0]), arguments);
                if (result.is_discarded()) continue;
                EXPECT_TRUE(result == expanded(json::parse(parts[3].str())))
                    << "expected: " << rulebook << ' ' << type << ": " << row
                    << "\nactual:   " << result.dump(-1, ' ', false, json::error_handler_t::replace);
            }
            caller.end();
            EXPECT_EQ(heap.live, live) << heading;
            EXPECT_EQ(heap.unwiped, 0) << heading;
        }
}

class Calls : public testing::TestWithParam<const char*> {};

TEST_P(Calls, GiveWhatTheTableSays) {
    ASSERT_NE(test_locale, nullptr);
    std::ifstream file(VELMORA_SOURCE_DIR "/tests/data/calls/" + std::string(GetParam()) + ".txt");
    std::string heading, line;
    std::vector<std::string> rows;
    std::size_t count = 0;
    do {
        const bool ended = !std::getline(file, line);
        if (ended || line.starts_with("== ")) {
            make_calls(heading, rows);
            heading = line.substr(std::min<std::size_t>(3, line.size()));
            rows.clear();
        } else if (!line.empty() && line[0] != '#' && !line.starts_with("PHP ")) {
            rows.push_back(line);
            ++count;
        }
    } while (file);
    EXPECT_GT(count, 20U);
}

INSTANTIATE_TEST_SUITE_P(Tables, Calls,
                         testing::Values("accounts", "dates", "documents", "header", "numbers", "payments",
                                         "schemas", "strict"),
                         [](const auto& table) { return std::string(table.param); });

// Every function, called with nothing at all.
TEST(Calls, NothingAtAllIsRefused) {
    char text[35] = "x";
    std::uint8_t status = 99;
    sepa_bank_t* bank = nullptr;
    for (const std::uint32_t type : {0U, 3U})
        EXPECT_EQ(sepa_new(type), nullptr);
    EXPECT_EQ(sepa_init(SEPA_INIT_RULEBOOK, nullptr), 0);
    for (const auto setter : {sepa_setIBAN, sepa_setBIC, sepa_setName, sepa_setCreditorIdentifier,
                              sepa_setDate, sepa_setMessageId})
        for (const char* value : {static_cast<const char*>(nullptr), own_iban})
            EXPECT_EQ(setter(nullptr, value), 0);
    EXPECT_EQ(sepa_setDDType(nullptr, 0) | sepa_setBatchBooking(nullptr, 0) | sepa_add(nullptr, nullptr), 0);
    EXPECT_EQ(sepa_toXML(nullptr), nullptr);
    EXPECT_STREQ(sepa_getError(nullptr), "Invalid sepa_t handle (NULL)");
    sepa_free(nullptr);

    EXPECT_EQ(sepa_iban_check(nullptr), -1);
    EXPECT_EQ(sepa_iban_getBank(nullptr, &bank), -1);
    EXPECT_EQ(sepa_iban_getBIC(nullptr, text), -1);
    EXPECT_STREQ(text, "");
    EXPECT_EQ(sepa_iban_getBIC(own_iban, nullptr), -1);
    EXPECT_EQ(sepa_iban_convert(nullptr, nullptr, nullptr, text, &status), -1);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(sepa_iban_convert("DE", "532013000", "37040044", nullptr, nullptr), 1);
    EXPECT_EQ(sepa_bankid_check(nullptr, nullptr, &bank), 0);
    EXPECT_EQ(sepa_bankid_check("DE", nullptr, &bank), -2);
    EXPECT_EQ(sepa_bic_getBank(nullptr, &bank), -2);
    EXPECT_EQ(bank, nullptr);
    EXPECT_EQ(sepa_account_check(nullptr, 0), -1);
    EXPECT_EQ(sepa_account_check2(nullptr, nullptr, 0), -1);
    sepa_cleanup();
}

} // namespace
