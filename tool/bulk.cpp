#include "bulk.h"

#include <optional>
#include <unistd.h>

#include "interrupt.h"
#include "jobs.h"

namespace velmora::tool {
namespace {

// A value longer than this is answered for its beginning: nothing that long is valid.
constexpr std::size_t longest_value = 64 << 10;

// Two values of a line stand apart by a tab, a slash or a blank.
void split_line(Text line, Text* inputs) {
    const std::size_t tab = line.find('\t'), slash = line.find('/');
    const char separator = tab != Text::npos ? '\t' : slash != Text::npos ? '/' : ' ';
    Text rest = trim(line);
    inputs[0] = trim(take_until(rest, separator));
    inputs[1] = trim(rest);
}

class Bulk : public Worker {
public:
    Bulk(const Options& options, const Task& task)
        : options_(options), task_(task), is_filter_(options.given(Opt::filter) || task.line_for_line),
          by_column_(task.column != nullptr || options.given(Opt::column) || options.given(Opt::columns)),
          progress_(options) {}

    Exit answer_operands(std::span<char*> operands);
    Exit answer_files(std::span<char*> paths);

    void prepare(Reader& reader) final;
    void answer(Reader& reader, std::uint64_t size, Tally& tally) final;
    Buffer& answers() final { return output_->raw(); }
    List<Complaint>& complaints() final { return complaints_; }

private:
    void answer_file(const char* path, Tally& tally);
    void check_form(Form form) const;
    [[nodiscard]] Text wanted_columns() const;
    void begin_lines();
    void begin_table(const Row& first, Text file);
    void find_columns(const Row& header, Text file);
    Column named_apart(Column column);
    void answer_row(Tally& tally);

