// Amounts as people write them: exact, and refused where they could mean two things.
#pragma once

#include "text.h"

namespace velmora::tool {

enum class Mark : std::uint8_t {
    point,         // "." alone is certain to be the decimal mark
    point_or_comma // "," may be one, too: CSV with semicolons
};

struct DecimalRule {
    Mark marks = Mark::point;
    char said = '\0'; // by --decimal: '.' or ','
};

// Cents; or -1 with the reason in `why`.
std::int64_t parse_amount(Text text, DecimalRule rule, Text& why);

} // namespace velmora::tool
