#include "reader.h"

namespace velmora::tool {

Reader::Result Reader::next(Row& row) {
    for (;;) {
        if (!began_ && (end_ - position_ >= 3 || ended_)) {
            began_ = true;
            if (starts_with({position_, static_cast<std::size_t>(end_ - position_)}, "\xEF\xBB\xBF")) {
                position_ += 3;
                offset_ += 3;
            }
        }
        if (began_) {
            if (position_ == end_ && ended_) return error_.empty() ? Result::end : Result::damaged;
            switch (position_ == end_      ? Parsed::incomplete
                    : shape_ == Shape::csv ? parse_csv(row)
                                           : find_line(row)) {
            case Parsed::row:
                return Result::row;
            case Parsed::damaged:
                return Result::damaged;
            case Parsed::incomplete:
                break;
            }
        }
        if (!refill()) return Result::damaged;
    }
}

bool Reader::refill() {
    auto left = static_cast<std::size_t>(end_ - position_);
    if (left > 0 && position_ != buffer_.data()) std::memmove(buffer_.data(), position_, left);
    if (left > longest_ + 1) {
        if (!cuts_) {
            ++lines_;
            error_ = "the row is longer than 16 MiB";
            return false;
        }
        dropped_ += left - longest_ - 1;
        left = longest_ + 1;
        searched_ = left;
    }
    buffer_.set_size(left);
    if (call_ != nullptr && source_.would_wait()) call_(context_);
    const int got = source_.read(buffer_);
    position_ = buffer_.data();
    end_ = position_ + buffer_.size();
    ended_ = got <= 0;
    if (got < 0) {
        ++lines_;
        error_ = "bytes that have no meaning in this encoding";
        return false;
    }
    return true;
}

// Takes what the row consists of off the input.
Reader::Parsed Reader::end_row(Row& row, const char* end, std::size_t line_end) {
    row.raw = {position_, static_cast<std::size_t>(end - position_)};
    row.line = ++lines_;
    offset_ += row.raw.size() + line_end + dropped_;
    dropped_ = 0;
    searched_ = 0;
    position_ = end + line_end;
    return Parsed::row;
}

Reader::Parsed Reader::find_line(Row& row) {
    const auto left = static_cast<std::size_t>(end_ - position_);
    const auto* found = static_cast<const char*>(std::memchr(position_ + searched_, '\n', left - searched_));
    if (found == nullptr && !ended_) {
        searched_ = left;
        return Parsed::incomplete;
    }
    end_row(row, found == nullptr ? end_ : found, found == nullptr ? 0 : 1);
    if (!row.raw.empty() && row.raw.back() == '\r') row.raw.remove_suffix(1);
    if (cuts_) row.raw = piece(row.raw, 0, longest_);
    row.fields.clear();
    scratch_.clear();
    if (shape_ == Shape::tsv)
        split_tsv(row);
    else
        row.fields.add(unescaped(row.raw));
    return Parsed::row;
}

void Reader::split_tsv(Row& row) {
    Text rest = row.raw;
    bool more = true;
    while (more) {
        more = rest.find('\t') != Text::npos;
        row.fields.add(unescaped(take_until(rest, '\t')));
    }
}

Text Reader::unescaped(Text field) {
    if (!escaped_ || field.find('\\') == Text::npos) return field;
    if (field == "\\N") return {};
    scratch_.reserve(static_cast<std::size_t>(end_ - buffer_.data())); // it must not move
    const std::size_t start = scratch_.size();
    for (std::size_t i = 0; i < field.size(); ++i) {
        char c = field[i];
        if (c == '\\' && i + 1 < field.size()) {
            constexpr Text letters = "tnr0bf", meanings("\t\n\r\0\b\f", 6);
            c = field[++i];
            const std::size_t known = letters.find(c);
            if (known != Text::npos) c = meanings[known];
        }
        scratch_ << c;
    }
    return piece(scratch_.view(), start);
}

Text Reader::undoubled(Text field) {
    scratch_.reserve(static_cast<std::size_t>(end_ - buffer_.data()));
    const std::size_t start = scratch_.size();
    for (std::size_t i = 0; i < field.size(); ++i) {
        if (field[i] == '"') ++i;
        scratch_ << field[i];
    }
    return piece(scratch_.view(), start);
}

// The one of the two that the first row holds more often outside of quotes.
bool Reader::choose_delimiter() {
    std::size_t commas = 0, semicolons = 0;
    bool quoted = false;
    const char* p = position_;
    for (; p < end_ && (quoted || *p != '\n'); ++p) {
        if (*p == '"') quoted = !quoted;
        if (quoted) continue;
        commas += *p == ',';
        semicolons += *p == ';';
    }
    if (p == end_ && !ended_) return false;
    delimiter_ = semicolons > commas ? ';' : ',';
    return true;
}

Reader::Parsed Reader::parse_csv(Row& row) {
    if (delimiter_ == '\0' && !choose_delimiter()) return Parsed::incomplete;
    row.fields.clear();
    scratch_.clear();
    bool quoted_lines = false;
    const char* p = position_;
    for (;;) {
        Text field;
        if (p < end_ && *p == '"') {
            const char* start = ++p;
            bool doubled = false;
            for (;; p += 2, doubled = true) {
                p = static_cast<const char*>(std::memchr(p, '"', static_cast<std::size_t>(end_ - p)));
                if (p == nullptr || (p + 1 == end_ && !ended_)) {
                    if (!ended_) return Parsed::incomplete;
                    ++lines_;
                    return damaged("a quoted field has no closing quote");
                }
                if (p + 1 == end_ || p[1] != '"') break;
            }
            field = {start, static_cast<std::size_t>(p - start)};
            quoted_lines |= field.find('\n') != Text::npos;
            if (doubled) field = undoubled(field);
            ++p;
            // A carriage return belongs to the line end.
            if (p < end_ && *p == '\r') {
                if (p + 1 == end_ && !ended_) return Parsed::incomplete;
                if (p + 1 == end_ || p[1] == '\n') ++p;
            }
            if (p < end_ && *p != delimiter_ && *p != '\n') {
                ++lines_;
                return damaged("text behind a closing quote");
            }
        } else {
            const char* start = p;
            while (p < end_ && *p != delimiter_ && *p != '\n' && *p != '"')
                ++p;
            field = {start, static_cast<std::size_t>(p - start)};
            if (p < end_ && *p == '"') {
                ++lines_;
                return damaged("a quote inside a field that does not begin with one");
            }
            if (!field.empty() && field.back() == '\r' && (p == end_ || *p == '\n')) field.remove_suffix(1);
        }
        if (p == end_ && !ended_) return Parsed::incomplete;
        row.fields.add(field);
        if (p < end_ && *p == delimiter_) {
            ++p;
            continue;
        }
        end_row(row, p, p < end_ ? 1 : 0);
        if (!row.raw.empty() && row.raw.back() == '\r') row.raw.remove_suffix(1);
        if (quoted_lines)
            for (const char c : row.raw)
                lines_ += c == '\n';
        return Parsed::row;
    }
}

Shape wanted_shape(const Options& options, Text path, Shape otherwise) {
    const int choice = options.choice(Opt::input);
    if (choice >= 0) return static_cast<Shape>(choice);
    const auto ends_with = [path](Text ending) {
        return path.size() > ending.size() &&
               equals_ignoring_case(piece(path, path.size() - ending.size()), ending);
    };
    if (ends_with(".csv")) return Shape::csv;
    if (ends_with(".tsv") || ends_with(".tab")) return Shape::tsv;
    return otherwise;
}

} // namespace velmora::tool
