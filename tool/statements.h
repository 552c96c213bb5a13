// Statements out of files of any kind.
#pragma once

#include <ctime>
#include <velmora.h>

#include "source.h"

namespace velmora::tool {

// A loaded file with its statements.
struct StatementFile {
    sepa_stmt_parser_t* parser;
    Text name;    // in messages
    bool recodes; // its texts are in another encoding than UTF-8
};

// One statement of it.
struct Statement {
    const StatementFile* file;
    sepa_stmt_t* record;
    const sepa_stmt_info_t* info; // null in the strict format
    std::size_t order;
};

class Statements {
public:
    explicit Statements(const Options& options);
    ~Statements();
    Statements(const Statements&) = delete;
    Statements& operator=(const Statements&) = delete;

    // Loads a file, or the members of an archive. What cannot be read has been told; the others are there.
    Exit load(const char* path, Progress& progress);
    [[nodiscard]] const List<Statement>& all() const { return statements_; }
    List<Statement>& all() { return statements_; }
    void release();

    // A text of the file in UTF-8. It stays until the next call.
    Text text(const StatementFile& file, const char* text);

private:
    Exit load_data(Text data, Text name);
    Exit load_archive(Text data, Text name);
    [[nodiscard]] std::uint32_t format_of(Text data) const;

    const Options& options_;
    Decoder decoder_;
    List<StatementFile*> files_;
    List<Statement> statements_;
    Buffer recoded_;
};

// Whether a booking is one: not pending, and not only for information.
bool is_booked(const sepa_stmt_tx_info_t* info);
// yyyy-mm-dd, or an empty text.
struct DayText {
    explicit DayText(const std::tm& day);
    char text[16];
};

} // namespace velmora::tool
