// The memory of one loaded file: its text and its records.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <memory>

namespace velmora {

struct WipeAndFree {
    std::size_t size = 0;

    void operator()(char* text) const {
        explicit_bzero(text, size);
        std::free(text);
    }
};

// The zero-terminated text of a statement file. Every text of the records is a piece of it.
using FileText = std::unique_ptr<char[], WipeAndFree>;

// Null without memory.
FileText allocate_text(std::size_t size);

// Hands out the records of a file one behind the other; wipes and releases them all at once.
class RecordPool {
    struct Block {
        Block* previous;
        std::size_t size;
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
};

} // namespace velmora
