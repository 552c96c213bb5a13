// Rows of an answer in the form that --output names.
#pragma once

#include "options.h"

namespace velmora::tool {

enum class Kind : std::uint8_t { text, number, boolean, account };

struct Column {
    Text name;
    Kind kind = Kind::text;
    bool is_code = false; // what --output code prints
};

enum class Form : std::uint8_t { table, tsv, csv, json, jsonl, code };

// Where finished rows go: to the standard output, or to a buffer that somebody else writes.
class Output {
public:
    Output(const Options& options, Form form, std::span<const Column> columns);
    ~Output();
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    // One for each column, in their order.
    void text(Text value);
    void text_or_null(const char* value);
    void null();
    void number(std::int64_t value);
    void boolean(bool value);
    void cents(std::int64_t value);
    void amount(std::int64_t value); // in 1/100,000
    void literal(Text value);        // a number as it is
    void end_row();

    // Bytes as they are, for what is handed through beside the answer.
    Buffer& raw() { return buffer_; }
    void end_raw_row();

    void header();
    void leave_out_header() { has_header_ = false; }
    // Ends the list or table.
    void finish();
    // Hands to the standard output what is there.
    void flush();
    // Keeps everything in the buffer until take().
    void keep() { kept_ = true; }
    Buffer& kept() { return buffer_; }

    // Rows of a table and of a JSON array depend on those before: several processes cannot write them.
    [[nodiscard]] bool has_separate_rows() const { return form_ != Form::table && form_ != Form::json; }
    // Then code() is all of a row that is worth the work.
    [[nodiscard]] bool wants_code_only() const { return form_ == Form::code; }
    void code(std::int64_t value) { buffer_ << value; }
    [[nodiscard]] bool masks() const { return mask_; }
    void set_delimiter(char delimiter) { delimiter_ = delimiter; }
    // Something stands before the first cell of each row already; there is no header then.
    void begin_behind_raw() { behind_raw_ = began_ = true; }

private:
    void choose_columns(const Options& options);
    bool begin_cell();
    void append_tsv(Text value);
    void append_csv(Text value);
    void plain(Text value, bool is_text);
    void table_cell(Text value);
    void write_table();

    Form form_;
    std::span<const Column> columns_;
    bool escape_, mask_, has_header_, color_, kept_ = false, behind_raw_ = false, began_ = false;
    char delimiter_;
    List<Column> shown_;
    List<bool> chosen_; // of the columns, when some are left out
    bool chooses_ = false;
    std::size_t column_ = 0, cell_ = 0; // of the row that is being written
    std::uint64_t rows_ = 0;
    Buffer buffer_, masked_;
    // A table waits for its first rows, which tell how wide the columns are.
    Buffer cells_;
    List<std::size_t> cell_ends_, widths_;
};

// The form by --output, by the terminal, or `otherwise`.
Form wanted_form(const Options& options);

} // namespace velmora::tool
