// What is no document: the sentence for each mistake, and every document that is cut short.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "repository/Metamodel.h"
#include "repository/ModelDump.h"
#include "repository/ModelReader.h"
#include "support/RepeatedText.h"

namespace {

using std::string_literals::operator""s;

struct BadRow {
    std::string document;
    const char* sentence;
};

void PrintTo(const BadRow& row, std::ostream* out) { *out << row.document.substr(0, 60); }

class BadDocument : public testing::TestWithParam<BadRow> {};

TEST_P(BadDocument, IsRefusedWithASentence) {
    EXPECT_EQ(errorOf(GetParam().document), GetParam().sentence);
}

const std::vector<BadRow> badXmlRows{
    {"", "doc:1:1: The file is empty."},
    {"\xEF\xBB\xBF", "doc:1:1: The document has no element."},
    {" \n", "doc:2:1: The document has no element."},
    {"<?xml version='1.0'?><!-- nothing -->", "doc:1:38: The document has no element."},
    {"no document", "doc:1:1: The document is neither XML nor a JSON object."},
    {"\n x <a/>", "doc:2:2: The document is neither XML nor a JSON object."},
    {"<a/> x", "doc:1:6: Text stands outside the document element."},
    {"<a/>&amp;", "doc:1:5: Text stands outside the document element."},
    {"<!-- -->x<a/>", "doc:1:9: Text stands outside the document element."},
    {"<![CDATA[x]]><a/>", "doc:1:1: \"<!\" begins neither a comment nor character data."},
    {"<a/>\n<b/>", "doc:2:1: A second element follows the document element."},
    {"<a></a></a>", "doc:1:8: An end tag has no start tag."},
    {"<!DOCTYPE a [<!ENTITY b 'c'>]><a>&b;</a>",
     "doc:1:1: A document type declaration is not accepted."},
    {"<a>\n  <!DOCTYPE a></a>", "doc:2:3: A document type declaration is not accepted."},
    {"<a><!ELEMENT b></a>", "doc:1:4: \"<!\" begins neither a comment nor character data."},
    {"<a>&b;</a>", "doc:1:4: The entity \"&b;\" is not defined."},
    {"<a b='&nbsp;'/>", "doc:1:7: The entity \"&nbsp;\" is not defined."},
    {"<a>&#0;</a>", "doc:1:4: The entity \"&#0;\" is not defined."},
    {"<a>&#xD800;</a>", "doc:1:4: The entity \"&#xD800;\" is not defined."},
    {"<a>&#x110000;</a>", "doc:1:4: The entity \"&#x110000;\" is not defined."},
    {"<a>&#12x;</a>", "doc:1:4: The entity \"&#12x;\" is not defined."},
    {"<a>&;</a>", "doc:1:4: The entity \"&;\" is not defined."},
    {"<a>x & y</a>", "doc:1:6: \"&\" stands alone; it is written \"&amp;\"."},
    {"<a b='x&y'/>", "doc:1:8: \"&\" stands alone; it is written \"&amp;\"."},
    {"<a b='<'/>", "doc:1:7: \"<\" stands in the value of an attribute."},
    {"<a b=\"x<y\"/>", "doc:1:8: \"<\" stands in the value of an attribute."},
    {"<a <b/>", "doc:1:4: \"<\" stands inside a tag."},
    {"<a></a b>", "doc:1:8: An end tag is not well formed."},
    {"<a></a/>", "doc:1:7: An end tag is not well formed."},
    {"<?1 ?><a/>", "doc:1:3: A processing instruction is not well formed."},
    {"<a><? ?></a>", "doc:1:6: A processing instruction is not well formed."},
    {"<a></a b='1'>", "doc:1:10: An end tag holds more than a name."},
    {"<a></a <b/>", "doc:1:8: An end tag holds more than a name."},
    {"<a><!-- x -- y --></a>", "doc:1:4: A comment holds \"--\"."},
    {"<a><!-- x ---></a>", "doc:1:4: A comment holds \"--\"."},
    {"<a/><?xml version='1.0'?>", "doc:1:5: An XML declaration stands only at the beginning."},
    {"<a>\x01</a>", "doc:1:4: A control character cannot stand in XML."},
    {"<a b='\0'/>"s, "doc:1:7: A control character cannot stand in XML."},
    {"<a/>\0"s, "doc:1:5: A control character cannot stand in XML."},
    {"<a><b></a></b>", "doc:1:9: The end tag does not name the element that is open."},
    {"<a b='1'c='2'/>", "doc:1:9: An attribute is not well formed."},
    {"<a b/>", "doc:1:6: An attribute is not well formed."},
    {"<a b=1/>", "doc:1:6: An attribute is not well formed."},
    {"<a b=&quot;1&quot;/>", "doc:1:6: An attribute is not well formed."},
    {"<a =\"1\"/>", "doc:1:4: A start tag is not well formed."},
    {"< a/>", "doc:1:2: The document is not well-formed XML."},
    {"<a / ></a>", "doc:1:5: A start tag is not well formed."},
    {"<a></ a>", "doc:1:6: The end tag does not name the element that is open."},
    {"<a b='1' c='2'\n b='3'/>", "doc:2:2: The attribute \"b\" stands twice in one element."},
    {xmi("<xmi:Extension><b c='1' c='1'/></xmi:Extension>"),
     "doc:1:153: The attribute \"c\" stands twice in one element."},
    {"<a: xmlns:a='a'/>", "doc:1:2: The name \"a:\" is not well formed."},
    {"<a :b='1'/>", "doc:1:4: The name \":b\" is not well formed."},
    {"<a xmlns:b='b' b:c:d='1'/>", "doc:1:16: The name \"b:c:d\" is not well formed."},
    {"<a:b/>", "doc:1:2: The prefix \"a\" is not declared."},
    {"<a xmi:id='1'/>", "doc:1:4: The prefix \"xmi\" is not declared."},
    {"<a><b xmlns:c='c'/><c:d/></a>", "doc:1:21: The prefix \"c\" is not declared."},
    {repeat("<a>", 2001) + repeat("</a>", 2001),
     "doc:1:6001: Elements are nested deeper than 2000 levels."},
    {"<a>\xC3\x28</a>", "doc:1:4: This byte is not UTF-8."},
    {"<a>\n\xED\xA0\x80</a>", "doc:2:1: This byte is not UTF-8."},
    {"<a>\xF4\x90\x80\x80</a>", "doc:1:4: This byte is not UTF-8."},
    {"<a>\xE0\x80\xAF</a>", "doc:1:4: This byte is not UTF-8."},
    {"<a>\xC3", "doc:1:4: This byte is not UTF-8."},
    {"<?xml version='1.0' encoding='US-ASCII'?><a>\xC3\xA4</a>",
     "doc:1:45: This byte is not US-ASCII."},
    {"<?xml version='1.0' encoding='windows-1252'?>\n<a>\x81</a>",
     "doc:2:4: The next character is not of the encoding \"windows-1252\"."},
    {"<?xml version='1.0' encoding='secret'?><a/>",
     "doc:1:31: The encoding \"secret\" is not known."},
    {"<?xml version='1.0' encoding='UTF-8//IGNORE'?><a/>",
     "doc:1:31: The encoding \"UTF-8//IGNORE\" is not known."},
    {"<?xml version='1.0' encoding='UTF-16LE'?><a/> ",
     "doc:1:1: It is not written in the encoding \"UTF-16LE\" that it declares."},
};
INSTANTIATE_TEST_SUITE_P(Xml, BadDocument, testing::ValuesIn(badXmlRows));

TEST(BadDocument, IsRefusedInPiecesToo) {
    for (const BadRow& row : badXmlRows) {
        EXPECT_THROW((void)readInPieces(row.document), ModelError) << row.document;
    }
    EXPECT_THROW((void)readInPieces("<a b='1'><c d='2'><e/><f/></x></a>"), ModelError);
    EXPECT_THROW((void)readInPieces("<a b='1'><c d='2'><e/><f/></cc></a>"), ModelError);
}

std::string object(const std::string& members) { return "{\"objects\":[{" + members + "}]}"; }

const std::string complete = R"("id":"a","class":"A")";

const std::vector<BadRow> badJsonRows{
    {"{", "doc:1:2: Missing a name for object member."},
    {"{\"objects\":[]} x", "doc:1:16: The document root must not be followed by other values."},
    {"{\"objects\":[]}\0"s, "doc:1:15: A zero byte stands in the document."},
    {"{\"objects\":[\xC3\x28]}", "doc:1:13: This byte is not UTF-8."},
    {"{\"objects\":[],}", "doc:1:15: Missing a name for object member."},
    {object(R"("id":01)"), "doc:1:19: \"id\" must be a string."},
    {object(complete + R"(,"attributes":{"x":01})"),
     "doc:1:54: Missing a comma or '}' after an object member."},
    {"{}", "doc:1:3: The document has no \"objects\"."},
    {"{\"objects\":{}}", "doc:1:12: \"objects\" must be a list of objects."},
    {"{\"objects\":\"a\"}", "doc:1:12: \"objects\" must be a list of objects."},
    {"{\"objects\":[1]}", "doc:1:13: \"objects\" must be a list of objects."},
    {"{\"objects\":" + std::string(1000000, '['),
     "doc:1:13: \"objects\" must be a list of objects."},
    {"{\"objects\":[],\"root\":1}", "doc:1:22: \"root\" must be a string."},
    {"{\"objects\":[],\"root\":\"r\"}", "doc:1:23: The id \"r\" is not known."},
    {"{\"objects\":[],\"objects\":[]}", "doc:1:16: The member \"objects\" stands twice."},
    {"{\"object\":[]}", "doc:1:3: \"object\" is not a member of the document."},
    {object(R"("id":"a")"), "doc:1:13: The object \"a\" has no class."},
    {object(R"("class":"A")"), "doc:1:13: The object has no id."},
    {object(R"("id":"","class":"A")"), "doc:1:13: The object has no id."},
    {object(R"("id":1,"class":"A")"), "doc:1:19: \"id\" must be a string."},
    {object(R"("id":"a","class":null)"), "doc:1:31: \"class\" must be a string."},
    {object(R"("id":"a","id":"a")"), "doc:1:24: The member \"id\" stands twice."},
    {object(complete + R"(,"name":"x")"), "doc:1:36: \"name\" is not a member of an object."},
    {object(complete + "},{" + complete), "doc:1:43: The id \"a\" is repeated."},
    {object(complete + R"(,"attributes":[])"), "doc:1:48: \"attributes\" must be an object."},
    {object(complete + R"(,"attributes":{"x":[]})"),
     "doc:1:53: The attribute \"x\" must be a string, a number or a boolean."},
    {object(complete + R"(,"attributes":{"x":null})"),
     "doc:1:53: The attribute \"x\" must be a string, a number or a boolean."},
    {object(complete + R"(,"attributes":{"x":1,"x":2})"),
     "doc:1:56: The member \"x\" stands twice."},
    {object(complete + R"(,"attributes":{"x":1e999})"),
     "doc:1:53: Number too big to be stored in double."},
    {object(complete + R"(,"attributes":{"x":1e-999})"),
     "doc:1:53: The number 1e-999 is out of range."},
    {object(complete + R"(,"associations":false)"),
     "doc:1:50: \"associations\" must be an object."},
    {object(complete + R"(,"associations":{"x":"a"})"),
     "doc:1:55: The association \"x\" must be a list of ids."},
    {object(complete + R"(,"associations":{"x":["a",{}]})"),
     "doc:1:60: The association \"x\" must be a list of ids."},
    {object(complete + R"(,"associations":{"x":["b"]})"), "doc:1:57: The id \"b\" is not known."},
    {object(complete + R"(,"associations":{"x":[],"x":[]})"),
     "doc:1:59: The member \"x\" stands twice."},
};
INSTANTIATE_TEST_SUITE_P(Json, BadDocument, testing::ValuesIn(badJsonRows));

const std::vector<std::string> wholeDocuments{
    "<?xml version='1.0'?><!-- c --><m:a xmlns:m='m' b='&lt;' c=\"d\"><?p i?><b>t&#65;<![CDATA[x]]>"
    "</b><c d='\xC3\xA4'/></m:a>",
    R"({"root":"m","objects":[{"id":"m","class":"A","attributes":{"a":-1.5e2,"b":true,"c":"\u00e4"},
        "associations":{"x":["m","m"],"y":[]}}]})"};

