#include "statements.h"

#include <cstdio>
#include <new>

#include "archive.h"
#include "options.h"

namespace velmora::tool {
namespace {

constexpr std::uint64_t largest_file = std::uint64_t{2} << 30;
constexpr std::uint32_t formats[] = {SEPA_STMT_FORMAT_CAMT, SEPA_STMT_FORMAT_MT940_TOLERANT,
                                     SEPA_STMT_FORMAT_MT940};

} // namespace

bool is_booked(const sepa_stmt_tx_info_t* info) {
    return info == nullptr || info->status[0] == '\0' || std::strcmp(info->status, "BOOK") == 0;
}

DayText::DayText(const std::tm& day) {
    text[0] = '\0';
    // The numbers of a date as it stands in the file; no calendar is asked.
    if (day.tm_mday > 0)
        std::snprintf(text, sizeof text, "%04d-%02d-%02d", (day.tm_year + 1900) % 10000,
                      (day.tm_mon + 1) % 100, day.tm_mday % 100);
}

Statements::Statements(const Options& options)
    : options_(options),
      decoder_(options.subcommand(),
               options.given(Opt::encoding) ? options.c_str(Opt::encoding) : "ISO-8859-1", true) {}

Statements::~Statements() {
    release();
}

void Statements::release() {
    for (StatementFile* file : files_) {
        sepa_stmt_parser_free(file->parser);
        wipe_and_free(const_cast<char*>(file->name.data()), file->name.size() + 1);
        wipe_and_free(file, sizeof *file);
    }
    files_.clear();
    statements_.clear();
}

std::uint32_t Statements::format_of(Text data) const {
    const int choice = options_.choice(Opt::format);
    if (choice >= 0) return formats[choice];
    if (starts_with(data, "\xFF\xFE") || starts_with(data, "\xFE\xFF")) return SEPA_STMT_FORMAT_CAMT;
    if (starts_with(data, "\xEF\xBB\xBF")) data.remove_prefix(3);
    while (!data.empty() && (data.front() == ' ' || (data.front() >= '\t' && data.front() <= '\r')))
        data.remove_prefix(1);
    return starts_with(data, "<") ? SEPA_STMT_FORMAT_CAMT : SEPA_STMT_FORMAT_MT940_TOLERANT;
}

Exit Statements::load(const char* path, Progress& progress) {
    const File file(path);
    Buffer data;
    read_whole(file, largest_file, data);
    progress.advance(data.size());
    return Archive::is_one(data.view()) ? load_archive(data.view(), file.name())
                                        : load_data(data.view(), file.name());
}

Exit Statements::load_archive(Text data, Text name) {
    Archive archive;
    const auto refuse = [&archive](Text what) {
        report({.file = what, .text = archive.error()});
        return Exit::input;
    };
    if (!archive.open(data)) return refuse(name);
    Exit end = Exit::good;
    Buffer content, member_name;
    for (const Archive::Member& member : archive.members()) {
        member_name.clear();
        member_name << name << '/' << member.name;
        if (!archive.unpack(member, content)) return refuse(member_name.view());
        if (Archive::is_one(content.view())) {
            report({.file = member_name.view(), .text = "a ZIP file inside of a ZIP file is not read"});
            end = Exit::input;
        } else {
            end = worse(end, load_data(content.view(), member_name.view()));
        }
    }
    return end;
}

Exit Statements::load_data(Text data, Text name) {
    const std::uint32_t format = format_of(data);
    auto* own_name = static_cast<char*>(allocate(name.size() + 1));
    std::memcpy(own_name, name.data(), name.size());
    auto* file = new (allocate(sizeof(StatementFile)))
        StatementFile{.parser = sepa_stmt_parser_new(), .name = {own_name, name.size()}, .recodes = false};
    files_.add(file);
    if (file->parser == nullptr) fail(Exit::memory, "out of memory");
    if (sepa_stmt_parser_loadMemory(file->parser, format, data.data(), data.size()) != 1) {
        report({.file = name, .text = sepa_stmt_parser_getError(file->parser)});
        return Exit::input;
    }
    file->recodes = format != SEPA_STMT_FORMAT_CAMT && (options_.given(Opt::encoding) || !is_utf8(data));
    sepa_stmt_t* statement = sepa_stmt_parser_getStatement(file->parser);
    if (statement == nullptr) {
        report({.file = name, .text = "no statement in it"});
        return Exit::input;
    }
    for (; statement != nullptr; statement = statement->next)
        statements_.add(
            {file, statement, sepa_stmt_parser_getInfo(file->parser, statement), statements_.size()});
    return Exit::good;
}

Text Statements::text(const StatementFile& file, const char* text) {
    if (text == nullptr || !file.recodes || !decoder_.is_used()) return text == nullptr ? Text() : Text(text);
    recoded_.clear();
    decoder_.decode(text, true, recoded_);
    return recoded_.view();
}

} // namespace velmora::tool
