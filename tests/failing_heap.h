// Allocations that fail on purpose. allocation_test.cpp holds what the linker leads the library's calls of
// malloc() and its kind to.
#pragma once

struct Heap {
    bool watching = false; // otherwise nothing fails and nobody looks at what is freed
    long requests = 0;     // allocations seen
    long refused = 0;      // which of them fails, counted from 1; 0 for none
    long live = 0;         // blocks allocated less blocks freed, watched or not
    long unwiped = 0;      // blocks freed with account data in them
};
extern Heap heap;

// Calls while watching, with one allocation refused.
template <typename Call>
auto call_watched(Call call, long refused = 0) {
    heap.refused = refused;
    heap.requests = 0;
    heap.watching = true;
    const auto result = call();
    heap.watching = false;
    return result;
}

// Calls while first the first, then the second and every further allocation is refused, until there are no
// more or `is_enough` takes a result that came in spite of that.
template <typename Call, typename Enough>
auto call_with_failing_allocations(Call call, Enough is_enough) {
    for (long n = 1;; ++n) {
        const auto result = call_watched(call, n);
        if (heap.requests < n || is_enough(result)) return result;
    }
}
