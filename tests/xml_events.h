// A document as the library's reader and expat see it: the same elements and texts, or a refusal.
#pragma once

#include <expat.h>

#include <string>
#include <vector>

#include "xml/reader.h"

namespace velmora::test {

struct Reading {
    std::string events; // "<name" and ">name", with "=text" where there are no elements inside
    std::string error;
};

// From memory that ends with the document, so that the address sanitizer sees every step beyond it.
inline Reading read_by_library(const std::string& document) {
    velmora::FileText text = velmora::FileText::allocate(document.size());
    document.copy(text.data(), document.size());
    XmlReader reader;
    Reading reading;
    bool going = reader.open(text);
    while (going) {
        const XmlReader::Event event = reader.next();
        going = event == XmlReader::Event::start || event == XmlReader::Event::end;
        if (!going) break;
        reading.events.append(event == XmlReader::Event::start ? "<" : ">").append(reader.name());
        if (reader.text() != nullptr)
            reading.events.append("=").append(reader.text(), reader.text_length() + 1);
    }
    reading.error = reader.error().text;
    return reading;
}

struct Oracle {
    Reading reading;
    std::vector<std::string> texts; // of the open elements
    bool is_leaf = false;
};

inline std::string local_name(const std::string& name) {
    return name.substr(name.rfind(':') + 1);
}

inline Reading read_by_expat(const std::string& document) {
    Oracle oracle;
    XML_Parser parser = XML_ParserCreate(nullptr);
    XML_SetUserData(parser, &oracle);
    XML_SetElementHandler(
        parser,
        [](void* data, const char* name, const char**) {
            auto& self = *static_cast<Oracle*>(data);
            self.reading.events += "<" + local_name(name);
            self.texts.emplace_back();
            self.is_leaf = true;
        },
        [](void* data, const char* name) {
            auto& self = *static_cast<Oracle*>(data);
            self.reading.events += ">" + local_name(name);
            if (self.is_leaf) self.reading.events.append("=").append(self.texts.back()).append(1, '\0');
            self.is_leaf = false;
            self.texts.pop_back();
        });
    XML_SetCharacterDataHandler(parser, [](void* data, const char* text, int length) {
        static_cast<Oracle*>(data)->texts.back().append(text, static_cast<std::size_t>(length));
    });
    if (XML_Parse(parser, document.data(), static_cast<int>(document.size()), 1) != XML_STATUS_OK)
        oracle.reading.error = XML_ErrorString(XML_GetErrorCode(parser));
    XML_ParserFree(parser);
    return oracle.reading;
}

// The reader's own limits.
inline bool is_limit(const std::string& error) {
    for (const char* limit : {"more than 64 levels", "a name of more than 64 bytes",
                              "more than 32 attributes", "a name with a letter that is not supported"})
        if (error.ends_with(limit)) return true;
    return error == "Document type declarations are not supported";
}

// Empty when what the library reads is what expat reads, and what expat refuses is refused; otherwise both.
inline std::string difference_from_expat(const std::string& document) {
    const Reading mine = read_by_library(document), expats = read_by_expat(document);
    // Mark and white space before the declaration are the reader's leniency, encodings those of the C
    // library.
    if (expats.error == "XML or text declaration not at start of entity" ||
        expats.error == "unknown encoding" || is_limit(mine.error))
        return "";
    // About what stands behind "1." in the version, versions of expat differ.
    if (expats.error == "XML declaration not well-formed" &&
        document.find("version=\"1.0\"") == document.npos)
        return "";
    const bool both_refuse = !mine.error.empty() && !expats.error.empty();
    if (both_refuse || (mine.error == expats.error && mine.events == expats.events)) return "";
    return mine.error + mine.events + " instead of " + expats.error + expats.events;
}

} // namespace velmora::test
