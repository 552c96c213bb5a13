// Feeds arbitrary documents to format 53: from memory, and once more as if their lines ended otherwise. Every
// text of every record is read; a load that fails has a text and no records; the records of an entry add up
// to it.
#include <cstdint>
#include <cstdlib>
#include <map>
#include <string>

#include "../tests/statement_records.h"

using namespace velmora::test;

namespace {

struct Entry {
    std::int64_t sum = 0;
    double amount = 0;
    std::uint32_t records = 0;
    bool is_exact = true;
};

void prove_entries(sepa_stmt_parser_t* parser, const sepa_stmt_t& statement) {
    std::map<std::uint32_t, Entry> entries;
    for (const sepa_stmt_tx_t* tx = statement.first_tx; tx != nullptr; tx = tx->next) {
        const sepa_stmt_tx_info_t& info = *sepa_stmt_parser_getTxInfo(parser, tx);
        Entry& entry = entries[info.entry];
        entry.is_exact = entry.is_exact && info.signedAmount != INT64_MAX;
        if (entry.is_exact) entry.sum += info.signedAmount;
        entry.amount = info.entryAmount;
        if (++entry.records != (info.part == 0 ? 1 : info.part)) std::abort();
    }
    for (const auto& [number, entry] : entries)
        if (entry.is_exact && static_cast<double>(entry.sum) / 100000 != entry.amount &&
            entry.sum < (std::int64_t{1} << 53) && entry.sum > -(std::int64_t{1} << 53))
            std::abort();
}

std::string read(const std::string& input) {
    const Parser parser = new_parser();
    const int loaded =
        sepa_stmt_parser_loadMemory(parser.get(), SEPA_STMT_FORMAT_CAMT, input.data(), input.size());
    const std::string error = sepa_stmt_parser_getError(parser.get());
    const std::string records = describe_all(parser);
    if ((loaded == 1) != error.empty() || (loaded == 0 && !records.empty())) std::abort();
    for (const sepa_stmt_t* s = sepa_stmt_parser_getStatement(parser.get()); s != nullptr; s = s->next) {
        sepa_stmt_parser_check(parser.get(), s, nullptr);
        prove_entries(parser.get(), *s);
    }
    return loaded == 1 ? records : error;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string input(reinterpret_cast<const char*>(data), size);
    const std::string records = read(input);
    const bool may_be_wide = input.find("encoding") != input.npos || input.rfind("\xFF\xFE", 0) == 0 ||
                             input.rfind("\xFE\xFF", 0) == 0;
    if (may_be_wide || input.find('\r') != input.npos) return 0;
    replace_all(input, "\n", "\r\n");
    if (read(input) != records) std::abort();
    return 0;
}
