// The memory of one loaded file: its text and its records.
#pragma once

#include <cstddef>
#include <string_view>
#include <utility>

namespace velmora {

// The bytes of a file with zero bytes behind them. Every text of the file's records is a piece of it; they
// are wiped before they are released.
class FileText {
public:
    FileText() = default;
    FileText(FileText&& other) noexcept
        : data_(std::exchange(other.data_, nullptr)), size_(std::exchange(other.size_, 0)) {}
    FileText& operator=(FileText&& other) noexcept {
        std::swap(data_, other.data_);
        std::swap(size_, other.size_);
        return *this;
    }
    ~FileText();

    // So many, so that several characters may be read at once.
    static constexpr std::size_t zeros_behind = 32;

    // Room for so many bytes; nothing without memory.
    static FileText allocate(std::size_t size);

    explicit operator bool() const { return data_ != nullptr; }
    char* data() const { return data_; }
    std::size_t size() const { return size_; } // without the zero bytes

private:
    char* data_ = nullptr;
    std::size_t size_ = 0;
};

// Hands out the records of a file, and texts that it does not hold in one piece, one behind the other; wipes
// and releases them all at once.
class RecordPool {
    struct Block {
        Block* previous;
        std::size_t size;
    };

public:
    RecordPool() = default;
    RecordPool(const RecordPool&) = delete;
    RecordPool& operator=(const RecordPool&) = delete;
    ~RecordPool() { clear(); }

    // Wipes and releases all records.
    void clear();

    // True for the address of something inside a record of this pool.
    bool owns(const void* address) const;

    // A zero-filled record, or null without memory.
    template <typename Record>
    Record* allocate() {
        static_assert(alignof(Record) <= alignof(Block) && sizeof(Record) % alignof(Block) == 0);
        return static_cast<Record*>(take(sizeof(Record)));
    }

    // A copy with a zero byte behind it, or null without memory.
    char* copy_text(std::string_view text);

private:
    void* take(std::size_t size) {
        if (left_ < size && !grow(size)) return nullptr;
        void* record = free_;
        free_ += size;
        left_ -= size;
        return record;
    }
    bool grow(std::size_t least);

    Block* last_ = nullptr;
    char* free_ = nullptr;
    std::size_t left_ = 0;
};

} // namespace velmora
