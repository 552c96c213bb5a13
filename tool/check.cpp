#include "subcommands.h"

#include <velmora.h>

#include "banks.h"
#include "bulk.h"
#include "rulebook_table.h"

namespace velmora::tool {
namespace {

enum class What : std::uint8_t { iban, bic, account, reference, creditor };

constexpr Column echo[] = {{"value", Kind::account}};
constexpr Column columns[] = {{"valid", Kind::boolean},
                              {"code", Kind::number, true},
                              {"position", Kind::number},
                              {"text"},
                              {"bank"},
                              {"bic"},
                              {"city"},
                              {"suggestions"}};

// Zero-terminated, as the library wants it. No valid value is that long.
struct Terminated {
    explicit Terminated(Text value) {
        const std::size_t size = value.size() < sizeof text ? value.size() : sizeof text - 1;
        if (size > 0) std::memcpy(text, value.data(), size);
        text[size] = '\0';
    }
    char text[256];
};

class Checker {
public:
    Checker(What what, bool suggests) : what_(what), suggests_(suggests) {}
    ~Checker() { sepa_free(message_); }
    Checker(const Checker&) = delete;
    Checker& operator=(const Checker&) = delete;

    bool answer(Text value, Output& out);

private:
    int explain(Text value, sepa_finding_t& finding);
    int explain_account(Text value, sepa_finding_t& finding);
    int explain_reference(Text value, sepa_finding_t& finding) const;
    int explain_creditor(Text value, sepa_finding_t& finding);
    const sepa_bank_t* find_bank(Text value);

