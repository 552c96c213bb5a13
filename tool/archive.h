// The members of a ZIP file, in the order of their names. Nothing is ever written: a name is only shown.
#pragma once

#include "text.h"

namespace velmora::tool {

class Archive {
public:
    struct Member {
        Text name;
        std::uint32_t method, checksum;
        std::size_t offset, packed, size;
    };

    static bool is_one(Text data);
    // Reads the list of members. False with error() when the archive is damaged, asks for what is not
    // supported, or has more in it than a bank would send.
    bool open(Text data);
    [[nodiscard]] const List<Member>& members() const { return members_; }
    // False with error(), too.
    bool unpack(const Member& member, Buffer& out);
    [[nodiscard]] Text error() const { return error_; }

private:
    bool refuse(Text why) {
        error_ = why;
        return false;
    }
    bool read_member(Text record);
    bool find_data(const Member& member, Text& packed);

    Text data_, error_;
    List<Member> members_;
};

} // namespace velmora::tool
