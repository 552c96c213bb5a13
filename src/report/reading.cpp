#include "report/reading.h"

#include <cstring>
#include <string_view>

#include "base/ascii.h"
#include "base/exact_amount.h"
#include "report/paths.h"

namespace velmora::report {
namespace {

constexpr Graph graph = make_graph();
static_assert(sizeof(Fields) < 0xFFFF);

// The text of an element that ends, without white space around it; empty with elements inside.
std::string_view trimmed_text(const XmlReader& xml) {
    if (xml.text() == nullptr) return {};
    char* begin = xml.text();
    char* end = begin + xml.text_length();
    while (begin != end && is_space(*begin))
        ++begin;
    while (begin != end && is_space(end[-1]))
        --end;
    *end = '\0';
    return {begin, static_cast<std::size_t>(end - begin)};
}

template <std::size_t size>
void keep_short(char (&place)[size], std::string_view text) {
    if (place[0] == '\0') text.copy(place, size - 1);
}

// One place for each level: a block goes on around its payments.
struct OpenItem {
    sepa_report_item_t* record;
    Fields fields;
    JoinedText reasons;
    JoinedText text;
};

class Reading {
public:
    explicit Reading(sepa_report_t& report) : report_(report) {}
    Reading(const Reading&) = delete;
    Reading& operator=(const Reading&) = delete;
    ~Reading() {
        for (OpenItem& item : open_)
            explicit_bzero(&item.fields, sizeof item.fields);
    }

    bool read() {
        const auto begin = [&](const Graph::Node& node) { return begin_element(node.action); };
        const auto end = [&](const Graph::Node& node) { return end_element(node); };
        if (!xml_.open(report_.text) || !follow_paths(xml_, graph, begin, end)) {
            // What is no fault of the document is one of memory.
            if (xml_.error().text[0] == '\0') return report_.error.fail("Out of memory") != 0;
            report_.error = xml_.error();
            return false;
        }
        return has_message_ || report_.error.fail("Not a pain.002 document") != 0;
    }

private:
    bool begin_element(Action action) {
        switch (action) {
        case Action::begin_message:
            has_message_ = true;
            before_message_ = report_.last;
            for (OpenItem& item : open_)
                item.fields = {};
            return true;
        case Action::begin_group:
            return begin_item(SEPA_REPORT_GROUP);
        case Action::begin_block:
            return begin_item(SEPA_REPORT_BLOCK);
        case Action::begin_payment:
            return begin_item(SEPA_REPORT_PAYMENT);
        case Action::keep_amount:
            return keep_currency();
        default:
            return true;
        }
    }

    bool end_element(const Graph::Node& node) {
        const std::string_view text = trimmed_text(xml_);
        switch (node.action) {
        case Action::begin_message:
            inherit();
            return true;
        case Action::begin_group:
        case Action::begin_block:
            return end_item();
        case Action::begin_payment:
            choose_party();
            if (!end_item()) return false;
            level_ = SEPA_REPORT_BLOCK;
            return true;
        case Action::keep_text:
            if (char*& place = field<char*>(node); place == nullptr && !text.empty())
                place = const_cast<char*>(text.data());
            return true;
        case Action::keep_status:
            keep_short(field<char[5]>(node), text);
            return true;
        case Action::keep_date:
            keep_short(field<char[11]>(node), text);
            return true;
        case Action::keep_iban:
            keep_iban(field<char[35]>(node), text);
            return true;
        case Action::keep_amount:
        case Action::keep_sum:
            return keep_amount(field<double>(node), text);
        case Action::keep_count:
            keep_count(field<std::uint32_t>(node), text);
            return true;
        case Action::note_direct_debit:
            field<std::uint8_t>(node) = 1;
            return true;
        case Action::add_reason:
            if (char*& reason = open().fields.item.reason; reason == nullptr && !text.empty())
                reason = const_cast<char*>(text.data());
            return add(open().reasons, text, ' ');
        case Action::add_text:
            return add(open().text, text, '\n');
        default:
            return true;
        }
    }

    OpenItem& open() { return open_[level_]; }
    template <typename Field>
    Field& field(const Graph::Node& node) {
        return *reinterpret_cast<Field*>(reinterpret_cast<char*>(&open().fields) + node.offset);
    }

    // The record has its place in the list from now on.
    bool begin_item(std::uint8_t level) {
        level_ = level;
        open().fields = {};
        open().fields.item.level = level;
        auto* const record = open().record = report_.items.allocate<sepa_report_item_t>();
        if (record == nullptr) return false;
        (report_.first == nullptr ? report_.first : report_.last->next) = record;
        report_.last = record;
        return true;
    }

    bool end_item() {
        sepa_report_item_t& item = open().fields.item;
        if (!open().reasons.take(report_.items, item.reasons) || !open().text.take(report_.items, item.text))
            return false;
        item.next = open().record->next;
        *open().record = item;
        return true;
    }

