#include "subcommands.h"

#include <velmora.h>

#include "bulk.h"

namespace velmora::tool {
namespace {

constexpr Column columns[] = {
    {"iban", Kind::account}, {"bic"}, {"status", Kind::number, true}, {"account"}, {"text"}};

const char* explain(bool fits, int result, int status) {
    if (!fits) return "not a bank code of 8 digits and an account of 1 to 10 digits";
    if (result == 0) return "the bank's IBAN rule is not known";
    if (result == -3) return "bank code unknown";
    switch (status) {
    case 0:
        return result == 1 ? nullptr : "no IBAN by the bank's rule";
    case 1:
        return "account replaced by the bank's rule";
    case 10:
        return "bank code unknown";
    case 12:
        return "the bank has no IBANs for this bank code";
    case 13:
        return "bank code replaced by its successor";
    case 15:
        return "bank code replaced by the bank's rule";
    case 50:
        return "the bank has no IBANs for this account";
    default:
        return "no IBAN by the bank's rule";
    }
}

bool answer(void* context, const Text* inputs, Output& out) {
    (void)context;
    char bank_code[16] = "", account[16] = "", iban[35] = "", bic[12] = "";
    int status = 0, account_result = 0, result = -1;
    const bool fits =
        all_digits(inputs[0]) && inputs[0].size() == 8 && all_digits(inputs[1]) && inputs[1].size() <= 10;
    if (fits) {
        std::memcpy(bank_code, inputs[0].data(), inputs[0].size());
        std::memcpy(account, inputs[1].data(), inputs[1].size());
        result = sepa_iban_convert2("DE", account, bank_code, iban, &status, &account_result);
        if (result == 1) sepa_iban_getBIC(iban, bic);
    }
    const bool built = result == 1;
    out.text_or_null(built ? iban : nullptr);
    out.text_or_null(bic);
    fits ? out.number(status) : out.null();
    if (fits && built)
        out.text(account_result == 0  ? Text("unchecked")
                 : account_result > 0 ? Text("valid")
                                      : Text("invalid"));
    else
        out.null();
    out.text_or_null(explain(fits, result, status));
    return built;
}

} // namespace

Exit run_convert(const Options& options) {
    const Task task{.echo = {},
                    .columns = columns,
                    .inputs = 2,
                    .operands = "BANK CODE and ACCOUNT",
                    .answer = answer,
                    .context = nullptr};
    return run_task(options, task, options.operands());
}

} // namespace velmora::tool
