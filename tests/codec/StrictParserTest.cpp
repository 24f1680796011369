// Reading by the letter of X.891, beside what the default makes of the same octets. Octets are composed by
// hand.
#include "DocumentTest.h"
#include "Tamo/FastInfoset/FISDefaultHandler.h"
#include "Tamo/FastInfoset/HexEncoding.h"
#include "Tamo/FastInfoset/TypedChunk.h"
#include "Tamo/FastInfoset/TypedChunkHandler.h"
#include "Tamo/UTF8Encoding.h"
#include <algorithm>
#include <cstring>

namespace Tamo::FastInfoset::Test {
namespace {

using V = DocumentVocabulary;

struct Row {
    const char* name;
    std::string octets; ///< behind identification and version, the octet of the optional parts first
    std::string usual;  ///< the events or the failure in the default mode, of a class by "; " and its name
    std::string strict; ///< the same in the strict mode
    std::string indexed = {}; ///< by default with tables that do not only append, when it is something else
};

const std::string SAME; // as by default

// Octets behind a document, so that nothing in it is near the end of the input.
const std::string PLENTY(16, '\0');

std::string times(std::string_view hexOctets, int count) {
    std::string result;
    for (int i = 0; i < count; ++i) {
        result.append(hexOctets);
    }
    return result;
}

// What reading makes of a document: the events, or how it fails.
std::string outcome(TypedEventRecorder& recorder, const std::function<void()>& read) {
    recorder.clear();
    const std::string failure = failureOf(read);
    static const std::string USUAL = "FISEncodingException: ";
    return failure.empty() ? recorder.events()
                           : failure.substr(failure.starts_with(USUAL) ? USUAL.size() : 0);
}

// The same by a parser and a cursor, from memory and from a stream, which all must agree.
std::string outcome(const std::string& document, bool strict, V::VocabularyImpl impl) {
    TypedEventRecorder recorder;
    FastInfosetParser parser(impl);
    FastInfosetReader reader{V(impl)};
    recorder.connect(parser);
    parser.setStrict(strict);
    reader.setStrict(strict);
    const std::string result = outcome(recorder, [&] { parseMemory(parser, document); });
    const std::string forCursor = cursorFailureOf(result);
    EXPECT_EQ(outcome(recorder, [&] { reader.open(document), replay(reader, recorder); }), forCursor);
    DribblingStream forParser(document);
    EXPECT_EQ(outcome(recorder, [&] { parseStream(parser, forParser); }), result);
    DribblingStream forReader(document);
    EXPECT_EQ(outcome(recorder, [&] { reader.open(forReader), replay(reader, recorder); }), forCursor);
    const std::string more = document + PLENTY; // looked at octet by octet, and not bit by bit
    EXPECT_EQ(outcome(recorder, [&] { parseMemory(parser, more); }), result);
    EXPECT_EQ(outcome(recorder, [&] { reader.open(more), replay(reader, recorder); }), forCursor);
    return result;
}

void expectRows(const std::vector<Row>& rows) {
    for (const Row& row : rows) {
        const std::string octets = document(row.octets);
        for (const auto impl : ALL_KINDS) {
            SCOPED_TRACE(row.name + std::string(", tables of kind ") + std::to_string(impl));
            EXPECT_EQ(outcome(octets, false, impl),
                      row.indexed.empty() || impl == V::VOC_VECTOR ? row.usual : row.indexed);
            EXPECT_EQ(outcome(octets, true, impl), row.strict.empty() ? row.usual : row.strict);
        }
    }
}

constexpr const char* PAST = "out_of_range: index out of range";
constexpr const char* PAST_INDEXED = "AssertionViolationException: this->_index.size() > idx";
constexpr const char* NO_ALPHABET =
    "AssertionViolationException: vocabulary > 0 && vocabulary <= _alphabets.size()";
constexpr const char* TWICE = "AssertionViolationException: !existed";

TEST(StrictParserTest, Vocabularies) {
    expectRows({
        // 20: an initial vocabulary; which tables it has, 13 bits; then each with its count less 1.
        // Attribute value 10 | 00000000 | 0001: "12" in alphabet 1, whose index the default reads twice.
        {"a value in an alphabet", "20 0010 00 2001 123F 7C0061 780062 80 FF F0", NO_ALPHABET,
         R"(^|<a b="123"|>|$)"},
        // Chunk 11 | 00000011 | 0011: 42 as int.
        {"a chunk by an algorithm", "20 0008 00 3033 0000002A 3C0061 A0 FF",
         "FISException: Invalid decoding defined", "^|<a|'42|>|$"},
        {"a local name twice", "20 0080 01 0061 0061 3C81 FF", TWICE, "^|<a|>|$"},
        {"a chunk twice", "20 0008 01 0078 0078 3C0061 A1 FF", TWICE, "^|<a|'x|>|$"},
        {"a name twice", "20 0082 00 0061 01 0000 0000 01 FF", TWICE, "^|<a|>|$"},
        {"a prefix that is built in", "20 0200 00 02786D6C 3F81 0075 0061 FF", TWICE, "^|<{u}xml:a|>|$"},
        {"no table at all", "20 0000 3C0061 FF",
         "FISException: Initial Vocabulary detected with zero information in it - at least one dictionary "
         "required",
         SAME},
        // Literals that are there already, then one that is not, then the second one by its index.
        {"a chunk again", "00 3C0061 9078 9078 9079 A1 FF", "^|<a|'x|'x|'y|'x|>|$", SAME,
         "^|<a|'x|'x|'y|'y|>|$"},
        {"a target again", "00 E1 0074 FF E1 0074 FF E1 0075 FF E1 81 FF 3C0061 FF", "^|?t|?t|?u|?t|<a|>|$",
         SAME, "^|?t|?t|?u|?u|<a|>|$"},
        {"a value again", "00 7C0061 780062 4031 780062 4031 780062 4032 780062 81 FF F0",
         R"(^|<a b="1" b="1" b="2" b="1"|>|$)", SAME, R"(^|<a b="1" b="1" b="2" b="2"|>|$)"},
        {"a name again", "00 3C0061 3C0061 3C0062 01 FF FF F0", "^|<a|<a|<b|<a|>|>|>|>|$", SAME,
         "^|<a|<a|<b|<b|>|>|>|>|$"},
        {"a local name again", "00 3C0061 3C0061 3C0062 3C81 FF FF F0", "^|<a|<a|<b|<a|>|>|>|>|$", SAME,
         "^|<a|<a|<b|<b|>|>|>|>|$"},
    });
}

TEST(StrictParserTest, Alphabets) {
    expectRows({
        // Alphabet 16 is "abcd", whose codes take 3 bits by the letter: "ad" is 000 011 11.
        {"the width of codes", "20 0800 00 0361626364 3C0061 883C0F FF", "^|<a|'aadd|>|$", "^|<a|'ad|>|$"},
        {"zeros that fill", "20 0800 00 0361626364 3C0061 883C0C FF", "^|<a|'aada|>|$",
         "the end of a string in a restricted alphabet that is not filled with ones (X.891, 7.17.6), at "
         "octet 18"},
        {"a code of ones within", "00 3C0061 880112 F3 FF", "^|<a|'12|>|$",
         "a code that the restricted alphabet does not have (X.891, 7.17.6), at octet 11"},
        {"an octet of ones", "00 3C0061 880112FF FF", "^|<a|'12|>|$",
         "a code that the restricted alphabet does not have (X.891, 7.17.6), at octet 11"},
        {"an alphabet that is reserved", "00 3C0061 880812 FF",
         "Illegal restricted alphabet: the index is reserved",
         "a string in a reserved restricted alphabet (X.891, 8.2), at octet 10"},
        {"an alphabet that nobody declares", "00 3C0061 883C12 FF", NO_ALPHABET,
         "restricted alphabet 16, which is not declared (X.891, 8.2), at octet 11"},
        {"one character", "20 0800 00 0061 3C0061 FF", "^|<a|>|$",
         "a restricted alphabet of 1 characters (X.891, 8.2), at octet 10"},
        {"a character twice", "20 0800 00 02616261 3C0061 FF", "^|<a|>|$",
         "a restricted alphabet that has a character twice (X.891, 8.2), at octet 11"},
    });
    // Alphabets 16, 17 and so on of 2, 3, 4, 7, 8 ... characters: as many as fit in a width and one more.
    for (unsigned int bits = 2; bits <= 20; ++bits) {
        for (const unsigned int size : {1u << (bits - 1), (1u << std::min(bits, 16u)) - 1}) {
            if (size < 1u << (bits - 1)) {
                continue; // to save time
            }
            SCOPED_TRACE(size);
            std::string characters;
            std::vector<std::string> each;
            for (char32_t c = 0x100; each.size() < size; c = c == 0xD7FF ? 0xE000 : c + 1) {
                unsigned char sequence[4];
                const std::size_t length = UTF8Encoding().encode(static_cast<int>(c), sequence);
                each.emplace_back(reinterpret_cast<const char*>(sequence), length);
                characters += each.back();
            }
            std::string text;
            std::string codes; // as bits
            for (const unsigned int code : {0u, size - 1, size / 2, 1u, size - 1}) {
                text += each[code];
                for (unsigned int bit = bits; bit-- > 0;) {
                    codes += (code >> bit & 1) != 0 ? '1' : '0';
                }
            }
            codes.append((8 - codes.size() % 8) % 8, '1');
            const std::string packed = octetsOfBits(codes);
            std::string whole = document("20 0800 00") + literal(characters) + octets("3C0061 88");
            // A chunk of three octets or more, of two for codes of two or three bits.
            whole += packed.size() == 2 ? octets("3D") : octets("3E") + static_cast<char>(packed.size() - 3);
            FastInfosetParser parser;
            TypedEventRecorder recorder;
            recorder.connect(parser);
            parser.setStrict(true);
            parseMemory(parser, whole + packed + octets("FF"));
            EXPECT_EQ(recorder.events(), "^|<a|'" + text + "|>|$");
        }
    }
}

TEST(StrictParserTest, ChildrenByLevel) {
    expectRows({
        {"all that may stand beside the root", "00 E2 4063 C4 E1 0074 FF F0 E1 80 FF 3C0061 F0 E2 80 F0",
         "^|#c|!,,|?t|~|?t|<a|>|#c|$", SAME},
        {"text beside the root", "00 8078 3C0061 FF", "^|'x|<a|>|$",
         "character data outside of the document's element (X.891, C.2), at octet 5"},
        {"a reference beside the root", "00 3C0061 F0 C80065 F0", "^|<a|>|$",
         "an entity reference outside of the document's element (X.891, C.2), at octet 9"},
        {"two roots", "00 3C0061 F0 3C0062 FF", "^|<a|>|<b|>|$",
         "a second element of the document (X.891, C.2), at octet 9"},
        {"no root", "00 F0", "^|$", "a document without element (X.891, C.2), at octet 5"},
        {"a declaration behind the root", "00 3C0061 F0 C4 FF", "^|<a|>|!,,|~|$",
         "a document type declaration behind the first or behind the element (X.891, C.2), at octet 9"},
        {"two declarations", "00 C4 F0 C4 F0 3C0061 FF", "^|!,,|~|!,,|~|<a|>|$",
         "a document type declaration behind the first or behind the element (X.891, C.2), at octet 7"},
        {"a declaration in an element", "00 3C0061 C4 FF F0", "^|<a|!,,|~|>|$",
         "a document type declaration within an element (X.891, C.3), at octet 8"},
        {"a comment in a declaration", "00 C4 E2 0078 FF F0 3C0061 FF", "^|!,,|?x|~|<a|>|$",
         "neither a processing instruction nor the end of the document type declaration (X.891, C.9), at "
         "octet 7"},
        {"another octet in a declaration", "00 C4 00 0078 FF F0 3C0061 FF",
         "AssertionViolationException: stat == 0x0f",
         "neither a processing instruction nor the end of the document type declaration (X.891, C.9), at "
         "octet 7"},
        {"what starts nothing", "00 3C0061 C0 FF", "Invalid child element", SAME},
        {"an end on the next octet", "00 3C0061 F0 F0", "Parse error: unknown element child code", SAME},
    });
}

TEST(StrictParserTest, IdentificationAndPadding) {
    expectRows({
        {"the version", "80 3C0061 FF", "^|<a|>|$",
         "padding behind the version that is not 0 (X.891, 12.8), at octet 4"},
        {"additional data", "40 00 8061 0062 3C0061 FF", "^|<a|>|$",
         "identification of additional data that is not 0 (X.891, C.2.4), at octet 6"},
        {"the initial vocabulary", "20 2080 00 0061 3C80 FF", "^|<a|>|$",
         "padding of the initial vocabulary that is not 0 (X.891, C.2.5), at octet 5"},
        {"a string of a table", "20 0080 00 8061 3C80 FF", "^|<a|>|$",
         "identification of a vocabulary's string that is not 0 (X.891, C.2.5), at octet 8"},
        {"an entry of a table", "20 0008 00 4078 3C0061 A0 FF", "^|<a|'x|>|$",
         "identification of a table's entry that is not 00 (X.891, C.2.5), at octet 8"},
        {"a name of a table", "20 0082 00 0061 00 0400 00 FF", "^|<a|>|$",
         "padding of a name surrogate that is not 0 (X.891, C.2.5), at octet 11"},
        {"a part of a name of a table", "20 0082 00 0061 00 0080 00 FF", "^|<a|>|$",
         "a part of a name surrogate that is no index (X.891, C.16), at octet 12"},
        {"the end of the notations", "10 C0006E F1 3C0061 FF", "Nn,-,-|^|<a|>|$",
         "the end of the notations that is not 1111 0000 (X.891, C.2.6), at octet 9"},
        {"a notation", "10 F4 3C0061 FF", "AssertionViolationException: id == 60",
         "neither a notation nor their end (X.891, C.2.6), at octet 5"},
        {"the end of the entities", "08 D00065 0073 006E F1 3C0061 FF", "Ue,-,s,n|^|<a|>|$",
         "the end of the unparsed entities that is not 1111 0000 (X.891, C.2.7), at octet 13"},
        {"an entity", "08 F2 3C0061 FF", "AssertionViolationException: id == 120",
         "neither an unparsed entity nor their end (X.891, C.2.7), at octet 5"},
        {"the encoding scheme", "04 8061 3C0061 FF", "^|<a|>|$",
         "identification of the encoding scheme that is not 0 (X.891, C.2.8), at octet 5"},
        {"standalone", "02 81 3C0061 FF", "^|<a|>|$",
         "padding of standalone that is not 0 (X.891, C.2.9), at octet 5"},
        {"a namespace attribute", "00 38 030070 0075 F0 3C0061 FF", "^|+p=u|<a|>|-p|$",
         "a namespace attribute that does not begin 110011 (X.891, C.3.4), at octet 6"},
        {"two bits of one", "00 38 C30070 0075 F0 3C0061 FF", "^|+p=u|<a|>|-p|$",
         "a namespace attribute that does not begin 110011 (X.891, C.3.4), at octet 6"},
        {"behind namespace attributes", "00 38 CF0070 0075 F4 3C0061 FF", "^|+p=u|<a|>|-p|$",
         "padding behind the namespace attributes that is not 0 (X.891, C.3.4), at octet 12"},
        {"an attribute's name", "00 7C0061 7C0062 4063 FF F0", R"(^|<a b="c"|>|$)",
         "padding of a name that is not 0 (X.891, C.17), at octet 8"},
        {"the end of attributes", "00 7C0061 90 3C0062 FF F0", "^|<a|<b|>|>|$",
         "neither an attribute nor their end (X.891, C.3.6), at octet 8"},
        {"behind the end of attributes", "00 7C0061 780062 4063 F5 3C0063 FF F0", R"(^|<a b="c"|<c|>|>|$)",
         "padding behind an end that is not 0 (X.891, 12), at octet 13"},
        {"behind the end of an element", "00 3C0061 3C0062 F5 3C0063 FF F0", "^|<a|<b|>|<c|>|>|$",
         "padding behind an end that is not 0 (X.891, 12), at octet 11"},
        {"behind the document", "00 3C0061 F0 E2 4063 F5", "^|<a|>|#c|$",
         "padding behind the document that is not 0 (X.891, 12), at octet 13"},
    });
}

TEST(StrictParserTest, NumbersAndIndexes) {
    expectRows({
        {"index 0 of a name's part", "00 3CFF FF", "^|<|>|$",
         "index 0 of an identifying string (X.891, C.13), at octet 7"},
        {"index 0 in a surrogate", "20 0082 00 0061 00 007F 00 FF", "^|<|>|$",
         "index 0 in a name surrogate (X.891, C.16), at octet 13"},
        {"index 0 of another string", "00 3C0061 E2FF FF", "^|<a|#|>|$", SAME},
        {"a chunk past its table", "00 3C0061 A0", PAST,
         "string 1 of a table that ends before (X.891, 8.4), at octet 9", PAST_INDEXED},
        {"a part past its table", "00 3D820061 FF", PAST,
         "string 3 of a table that ends before (X.891, 8.4), at octet 7", PAST_INDEXED},
        {"a name past its table", "00 3C0061 01 FF", PAST,
         "name 2 of a table that ends before (X.891, 8.5), at octet 9", PAST_INDEXED},
        {"a second octet of an index at bit 1", "00 3C0061 E1F00000 FF", PAST,
         "no form of an integer or a length (X.891, C.25), at octet 10", PAST_INDEXED},
        {"an index beyond 2^20", "00 3C0061 E2EFFFFF FF",
         "AssertionViolationException: val <= Encoder::MAXINT20",
         "an integer beyond 2^20 (X.891, C.25), at octet 12"},
        {"a reserved index at bit 2", "00 3C0061 31000000 FF", "AssertionViolationException: val == 48",
         "no form of an integer or a length (X.891, C.27), at octet 9"},
        {"padding of an index at bit 2", "00 3C0061 30100000 FF", PAST,
         "no form of an integer or a length (X.891, C.27), at octet 9", PAST_INDEXED},
        {"padding of an index at bit 3", "00 3C0061 B8100000 FF", PAST,
         "no form of an integer or a length (X.891, C.28), at octet 9", PAST_INDEXED},
        {"a reserved index at bit 3", "00 3C0061 B9000000 FF", PAST,
         "no form of an integer or a length (X.891, C.28), at octet 9", PAST_INDEXED},
        {"a length at bit 1 in its last form", "00 3C6100000000" + times("61", 321) + "FF",
         "^|<" + std::string(321, 'a') + "|>|$",
         "no form of an integer or a length (X.891, C.22), at octet 7"},
        {"a length at bit 4 in its last form", "00 7C0061 780062 0900000000" + times("61", 265) + "FF F0",
         "^|<a b=\"" + std::string(265, 'a') + "\"|>|$",
         "no form of an integer or a length (X.891, C.23), at octet 12"},
        {"many items", "40 800000" + times("0061 0062", 129) + "3C0061 FF", "^|<a|>|$", SAME},
        {"a reserved count of items", "40 900000" + times("0061 0062", 129) + "3C0061 FF", "^|<a|>|$",
         "no form of an integer or a length (X.891, C.21), at octet 8"},
    });
}

TEST(StrictParserTest, Text) {
    const std::string UTF8 = "text that is not well-formed UTF-8 (X.891, 7.17.3), at octet ";
    const std::string UTF16 = "text that is not well-formed UTF-16 (X.891, 7.17.4), at octet ";
    expectRows({
        {"a chunk", "00 3C0061 80E9 FF", "^|<a|'\xE9|>|$", UTF8 + "9"},
        {"the second octet", "00 3C0061 8141E9 FF", "^|<a|'A\xE9|>|$", UTF8 + "10"},
        {"an overlong one", "00 3C0061 81C080 FF", "^|<a|'\xC0\x80|>|$", UTF8 + "9"},
        {"a surrogate", "00 3C0061 8200EDA080 FF", "^|<a|'\xED\xA0\x80|>|$", UTF8 + "10"},
        {"a CDATA section", "00 3C0061 8C24E9 FF", "^|<a|[|'\xE9|]|>|$", UTF8 + "10"},
        {"a value", "00 7C0061 780062 00E9 FF F0", "^|<a b=\"\xE9\"|>|$", UTF8 + "12"},
        {"a local name", "00 3C00E9 FF", "^|<\xE9|>|$", UTF8 + "7"},
        {"a prefix", "00 38 CF00E9 0075 F0 3C0061 FF", "^|+\xE9=u|<a|>|-\xE9|$", UTF8 + "8"},
        {"a target", "00 E100E9 FF 3C0061 FF", "^|?\xE9|<a|>|$", UTF8 + "7"},
        {"a comment", "00 E200E9 3C0061 FF", "^|#\xE9|<a|>|$", UTF8 + "7"},
        {"a table's entry", "20 0080 00 00E9 3C80 FF", "^|<\xE9|>|$", UTF8 + "9"},
        {"an alphabet", "20 0800 00 0161E9 3C0061 FF", "^|<a|>|$", UTF8 + "10"},
        {"an encoding scheme", "04 00E9 3C0061 FF", "^|<a|>|$", UTF8 + "6"},
        {"UTF-16", "00 3C0061 8500E9 8601D83DDE00 FF", "^|<a|'\xC3\xA9|'\xF0\x9F\x98\x80|>|$", SAME},
        {"half of a pair", "00 3C0061 85D800 FF", "^|<a|'?|>|$", UTF16 + "9"},
        {"the wrong half first", "00 3C0061 8601DC00D83D FF", "^|<a|'??|>|$", UTF16 + "10"},
        {"half a pair and a letter", "00 3C0061 8601D83D0041 FF", "^|<a|'?A|>|$", UTF16 + "10"},
        {"half a unit", "00 3C0061 8400 FF", "^|<a|'?|>|$", UTF16 + "9"},
        {"a value as UTF-16", "00 7C0061 780062 11DC00 FF F0", "^|<a b=\"?\"|>|$", UTF16 + "12"},
        // 11 | 00001000 | 1000 00000111: algorithm 9 and 16 octets.
        {"a UUID", "00 7C0061 780062 308807 6BA7B8109DAD11D180B400C04FD430C8 FF F0",
         R"(^|<a b="6BA7B810-9DAD-11D1-80B4-00C04FD430C8"|>|$)",
         R"(^|<a b="6ba7b810-9dad-11d1-80b4-00c04fd430c8"|>|$)"},
    });
}

TEST(StrictParserTest, NamesMappingsReferences) {
    expectRows({
        {"an attribute's prefix", "00 78 CF0070 0075 F0 3F8181 0061 7B818100624031 FF F0",
         R"(^|+p=u|<{u}p:a {u}b="1"|>|-p|$)", R"(^|+p=u|<{u}p:a {u}p:b="1"|>|-p|$)"},
        {"a prefix and no namespace", "00 3E0070 0061 FF", "^|<p:a|>|$",
         "a name with a prefix and without namespace name (X.891, 7.16), at octet 6"},
        {"the same of an attribute", "00 7C0061 7A0070 0062 4031 FF F0", R"(^|<a b="1"|>|$)",
         "a name with a prefix and without namespace name (X.891, 7.16), at octet 9"},
        {"the same in a table", "20 0282 00 0070 00 0061 00 020100 00 FF", "^|<p:a|>|$",
         "a name surrogate with a prefix and without namespace name (X.891, C.16.1), at octet 15"},
        {"a prefix that is undeclared", "00 38 CE0070 F0 3C0061 FF", "^|+p=|<a|>|-p|$", SAME},
        {"an element that declares two", "00 38 CF00700075 CF00710076 F0 3C0061 FF",
         "^|+p=u|+q=v|<a|>|-p|-q|$", "^|+p=u|+q=v|<a|>|-q|-p|$"},
        {"a child that declares", "00 38 CF00700075 F0 3C0061 38 CF00710076 F0 3C0062 FF F0",
         "^|+p=u|<a|+q=v|<b|>|-q|>|-q|$", "^|+p=u|<a|+q=v|<b|>|-q|>|-p|$"},
        {"a child that does not", "00 38 CF00700075 F0 3C0061 3C0062 FF F0", "^|+p=u|<a|<b|>|>|$",
         "^|+p=u|<a|<b|>|>|-p|$"},
        {"an entity reference", "00 3C0061 CB006500730070 FF", "^|<a|>|$", "^|<a|*e|>|$"},
    });
}

TEST(StrictParserTest, QualifiedNamesAreOptional) {
    struct Handler : FISDefaultHandler {
        std::string seen;
        void startElement(const std::string&, const std::string&, const std::string& qname,
                          const XML::Attributes& list) override {
            seen += qname + "," + list.getQName(0) + "," + list.getQName(1) + ";";
        }
        void endElement(const std::string&, const std::string&, const std::string& qname) override {
            seen += "/" + qname + ";";
        }
    };
    // <a b="1" p:c="1"><p:a b="1" p:c="1"/></a>
    const std::string octets = document("00 78 CF00700075 F0 3C0061 7800624031 7B8181006380 F0 "
                                        "7F818180 0080 0180 FF FF");
    for (const bool wanted : {true, false}) {
        FastInfosetParser parser;
        Handler handler;
        parser.initialize(&handler);
        parser.setStrict(true);
        parser.setFeature(XML::XMLReader::FEATURE_NAMESPACE_PREFIXES, wanted);
        parseMemory(parser, octets);
        EXPECT_EQ(handler.seen, wanted ? "a,b,p:c;p:a,b,p:c;/p:a;/a;" : ",,;,,;/;/;");
    }
}

TEST(StrictParserTest, XMLDeclarations) {
    const struct {
        const char* text;
        bool isGood;
    } rows[] = {{" encoding='finf'", true},
                {" version='1.0' encoding='finf'", true},
                {" version='1.1' encoding='finf' standalone='yes'", true},
                {" encoding='finf' standalone='no'", true},
                {"", false},
                {" version='1.0'", false},
                {" version='1.2' encoding='finf'", false},
                {" encoding=\"finf\"", false},
                {" encoding='finf' version='1.0'", false},
                {" encoding='finf' standalone='no' ", false},
                {" version='1.0' encoding='finf' standalone='yes'  ", false}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.text);
        const std::string octets = "<?xml" + std::string(row.text) + "?>" + document("00 3C0061 FF");
        const std::string usual = outcome(octets, false, V::VOC_VECTOR);
        EXPECT_EQ(usual, "^|<a|>|$");
        EXPECT_EQ(outcome(octets, true, V::VOC_VECTOR),
                  row.isGood ? usual
                             : "an XML declaration that is none of the nine (X.891, 12.3), at octet " +
                                   std::to_string(std::min<std::size_t>(57, 7 + std::strlen(row.text))));
    }
}

TEST(StrictParserTest, DocumentsBackToBack) {
    // One that ends within its last octet, and one that ends with it.
    const std::string first = document("00 3C0061 F0 E24063 F0");
    const std::string both = first + document("00 3C0062 FF");
    FastInfosetParser parser;
    FastInfosetReader reader;
    TypedEventRecorder recorder;
    recorder.connect(parser);
    parser.setStrict(true);
    parseMemory(parser, both);
    EXPECT_EQ(parser.documentSize(), first.size());
    parseMemory(parser, both.substr(first.size()));
    EXPECT_EQ(recorder.events(), "^|<a|>|#c|$|^|<b|>|$");
    EXPECT_EQ(parser.documentSize(), both.size() - first.size());
    recorder.clear();
    for (std::string_view rest = both; !rest.empty(); rest.remove_prefix(reader.documentSize())) {
        reader.open(rest);
        replay(reader, recorder);
    }
    EXPECT_EQ(recorder.events(), "^|<a|>|#c|$|^|<b|>|$");
    // The end has to be there; the default does not look for it.
    EXPECT_EQ(outcome(recorder, [&] { parseMemory(parser, first.substr(0, first.size() - 1)); }),
              "FISParseException: Unexpected end of stream while parsing element children");
    EXPECT_EQ(parser.documentSize(), 0u);
}

// A vocabulary with an element name, an alphabet and an algorithm.
V sharedVocabulary(V::VocabularyImpl impl, unsigned int firstAlgorithm = DocumentAlgorithms::FIRST) {
    V vocabulary("urn:v", impl);
    addElements(vocabulary, {"a"});
    vocabulary.restrictedAlphabets().add("abc");
    vocabulary.algorithms().setFirstIndex(firstAlgorithm);
    vocabulary.algorithms().add("urn:alg:2");
    return vocabulary;
}

// A document over that vocabulary: with these optional tables, and these octets behind its URI.
std::string sharing(const char* tables, const std::string& hexOctets) {
    return document(std::string("20") + tables + "0475726E3A76" + hexOctets);
}

TEST(StrictParserTest, NothingStaysFromDocumentToDocument) {
    const std::string undeclared = "restricted alphabet 16, which is not declared (X.891, 8.2), at octet 11";
    for (const auto impl : ALL_KINDS) {
        SCOPED_TRACE(impl);
        FastInfosetParser parser(impl);
        FastInfosetParser given(sharedVocabulary(impl));
        FastInfosetReader reader(sharedVocabulary(impl));
        TypedEventRecorder recorder;
        recorder.connect(parser), recorder.connect(given);
        parser.setStrict(true), given.setStrict(true);
        given.decodingAlgorithms().add("urn:alg:2", &HexEncoding::decode);
        reader.decodingAlgorithms().add("urn:alg:2", &HexEncoding::decode);
        // An alphabet, which another document declares anew, and a third one does not.
        const auto alphabet = [&](const char* characters) {
            return outcome(recorder, [&] {
                parseMemory(parser, document(std::string("20 0800 00 02") + characters + "3C0061 883C1F FF"));
            });
        };
        EXPECT_EQ(alphabet("616263"), "^|<a|'ab|>|$");
        EXPECT_EQ(alphabet("78797A"), "^|<a|'xy|>|$");
        EXPECT_EQ(outcome(recorder, [&] { parseMemory(parser, document("00 3C0061 883C1F FF")); }),
                  undeclared);
        // Name 2 is the document's own, as is alphabet 17; alphabet 16 and algorithm 32 are the vocabulary's.
        const struct {
            std::string octets;
            std::string events;
        } rows[] = {
            {sharing("1000", "3C0062 01 00 FF FF"), "^|<b|<b|<a|>|>|>|$"},
            {sharing("1800", "00 0278797A 3C0063 01 883C1F 88401F 8C7C05 FF F0"),
             "^|<c|<c|'ab|'xy|=binary 05|>|>|$"},
            {document("00 3C0061 883C1F FF"), undeclared},
            {document("00 3C0061 8C7C05 FF"),
             "encoding algorithm 32, for which the document declares no URI (X.891, 8.3), at octet 9"},
            {document("20 0400 00 08" + hex("urn:alg:3") + "3C0061 8C7C05 FF"),
             "encoding algorithm 32, urn:alg:3, for which no decoding is registered (X.891, 8.3), at octet "
             "22"},
            {document("00 00 FF"), "name 1 of a table that ends before (X.891, 8.5), at octet 6"}};
        for (int turn = 0; turn < 2; ++turn) {
            for (const auto& row : rows) {
                EXPECT_EQ(outcome(recorder, [&] { parseMemory(given, row.octets); }), row.events);
                EXPECT_EQ(outcome(recorder, [&] { reader.open(row.octets), replay(reader, recorder); }),
                          row.events);
            }
        }
    }
    // By default a parser over a vocabulary goes on where the document before has left it.
    FastInfosetParser parser(sharedVocabulary(V::VOC_VECTOR));
    TypedEventRecorder recorder;
    recorder.connect(parser);
    parseMemory(parser, sharing("1000", "3C0062 FF"));
    EXPECT_EQ(outcome(recorder, [&] { parseMemory(parser, sharing("1000", "3C0063 01 FF F0")); }),
              "^|<c|<b|>|>|$");
}

TEST(StrictParserTest, AlgorithmsByURI) {
    // Two URIs, and a chunk by the second algorithm; by default the first that is registered has the
    // index 32.
    const std::string octets =
        document("20 0400 01 08" + hex("urn:alg:1") + "08" + hex("urn:alg:2") + "3C0061 8C80 05 FF");
    const std::string refusal =
        "encoding algorithm 33, urn:alg:2, for which no decoding is registered (X.891, 8.3), at octet 32";
    const std::string wild = sharing("1000", "3C0061 8C80 05 FF"); // the first one has the index 33
    GivenVocabulary loader(sharedVocabulary(V::VOC_VECTOR, 33));
    FastInfosetParser parser(V::VOC_VECTOR, &loader);
    TypedEventRecorder recorder;
    recorder.connect(parser);
    DecodingAlgorithm& algorithms = parser.decodingAlgorithms();
    const auto read = [&](bool strict, const std::string& document) {
        parser.setStrict(strict);
        return outcome(recorder, [&] { parseMemory(parser, document); });
    };
    EXPECT_EQ(read(true, octets), refusal);
    algorithms.add(&HexEncoding::decode); // without URI
    EXPECT_EQ(read(true, octets), refusal);
    EXPECT_EQ(read(false, octets), "FISException: Invalid decoding defined");
    algorithms.setFallback([](const auto&, auto, auto) { return AutoPtr<Encoding>(); });
    EXPECT_EQ(read(true, octets).substr(0, 70), refusal.substr(0, 70));
    std::string handed;
    algorithms.setFallback([&](const std::string& uri, unsigned int index, std::string_view data) {
        handed = uri + " " + std::to_string(index) + " " + hex(data);
        return AutoPtr<Encoding>(new HexEncoding("0A"));
    });
    EXPECT_EQ(read(true, octets), "^|<a|=binary 0A|>|$");
    EXPECT_EQ(handed, "urn:alg:2 33 05");
    EXPECT_EQ(read(false, octets), "FISException: Invalid decoding defined");
    algorithms.add("urn:alg:2", &HexEncoding::decode);
    EXPECT_EQ(read(true, octets), "^|<a|=binary 05|>|$");
    EXPECT_EQ(read(true, wild), "^|<a|=binary 05|>|$");
    EXPECT_EQ(read(true, sharing("1400", "00 08" + hex("urn:alg:2") + "3C0061 8C84 05 FF")),
              "^|<a|=binary 05|>|$"); // one more behind it: 34
}

// What was reported last.
struct LastEvents : FISDefaultHandler {
    std::string events;
    void startElement(const std::string&, const std::string& name, const std::string&,
                      const XML::Attributes&) override {
        add(name);
    }
    void characters(const char ch[], int start, int length) override {
        add({ch + start, static_cast<std::size_t>(length)});
    }
    void add(std::string_view event) {
        events.append(event);
        events.erase(0, events.size() - std::min<std::size_t>(events.size(), 4));
    }
};

TEST(StrictParserTest, MoreThanAnIndexCanName) {
    constexpr int COUNT = 1048576;
    // The same names and chunks over and over, which the letter has appended, one for the last index,
    // another.
    const std::string chunks = times(octets("9078"), COUNT - 1) + octets("9079 907A B80BFBEF");
    const std::string names = times(octets("3C0061F0"), COUNT - 2) + octets("3C0062F0 3C0063F0 3007F7DF");
    for (const auto impl : ALL_KINDS) {
        FastInfosetParser parser(impl);
        LastEvents handler;
        parser.initialize(&handler);
        parser.setStrict(true);
        parseMemory(parser, document("00 3C0072") + chunks + octets("FF"));
        EXPECT_EQ(handler.events, "xyzy");
        EXPECT_EQ(parser.vocabulary().vocabulary(V::CONTENT_CHARACTER_CHUNK).size(), COUNT + 1u);
        parseMemory(parser, document("00 3C0072") + names + octets("FFF0"));
        EXPECT_EQ(handler.events, "abcb");
    }
}

// Takes chunks whole, or leaves their values.
class ChunkRecorder : public TypedRecorder<TypedChunkHandler> {
public:
    bool takes = false;

