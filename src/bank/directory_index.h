// The directory's text, where its records stand in it and where a key is found: all worked out by the
// compiler. Whatever points into the text is a number, so that nothing has to be relocated when the library
// is loaded.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>

#include "bank/directory.h"

namespace velmora {

#if defined(__clang__)
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Woverlength-strings"
#endif
#include "data/directory.inc"
#if defined(__clang__)
#pragma clang diagnostic pop
#endif

// --- Records ---

// Eight characters, the first in the lowest byte, and three behind them: of a BIC all, of a bank code the
// code, filled up with zeros, and its country.
struct DirectoryKey {
    std::uint64_t first;
    std::uint32_t last;

    bool operator==(const DirectoryKey&) const = default;
};

constexpr std::uint32_t key_end(const char* text) {
    const auto byte = [&](int i) { return std::uint32_t{static_cast<unsigned char>(text[i])} << 8 * i; };
    return byte(0) | byte(1) | byte(2);
}

constexpr DirectoryKey read_key(const char* text) {
    return {key_end(text) | std::uint64_t{key_end(text + 3)} << 24 | std::uint64_t{key_end(text + 6)} << 48,
            key_end(text + country_in_key)};
}

constexpr std::uint32_t germany = key_end("_DE");

constexpr bool is_bank(const char* record) {
    return record[country_in_key] == '_';
}
constexpr bool has_second_version(const char* record) {
    return is_bank(record) && BankRecord(record).has_second_version();
}
constexpr std::size_t size_of_version(const char* record) {
    return is_bank(record) ? BankRecord(record).size() : BicRecord(record).size();
}

constexpr std::size_t directory_size = [] {
    std::size_t count = 0;
    for (std::size_t at = 0; at + 1 < sizeof(directory_text); at += size_of_version(directory_text + at))
        count += !has_second_version(directory_text + at);
    return count;
}();

// Where each record begins, its second version behind it, and where the last one ends.
struct RecordOffsets {
    std::uint32_t of[directory_size + 1];
};

constexpr RecordOffsets records_begin = [] {
    RecordOffsets result{};
    std::uint32_t at = 0;
    for (std::size_t i = 0; i < directory_size; ++i) {
        result.of[i] = at;
        if (has_second_version(directory_text + at))
            at += static_cast<std::uint32_t>(size_of_version(directory_text + at));
        at += static_cast<std::uint32_t>(size_of_version(directory_text + at));
    }
    result.of[directory_size] = at;
    return result;
}();
static_assert(records_begin.of[directory_size] + 1 == sizeof(directory_text));

// The bank codes of a country, which stand one behind the other.
constexpr RecordRange records_of(const char* country) {
    RecordRange range{0, 0};
    for (const std::uint32_t at : records_begin.of) {
        if (at == records_begin.of[directory_size]) break;
        const DirectoryKey key = read_key(directory_text + at);
        range.begin += range.end == 0 && key.last != key_end(country);
        range.end += key.last == key_end(country);
    }
    range.end += range.begin;
    return range;
}

// --- Hash: displacement ---

// A key's hash names a bucket and a place among the slots. All keys of a bucket are moved on by as many steps
// as it takes to find a slot of its own for each.
constexpr std::size_t slot_count = std::bit_ceil(directory_size + directory_size / 2);
constexpr std::size_t bucket_count = slot_count / 4;
constexpr int slot_bits = std::bit_width(slot_count) - 1;
constexpr int bucket_bits = slot_bits - 2;

constexpr std::uint64_t hash_of(DirectoryKey key) {
    std::uint64_t hash = key.first ^ (key.last * 0x9E37'79B9'7F4A'7C15);
    hash ^= hash >> 32;
    return hash * 0xBF58'476D'1CE4'E5B9;
}
constexpr std::size_t bucket_of(std::uint64_t hash) {
    return hash >> (64 - bucket_bits);
}
constexpr std::size_t slot_of(std::uint64_t hash, std::uint64_t displacement) {
    const std::uint64_t place = hash >> (64 - bucket_bits - slot_bits);
    const std::uint64_t step = hash >> 16 | 1; // keys of one bucket that have the same place differ in it
    return (place + displacement * step) & (slot_count - 1);
}

// The records sorted by bucket, and the buckets by their size, the fullest first.
struct Buckets {
    std::uint64_t hashes[directory_size]; // in the order of the records
    std::uint16_t records[directory_size];
    std::uint16_t first[bucket_count + 1]; // of a bucket, among the sorted records
    std::uint16_t by_size[bucket_count];
};

constexpr Buckets buckets = [] {
    constexpr std::size_t largest = 31;
    Buckets result{};
    std::uint16_t sizes[bucket_count]{};
    for (std::size_t i = 0; i < directory_size; ++i) {
        result.hashes[i] = hash_of(read_key(directory_text + records_begin.of[i]));
        ++sizes[bucket_of(result.hashes[i])];
    }
    std::uint16_t number_of_size[largest + 1]{};
    for (std::size_t i = 0; i < bucket_count; ++i) {
        result.first[i + 1] = static_cast<std::uint16_t>(result.first[i] + sizes[i]);
        ++number_of_size[sizes[i]];
    }
    for (std::size_t size = largest; size > 0; --size) // now how many are larger
        number_of_size[size - 1] =
            static_cast<std::uint16_t>(number_of_size[size - 1] + number_of_size[size]);
    for (std::size_t i = 0; i < bucket_count; ++i)
        result.by_size[--number_of_size[sizes[i]]] = static_cast<std::uint16_t>(i);
    for (std::size_t i = 0; i < directory_size; ++i) {
        const std::size_t bucket = bucket_of(result.hashes[i]);
        result.records[result.first[bucket] + --sizes[bucket]] = static_cast<std::uint16_t>(i);
    }
    return result;
}();

struct DirectoryHash {
    std::uint8_t displacements[bucket_count];
    std::uint16_t records[slot_count];
    bool is_complete;
};

constexpr DirectoryHash directory_hash = [] {
    DirectoryHash result{};
    bool taken[slot_count]{};
    result.is_complete = true;
    for (const std::uint16_t bucket : buckets.by_size) {
        const std::size_t begin = buckets.first[bucket];
        const std::size_t end = buckets.first[bucket + 1];
        for (unsigned displacement = 0;; ++displacement) {
            std::size_t i = begin;
            for (; i < end; ++i) {
                const std::size_t slot = slot_of(buckets.hashes[buckets.records[i]], displacement);
                if (taken[slot]) break;
                taken[slot] = true;
                result.records[slot] = buckets.records[i];
            }
            if (i == end) {
                result.displacements[bucket] = static_cast<std::uint8_t>(displacement);
                result.is_complete &= displacement < 256;
                break;
            }
            while (i > begin)
                taken[slot_of(buckets.hashes[buckets.records[--i]], displacement)] = false;
        }
    }
    return result;
}();
static_assert(directory_hash.is_complete, "choose another factor in hash_of()");

} // namespace velmora
