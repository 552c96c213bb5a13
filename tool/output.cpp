#include "output.h"

#include <cstdlib>
#include <unistd.h>

#include "failure.h"
#include "json.h"

namespace velmora::tool {
namespace {

constexpr std::size_t flush_size = 128 << 10;
constexpr std::size_t table_rows = 1000; // that are looked at for the width of columns
constexpr std::size_t widest_column = 60;

bool is_control(char c) {
    return static_cast<unsigned char>(c) < ' ' || c == 0x7F;
}

bool is_plain(Text value) {
    for (const char c : value)
        if (is_control(c)) return false;
    return true;
}

bool wants_color(const Options& options) {
    switch (options.choice(Opt::color)) {
    case 1:
        return true;
    case 2:
        return false;
    default:
        break;
    }
    const char* no_color = std::getenv("NO_COLOR");
    return (no_color == nullptr || *no_color == '\0') && isatty(STDOUT_FILENO) != 0;
}

} // namespace

Form wanted_form(const Options& options) {
    const int choice = options.choice(Opt::output);
    if (choice >= 0) return static_cast<Form>(choice);
    return !options.given(Opt::filter) && isatty(STDOUT_FILENO) != 0 ? Form::table : Form::tsv;
}

Output::Output(const Options& options, Form form, std::span<const Column> columns)
    : form_(form), columns_(columns), escape_(options.given(Opt::escape)), mask_(options.given(Opt::mask)),
      has_header_(!options.given(Opt::no_header) && !options.given(Opt::filter)),
      color_(form == Form::table && wants_color(options)), delimiter_(form == Form::csv ? ',' : '\t') {
    choose_columns(options);
    if (form_ == Form::table)
        for (const Column& column : shown_)
            widths_.add(has_header_ ? display_width(column.name) : 0);
}

Output::~Output() = default;

void Output::choose_columns(const Options& options) {
    chooses_ = options.given(Opt::fields);
    for (std::size_t i = 0; i < columns_.size(); ++i)
        chosen_.add(!chooses_);
    for (Text rest = options.value(Opt::fields); !rest.empty();) {
        const Text name = trim(take_until(rest, ','));
        std::size_t found = 0;
        while (found < columns_.size() && columns_[found].name != name)
            ++found;
        if (found == columns_.size())
            fail_usage(options.subcommand(), "no column of the answer is called", name);
        chosen_[found] = true;
    }
    bool has_code = form_ != Form::code;
    for (std::size_t i = 0; i < columns_.size(); ++i) {
        if (!chosen_[i]) continue;
        shown_.add(columns_[i]);
        has_code |= columns_[i].is_code;
    }
    if (!has_code)
        fail_usage(options.subcommand(), "the answer has no code: --output code has nothing to print");
}

void Output::header() {
    if (began_ || form_ == Form::table) return;
    began_ = true;
    if (form_ == Form::json) buffer_ << '[';
    if (!has_header_ || (form_ != Form::tsv && form_ != Form::csv)) return;
    for (const Column& column : shown_) {
        if (&column != shown_.data()) buffer_ << delimiter_;
        form_ == Form::csv ? append_csv(column.name) : append_tsv(column.name);
    }
    buffer_ << '\n';
}

// What stands before a cell; false when it is left out.
inline bool Output::begin_cell() {
    const std::size_t column = column_++;
    if (chooses_ && !chosen_[column]) return false;
    const bool first = cell_++ == 0;
    switch (form_) {
    case Form::tsv:
    case Form::csv:
        if (!first || behind_raw_) buffer_ << delimiter_;
        break;
    case Form::json:
    case Form::jsonl:
        if (first && form_ == Form::json) buffer_ << (rows_ > 0 ? Text(",\n ") : Text("\n "));
        buffer_ << (first ? '{' : ',');
        append_json(buffer_, columns_[column].name);
        buffer_ << ':';
        break;
    case Form::table:
        break;
    case Form::code:
        return columns_[column].is_code;
    }
    return true;
}

void Output::append_tsv(Text value) {
    if (is_plain(value) && (!escape_ || value.find('\\') == Text::npos)) {
        buffer_ << value;
        return;
    }
    for (const char c : value) {
        if (!escape_)
            buffer_ << (is_control(c) ? ' ' : c);
        else if (c == '\t')
            buffer_ << "\\t";
        else if (c == '\n')
            buffer_ << "\\n";
        else if (c == '\r')
            buffer_ << "\\r";
        else if (c == '\0')
            buffer_ << "\\0";
        else if (c == '\\')
            buffer_ << "\\\\";
        else
            buffer_ << c;
    }
}

void Output::append_csv(Text value) {
    const bool quoted =
        value.empty() || value.find_first_of("\"\r\n") != Text::npos || value.find(delimiter_) != Text::npos;
    if (!quoted) {
        buffer_ << value;
        return;
    }
    buffer_ << '"';
    for (const char c : value) {
        if (c == '"') buffer_ << c;
        buffer_ << c;
    }
    buffer_ << '"';
}

void Output::table_cell(Text value) {
    for (const char c : value)
        cells_ << (is_control(c) ? ' ' : c);
    cell_ends_.add(cells_.size());
}

void Output::plain(Text value, bool is_text) {
    if (!begin_cell()) return;
    switch (form_) {
    case Form::tsv:
        append_tsv(value);
        break;
    case Form::csv:
        append_csv(value);
        break;
    case Form::json:
    case Form::jsonl:
        is_text ? append_json(buffer_, value) : void(buffer_ << value);
        break;
    case Form::table:
        table_cell(value);
        break;
    case Form::code:
        buffer_ << value;
        break;
    }
}

void Output::text(Text value) {
    if (mask_ && columns_[column_].kind == Kind::account) {
        masked_.clear();
        append_masked(masked_, value);
        value = masked_.view();
    }
    plain(value, true);
}

void Output::text_or_null(const char* value) {
    value == nullptr || *value == '\0' ? null() : text(value);
}

void Output::literal(Text value) {
    plain(value, false);
}

void Output::null() {
    if (!begin_cell()) return;
    if (form_ == Form::json || form_ == Form::jsonl)
        buffer_ << "null";
    else if (form_ == Form::tsv && escape_)
        buffer_ << "\\N";
    else if (form_ == Form::table)
        table_cell({});
}

void Output::number(std::int64_t value) {
    Buffer& number = masked_;
    number.clear();
    number << value;
    plain(number.view(), false);
}

void Output::boolean(bool value) {
    plain(value ? Text("true") : Text("false"), false);
}

void Output::cents(std::int64_t value) {
    masked_.clear();
    append_cents(masked_, value);
    plain(masked_.view(), false);
}

void Output::amount(std::int64_t value) {
    masked_.clear();
    append_amount(masked_, value);
    plain(masked_.view(), false);
}

void Output::end_row() {
    column_ = cell_ = 0;
    ++rows_;
    if (form_ == Form::table) {
        if (rows_ % table_rows == 0) write_table();
    } else {
        if (form_ == Form::json || form_ == Form::jsonl) buffer_ << '}';
        if (form_ != Form::json) buffer_ << '\n';
    }
    if (buffer_.size() >= flush_size && !kept_) flush();
}

void Output::write_table() {
    const std::size_t count = shown_.size();
    if (count == 0) return;
    // Only the first rows widen a column: what stands on the terminal already cannot move.
    if (!began_) {
        std::size_t start = 0;
        for (std::size_t i = 0; i < cell_ends_.size(); ++i) {
            std::size_t width = display_width(piece(cells_.view(), start, cell_ends_[i] - start));
            if (width > widest_column) width = widest_column;
            if (width > widths_[i % count]) widths_[i % count] = width;
            start = cell_ends_[i];
        }
    }
    const auto pad = [&](std::size_t width, std::size_t wanted) {
        for (; width < wanted; ++width)
            buffer_ << ' ';
    };
    const auto cell = [&](std::size_t column, Text value) {
        const std::size_t width = display_width(value);
        if (column > 0) buffer_ << "  ";
        const bool right = shown_[column].kind == Kind::number;
        if (right) pad(width, widths_[column]);
        buffer_ << value;
        if (!right && column + 1 < count) pad(width, widths_[column]);
    };
    if (!began_ && has_header_) {
        if (color_) buffer_ << "\033[1m";
        for (std::size_t i = 0; i < count; ++i)
            cell(i, shown_[i].name);
        if (color_) buffer_ << "\033[0m";
        buffer_ << '\n';
    }
    began_ = true;
    std::size_t start = 0;
    for (std::size_t i = 0; i < cell_ends_.size(); ++i) {
        const Text value = piece(cells_.view(), start, cell_ends_[i] - start);
        const std::size_t column = i % count;
        const bool red = color_ && shown_[column].kind == Kind::boolean && value == "false";
        if (red) buffer_ << "\033[31m";
        cell(column, value);
        if (red) buffer_ << "\033[0m";
        if (column + 1 == count) {
            while (!buffer_.empty() && buffer_[buffer_.size() - 1] == ' ')
                buffer_.set_size(buffer_.size() - 1);
            buffer_ << '\n';
        }
        start = cell_ends_[i];
    }
    cells_.clear();
    cell_ends_.clear();
}

void Output::finish() {
    if (form_ == Form::table) {
        write_table();
    } else {
        header();
        if (form_ == Form::json) buffer_ << (rows_ > 0 ? Text("\n]\n") : Text("]\n"));
    }
    if (!kept_) flush();
}

void Output::flush() {
    write_all(STDOUT_FILENO, buffer_.view());
    buffer_.clear();
}

} // namespace velmora::tool
