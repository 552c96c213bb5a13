#include "archive.h"

#include <algorithm>

#ifdef VELMORA_TOOL_ZIP
#include <zlib.h>
#endif

namespace velmora::tool {
namespace {

constexpr std::size_t most_members = 10'000;
constexpr std::uint64_t largest_member = std::uint64_t{2} << 30;
constexpr std::uint64_t highest_ratio = 1'000;

constexpr std::size_t end_size = 22, record_size = 46, local_size = 30;

// Little-endian, as everything in a ZIP file.
std::uint32_t number(Text data, std::size_t at, std::size_t bytes) {
    std::uint32_t value = 0;
    for (std::size_t i = bytes; i-- > 0;)
        value = value << 8 | static_cast<unsigned char>(data[at + i]);
    return value;
}

// Where the end record is; npos when there is none.
std::size_t find_end(Text data) {
    if (data.size() < end_size) return Text::npos;
    // A comment of at most 65,535 bytes may follow it.
    const std::size_t last = data.size() - end_size, first = last > 0xFFFF ? last - 0xFFFF : 0;
    for (std::size_t at = last + 1; at-- > first;)
        if (starts_with(piece(data, at), "PK\5\6") && at + end_size + number(data, at + 20, 2) == data.size())
            return at;
    return Text::npos;
}

} // namespace

bool Archive::is_one(Text data) {
    return starts_with(data, "PK\3\4") || starts_with(data, "PK\5\6");
}

bool Archive::open(Text data) {
    data_ = data;
    const std::size_t end = find_end(data);
    if (end == Text::npos) return refuse("damaged ZIP file: its list of members is missing");
    const std::uint32_t count = number(data, end + 10, 2), size = number(data, end + 12, 4),
                        start = number(data, end + 16, 4);
    if (count == 0xFFFF || start == 0xFFFFFFFF) return refuse("ZIP64 files are not supported");
    if (number(data, end + 4, 2) != 0 || number(data, end + 8, 2) != count)
        return refuse("ZIP files in several parts are not supported");
    if (count > most_members) return refuse("more than 10,000 members in a ZIP file");
    if (start > end || size > end - start)
        return refuse("damaged ZIP file: its list of members lies outside");

    Text list = piece(data, start, size);
    std::uint64_t packed = 0;
    for (std::uint32_t i = 0; i < count; ++i) {
        if (list.size() < record_size || !starts_with(list, "PK\1\2"))
            return refuse("damaged ZIP file: its list of members ends early");
        const std::size_t length =
            record_size + number(list, 28, 2) + number(list, 30, 2) + number(list, 32, 2);
        if (length > list.size()) return refuse("damaged ZIP file: its list of members ends early");
        if (!read_member(piece(list, 0, length))) return false;
        packed += number(list, 20, 4);
        list.remove_prefix(length);
    }
    // Members that share their bytes are a way to pack much into little.
    if (packed > data.size()) return refuse("damaged ZIP file: its members overlap");
    std::sort(members_.begin(), members_.end(),
              [](const Member& a, const Member& b) { return a.name < b.name; });
    return true;
}

bool Archive::read_member(Text record) {
    const Member member{.name = piece(record, record_size, number(record, 28, 2)),
                        .method = number(record, 10, 2),
                        .checksum = number(record, 16, 4),
                        .offset = number(record, 42, 4),
                        .packed = number(record, 20, 4),
                        .size = number(record, 24, 4)};
    // Folders, and what macOS adds.
    if (member.name.empty() || member.name.back() == '/' || starts_with(member.name, "__MACOSX/"))
        return true;
    if ((number(record, 8, 2) & 0x2041) != 0) return refuse("encrypted ZIP files are not supported");
    if (member.method != 0 && member.method != 8)
        return refuse("packed in a way that is not supported (only deflate is)");
    if (member.size > largest_member) return refuse("a member of the ZIP file is larger than 2 GiB");
    if (member.size > highest_ratio * member.packed)
        return refuse("a member of the ZIP file is packed more than 1,000 times: that is no statement");
    members_.add(member);
    return true;
}

bool Archive::find_data(const Member& member, Text& packed) {
    const Text local = piece(data_, member.offset);
    if (local.size() < local_size || !starts_with(local, "PK\3\4")) return refuse("damaged ZIP file");
    packed = piece(local, local_size + number(local, 26, 2) + number(local, 28, 2), member.packed);
    return packed.size() == member.packed || refuse("damaged ZIP file: it ends early");
}

#ifdef VELMORA_TOOL_ZIP
bool Archive::unpack(const Member& member, Buffer& out) {
    Text packed;
    if (!find_data(member, packed)) return false;
    out.clear();
    out.reserve(member.size + 1);
    if (member.method == 0) {
        if (member.size != member.packed) return refuse("damaged ZIP file");
        out << packed;
    } else {
        z_stream stream{};
        // -15: without zlib's own frame.
        if (inflateInit2(&stream, -15) != Z_OK) return refuse("out of memory");
        stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(packed.data()));
        stream.avail_in = static_cast<uInt>(packed.size());
        stream.next_out = reinterpret_cast<Bytef*>(out.data());
        stream.avail_out = static_cast<uInt>(member.size + 1); // one more, to see what does not end
        const int result = inflate(&stream, Z_FINISH);
        out.set_size(stream.total_out);
        inflateEnd(&stream);
        if (result != Z_STREAM_END || out.size() != member.size) return refuse("damaged ZIP file");
    }
    const uLong checksum =
        crc32(0, reinterpret_cast<const Bytef*>(out.data()), static_cast<uInt>(out.size()));
    return checksum == member.checksum || refuse("damaged ZIP file: its checksum does not fit");
}
#else
bool Archive::unpack(const Member&, Buffer&) {
    return refuse("this velmora was built without zlib and reads no ZIP files");
}
#endif

} // namespace velmora::tool