    bool keep_currency() {
        const std::string_view currency = xml_.attribute("Ccy");
        if (currency.size() > 3) return xml_.refuse("not a currency") != XmlReader::Event::error;
        keep_short(open().fields.item.currency, currency);
        return true;
    }

    bool keep_amount(double& place, std::string_view text) {
        const Decimal decimal = scan_decimal(text.empty() ? "" : text.data());
        if (decimal.empty || *decimal.end != '\0')
            return xml_.refuse("not an amount") != XmlReader::Event::error;
        if (place == 0) place = decimal.nearest();
        return true;
    }

    // White space inside is what somebody found easier to read.
    static void keep_iban(char (&place)[35], std::string_view text) {
        if (place[0] != '\0') return;
        std::size_t length = 0;
        for (const char c : text)
            if (!is_space(c) && length < sizeof place - 1) place[length++] = c;
    }

    // 0 for what is no number of 32 bits.
    static void keep_count(std::uint32_t& place, std::string_view text) {
        std::uint32_t number = 0;
        for (const char c : text)
            if (!is_digit(c) || __builtin_mul_overflow(number, 10U, &number) ||
                __builtin_add_overflow(number, static_cast<unsigned>(c - '0'), &number))
                return;
        if (place == 0) place = number;
    }

    bool add(JoinedText& texts, std::string_view text, char separator) {
        return text.empty() || texts.add(const_cast<char*>(text.data()), text.size(), separator);
    }

    // A direct debit's counterpart is its debtor, a credit transfer's the creditor. Where the original
    // message is not named, what the payment has tells.
    void choose_party() {
        Fields& fields = open().fields;
        const char* const kind = open_[SEPA_REPORT_GROUP].fields.item.messageName;
        bool is_direct_debit = kind != nullptr && std::strstr(kind, "pain.008") != nullptr;
        if (!is_direct_debit && (kind == nullptr || std::strstr(kind, "pain.001") == nullptr)) {
            const bool has_creditor = fields.creditor.name != nullptr || fields.creditor.iban[0] != '\0';
            is_direct_debit = fields.is_direct_debit != 0 || fields.item.mandate != nullptr || !has_creditor;
        }
        const Party& party = is_direct_debit ? fields.debtor : fields.creditor;
        fields.item.name = party.name;
        std::memcpy(fields.item.iban, party.iban, sizeof party.iban);
    }

    // What a message's blocks and payments have from the level above.
    void inherit() {
        const sepa_report_item_t *group = nullptr, *block = nullptr;
        const auto inherit_status = [](sepa_report_item_t& item, const sepa_report_item_t* above) {
            if (item.status[0] == '\0' && above != nullptr)
                std::memcpy(item.status, above->status, sizeof item.status);
        };
        sepa_report_item_t* item = before_message_ == nullptr ? report_.first : before_message_->next;
        for (; item != nullptr; item = item->next) {
            if (item->level == SEPA_REPORT_GROUP) {
                group = item;
                continue;
            }
            if (group != nullptr) {
                item->messageId = group->messageId;
                item->messageName = group->messageName;
            }
            if (item->level == SEPA_REPORT_BLOCK) {
                inherit_status(*item, group);
                block = item;
            } else if (block != nullptr) { // payments stand in blocks
                inherit_status(*item, block);
                item->blockId = block->blockId;
            }
        }
    }

    sepa_report_t& report_;
    XmlReader xml_;
    OpenItem open_[3] = {};
    std::uint8_t level_ = SEPA_REPORT_GROUP;
    bool has_message_ = false;
    sepa_report_item_t* before_message_ = nullptr;
};

// What answers for a payment that no item names: the one group or block that is refused as a whole.
const sepa_report_item_t* find_refused(const sepa_report_t& report) {
    const sepa_report_item_t* found[2] = {};
    std::size_t count[2] = {};
    for (const sepa_report_item_t* item = report.first; item != nullptr; item = item->next) {
        if (item->level == SEPA_REPORT_PAYMENT || std::strcmp(item->status, "RJCT") != 0) continue;
        found[item->level] = item;
        ++count[item->level];
    }
    const int level = count[SEPA_REPORT_GROUP] != 0 ? SEPA_REPORT_GROUP : SEPA_REPORT_BLOCK;
    return count[level] == 1 ? found[level] : nullptr;
}

bool make_index(sepa_report_t& report) {
    std::size_t count = 0;
    for (const sepa_report_item_t* item = report.first; item != nullptr; item = item->next)
        count += item->endToEndId != nullptr ? 1 : 0;
    if (count == 0) return true;
    if (!report.index.reserve(count)) return report.error.fail("Out of memory") != 0;
    for (const sepa_report_item_t* item = report.first; item != nullptr; item = item->next)
        if (item->endToEndId != nullptr) report.index.add(*item);
    return true;
}

} // namespace

bool read(sepa_report_t& report) {
    if (!Reading(report).read() || !make_index(report)) return false;
    report.refused = find_refused(report);
    return true;
}

} // namespace velmora::report