    What what_;
    bool suggests_;
    sepa_t* message_ = nullptr;
    Banks banks_;
};

bool Checker::answer(Text value, Output& out) {
    sepa_finding_t finding;
    finding.code = SEPA_FINDING_OK;
    finding.position = -1;
    finding.text = "Valid";
    bool valid = explain(value, finding) == 1;
    // The library's texts end with a zero byte: what follows one was not looked at.
    const std::size_t zero = valid ? value.find('\0') : Text::npos;
    if (zero != Text::npos) {
        valid = false;
        finding.code = SEPA_FINDING_CHARACTER;
        finding.position = static_cast<std::int32_t>(zero);
        finding.text = "Invalid character (zero byte)";
    }
    if (out.wants_code_only()) {
        out.code(finding.code);
        return valid;
    }

    out.boolean(valid);
    out.number(finding.code);
    finding.position >= 0 ? out.number(finding.position) : out.null();
    out.text_or_null(finding.text);
    const sepa_bank_t* bank = valid ? find_bank(value) : nullptr;
    out.text_or_null(bank == nullptr ? nullptr : bank->name);
    out.text_or_null(bank == nullptr ? nullptr : bank->bic);
    out.text_or_null(bank == nullptr ? nullptr : bank->city);
    if (suggests_) {
        char candidates[128] = "";
        if (!valid && what_ == What::iban)
            sepa_iban_suggest(Terminated(value).text, candidates, sizeof candidates);
        out.text_or_null(candidates);
    }
    return valid;
}

int Checker::explain(Text value, sepa_finding_t& finding) {
    const Terminated text(value);
    switch (what_) {
    case What::iban:
        return sepa_iban_explain(text.text, &finding);
    case What::bic:
        return sepa_bic_explain(text.text, &finding);
    case What::account:
        return explain_account(value, finding);
    case What::reference:
        return explain_reference(value, finding);
    case What::creditor:
        return explain_creditor(value, finding);
    }
    return -1;
}

int Checker::explain_account(Text value, sepa_finding_t& finding) {
    const std::size_t slash = value.find('/');
    if (slash == Text::npos) {
        finding.code = value.empty() ? SEPA_FINDING_EMPTY : SEPA_FINDING_CHARACTER;
        finding.text = value.empty() ? "Empty" : "An account is given as BANK CODE/ACCOUNT";
        return -1;
    }
    const Terminated bank_code(piece(value, 0, slash)), account(piece(value, slash + 1));
    const int result = sepa_account_explain(account.text, bank_code.text, &finding);
    // In the value, not in the account.
    if (finding.position >= 0) finding.position += static_cast<std::int32_t>(slash) + 1;
    return result;
}

// ISO 11649: "RF", two check digits, one to 21 letters or digits.
int Checker::explain_reference(Text value, sepa_finding_t& finding) const {
    const Terminated text(value);
    const auto refuse = [&finding](int code, std::int64_t position, const char* why) {
        finding.code = code;
        finding.position = static_cast<std::int32_t>(position);
        finding.text = why;
        return -1;
    };
    if (sepa_reference_check(text.text) == 1) return 1;
    if (value.empty()) return refuse(SEPA_FINDING_EMPTY, -1, "Empty");
    for (std::size_t i = 0; i < value.size(); ++i) {
        const bool fits = i < 2   ? value[i] == "RF"[i]
                          : i < 4 ? is_digit(value[i])
                                  : is_digit(value[i]) || is_letter(value[i]);
        if (!fits)
            return refuse(SEPA_FINDING_CHARACTER, static_cast<std::int64_t>(i), "Invalid creditor reference");
    }
    if (value.size() < 5) return refuse(SEPA_FINDING_TOO_SHORT, -1, "Invalid creditor reference");
    if (value.size() > 25) return refuse(SEPA_FINDING_TOO_LONG, 25, "Invalid creditor reference");
    return refuse(SEPA_FINDING_CHECK_DIGITS, -1, "Invalid creditor reference checksum");
}

// The setter of a message is the check that there is.
int Checker::explain_creditor(Text value, sepa_finding_t& finding) {
    if (value.empty()) {
        finding.code = SEPA_FINDING_EMPTY;
        finding.text = "Empty";
        return -1;
    }
    sepa_free(message_);
    message_ = sepa_new(SEPA_MSGTYPE_DDI);
    if (message_ == nullptr || sepa_setRulebook(message_, default_rulebook) != 1)
        fail(Exit::memory, "out of memory");
    if (sepa_setCreditorIdentifier(message_, Terminated(value).text) == 1) return 1;
    finding.text = sepa_getError(message_);
    const Text why = finding.text;
    finding.code = why.find("short") != Text::npos      ? SEPA_FINDING_TOO_SHORT
                   : why.find("long") != Text::npos     ? SEPA_FINDING_TOO_LONG
                   : why.find("checksum") != Text::npos ? SEPA_FINDING_CHECK_DIGITS
                                                        : SEPA_FINDING_CHARACTER;
    return -1;
}

const sepa_bank_t* Checker::find_bank(Text value) {
    switch (what_) {
    case What::iban:
        return banks_.by_iban(value);
    case What::bic:
        return banks_.by_bic(value);
    case What::account:
        return banks_.by_code("DE", piece(value, 0, value.find('/')));
    default:
        return nullptr;
    }
}

} // namespace

Exit run_check(const Options& options) {
    std::span<char*> operands = options.operands();
    constexpr Text names[] = {"iban", "bic", "account", "reference", "creditor"};
    std::size_t what = 0;
    while (what < std::size(names) && (operands.empty() || names[what] != operands[0]))
        ++what;
    if (what == std::size(names))
        fail_usage(sub::check,
                   operands.empty() ? Text("what to check? iban, bic, account, reference or creditor")
                                    : Text("iban, bic, account, reference or creditor can be checked, not"),
                   operands.empty() ? Text() : operands[0]);
    operands = {operands.data() + 1, operands.size() - 1};

    const bool suggests = options.given(Opt::suggest);
    Checker checker(static_cast<What>(what), suggests);
    const Task task{
        .echo = echo,
        .columns = {columns, std::size(columns) - (suggests ? 0 : 1)},
        .inputs = 1,
        .operands = "VALUE",
        .answer = [](void* context, const Text* inputs,
                     Output& out) { return static_cast<Checker*>(context)->answer(inputs[0], out); },
        .context = &checker};
    return run_task(options, task, operands);
}

} // namespace velmora::tool
