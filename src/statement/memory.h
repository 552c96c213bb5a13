// The memory of one loaded file: its text and its records.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <memory>

namespace velmora {

struct Free {
    void operator()(void* block) const { std::free(block); }
};

// The zero-terminated text of a statement file. Every text of the records is a piece of it.
using StatementText = std::unique_ptr<char[], Free>;

// Null without memory.
StatementText allocate_text(std::size_t size);

// Hands out the records of a file one behind the other and releases them all at once.
class RecordPool {
    struct Block {
        Block* previous;
    };

public:
    RecordPool() = default;
    RecordPool(const RecordPool&) = delete;
    RecordPool& operator=(const RecordPool&) = delete;
    ~RecordPool();

    // A zero-filled record, or null without memory.
    template <typename Record>
    Record* allocate() {
        static_assert(alignof(Record) <= alignof(Block) && sizeof(Record) % alignof(Block) == 0);
        return static_cast<Record*>(take(sizeof(Record)));
    }

private:
    void* take(std::size_t size);
    bool grow();

    Block* last_ = nullptr;
    char* free_ = nullptr;
    std::size_t left_ = 0;
    std::size_t block_size_ = 0;
};

} // namespace velmora
