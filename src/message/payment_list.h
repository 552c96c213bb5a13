// The payments of a message, each in one piece of memory: its numbers, where its texts end, and the texts.
#pragma once

#include <cstdint>

#include "message/payment.h"

namespace velmora {

// A payment as it is stored, followed by the ends of its texts and the texts themselves in the order of the
// fields.
class StoredPayment {
public:
    const StoredPayment* next() const { return next_; }
    const PaymentNumbers& numbers() const { return numbers_; }

    FieldSet present() const { return present_; }
    bool has(FieldSet any) const { return (present_ & any) != 0; }

    // At null when the field is not set.
    std::string_view operator[](Field field) const;

    Payment read() const;

    // Tells the processor that it is read soon.
    void prefetch() const {
        constexpr std::size_t cache_line = 64;
        for (std::size_t i = 0; i < 4; ++i)
            __builtin_prefetch(reinterpret_cast<const char*>(this) + i * cache_line);
    }

private:
    friend class PaymentList;

    const std::uint16_t* ends() const { return reinterpret_cast<const std::uint16_t*>(this + 1); }
    const char* texts() const { return reinterpret_cast<const char*>(ends() + text_count_); }

    StoredPayment* next_;
    PaymentNumbers numbers_;
    FieldSet present_;
    std::uint64_t text_count_;
};

// Hands out memory in blocks that grow with the message. They are wiped before they are released.
class PaymentList {
public:
    PaymentList() = default;
    PaymentList(const PaymentList&) = delete;
    PaymentList& operator=(const PaymentList&) = delete;
    ~PaymentList();

    // Stores a payment behind the others, with copies of its texts. False without memory: nothing has
    // changed.
    bool append(const Payment& payment);

    // Where the list ends, and the way back there: what has been stored since is dropped.
    struct End {
        StoredPayment* last;
        std::uint32_t count;
        std::size_t text_count;
        std::size_t text_size;
    };
    End end() const { return {last_, count_, text_count_, text_size_}; }
    void return_to(const End& end);

    const StoredPayment* first() const { return first_; } // in the order of adding
    const StoredPayment* last() const { return last_; }
    std::uint32_t count() const { return count_; }
    std::size_t text_count() const { return text_count_; }
    std::size_t text_size() const { return text_size_; }

private:
    struct Block {
        Block* previous;
        std::size_t size;
    };

    void* take(std::size_t size);

    StoredPayment* first_ = nullptr;
    StoredPayment* last_ = nullptr;
    std::uint32_t count_ = 0;
    std::size_t text_count_ = 0; // of all payments
    std::size_t text_size_ = 0;
    Block* block_ = nullptr;
    char* free_ = nullptr;
    std::size_t left_ = 0;
    std::size_t allocated_ = 0; // all blocks
};

} // namespace velmora
