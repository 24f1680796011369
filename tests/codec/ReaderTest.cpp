// The cursor's own promises; that it reports what a parser reports is part of every row in expectEvents and
// expectFailure.
#include "DocumentTest.h"
#include "Tamo/FastInfoset/BitStreamReader.h"
#include <vector>

namespace Tamo::FastInfoset::Test {
namespace {

using R = FastInfosetReader;

// <a x="1" p:x="2"><b>one<c>two</c><int>3 4</int></b><b/><d/></a>, the integers typed
std::string nested() {
    return document([](FastInfosetWriter& writer) {
        play("^|+p=u|<a x=\"1\" {u}p:x=\"2\"|<b|'one|<c|'two|>|=int 3|=int 4|>|<b|>|<d|>|>|$", writer);
    });
}

TEST(ReaderTest, SkipsAndCollects) {
    const std::string octets = nested();
    R reader;
    EXPECT_FAILURE("InvalidAccessException: No document is open", reader.next());
    reader.open(octets);
    EXPECT_EQ(reader.next(), R::START_DOCUMENT);
    EXPECT_FAILURE("InvalidAccessException: The reader is not at the start of an element",
                   reader.skipElement());
    EXPECT_EQ(reader.next(), R::START_ELEMENT);
    EXPECT_EQ(reader.attribute("x"), "1");
    EXPECT_EQ(reader.attribute("x", "u"), "2");
    EXPECT_EQ(reader.attribute("y"), std::nullopt);
    EXPECT_EQ(reader.next(), R::START_ELEMENT);
    EXPECT_EQ(reader.depth(), 2u);
    EXPECT_EQ(reader.elementText(), "onetwo3 4");
    EXPECT_EQ(reader.event(), R::END_ELEMENT);
    EXPECT_EQ(reader.localName(), "b");
    EXPECT_EQ(reader.next(), R::START_ELEMENT);
    EXPECT_EQ(reader.elementText(), "");
    EXPECT_EQ(reader.next(), R::START_ELEMENT);
    EXPECT_EQ(reader.localName(), "d");

    reader.open(octets); // leaves the document above
    reader.next();
    reader.next();
    reader.skipElement();
    EXPECT_EQ(reader.localName(), "a");
    EXPECT_EQ(reader.depth(), 0u);
    EXPECT_EQ(reader.next(), R::END_DOCUMENT);
    EXPECT_EQ(reader.next(), R::END_DOCUMENT);
}

TEST(ReaderTest, TypedValuesHaveAText) {
    const std::string octets = document([](FastInfosetWriter& writer) {
        const FastInfosetWriter::Document scope(writer);
        writer.text(std::vector<double>{0.5, -1}), writer.text(std::vector<double>{});
        writer.text(std::vector<Int16>{1, 2});
        writer.text(std::as_bytes(std::span("abc", 3))), writer.text(std::span<const std::byte>());
        writer.text(std::string_view("texts", 4));
        writer.comment("note");
    });
    R reader;
    reader.setStrict(false); // text beside the root
    reader.open(std::as_bytes(std::span(octets)));
    reader.next();
    const struct {
        R::Event event;
        R::ValueType type;
        const char* text;
    } rows[] = {{R::TEXT, R::DOUBLE, "0.5 -1"},
                {R::TEXT, R::INT16, "1 2"},
                {R::TEXT, R::OCTETS, "YWJj"},
                {R::TEXT, R::PLAIN_TEXT, "text"},
                {R::COMMENT, R::PLAIN_TEXT, "note"}};
    for (const auto& row : rows) {
        EXPECT_EQ(reader.next(), row.event);
        EXPECT_EQ(reader.valueType(), row.type);
        EXPECT_EQ(reader.text(), row.text);
        EXPECT_EQ(reader.doubleValues().size(), row.type == R::DOUBLE ? 2u : 0u);
        EXPECT_EQ(reader.octets().size(), row.type == R::OCTETS ? 3u : 0u);
    }
}

TEST(ReaderTest, ReadsNoFurtherThanAsked) {
    const std::string start = document("00 3C 00 61");
    std::istringstream stream(start + std::string(100 * BitStreamReader::BUFFER_SIZE, '\x82'));
    R reader;
    reader.open(stream);
    reader.next();
    EXPECT_EQ(reader.next(), R::START_ELEMENT);
    EXPECT_LE(static_cast<std::size_t>(stream.tellg()), 2 * BitStreamReader::BUFFER_SIZE);
    // A document type declaration is no exception, though its processing instructions are one list.
    std::istringstream declarations(document("00 C4 E0") +
                                    std::string(100 * BitStreamReader::BUFFER_SIZE, ' '));
    reader.open(declarations);
    reader.next();
    EXPECT_EQ(reader.next(), R::START_DTD);
    EXPECT_LE(static_cast<std::size_t>(declarations.tellg()), 2 * BitStreamReader::BUFFER_SIZE);
}

} // namespace
} // namespace Tamo::FastInfoset::Test
