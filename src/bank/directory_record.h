// What a record of the bank directory looks like. data/directory.inc says it in words.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace velmora {

constexpr std::size_t key_size = 11;
constexpr std::size_t country_in_key = 8; // of a bank, as "_DE"; a BIC has its branch there

// One version of a bank's data. It stands in the directory, or is none.
class BankRecord {
public:
    // The texts in their order. Only the successor is not ended by a zero byte.
    enum Text { successor_text, name_text, postcode_text, city_text, country_text, bic_text };
    static constexpr unsigned deleted_bit = 1; // in the deletion mark
    static constexpr unsigned second_version_bit = 2;

    constexpr BankRecord() = default;
    constexpr explicit BankRecord(const char* record) : record_(record) {}
    constexpr explicit operator bool() const { return record_ != nullptr; }

    constexpr bool is_german() const { return record_[country_in_key + 1] == 'D'; }

    // Of German banks; those of other countries have zeros and no successor.
    constexpr bool is_deleted() const { return (header_byte(0) & deleted_bit) != 0; }
    constexpr bool has_second_version() const { return (header_byte(0) & second_version_bit) != 0; }
    constexpr std::uint8_t method() const { return static_cast<std::uint8_t>(header_byte(1)); }
    constexpr unsigned iban_rule() const { return header_byte(2) << 8 | header_byte(3); } // * 100 + version
    constexpr std::string_view successor() const { return {texts(), size_of(successor_text)}; } // or empty

    // Name, postal code, town, country and BIC, one behind the other.
    constexpr const char* name() const { return texts() + size_of(successor_text); }
    constexpr std::size_t size_of(Text text) const { return byte(key_size + text); } // with the zero byte
    constexpr std::string_view bic() const {
        const char* end = record_ + size();
        return {end - size_of(bic_text), size_of(bic_text) - 1};
    }
    constexpr std::size_t size_of_texts() const {
        return size_of(name_text) + size_of(postcode_text) + size_of(city_text) + size_of(country_text) +
               size_of(bic_text);
    }
    constexpr std::size_t size() const {
        return static_cast<std::size_t>(name() - record_) + size_of_texts();
    }
    constexpr BankRecord next_version() const { return BankRecord(record_ + size()); }

private:
    static constexpr std::size_t header = key_size + 6; // deletion mark, check method, IBAN rule in two bytes

    constexpr unsigned byte(std::size_t at) const { return static_cast<unsigned char>(record_[at]); }
    constexpr unsigned header_byte(std::size_t i) const { return is_german() ? byte(header + i) : 0; }
    constexpr const char* texts() const { return record_ + header + (is_german() ? 4 : 0); }

    const char* record_ = nullptr;
};

// A BIC that payment schemes reach. It stands in the directory, or is none.
class BicRecord {
public:
    constexpr BicRecord() = default;
    constexpr explicit BicRecord(const char* record) : record_(record) {}
    constexpr explicit operator bool() const { return record_ != nullptr; }

    constexpr std::uint8_t flags() const { return static_cast<std::uint8_t>(record_[key_size + 1]); }
    constexpr const char* name() const { return record_ + key_size + 2; }
    constexpr std::size_t size_of_name() const { // with the zero byte
        return static_cast<unsigned char>(record_[key_size]);
    }
    constexpr std::size_t size() const { return key_size + 2 + size_of_name(); }

private:
    const char* record_ = nullptr;
};

} // namespace velmora
