// report: what the bank says about files that were sent (pain.002).
#include "bulk.h"
#include "source.h"
#include "subcommands.h"

#include <velmora.h>

namespace velmora::tool {
namespace {

constexpr Column columns[] = {{"level"}, {"status", Kind::text, true}, {"reason"}, {"text"},
                              {"id"},    {"amount", Kind::number},     {"name"}};
constexpr Column joined_columns[] = {{"status", Kind::text, true}, {"reason"}, {"text"}};

bool is_refused(const sepa_report_item_t& item) {
    return std::strcmp(item.status, "RJCT") == 0;
}

// The bank's own words, or what the code means.
const char* text_of(const sepa_report_item_t& item) {
    if (item.text != nullptr && *item.text != '\0') return item.text;
    return item.reason == nullptr ? nullptr : sepa_reason_text(item.reason);
}

class Reports {
public:
    explicit Reports(const Options& options) : options_(options) {}
    ~Reports() {
        for (sepa_report_t* report : reports_)
            sepa_report_free(report);
    }
    Reports(const Reports&) = delete;
    Reports& operator=(const Reports&) = delete;

    Exit load();
    Exit write_items();
    Exit join();

private:
    const sepa_report_item_t* find(Text id);
    bool write_joined(Text id, Output& out);
    static bool wants_refused(void* reports, const Text* inputs);

    const Options& options_;
    List<sepa_report_t*> reports_;
    Buffer id_;
};

Exit Reports::load() {
    Exit end = Exit::good;
    for (const char* path : options_.operands()) {
        const File file(path);
        Buffer data;
        read_whole(file, std::uint64_t{2} << 30, data);
        sepa_report_t* loaded = sepa_report_new();
        if (loaded == nullptr) fail(Exit::memory, "out of memory");
        reports_.add(loaded);
        if (sepa_report_loadMemory(loaded, data.data(), data.size()) == 1) continue;
        report({.file = file.name(), .text = sepa_report_getError(loaded)});
        end = Exit::input;
    }
    return end;
}

Exit Reports::write_items() {
    constexpr Text levels[] = {"group", "block", "payment"};
    Output out(options_, wanted_form(options_), columns);
    out.header();
    bool refused = false;
    for (sepa_report_t* loaded : reports_) {
        for (const sepa_report_item_t* item = sepa_report_getItem(loaded); item != nullptr;
             item = item->next) {
            refused |= is_refused(*item);
            if (options_.given(Opt::only) && !is_refused(*item)) continue;
            out.text(levels[item->level]);
            out.text_or_null(item->status);
            out.text_or_null(item->reason);
            out.text_or_null(text_of(*item));
            out.text_or_null(item->level == SEPA_REPORT_PAYMENT ? item->endToEndId
                             : item->level == SEPA_REPORT_BLOCK ? item->blockId
                                                                : item->messageId);
            item->amount != 0 ? out.amount(hundred_thousandths(item->amount)) : out.null();
            out.text_or_null(item->name);
            out.end_row();
        }
    }
    out.finish();
    return refused ? Exit::refused : Exit::good;
}

// What the latest report that knows the payment says about it.
const sepa_report_item_t* Reports::find(Text id) {
    if (id.empty()) return nullptr;
    id_.clear();
    id_ << id;
    for (std::size_t i = reports_.size(); i-- > 0;) {
        const sepa_report_item_t* item = nullptr;
        if (sepa_report_match(reports_[i], id_.c_str(), &item) == 1) return item;
    }
    return nullptr;
}

bool Reports::write_joined(Text id, Output& out) {
    const sepa_report_item_t* item = find(id);
    out.text_or_null(item == nullptr ? nullptr : item->status);
    out.text_or_null(item == nullptr ? nullptr : item->reason);
    out.text_or_null(item == nullptr ? nullptr : text_of(*item));
    return item == nullptr || !is_refused(*item);
}

bool Reports::wants_refused(void* reports, const Text* inputs) {
    const sepa_report_item_t* item = static_cast<Reports*>(reports)->find(inputs[0]);
    return item != nullptr && is_refused(*item);
}

Exit Reports::join() {
    Buffer path;
    path << options_.value(Opt::join);
    path.c_str();
    char* paths[] = {path.data()};
    const Task task{
        .echo = {},
        .columns = joined_columns,
        .inputs = 1,
        .operands = "FILE",
        .answer = [](void* reports, const Text* inputs,
                     Output& out) { return static_cast<Reports*>(reports)->write_joined(inputs[0], out); },
        .context = this,
        .column = "id",
        .wants = options_.given(Opt::only) ? wants_refused : nullptr};
    return run_task(options_, task, paths);
}

} // namespace

Exit run_report(const Options& options) {
    if (options.operands().empty()) fail_usage(sub::report, "which files? - is standard input");
    Reports reports(options);
    const Exit end = reports.load();
    if (options.given(Opt::join)) return end == Exit::good ? reports.join() : end;
    return worse(end, reports.write_items());
}

} // namespace velmora::tool
