#include "subcommands.h"

#include <cstdlib>
#include <velmora.h>

#include "banks.h"
#include "bulk.h"

namespace velmora::tool {
namespace {

constexpr Column columns[] = {{"country"},
                              {"code", Kind::text, true},
                              {"bic"},
                              {"name"},
                              {"postcode"},
                              {"city"},
                              {"sct", Kind::boolean},
                              {"sdd", Kind::boolean},
                              {"cor1", Kind::boolean},
                              {"b2b", Kind::boolean}};

class Lookup {
public:
    explicit Lookup(const Options& options)
        : country_(options.given(Opt::country) ? options.value(Opt::country) : Text("DE")) {}

    bool answer(Text value, Output& out);
    void write(Text code, const sepa_bank_t& bank, Output& out);

private:
    Text country_;
    Banks banks_, reachable_;
};

bool is_iban(Text value) {
    return value.size() >= 15 && is_letter(value[0]) && is_letter(value[1]) && is_digit(value[2]) &&
           is_digit(value[3]);
}

// The Swiss list names no countries, but BICs do.
Text country_of(const sepa_bank_t& bank) {
    if (bank.country != nullptr && *bank.country != '\0') return bank.country;
    return bank.bic == nullptr ? Text() : piece(bank.bic, 4, 2);
}

void Lookup::write(Text code, const sepa_bank_t& bank, Output& out) {
    const Text country = country_of(bank);
    country.empty() ? out.null() : out.text(country);
    code.empty() ? out.null() : out.text(code);
    out.text_or_null(bank.bic);
    out.text_or_null(bank.name);
    out.text_or_null(bank.postcode);
    out.text_or_null(bank.city);
    const sepa_bank_t* reachable =
        bank.bic == nullptr || *bank.bic == '\0' ? nullptr : reachable_.by_bic(bank.bic);
    for (const int scheme : {SEPA_SCL_SCT, SEPA_SCL_SDD, SEPA_SCL_COR1, SEPA_SCL_B2B})
        reachable == nullptr ? out.null() : out.boolean((reachable->flags & scheme) != 0);
}

bool Lookup::answer(Text value, Output& out) {
    const sepa_bank_t* bank = nullptr;
    Text code;
    if (is_iban(value)) {
        char iban[36] = "";
        if (value.size() < sizeof iban) std::memcpy(iban, value.data(), value.size());
        code = bank_code_of(value);
        bank = sepa_iban_check(iban) == 1 ? banks_.by_iban(value) : nullptr;
        if (bank == nullptr) code = {};
    } else if (!value.empty() && is_letter(value.front())) {
        bank = banks_.by_bic(value);
    } else {
        code = value;
        bank = banks_.by_code(country_, code);
    }
    if (bank != nullptr) {
        write(code, *bank, out);
        return true;
    }
    for (std::size_t i = 0; i < std::size(columns); ++i)
        out.null();
    return false;
}

// Letters of ISO 8859-1 in UTF-8, too: names are in capitals here and in small letters there.
bool is_same_letter(Text a, Text b, std::size_t i) {
    const auto upper = [i](Text text) {
        const auto c = static_cast<unsigned char>(text[i]);
        const bool is_small = i > 0 && text[i - 1] == '\xc3' && c >= 0xa0 && c <= 0xbe && c != 0xb7;
        return is_small ? static_cast<char>(c - 0x20) : to_upper(text[i]);
    };
    return upper(a) == upper(b);
}

bool contains_ignoring_case(const char* text, Text wanted) {
    if (text == nullptr) return false;
    for (Text rest = text; rest.size() >= wanted.size(); rest.remove_prefix(1)) {
        std::size_t same = 0;
        while (same < wanted.size() && is_same_letter(rest, wanted, same))
            ++same;
        if (same == wanted.size()) return true;
    }
    return false;
}

Exit search(const Options& options, Lookup& lookup) {
    if (!options.operands().empty())
        fail_usage(sub::bank, "--search needs no operand like", options.operands()[0]);
    Output out(options, wanted_form(options), columns);
    out.header();
    std::uint32_t index = 0;
    bool any = false;
    char code[12] = "";
    sepa_bank_t* bank = nullptr;
    for (int found; (found = sepa_bank_next(options.c_str(Opt::country), &index, code, &bank)) != 0;
         std::free(bank)) {
        if (found < 0) fail(Exit::memory, "out of memory");
        const Text wanted = options.value(Opt::search);
        if (!contains_ignoring_case(bank->name, wanted) && !contains_ignoring_case(bank->city, wanted))
            continue;
        // Liechtenstein's banks are in the Swiss list.
        if (options.value(Opt::country) == "LI" && country_of(*bank) != "LI") continue;
        // Behind the bank codes come the BICs, which the banks have already.
        lookup.write(is_digit(code[0]) ? Text(code) : Text(), *bank, out);
        out.end_row();
        any = true;
    }
    out.finish();
    return any ? Exit::good : Exit::refused;
}

} // namespace

Exit run_bank(const Options& options) {
    Lookup lookup(options);
    if (options.given(Opt::search)) return search(options, lookup);
    const Task task{
        .echo = {},
        .columns = columns,
        .inputs = 1,
        .operands = "CODE, BIC or IBAN",
        .answer = [](void* context, const Text* inputs,
                     Output& out) { return static_cast<Lookup*>(context)->answer(inputs[0], out); },
        .context = &lookup};
    return run_task(options, task, options.operands());
}

} // namespace velmora::tool
