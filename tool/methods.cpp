#include "subcommands.h"

#include <cstdlib>
#include <velmora.h>

#include "bulk.h"

namespace velmora::tool {
namespace {

constexpr Column echo[] = {{"method"}};
constexpr Column answer_columns[] = {{"result", Kind::number, true}};
constexpr Column list_columns[] = {{"method", Kind::text, true}, {"checked"}, {"banks", Kind::number}};

// The two characters as a hexadecimal number, or -1.
int method_number(Text method) {
    if (method.size() != 2) return -1;
    int number = 0;
    for (const char c : method) {
        const char digit = to_upper(c);
        if (!is_digit(digit) && (digit < 'A' || digit > 'F')) return -1;
        number = number * 16 + (is_digit(digit) ? digit - '0' : digit - 'A' + 10);
    }
    return number;
}

bool answer(void* context, const Text* inputs, Output& out) {
    (void)context;
    char account[16] = "";
    const int method = method_number(inputs[0]);
    int result = -1;
    if (method >= 0 && all_digits(inputs[1]) && inputs[1].size() <= 10) {
        std::memcpy(account, inputs[1].data(), inputs[1].size());
        result = sepa_account_check(account, static_cast<std::uint8_t>(method));
    }
    out.number(result);
    return result >= 0;
}

// A method that says nothing about any of these accounts has no check digit.
const char* what_it_checks(std::uint8_t method) {
    char account[11] = "";
    for (std::uint32_t i = 1; i <= 2000; ++i) {
        std::uint32_t number = i * 2654435761U;
        const std::size_t digits = 5 + i % 6;
        for (std::size_t j = 0; j < digits; ++j, number = number / 10 * 7 + i)
            account[j] = static_cast<char>('0' + number % 10);
        account[digits] = '\0';
        if (sepa_account_check(account, method) != 0) return "account";
        if (sepa_account_check2(account, "80053722", method) != 0) return "account and bank code";
    }
    return "no check digit";
}

Exit list(const Options& options) {
    std::uint32_t banks[256] = {}, index = 0;
    char code[12] = "", method[3] = "";
    for (int found; (found = sepa_bank_next("DE", &index, code, nullptr)) != 0;) {
        if (found < 0) fail(Exit::memory, "out of memory");
        int rule = 0;
        if (sepa_bankid_method(code, method, &rule) == 1) ++banks[method_number(method)];
    }
    Output out(options, wanted_form(options), list_columns);
    out.header();
    for (int number = 0; number < 256; ++number) {
        const char digits[] = {"0123456789ABCDEF"[number >> 4], "0123456789ABCDEF"[number & 15]};
        const Text checked = what_it_checks(static_cast<std::uint8_t>(number));
        if (banks[number] == 0 && checked == "no check digit") continue;
        out.text({digits, 2});
        out.text(checked);
        out.number(banks[number]);
        out.end_row();
    }
    out.finish();
    return Exit::good;
}

} // namespace

Exit run_methods(const Options& options) {
    if (options.operands().empty() && !options.given(Opt::filter) && !options.given(Opt::input))
        return list(options);
    const Task task{.echo = echo,
                    .columns = answer_columns,
                    .inputs = 2,
                    .operands = "METHOD and ACCOUNT",
                    .answer = answer,
                    .context = nullptr};
    return run_task(options, task, options.operands());
}

} // namespace velmora::tool