    bool startTypedChunk(const TypedChunk& chunk) override {
        std::string token = "(" + std::to_string(chunk.algorithm()) + chunk.uri();
        for (const Int32 value : takes ? chunk.int32Values() : std::span<const Int32>()) {
            token += " " + std::to_string(value);
        }
        event(token);
        return takes;
    }
    void endTypedChunk() override { event(")"); }
};

TEST(StrictParserTest, ChunksAndProperties) {
    // Additional data, encoding scheme, standalone, version; two integers, octets, one integer, CDATA.
    const std::string octets = document("47 00 0061 010102 047574662D38 01 4031 3C0061 "
                                        "8C0E050000000100000002 8C00FF 8C0E0100000003 8C2478 FF");
    const std::string header = "none|additional a=01 02|vocabulary|scheme utf-8|standalone|version 1|^|";
    FastInfosetParser parser;
    ChunkRecorder recorder;
    recorder.connectAll(parser);
    parseMemory(parser, octets);
    EXPECT_EQ(recorder.events(), "none|vocabulary|^|<a|=int 1|=int 2|=binary FF|=int 3|[|'x|]|>|$");
    parser.setStrict(true);
    recorder.clear();
    parseMemory(parser, octets);
    EXPECT_EQ(recorder.events(), header + "<a|(4|=int 1|=int 2|)|(1|=binary FF|)|(4|=int 3|)|[|'x|]|>|$");
    recorder.clear();
    recorder.takes = true;
    parseMemory(parser, octets);
    EXPECT_EQ(recorder.events(), header + "<a|(4 1 2|)|(1|)|(4 3|)|[|'x|]|>|$");

    FastInfosetReader reader;
    reader.open(octets);
    reader.next();
    EXPECT_EQ(reader.characterEncodingScheme(), "utf-8");
    EXPECT_EQ(reader.standalone(), true);
    EXPECT_EQ(reader.version(), "1");
    ASSERT_EQ(reader.additionalData().size(), 1u);
    EXPECT_EQ(reader.additionalData()[0].id, "a");
    reader.next(), reader.next();
    EXPECT_EQ(reader.algorithm(), 4u);
    EXPECT_EQ(reader.int32Values().size(), 2u);
    const std::string silent = document("00 3C0061 FF");
    reader.open(silent);
    reader.next();
    EXPECT_FALSE(reader.standalone() || reader.version() || reader.characterEncodingScheme());
    EXPECT_TRUE(reader.additionalData().empty());
}

TEST(StrictParserTest, CanonicalNumbers) {
    // An attribute and a chunk of floats, a chunk of doubles.
    const std::string octets = document("00 7C0061 780062 3063 42C80000 F0 "
                                        "8C1A05 80000000 7F800000 8C1E05 3FF8000000000000 FF");
    for (const bool strict : {false, true}) {
        FastInfosetParser parser;
        EventRecorder recorder;
        recorder.connect(parser);
        parser.setStrict(strict);
        for (const bool canonical : {true, false, true}) {
            parser.setCanonicalNumbers(canonical);
            recorder.clear();
            const std::string failure = failureOf([&] { parseMemory(parser, octets); });
            EXPECT_EQ(failure + recorder.events(), canonical ? R"(^|<a b="1.0E2"|'-0.0E0 INF|'1.5E0|>|$)"
                                                             : R"(^|<a b="100"|'-0 INF|'1.5|>|$)");
        }
    }
}

} // namespace
} // namespace Tamo::FastInfoset::Test
