// pay and collect: a table of payments becomes files for the bank.
#include "interrupt.h"
#include "output.h"
#include "payment_rows.h"
#include "payment_warnings.h"
#include "subcommands.h"
#include "written_file.h"

#include <cstdlib>
#include <sys/stat.h>
#include <unistd.h>
#include <velmora.h>

namespace velmora::tool {
namespace {

constexpr Column columns[] = {
    {"files", Kind::number}, {"blocks", Kind::number}, {"payments", Kind::number}, {"sum", Kind::number}};

// One file to be: a message, and the number that its name and its identification get.
struct Message {
    sepa_t* message;
    std::uint64_t payments;
};

class Payments {
public:
    explicit Payments(const Options& options);
    ~Payments();
    Payments(const Payments&) = delete;
    Payments& operator=(const Payments&) = delete;

    Exit run();

private:
    sepa_t* make_message(std::size_t number);
    void set(bool done, sepa_t* message, Opt option) const;
    bool add(const Payment& payment);
    Text find_culprit(const Payment& payment);
    Exit read_rows();
    Exit write(Output& out);
    void name_file(Buffer& out, std::size_t number) const;
    Exit write_documents();

    const Options& options_;
    const RulebookRow* rulebook_;
    const char* path_ = nullptr;
    Text name_; // of the file in messages
    PaymentRows* rows_ = nullptr;
    PaymentWarnings warnings_;
    sepa_t* probe_ = nullptr; // payments are tried on it
    List<Message> messages_;
    std::uint64_t most_payments_, refused_ = 0;
    Buffer bic_;
};

Payments::Payments(const Options& options)
    : options_(options), rulebook_(find_rulebook(options.given(Opt::rulebook) ? options.value(Opt::rulebook)
                                                                              : Text(default_rulebook))),
      most_payments_(static_cast<std::uint64_t>(options.number(Opt::max_payments, 1, 1'000'000'000))) {
    const Subcommand subcommand = options.subcommand();
    if (rulebook_ == nullptr)
        fail_usage(subcommand,
                   "no rulebook of that name (velmora rulebooks lists them):", options.value(Opt::rulebook));
    if (options.operands().size() != 1)
        fail_usage(subcommand, options.operands().empty() ? Text("which file? - is standard input")
                                                          : Text("one file at a time"));
    path_ = options.operands()[0];
    name_ = Text(path_) == "-" ? Text("standard input") : Text(path_);
    if (!options.given(Opt::name)) fail_usage(subcommand, "--name is missing: who holds the own account");
    if (!options.given(Opt::iban)) fail_usage(subcommand, "--iban is missing: the own account");
    if (subcommand == sub::collect && !options.given(Opt::creditor_id))
        fail_usage(subcommand, "--creditor-id is missing: the own creditor identifier");
    if (options.given(Opt::strict) && options.given(Opt::skip_invalid))
        fail_usage(subcommand, "--strict and --skip-invalid exclude each other");
    struct stat in {
    }, written{};
    if (options.given(Opt::out) && stat(path_, &in) == 0 && S_ISREG(in.st_mode) &&
        stat(options.c_str(Opt::out), &written) == 0 && in.st_dev == written.st_dev &&
        in.st_ino == written.st_ino)
        fail_usage(subcommand, "--out would overwrite the payments:", path_);
    sepa_init(SEPA_INIT_RULEBOOK, rulebook_->name);
}

Payments::~Payments() {
    for (const Message& message : messages_)
        sepa_free(message.message);
    sepa_free(probe_);
}

void Payments::set(bool done, sepa_t* message, Opt option) const {
    if (done) return;
    Text why = sepa_getError(message) == nullptr ? "out of memory" : sepa_getError(message);
    // Some texts of the library name its function first.
    if (why.starts_with("sepa_") && why.find(": ") != Text::npos) why.remove_prefix(why.find(": ") + 2);
    Buffer what;
    what << "--" << option_table()[static_cast<std::size_t>(option)].name << ": " << why;
    fail_usage(options_.subcommand(), what.view());
}

// A message with everything that the options say. From the second one on the identification gets a number.
sepa_t* Payments::make_message(std::size_t number) {
    const bool pays = options_.subcommand() == sub::pay;
    sepa_t* message = sepa_new(pays ? SEPA_MSGTYPE_CTI : SEPA_MSGTYPE_DDI);
    if (message == nullptr) fail(Exit::memory, "out of memory");
    set(sepa_setRulebook(message, rulebook_->name) == 1, message, Opt::rulebook);
    set(sepa_setName(message, options_.c_str(Opt::name)) == 1, message, Opt::name);
    char iban[64];
    const bool compact = sepa_iban_normalise(options_.c_str(Opt::iban), iban, sizeof iban) == 1;
    const char* own_iban = compact ? iban : options_.c_str(Opt::iban);
    set(sepa_setIBAN(message, own_iban) == 1, message, Opt::iban);
    char bic[12] = "";
    if (options_.given(Opt::bic))
        set(sepa_setBIC(message, options_.c_str(Opt::bic)) == 1, message, Opt::bic);
    else if (sepa_iban_getBIC(own_iban, bic) == 1 && bic[0] != '\0')
        set(sepa_setBIC(message, bic) == 1, message, Opt::bic);
    if (options_.given(Opt::date))
        set(sepa_setDate(message, options_.c_str(Opt::date)) == 1, message, Opt::date);
    if (options_.given(Opt::id)) {
        Buffer id;
        id << options_.value(Opt::id);
        if (number > 1) id << '-' << number;
        set(sepa_setMessageId(message, id.c_str()) == 1, message, Opt::id);
    }
    if (options_.given(Opt::single_booking))
        set(sepa_setBatchBooking(message, 0) == 1, message, Opt::single_booking);
    if (options_.given(Opt::instant)) set(sepa_set(message, "instant", "1") == 1, message, Opt::instant);
    if (options_.given(Opt::category))
        set(sepa_set(message, "category", options_.c_str(Opt::category)) == 1, message, Opt::category);
    if (pays) return message;
    set(sepa_setCreditorIdentifier(message, options_.c_str(Opt::creditor_id)) == 1, message,
        Opt::creditor_id);
    if (options_.choice(Opt::type) == 1)
        set(sepa_setDDType(message, SEPA_DDTYPE_B2B) == 1, message, Opt::type);
    return message;
}

// What the library says when a key is not there, or has one number too many.
constexpr struct {
    Text text, key;
} missing_texts[] = {{"IBAN missing", "iban"},
                     {"BIC missing", "bic"},
                     {"Amount missing", "amount"},
                     {"Name missing", "name"},
                     {"Sequence type missing", "seq"},
                     {"Mandate reference missing", "mref"},
                     {"Mandate signature date missing", "mdate"},
                     {"Address needs town and country", "addrTown"},
                     {"Amount too large", "amount"}};

Text missing_key(Text why) {
    for (const auto& missing : missing_texts)
        if (missing.text == why) return missing.key;
    return {};
}

// The key that is refused when it stands alone, or else the one without which the payment would be refused
// for another reason than that it is missing, or not at all; empty when there is none.
Text Payments::find_culprit(const Payment& payment) {
    Buffer why;
    why << Text(sepa_getError(probe_));
    const Text missing = missing_key(why.view());
    if (missing == "addrTown" && !payment.value(missing).empty()) return "addrCC";
    if (!missing.empty()) return missing;
    for (std::size_t i = 0; i + 1 < payment.pairs.size(); i += 2) {
        const char* const alone[] = {payment.pairs[i], payment.pairs[i + 1], nullptr};
        if (sepa_test(probe_, alone) != 1 && why.view() == sepa_getError(probe_)) return payment.pairs[i];
    }
    for (std::size_t left_out = 0; left_out + 1 < payment.pairs.size(); left_out += 2) {
        List<const char*> others;
        for (std::size_t i = 0; i + 1 < payment.pairs.size(); i += 2) {
            if (i == left_out) continue;
            others.add(payment.pairs[i]);
            others.add(payment.pairs[i + 1]);
        }
        others.add(nullptr);
        if (sepa_test(probe_, others.data()) == 1 ||
            (why.view() != sepa_getError(probe_) &&
             missing_key(sepa_getError(probe_)) != payment.pairs[left_out]))
            return payment.pairs[left_out];
    }
    return {};
}

bool Payments::add(const Payment& payment) {
    if (probe_ == nullptr) probe_ = make_message(1);
    if (sepa_test(probe_, payment.pairs.data()) != 1) {
        Buffer why;
        why << Text(sepa_getError(probe_));
        const Text key = find_culprit(payment);
        rows_->refuse(payment, key, why.view());
        return false;
    }
    if (messages_.empty() || messages_[messages_.size() - 1].payments == most_payments_)
        messages_.add({make_message(messages_.size() + 1), 0});
    Message& last = messages_[messages_.size() - 1];
    if (sepa_add(last.message, payment.pairs.data()) != 1) {
        rows_->refuse(payment, {}, sepa_getError(last.message));
        return false;
    }
    ++last.payments;
    warnings_.add(payment);
    return true;
}

Exit Payments::read_rows() {
    const File file(path_);
    Progress progress(options_);
    progress.add_total(file.size());
    const Shape shape = wanted_shape(options_, path_, Shape::csv);
    if (shape == Shape::lines) fail_usage(options_.subcommand(), "payments have columns: --input csv or tsv");
    Decoder decoder(options_.subcommand(), options_.c_str(Opt::encoding), false);
    Source source(file, decoder, &progress);
    Reader reader(source, shape, false);
    PaymentRows rows(options_, *rulebook_, reader, file.name());
    rows_ = &rows;
    if (!rows.read_header()) return Exit::input;
    Payment payment;
    for (;;) {
        switch (rows.next(payment)) {
        case PaymentRows::Result::payment:
            refused_ += !add(payment);
            break;
        case PaymentRows::Result::refused:
            ++refused_;
            break;
        case PaymentRows::Result::damaged:
            return Exit::input;
        case PaymentRows::Result::end:
            return Exit::good;
        }
        progress.add_rows(1);
    }
}

// FILE.xml, FILE-2.xml, FILE-3.xml
void Payments::name_file(Buffer& out, std::size_t number) const {
    const Text path = options_.value(Opt::out);
    out.clear();
    const std::size_t slash = path.rfind('/'), point = path.rfind('.');
    const bool has_ending = point != Text::npos && point > 0 && (slash == Text::npos || point > slash + 1);
    const std::size_t stem = has_ending ? point : path.size();
    out << piece(path, 0, stem);
    if (number > 1) out << '-' << number;
    out << piece(path, stem);
}

Exit Payments::write_documents() {
    const bool to_stdout = !options_.given(Opt::out) || options_.value(Opt::out) == "-";
    if (to_stdout && messages_.size() > 1)
        fail_usage(options_.subcommand(), "more than one file needs a name: --out FILE");
    WrittenFiles documents;
    for (std::size_t i = 0; i < messages_.size(); ++i) {
        char* text = sepa_toXML(messages_[i].message);
        if (text == nullptr) {
            const char* why = sepa_getError(messages_[i].message);
            report({.file = name_, .text = why == nullptr ? Text("out of memory") : Text(why)});
            return Exit::refused;
        }
        const Text document = text;
        Buffer name;
        name_file(name, i + 1);
        to_stdout ? write_all(STDOUT_FILENO, document) : documents.prepare(name.view(), document);
        wipe_and_free(text, document.size());
    }
    documents.publish();
    return Exit::good;
}

Exit Payments::write(Output& out) {
    std::int64_t sum = 0;
    std::uint64_t blocks = 0, payments = 0;
    for (const Message& message : messages_) {
        sepa_totals_t totals{};
        if (sepa_getTotals(message.message, &totals) != 1) fail(Exit::memory, "out of memory");
        sum += totals.cents;
        blocks += totals.blocks;
        payments += totals.payments;
    }
    const bool has_summary =
        options_.given(Opt::dry_run) || (options_.given(Opt::out) && options_.value(Opt::out) != "-");
    if (!options_.given(Opt::dry_run)) {
        const Exit end = write_documents();
        if (end != Exit::good) return end;
    }
    warnings_.tell(name_, options_, payments);
    if (!has_summary) return Exit::good;
    out.header();
    out.number(static_cast<std::int64_t>(messages_.size()));
    out.number(static_cast<std::int64_t>(blocks));
    out.number(static_cast<std::int64_t>(payments));
    out.cents(sum);
    out.end_row();
    out.finish();
    return Exit::good;
}

Exit Payments::run() {
    Output out(options_, wanted_form(options_),
               columns); // wrong options end the tool before anything is written
    const Exit end = read_rows();
    if (end != Exit::good) return end;
    if (is_interrupted()) {
        report({.text = "interrupted; nothing is written", .level = Level::note});
        end_if_interrupted();
    }
    if (messages_.empty() && refused_ == 0) {
        report({.file = name_, .text = "no payments"});
        return Exit::refused;
    }
    const bool writes = refused_ == 0 || (options_.given(Opt::skip_invalid) && !messages_.empty());
    if (refused_ > 0) {
        Buffer summary;
        summary << refused_ << (refused_ == 1 ? " row is refused" : " rows are refused")
                << (writes ? "; the others are taken" : "; nothing is written");
        report({.file = name_, .text = summary.view(), .level = Level::note});
    }
    if (!writes) return Exit::refused;
    return worse(write(out), refused_ > 0 ? Exit::refused : Exit::good);
}

} // namespace

Exit run_payments(const Options& options) {
    return Payments(options).run();
}

} // namespace velmora::tool
