// The XML reader beside expat: the same elements and texts, or a refusal.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "xml/reader.h"
#include "xml_events.h"

namespace {

namespace fs = std::filesystem;
using velmora::XmlReader;

using namespace velmora::test;

void compare(const std::string& document) {
    EXPECT_EQ(difference_from_expat(document), "") << document;
}

std::vector<std::string> samples() {
    std::vector<std::string> documents;
    for (const char* folder :
         {"tests/data/xml", "tests/data/documents", "fuzz/corpus/xml", "fuzz/corpus/camt"})
        for (const auto& entry : fs::directory_iterator(fs::path(VELMORA_SOURCE_DIR) / folder)) {
            std::ifstream in(entry.path(), std::ios::binary);
            documents.emplace_back(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
        }
    return documents;
}

TEST(XmlReader, ReadsWhatExpatReads) {
    for (const std::string& document : samples()) {
        compare(document);
        for (std::size_t size = 1; size < std::min<std::size_t>(document.size(), 1200); ++size)
            compare(document.substr(0, size));
    }
}

TEST(XmlReader, RefusesWhatExpatRefuses) {
    constexpr const char* pieces[] = {"<",
                                      ">",
                                      "</",
                                      "/>",
                                      "\"",
                                      "'",
                                      "&",
                                      ";",
                                      "&amp;",
                                      "&lt",
                                      "&#0;",
                                      "&#x;",
                                      "&#xD800;",
                                      "&#xFFFE;",
                                      "&#65;",
                                      "&#x1F600;",
                                      "&#xfffffffff1;",
                                      "&eur;",
                                      "<!--",
                                      "-->",
                                      "--",
                                      "<![CDATA[",
                                      "]]>",
                                      "]",
                                      "<?",
                                      "?>",
                                      "<?xml ?>",
                                      "<?xml version=\"1.0\"?>",
                                      "<?XmL ?>",
                                      "<!DOCTYPE a>",
                                      "<!DOCTYPE a [<!ENTITY b \"c\">]>",
                                      "<!ENTITY",
                                      "\r\n",
                                      "\r",
                                      "\n",
                                      "\t",
                                      " ",
                                      "é",
                                      "€",
                                      "\xEF\xBF\xBE",
                                      "\xED\xA0\x80",
                                      "\xC0\xAF",
                                      "\xF5\x80\x80\x80",
                                      "\xF0\x9F\x98\x80",
                                      "\x80",
                                      "\x01",
                                      "\x7F",
                                      " a=\"1\"",
                                      " a='2' b='3'",
                                      " xmlns:x=''",
                                      "<a>",
                                      "</a>",
                                      "<a/>",
                                      "<a b=\"c\">",
                                      "x:",
                                      ":",
                                      "1",
                                      "-",
                                      ".",
                                      "=",
                                      " encoding=\"UTF-8\"",
                                      " encoding='us-ascii'",
                                      " standalone='no'",
                                      "\xEF\xBB\xBF",
                                      "ß",
                                      "×"};
    const std::vector<std::string> documents = samples();
    std::mt19937 random(53);
    const auto below = [&](std::size_t limit) { return random() % limit; };
    for (int i = 0; i < 20000 && !HasFailure(); ++i) {
        std::string document = documents[below(documents.size())];
        for (std::size_t changes = 1 + below(4); changes > 0 && !document.empty(); --changes) {
            const std::size_t at = below(document.size()), length = below(3) == 0 ? below(40) : below(2);
            switch (below(4)) {
            case 0:
                document[at] = static_cast<char>(random());
                break;
            case 1:
                document.erase(at, length);
                break;
            case 2:
                document.insert(below(document.size()), document.substr(at, length));
                break;
            default:
                document.replace(at, length, pieces[below(std::size(pieces))]);
            }
        }
        compare(document);
    }
}

std::string repeated(const std::string& piece, int count) {
    std::string text;
    while (count-- > 0)
        text += piece;
    return text;
}

TEST(XmlReader, ErrorsNameLineAndReason) {
    const auto attributes = [](int count) {
        std::string tag = "<a";
        for (int i = 0; i < count; ++i)
            tag += " a" + std::to_string(i) + "='1'";
        return tag + "/>";
    };
    const struct {
        std::string document, error;
    } cases[] = {
        {"", "Not an XML document"},
        {"\r\n:20:A\r\n-", "Not an XML document"},
        {std::string("\0<a/>", 5), "Not an XML document"},
        {"\n\n <?xml version='1.0'?>\n<a/>", ""},
        {"<a>\r\n\r\n\r\r</b>", "XML error at line 5: an end tag without its start tag"},
        {"<a><b>x\r\n\r\r&amp;\n</b>\n<b>&amp;&#10;<!--\n--></b>\n&eur;</a>",
         "XML error at line 8: an unknown reference"},
        {"<a>\n<!DOCTYPE", "Document type declarations are not supported"},
        {"<!DOCTYPE a [<!ENTITY b 'c'>]><a>&b;</a>", "Document type declarations are not supported"},
        {"<a>\n\xFC</a>", "Invalid UTF-8 at line 2"},
        {"<a>\n" + std::string(200, ' ') + "\n" + std::string(1, '\0') + "</a>",
         "XML error at line 3: a character that XML forbids"},
        {"<?xml version='1.0' encoding='x-none'?><a/>", "Encoding not supported (x-none)"},
        {"<?xml version='1.0' encoding='UTF-16'?><a/>", "Encoding not supported (UTF-16)"},
        {"<?xml version='1.0' encoding='US-ASCII'?><a>\xC3\xA9</a>", "Invalid text (US-ASCII)"},
        {"<?xml version='1.0' encoding='windows-1252'?><a>\x81</a>", "Invalid text (windows-1252)"},
        {std::string("\xFF\xFE<\0a", 5), "Invalid text (UTF-16)"},
        {repeated("<a>", 64) + repeated("</a>", 64), ""},
        {repeated("<a>", 65) + repeated("</a>", 65), "XML error at line 1: more than 64 levels"},
        {attributes(32), ""},
        {attributes(33), "XML error at line 1: more than 32 attributes"},
        {"<" + std::string(64, 'a') + "/>", ""},
        {"<" + std::string(65, 'a') + "/>", "XML error at line 1: a name of more than 64 bytes"},
        {"<日本/>", "XML error at line 1: a name with a letter that is not supported"},
    };
    for (const auto& test : cases)
        EXPECT_EQ(read_by_library(test.document).error, test.error) << test.document;
}

TEST(XmlReader, OtherEncodingsAreConverted) {
    const auto utf16 = [](const std::string& ascii, bool big) {
        std::string text = big ? "\xFE\xFF" : "\xFF\xFE";
        for (const char c : ascii)
            text.append({big ? '\0' : c, big ? c : '\0'});
        return text;
    };
    const std::string content = ">\xA4 5\xFC</a>", wide = "<?xml version='1.0' encoding='UTF-16'?><a>x</a>";
    for (const auto& [document, expected] : std::initializer_list<std::pair<std::string, std::string>>{
             {"<?xml version='1.0' encoding='ISO-8859-1'?><a" + content, "¤ 5ü"},
             {"<?xml version='1.0' encoding=\"iso-8859-15\" ?>\n<a" + content, "€ 5ü"},
             {"<?xml version='1.0' encoding='windows-1252'?><a>\x80</a>", "€"},
             {"\xEF\xBB\xBF<?xml version='1.0' encoding='ISO-8859-1'?><a>ü</a>", "ü"},
             {utf16(wide, false), "x"},
             {utf16(wide, true), "x"},
             {utf16("\n" + wide.substr(wide.find("<a")), true), "x"}}) {
        const Reading reading = read_by_library(document);
        EXPECT_EQ(reading.error + reading.events, std::string("<a>a=") + expected + '\0') << document;
    }
}

TEST(XmlReader, AttributesAndNamespaces) {
    std::string document =
        "<a:r xmlns:a='A' xmlns='B' n='&amp;'><s/><t xmlns='C' xmlns:ab='D' x=\"'\"><a:u/></t></a:r>";
    velmora::FileText text = velmora::FileText::allocate(document.size());
    document.copy(text.data(), document.size());
    XmlReader reader;
    ASSERT_TRUE(reader.open(text));
    std::string found;
    for (XmlReader::Event event; (event = reader.next()) != XmlReader::Event::document_end;)
        if (event == XmlReader::Event::start)
            found.append(reader.name())
                .append(reader.name_space())
                .append(reader.attribute("n"))
                .append(reader.attribute("x"));
    EXPECT_EQ(found, "rA&amp;sBtC'uA");
}

} // namespace
