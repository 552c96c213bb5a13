// text: names and remittance texts with the letters that banks take, line for line.
#include "bulk.h"
#include "rulebook_table.h"
#include "subcommands.h"

#include <velmora.h>

namespace velmora::tool {
namespace {

constexpr Column columns[] = {{"text"},
                              {"changed", Kind::number},
                              {"replaced", Kind::number},
                              {"cut", Kind::number},
                              {"first", Kind::number}};

class Converter {
public:
    explicit Converter(const Options& options)
        : mode_(options.given(Opt::basic) ? SEPA_TEXT_BASIC : SEPA_TEXT_KEEP),
          limit_(static_cast<std::size_t>(options.number(Opt::limit, 1, 0))),
          reports_(options.given(Opt::changes)) {}

    bool answer(Text line, Output& out);

private:
    std::uint32_t mode_;
    std::size_t limit_;
    bool reports_;
    Buffer text_, converted_;
};

bool Converter::answer(Text line, Output& out) {
    // What is no character gets the answer of one that has no equivalent.
    std::uint32_t invalid = 0;
    std::int64_t first_invalid = -1;
    text_.clear();
    for (Text rest = line; !rest.empty();) {
        const std::size_t length = rest.front() == '\0' ? 0 : utf8_length(rest);
        if (length > 0) {
            text_ << piece(rest, 0, length);
            rest.remove_prefix(length);
        } else {
            if (invalid++ == 0) first_invalid = static_cast<std::int64_t>(line.size() - rest.size());
            text_ << '.';
            rest.remove_prefix(1);
        }
    }
    sepa_text_report_t report{};
    converted_.reserve(2 * text_.size() + 16);
    int size =
        sepa_text_convert(text_.c_str(), mode_, limit_, converted_.data(), converted_.capacity(), &report);
    if (size >= 0 && static_cast<std::size_t>(size) >= converted_.capacity()) {
        converted_.reserve(static_cast<std::size_t>(size) + 1);
        size = sepa_text_convert(text_.c_str(), mode_, limit_, converted_.data(), converted_.capacity(),
                                 &report);
    }
    out.text({converted_.data(), size < 0 ? 0 : static_cast<std::size_t>(size)});
    if (reports_) {
        // One byte for one byte: places stay.
        const bool invalid_first = first_invalid >= 0 && (report.first < 0 || first_invalid < report.first);
        const std::int64_t first = invalid_first ? first_invalid : report.first;
        out.number(report.changed);
        out.number(report.replaced + invalid);
        out.number(report.cut);
        first >= 0 ? out.number(first) : out.null();
    }
    return invalid == 0;
}

} // namespace

Exit run_text(const Options& options) {
    const char* rulebook = options.given(Opt::rulebook) ? options.c_str(Opt::rulebook) : default_rulebook;
    if (sepa_init(SEPA_INIT_RULEBOOK, rulebook) != 1)
        fail_usage(sub::text, "no rulebook of that name (velmora rulebooks lists them):", rulebook);
    Converter converter(options);
    const Task task{
        .echo = {},
        .columns = {columns, options.given(Opt::changes) ? std::size(columns) : 1},
        .inputs = 1,
        .operands = "FILE",
        .answer = [](void* context, const Text* inputs,
                     Output& out) { return static_cast<Converter*>(context)->answer(inputs[0], out); },
        .context = &converter,
        .line_for_line = true};
    return run_task(options, task, options.operands());
}

} // namespace velmora::tool
