// JSON texts that are valid whatever bytes they are made of.
#pragma once

#include "text.h"

namespace velmora::tool {

// Quoted; a byte that is not UTF-8 becomes U+FFFD.
void append_json(Buffer& out, Text text);

inline void append_json_or_null(Buffer& out, Text text) {
    if (text.empty())
        out << "null";
    else
        append_json(out, text);
}

} // namespace velmora::tool
