#include "json.h"

namespace velmora::tool {
namespace {

bool is_plain(char c) {
    return static_cast<signed char>(c) >= ' ' && c != '"' && c != '\\' && c != 0x7F;
}

void append_escaped(Buffer& out, char c) {
    switch (c) {
    case '"':
        out << "\\\"";
        return;
    case '\\':
        out << "\\\\";
        return;
    case '\n':
        out << "\\n";
        return;
    case '\r':
        out << "\\r";
        return;
    case '\t':
        out << "\\t";
        return;
    default:
        out << "\\u00"
            << "01234567"[c >> 4] << "0123456789abcdef"[c & 15];
    }
}

} // namespace

void append_json(Buffer& out, Text text) {
    out << '"';
    while (!text.empty()) {
        std::size_t plain = 0;
        while (plain < text.size() && is_plain(text[plain]))
            ++plain;
        out << piece(text, 0, plain);
        text.remove_prefix(plain);
        if (text.empty()) break;
        std::size_t length = utf8_length(text);
        if (length > 1) {
            out << piece(text, 0, length);
        } else if (length == 1) {
            append_escaped(out, text.front());
        } else {
            out << "\xEF\xBF\xBD";
            length = 1;
        }
        text.remove_prefix(length);
    }
    out << '"';
}

} // namespace velmora::tool