TEST(BadDocument, EveryBeginningOfADocumentIsRefused) {
    for (const std::string& whole : wholeDocuments) {
        EXPECT_EQ(errorOf(whole), "");
        for (std::size_t length = 0; length < whole.size(); ++length) {
            EXPECT_NE(errorOf(std::string_view(whole).substr(0, length)), "")
                << whole.substr(0, length);
        }
    }
}

// Any change of a byte or two gives a model or an error, and nothing else.
TEST(BadDocument, EveryOtherDocumentIsReadOrRefused) {
    std::uint32_t state = 1;
    const auto random = [&state](std::size_t bound) {
        state = state * 1664525U + 1013904223U;
        return (state >> 8U) % bound;
    };
    int read = 0;
    constexpr int rounds = 20000;
    for (int i = 0; i < rounds; ++i) {
        std::string document = wholeDocuments[random(wholeDocuments.size())];
        for (std::size_t changes = 1 + random(2); changes > 0; --changes) {
            const std::size_t at = random(document.size());
            document.replace(at, random(3), 1, "<>&;\"'/=!-[]{}:,x1 \n\x80"[random(21)]);
        }
        const std::string error = errorOf(document);
        read += error.empty() ? 1 : 0;
        EXPECT_EQ(error.substr(0, error.empty() ? 0 : 4), error.empty() ? "" : "doc:") << document;
    }
    EXPECT_GT(read, rounds / 50);
    EXPECT_LT(read, rounds / 2);
}