    const Options& options_;
    const Task& task_;
    const bool is_filter_, by_column_;
    bool has_names_ = false, hands_through_ = false;
    Shape shape_ = Shape::lines;
    char delimiter_ = '\0';
    Progress progress_;
    std::size_t indexes_[most_inputs] = {};
    std::size_t width_ = 0;       // columns of the input
    Buffer header_, other_names_; // texts of the columns' names
    List<Column> columns_;
    std::optional<Output> output_; // once the columns are known
    List<Complaint> complaints_;
    Row row_;
};

Exit Bulk::answer_operands(std::span<char*> operands) {
    Tally tally;
    begin_lines();
    if (operands.size() % task_.inputs != 0) {
        Buffer what;
        what << "the operands are " << task_.operands << ", and each needs both";
        fail_usage(options_.subcommand(), what.view());
    }
    for (std::size_t i = 0; i < operands.size(); i += task_.inputs) {
        row_.fields.clear();
        for (std::size_t j = 0; j < task_.inputs; ++j)
            row_.fields.add(operands[i + j]);
        answer_row(tally);
    }
    output_->finish();
    return tally.bad > 0 ? Exit::refused : Exit::good;
}

void Bulk::check_form(Form form) const {
    if (!is_filter_ || (form != Form::table && form != Form::json)) return;
    fail_usage(options_.subcommand(), "a filter answers line for line: tsv, csv, jsonl or code");
}

Text Bulk::wanted_columns() const {
    if (task_.column != nullptr) return task_.column;
    return options_.value(options_.given(Opt::columns) ? Opt::columns : Opt::column);
}

void Bulk::begin_lines() {
    for (const Column& column : task_.echo)
        columns_.add(column);
    for (const Column& column : task_.columns)
        columns_.add(column);
    const Form form = task_.line_for_line ? Form::tsv : wanted_form(options_);
    check_form(form);
    output_.emplace(options_, form, columns_);
    if (is_filter_) output_->leave_out_header();
    output_->header();
}

// A column of the answer whose name the input has already.
Column Bulk::named_apart(Column column) {
    for (std::size_t i = 0; i < width_; ++i) {
        if (!equals_ignoring_case(columns_[i].name, column.name)) continue;
        const std::size_t start = other_names_.size();
        other_names_ << "check_" << column.name;
        column.name = piece(other_names_.view(), start);
    }
    return column;
}

void Bulk::find_columns(const Row& header, Text file) {
    Text wanted = wanted_columns();
    for (std::size_t i = 0; i < task_.inputs; ++i) {
        const Text name = trim(take_until(wanted, ','));
        const long number = small_number(name);
        std::size_t found = header.fields.size();
        if (number > 0 && !has_names_) {
            found = static_cast<std::size_t>(number) - 1;
        } else {
            for (std::size_t j = header.fields.size(); j-- > 0;)
                if (equals_ignoring_case(trim(header.fields[j]), name)) found = j;
            if (found == header.fields.size()) {
                Buffer what;
                what << "no column '" << name << "' in " << file << "; there are:";
                for (const Text field : header.fields)
                    what << ' ' << field;
                fail_usage(options_.subcommand(), what.view());
            }
        }
        indexes_[i] = found;
    }
}

// An empty file has no first row; that is no fault where no header is needed.
void Bulk::begin_table(const Row& first, Text file) {
    Text rest = wanted_columns();
    has_names_ = small_number(trim(take_until(rest, ','))) <= 0;
    const bool empty = first.fields.empty();
    if (empty && has_names_ && !is_filter_) fail(Exit::input, file, "empty: a header line is needed");
    if (!empty || !has_names_) find_columns(first, file);
    if (output_.has_value()) {
        if (first.fields.size() == width_) return;
        fail(Exit::input, file, "other columns than in the file before");
    }
    width_ = first.fields.size();

    other_names_.reserve(1024); // it must not move
    header_.reserve(first.raw.size() + 8 * width_);
    for (std::size_t i = 0; i < width_; ++i) {
        const std::size_t start = header_.size();
        has_names_ ? header_ << first.fields[i] : header_ << i + 1;
        columns_.add({piece(header_.view(), start), Kind::text, false});
    }
    const Form input_form = shape_ == Shape::csv ? Form::csv : Form::tsv;
    const Form form = options_.given(Opt::output) ? wanted_form(options_) : input_form;
    check_form(form);
    hands_through_ = form == input_form && !(options_.given(Opt::mask));
    for (std::size_t i = 0; i < task_.inputs; ++i)
        if (indexes_[i] < width_) columns_[indexes_[i]].kind = Kind::account;
    List<Column> appended;
    for (const Column& column : task_.columns)
        appended.add(named_apart(column));
    if (hands_through_) columns_.clear();
    for (const Column& column : appended)
        columns_.add(column);
    output_.emplace(options_, form, columns_);
    if (form == Form::csv) output_->set_delimiter(delimiter_);
    if (!hands_through_) {
        output_->header();
        return;
    }
    output_->begin_behind_raw();
    if (empty || !has_names_ || options_.given(Opt::no_header)) return;
    output_->raw() << first.raw;
    for (const Column& column : columns_)
        output_->raw() << delimiter_ << column.name;
    output_->raw() << '\n';
}

void Bulk::answer_row(Tally& tally) {
    Text inputs[most_inputs];
    if (by_column_) {
        for (std::size_t i = 0; i < task_.inputs; ++i)
            if (indexes_[i] < row_.fields.size()) inputs[i] = row_.fields[indexes_[i]];
    } else if (row_.fields.size() >= task_.inputs) {
        for (std::size_t i = 0; i < task_.inputs; ++i)
            inputs[i] = row_.fields[i];
    } else {
        split_line(row_.fields[0], inputs);
    }

    ++tally.rows;
    if (task_.wants != nullptr && !task_.wants(task_.context, inputs)) return;
    if (hands_through_) {
        output_->raw() << row_.raw;
        for (std::size_t i = row_.fields.size(); i < width_; ++i)
            output_->raw() << delimiter_;
    } else if (by_column_) {
        for (std::size_t i = 0; i < width_; ++i)
            i < row_.fields.size() ? output_->text(row_.fields[i]) : output_->null();
    } else {
        for (std::size_t i = 0; i < task_.echo.size(); ++i)
            output_->text(inputs[i]);
    }
    if (!task_.answer(task_.context, inputs, *output_)) ++tally.bad;
    output_->end_row();
}

void Bulk::prepare(Reader& reader) {
    if (shape_ == Shape::lines && !task_.line_for_line) reader.set_longest(longest_value, true);
    if (delimiter_ != '\0') reader.set_delimiter(delimiter_);
}

void Bulk::answer(Reader& reader, std::uint64_t size, Tally& tally) {
    while (reader.offset() < size) {
        const Reader::Result result = reader.next(row_);
        if (result == Reader::Result::end) return;
        if (result == Reader::Result::damaged) {
            complaints_.add({reader.lines(), reader.error()});
            tally.end = Exit::input;
            return;
        }
        if (shape_ == Shape::csv && row_.raw.empty()) continue;
        if (by_column_ && row_.fields.size() > width_ && !is_filter_) {
            complaints_.add({row_.line, "more fields than the header has"});
            tally.end = worse(tally.end, Exit::refused);
        }
        answer_row(tally);
        if ((tally.rows & 0xFFF) == 0) progress_.set_rows(tally.rows);
    }
}

void Bulk::answer_file(const char* path, Tally& tally) {
    const File file(path);
    progress_.add_total(file.size());
    shape_ = task_.line_for_line ? Shape::lines
                                 : wanted_shape(options_, path,
                                                task_.column != nullptr ? Shape::csv
                                                : by_column_            ? Shape::tsv
                                                                        : Shape::lines);
    if (by_column_ && shape_ == Shape::lines) fail_usage(options_.subcommand(), "lines have no columns");
    if (is_filter_ && shape_ == Shape::csv && !options_.given(Opt::jobs))
        fail_usage(options_.subcommand(), "a filter reads lines or TSV; leave out --filter for CSV");
    delimiter_ = shape_ == Shape::tsv ? '\t' : '\0';

    Decoder decoder(options_.subcommand(), options_.c_str(Opt::encoding), is_filter_);
    const bool escaped = options_.given(Opt::escape);
    Source source(file, decoder, &progress_);
    Reader reader(source, shape_, escaped);
    prepare(reader);
    if (!output_.has_value() && !by_column_) begin_lines();

    // The first row tells which columns there are; without names it is answered like the others.
    Reader::Result first = Reader::Result::row;
    if (by_column_) {
        first = reader.next(row_);
        if (first == Reader::Result::row) {
            delimiter_ = shape_ == Shape::csv ? reader.delimiter() : '\t';
            begin_table(row_, file.name());
        } else if (first == Reader::Result::damaged) {
            fail(Exit::input, file.name(), reader.error());
        } else {
            begin_table(row_, file.name());
            return;
        }
    }
    const long jobs = options_.number(Opt::jobs, 0, 1);
    if (jobs != 1) {
        if (!file.is_regular() || decoder.is_used())
            fail_usage(options_.subcommand(), "--jobs shares regular files in UTF-8, not", file.name());
    }
    if (jobs != 1 && output_->has_separate_rows()) {
        output_->flush();
        output_->keep();
        const Jobs work{.count = jobs > 0 ? static_cast<std::size_t>(jobs)
                                          : static_cast<std::size_t>(sysconf(_SC_NPROCESSORS_ONLN)),
                        .start = file.start() + (by_column_ && has_names_ ? reader.offset() : 0),
                        .shape = shape_,
                        .escaped = escaped};
        if (by_column_ && has_names_) tally.lines += reader.lines();
        run_jobs(work, file, *this, progress_, tally);
        return;
    }
    if (by_column_ && !has_names_) answer_row(tally);
    reader.before_waiting([](void* output) { static_cast<Output*>(output)->flush(); }, &*output_);
    answer(reader, UINT64_MAX, tally);
    report_complaints(*this, file.name(), 0);
}

Exit Bulk::answer_files(std::span<char*> paths) {
    Tally tally;
    char standard_input[] = "-";
    char* one[] = {standard_input};
    if (paths.empty()) paths = one;
    for (const char* path : paths) {
        answer_file(path, tally);
        if (is_interrupted() || tally.end == Exit::input) break;
    }
    if (output_.has_value()) output_->finish();
    if (is_interrupted()) {
        Buffer summary;
        summary << "interrupted after ";
        append_grouped(summary, tally.rows);
        summary << " rows, ";
        append_grouped(summary, tally.bad);
        summary << " of them not good";
        report({.text = summary.view(), .level = Level::note});
        end_if_interrupted();
    }
    return worse(tally.end, tally.bad > 0 ? Exit::refused : Exit::good);
}

} // namespace

Exit run_task(const Options& options, const Task& task, std::span<char*> operands) {
    Bulk bulk(options, task);
    bool files =
        options.given(Opt::input) || operands.empty() || task.line_for_line || task.column != nullptr;
    for (const Opt option : {Opt::filter, Opt::column, Opt::columns, Opt::jobs})
        files |= options.given(option);
    for (const char* operand : operands)
        files |= Text(operand) == "-";
    if (!files) return bulk.answer_operands(operands);
    if (operands.empty() && isatty(STDIN_FILENO) != 0 && !options.given(Opt::filter) && !task.line_for_line)
        fail_usage(options.subcommand(), "what to look at? The operands are missing:", task.operands);
    if (options.given(Opt::columns) && task.inputs == 1)
        fail_usage(options.subcommand(), "one value needs one --column");
    if (options.given(Opt::column) && task.inputs == 2)
        fail_usage(options.subcommand(), "two values need --columns NAME,NAME");
    return bulk.answer_files(operands);
}

} // namespace velmora::tool