// The deepest document that is read, by a metamodel reader and a model reader alike.
TEST(BadDocument, TheDeepestNestingIsRead) {
    const auto model = readModelText(repeat("<a b='1'>", 2000) + repeat("</a>", 2000), "doc");
    EXPECT_EQ(model->objectCount(), 2000U);
    EXPECT_EQ(model->outermost(model->objects().last[-1]), model->root(0));
}

class Folder : public testing::Test {
protected:
    Folder() { std::filesystem::create_directory(path_); }
    ~Folder() override { std::filesystem::remove_all(path_); }

    std::string file(const std::string& name) const { return (path_ / name).string(); }
    static std::string errorOfFile(const std::string& path) {
        try {
            readModel(path);
            return "";
        } catch (const ModelError& error) {
            EXPECT_EQ(error.getFile(), path);
            return std::string(error.what()).substr(path.size());
        }
    }

private:
    std::filesystem::path path_ =
        std::filesystem::temp_directory_path() /
        ("repository_test_" + std::to_string(reinterpret_cast<std::uintptr_t>(this)));
};

TEST_F(Folder, FilesAreReadOrRefused) {
    EXPECT_EQ(errorOfFile(file("none.uml")), ": There is no such file.");
    EXPECT_EQ(errorOfFile(file("")), ": It is a directory, not a file.");
    EXPECT_EQ(errorOfFile("/dev/null"), ": It is a device, not a file.");
    std::ofstream(file("empty.uml")).flush();
    EXPECT_EQ(errorOfFile(file("empty.uml")), ":1:1: The file is empty.");
    std::ofstream(file("a.uml")) << "<a b='1'/>";
    EXPECT_EQ(errorOfFile(file("a.uml")), "");
    std::ofstream(file("hole.uml")) << "<a/>";
    std::filesystem::resize_file(file("hole.uml"),
                                 std::uintmax_t{5} << 30U);  // no bytes on the disk
    EXPECT_EQ(errorOfFile(file("hole.uml")), ": The file is larger than 4 GiB.");
    EXPECT_EQ(errorOfFile(file("a.uml") + "/b"), ": Cannot read it: Not a directory.");
    std::ofstream(file("b.uml")) << "<a>\n<b></a></b>";
    EXPECT_EQ(errorOfFile(file("b.uml")),
              ":2:6: The end tag does not name the element that is open.");
}

}  // namespace
