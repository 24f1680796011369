// What the writer's strict mode writes and refuses, beside what the default does with the same events.
#include "DocumentTest.h"
#include "Tamo/FastInfoset/BitStreamWriter.h"
#include "Tamo/FastInfoset/CDataEncoding.h"
#include "Tamo/FastInfoset/DWordEncoding.h"
#include "Tamo/FastInfoset/Encoder.h"
#include "Tamo/FastInfoset/HexEncoding.h"
#include "Tamo/FastInfoset/IntEncoding.h"
#include "Tamo/FastInfoset/MapVocabulary.h"
#include "Tamo/FastInfoset/TypedChunk.h"
#include "Tamo/FastInfoset/VectorVocabulary.h"
#include <algorithm>
#include <iterator>

namespace Tamo::FastInfoset::Test {
namespace {

using Writer = FastInfosetWriter;
using V = DocumentVocabulary;
using Use = std::function<void(Writer&)>;

struct Row {
    const char* name;
    const char* events; ///< as play() takes them; "&" skips an entity, "@" stands for inside
    std::string strict; ///< octets behind identification and version; of what is refused "; " and why
    std::string usual;  ///< octets in the default, or the first failure
    Use before = [](Writer&) {};
    Use inside = [](Writer&) {};
};

// Plays events one by one, with the ends named as their elements are, or as is told. What one throws is
// handed to failed, which says whether to go on.
void playEach(const Row& row, Writer& writer, const std::function<bool(const std::string&)>& failed) {
    std::vector<std::string> open;
    const auto playOne = [&](const std::string& token) {
        const std::string text = token.substr(1);
        if (token[0] == '>') {
            const std::string name = !text.empty() ? text : open.empty() ? "" : open.back();
            const std::size_t end = name.find('}') + 1; // 0 without a namespace name
            const std::string qname = name.substr(end);
            writer.endElement(end == 0 ? "" : name.substr(1, end - 2), qname.substr(qname.find(':') + 1),
                              qname);
            open.pop_back();
        } else if (token[0] == '&') {
            writer.skippedEntity(text);
        } else if (token[0] == '@') {
            row.inside(writer);
        } else {
            play(token, writer);
            if (token[0] == '<') {
                open.push_back(text.substr(0, text.find(' ')));
            }
        }
    };
    std::string failure = failureOf([&] { row.before(writer); });
    for (std::string_view rest = row.events; failure.empty() || failed(failure);) {
        if (rest.empty()) {
            return;
        }
        const std::string token(rest.substr(0, rest.find('|')));
        rest.remove_prefix(std::min(token.size() + 1, rest.size()));
        failure = failureOf([&] { playOne(token); });
    }
}

std::string outcome(const Row& row, bool strict) {
    static const std::string PREFIX = "FISEncodingException: Cannot write ";
    std::ostringstream stream;
    std::string failures;
    {
        Writer writer(stream, false, V::VOC_MAP);
        writer.setStrict(strict);
        playEach(row, writer, [&](std::string failure) {
            if (failure.starts_with(PREFIX)) {
                failure.erase(0, PREFIX.size());
            }
            failures += (failures.empty() && !strict ? "" : "; ") + failure;
            return strict;
        });
    }
    const std::string octets = stream.str();
    return !strict && !failures.empty()
               ? failures
               : hex(octets.substr(std::min<std::size_t>(4, octets.size()))) + failures;
}

void add(Writer& writer, V::ID id, const std::vector<std::string>& texts) {
    Test::add(writer.getDocumentVocabulary(), id, texts);
}

// A table with these entries behind its placeholder.
Vocabulary<std::string>* strings(std::initializer_list<const char*> texts) {
    auto pResult = std::make_unique<VectorVocabulary<std::string>>();
    bool found = false;
    for (const char* text : texts) {
        pResult->index(text, found);
    }
    return pResult.release();
}

void addName(Writer& writer, const QualifiedNameEntry& name) {
    bool found = false;
    writer.getDocumentVocabulary().elementVocabulary().index(name, found);
}

// An algorithm that adds one to each octet and has no text beyond ASCII.
void encodeShifted(BitStreamWriter& writer, const std::string& text) {
    std::string octets = text;
    for (char& c : octets) {
        ++c;
    }
    Encoder::nonEmptyOctetString(writer, octets);
}

int checkShifted(const std::string& text) {
    return text.find('\xC3') == std::string::npos ? static_cast<int>(text.size()) : -1;
}

// A value of the application's first algorithm.
struct Application : DWordEncoding {
    using DWordEncoding::DWordEncoding;
    unsigned int type() const override { return EncodingAlgorithm::USER_DEFINED; }
};

void chunk(Writer& writer, Encoding* pEncoding, const std::string& uri = {}) {
    const AutoPtr<Encoding> pValue(pEncoding);
    if (writer.startTypedChunk(TypedChunk(pValue, pValue->type(), uri))) {
        writer.endTypedChunk();
    } else {
        pValue->handle(static_cast<FISContentHandler*>(&writer));
    }
}

DocumentVocabulary vocabulary(const std::string& uri, V::VocabularyImpl impl) {
    DocumentVocabulary result(uri, impl);
    bool found = false;
    for (const char* name : {"a", "b", "a"}) {
        if (impl == V::VOC_VECTOR ||
            result.exists(V::LOCAL_NAME, name, found) == Vocabulary<std::string>::NOT_FOUND) {
            result.index(V::LOCAL_NAME, name, found);
        }
    }
    result.elementVocabulary().index({QualifiedNameEntry::ABSENT, QualifiedNameEntry::ABSENT, 1}, found);
    result.restrictedAlphabets().add("ab");
    result.algorithms().add("urn:x");
    return result;
}

const Row ROWS[] = {
    {"all tables", R"(^|<e a="v"|'t|#c|>|$)",
     "20 00 9F 01 00 65 00 61 00 00 76 00 00 74 00 00 63 00 00 00 00 00 01 40 00 80 F0 A0 E2 80 FF",
     "AssertionViolationException: checkInputParams(Utility::SIZEOFINT32INBIT, numOfBits)",
     [](Writer& w) {
         add(w, V::LOCAL_NAME, {"e", "a"}), add(w, V::ATTRIBUTE_VALUE, {"v"});
         add(w, V::CONTENT_CHARACTER_CHUNK, {"t"}), add(w, V::OTHER_STRING, {"c"});
         addName(w, {0, 0, 1});
         bool found = false;
         w.getDocumentVocabulary().attributeVocabulary().index({0, 0, 2}, found);
     }},
    {"names by their parts", "^|+p=u|<{u}p:e|>|$",
     "20 03 82 00 00 70 00 00 75 00 00 65 00 03 01 01 00 38 CF 81 81 F0 00 FF",
     "FISEncodingException: Illegal startposition for an writeIdentifyingStringIndex",
     [](Writer& w) {
         add(w, V::PREFIX, {"p"}), add(w, V::NAMESPACE_NAME, {"u"}), add(w, V::LOCAL_NAME, {"e"});
         addName(w, {2, 2, 1});
     }},
    {"another document", "^|<a|>|$|^|<a|>|$", "00 3C 00 61 FF E0 00 00 01 00 3C 00 61 FF",
     "FISEncodingException: Illegal startposition for an writeIdentifyingStringIndex"},
    {"a vocabulary with its URI", "^|<a|@|>|$|^|<a|<b|>|>|$",
     "20 10 00 04 75 72 6E 3A 76 00 88 3C 17 FF E0 00 00 01 20 10 00 04 75 72 6E 3A 76 00 3C 81 FF F0",
     "InvalidAccessException: characters() with an alphabet needs the strict mode",
     [](Writer& w) { w.useVocabulary(vocabulary("urn:v", V::VOC_MAP)); },
     [](Writer& w) { w.characters("abb", 16); }},
    {"a vocabulary without URI, in which an entry occurs twice", "^|<a|<b|>|>|$|^|<a|>|$",
     "20 0C 82 00 01 61 62 00 04 75 72 6E 3A 78 02 00 61 00 62 00 61 00 00 00 00 3C 81 FF F0 E0 00 00 01 20 "
     "0C 82 00 01 61 62 00 04 75 72 6E 3A 78 02 00 61 00 62 00 61 00 00 00 00 FF",
     "InvalidArgumentException: A DocumentVocabulary with VOC_VECTOR implementation cannot be used by "
     "FastInfosetWriter",
     [](Writer& w) { w.useVocabulary(vocabulary("", V::VOC_VECTOR)); }},
    {"an external vocabulary alone", "^|<a|<b|>|>|$", "20 10 00 04 75 72 6E 3A 76 00 3C 81 FF F0",
     "AssertionViolationException: other.alphabets().size() <= _alphabets.size()",
     [](Writer& w) { w.setExternalVocabulary("urn:v", vocabulary("", V::VOC_HASH)); }},
    {"tables that do not begin with the external vocabulary", "^|<a|>|$", "00 3C 00 61 FF",
     "AssertionViolationException: other.alphabets().size() <= _alphabets.size()",
     [](Writer& w) {
         w.setExternalVocabulary("urn:v", vocabulary("", V::VOC_MAP));
         w.setDocumentVocabulary(DocumentVocabulary(V::VOC_MAP));
     }},
    {"an empty entry", "^", "; another string of the vocabulary: it is empty", "20 02 00 00 00 70",
     [](Writer& w) {
         add(w, V::PREFIX, {"p"}), w.getDocumentVocabulary().initialize(V::OTHER_STRING, strings({"", ""}));
     }},
    {"an entry that is no name", "^",
     "; a local name of the vocabulary: \"a:b\" is no name without colon (NCName)", "20 00 80 00 02 61 3A 62",
     [](Writer& w) { add(w, V::LOCAL_NAME, {"a:b"}); }},
    {"a name without its parts", "^",
     "; an element name of the vocabulary of prefix 0, namespace name 0 and local name 1: not all are in "
     "their tables (X.891, C.16)",
     "AssertionViolationException: this->_index.size() > idx",
     [](Writer& w) {
         addName(w, {0, 0, 1});
     }},
    {"an alphabet of one character", "^", "; the restricted alphabet \"aa\": a character occurs twice",
     "20 08 00 00 01 61 61", [](Writer& w) { w.getDocumentVocabulary().restrictedAlphabets().add("aa"); }},
    {"properties", "^|<a|>|$",
     "47 00 04 75 72 6E 3A 64 01 78 79 04 55 54 46 2D 38 01 42 31 2E 30 3C 00 61 FF", "00 3C 00 61 FF",
     [](Writer& w) {
         w.additionalData("urn:d", std::as_bytes(std::span("xy", 2)));
         w.characterEncodingScheme("UTF-8"), w.standalone(true), w.version("1.0");
     }},
    {"an application's algorithm", "^|<a|@|>|$",
     "20 04 00 00 04 75 72 6E 3A 73 3C 00 61 8C 7D 62 63 8C 7C 78 8C 7D 70 71 8C 7C 79 8C 04 7A FF; a value "
     "by the "
     "encoding algorithm \"urn:t\": the document does not declare it",
     "InvalidAccessException: encodedText() needs the strict mode",
     [](Writer& w) { w.encodingAlgorithms().add("urn:s", encodeShifted, checkShifted); },
     [](Writer& w) {
         w.encodedText("urn:s", "ab"), w.insertEncoding("urn:s", new DWordEncoding("x", 1));
         w.insertEncoding(new Application("p", 1)), w.insertEncoding(new Application("q", 1));
         chunk(w, new HexEncoding("y", 1), "urn:s"), chunk(w, new HexEncoding("z", 1), "urn:t");
         EXPECT_FAILURE("FISEncodingException: Cannot write \"\\xC3\" by the encoding algorithm \"urn:s\": "
                        "it has no such text",
                        w.encodedText("urn:s", "\xC3"));
         w.encodedText("urn:t", "ab");
     }},
    {"typed chunks", "^|<a|@|>|$",
     "00 3C 00 61 8C 00 79 8C 00 7A 8C 0E 01 00 00 00 01 8C 0E 05 00 00 00 02 00 00 00 03 8C 24 63 8C 05 62 "
     "63 FF; "
     "a value by the encoding algorithm 32: it is not registered with a URI",
     "00 3C 00 61 8C 05 79 7A 8C 0E 09 00 00 00 01 00 00 00 02 00 00 00 03 90 63 8C 05 62 63 8C 7C 78 FF",
     [](Writer&) {},
     [](Writer& w) {
         chunk(w, new HexEncoding("y", 1)), chunk(w, new HexEncoding("z", 1)), chunk(w, new IntEncoding(1));
         w.encodedData(2), w.encodedData(3), chunk(w, new IntEncoding(std::vector<Int32>()));
         chunk(w, new CDataEncoding("c")), w.binaryData("b", 1), w.binaryData("c", 1);
         w.insertEncoding(new Application("x", 1));
     }},
    {"values around a reference", "^|<a|@|>|$",
     "00 3C 00 61 8C 0E 01 00 00 00 02 C8 00 65 8C 0E 01 00 00 00 03 FF",
     "00 3C 00 61 8C 0E 05 00 00 00 02 00 00 00 03 FF", [](Writer&) {},
     [](Writer& w) { w.encodedData(2), w.skippedEntity("e"), w.encodedData(3); }},
    {"restricted alphabets", "^|<a|@|>|$",
     "20 08 00 00 0F 30 31 32 33 34 35 36 37 38 39 61 62 63 64 65 66 3C 00 61 88 01 1C 5F 88 3D 53 FF FF; "
     "text in a restricted alphabet, which does not have the character at octet 0, \"g\"",
     "InvalidAccessException: characters() with an alphabet needs the strict mode",
     [](Writer& w) { w.getDocumentVocabulary().restrictedAlphabets().add("0123456789abcdef"); },
     [](Writer& w) {
         w.characters("1.5", 1), w.characters("af", 16), w.characters("", 1), w.characters("g", 16);
     }},
    {"an alphabet that there is not", "^|<a|@|>|$",
     "00 3C 00 61 FF; text in a restricted alphabet: there is none with the index 3",
     "InvalidAccessException: characters() with an alphabet needs the strict mode", [](Writer&) {},
     [](Writer& w) { w.characters("1", 3); }},
    {"a prefix of an attribute's own", R"(^|+p=u|<{u}p:e {u}p:a="v"|>|-p|$)",
     "00 78 CF 00 70 00 75 F0 3F 81 81 00 65 7B 81 81 00 61 40 76 FF F0",
     "00 78 CF 00 70 00 75 F0 3F 81 81 00 65 79 81 00 61 40 76 FF F0"},
    {"an attribute in the default namespace", R"(^|+=u|<{u}e {u}a="v"|>|-|$)",
     "00 78 CD 00 75 CF 02 6E 73 31 81 F0 3D 81 00 65 7B 81 81 00 61 40 76 FF F0",
     "00 78 CD 00 75 F0 3D 81 00 65 79 81 00 61 40 76 FF F0"},
    {"a prefix of an attribute that nothing binds", R"(^|<e {u}p:a="v"|<f|>|>|$)",
     "00 78 CF 00 70 00 75 F0 3C 00 65 7B 81 81 00 61 40 76 F0 3C 00 66 FF F0",
     "00 78 CF 00 70 00 75 F0 3C 00 65 7B 81 81 00 61 40 76 F0 3C 00 66 FF F0"},
    {"a prefix of an attribute that is bound otherwise", R"(^|+p=u|+q=v|<e|<f {v}p:a="1" {w}p:b="2"|>|>|$)",
     "00 38 CF 00 70 00 75 CF 00 71 00 76 F0 3C 00 65 78 CF 02 6E 73 31 00 77 F0 3C 00 66 7B 82 82 00 61 40 "
     "31 7B 83 83 00 62 40 32 FF FF",
     "00 38 CF 00 70 00 75 CF 00 71 00 76 F0 3C 00 65 78 CF 81 00 77 F0 3C 00 66 7B 82 82 00 61 40 31 7B 81 "
     "83 00 62 40 32 FF FF"},
    {"several prefixes of one namespace", R"(^|+p=u|+q=u|<e|<f {u}p:a="1" {u}q:a="2"|>|>|$)",
     "00 38 CF 00 70 00 75 CF 00 71 81 F0 3C 00 65 7C 00 66 7B 81 81 00 61 40 31 7B 82 81 82 40 32 FF FF",
     "00 38 CF 00 70 00 75 CF 00 71 81 F0 3C 00 65 7C 00 66 7B 82 81 00 61 40 31 00 40 32 FF FF"},
    {"two namespaces with one prefix", R"(^|<e {u}p:a="1" {v}p:b="2"|>|$)",
     "00 78 CF 02 6E 73 31 00 76 CF 00 70 00 75 F0 3C 00 65 7B 82 82 00 61 40 31 7B 81 81 00 62 40 32 FF F0",
     "00 78 CF 00 70 00 76 F0 3C 00 65 79 00 75 00 61 40 31 7B 81 81 00 62 40 32 FF F0"},
    {"a generated prefix is another's", "^|+ns1=u|<e|<{v}f|>|>|$",
     "00 38 CF 02 6E 73 31 00 75 F0 3C 00 65 38 CF 02 6E 73 32 00 76 F0 3F 82 82 00 66 FF F0",
     "00 38 CF 02 6E 73 31 00 75 F0 3C 00 65 38 CF 81 00 76 F0 3F 81 82 00 66 FF F0"},
    {"an element's prefix that is bound otherwise", "^|+p=u|<{u}p:e|<{v}p:f|<{u}p:g|>|>|>|$",
     "00 38 CF 00 70 00 75 F0 3F 81 81 00 65 38 CF 81 00 76 F0 3F 81 82 00 66 38 CF 81 81 F0 3F 81 81 00 67 "
     "FF FF",
     "00 38 CF 00 70 00 75 F0 3F 81 81 00 65 38 CF 81 00 76 F0 3F 81 82 00 66 38 CF 81 81 F0 3F 81 81 00 67 "
     "FF FF"},
    {"an element's prefix that is declared otherwise", "^|+p=u|+q=v|<{v}p:e|>|$",
     "00 38 CF 00 70 00 75 CF 00 71 00 76 F0 3F 82 82 00 65 FF",
     "00 38 CF 00 70 00 76 CF 00 71 81 F0 3F 81 81 00 65 FF"},
    {"the declarations of one element alone", "^|<r|+p=u|<a|>|-p|<b|>|>|$",
     "00 3C 00 72 38 CF 00 70 00 75 F0 3C 00 61 F0 3C 00 62 FF F0",
     "00 3C 00 72 38 CF 00 70 00 75 F0 3C 00 61 F0 3C 00 62 FF F0"},
    {"declarations that nothing takes back", "^|<r|+p=u|<a|>|+q=v|-q|<b|>|>|$",
     "00 3C 00 72 38 CF 00 70 00 75 F0 3C 00 61 F0 3C 00 62 FF F0",
     "00 3C 00 72 38 CF 00 70 00 75 F0 3C 00 61 F0 38 CF 81 81 F0 3C 00 62 FF F0"},
    {"the prefix xml", R"(^|<e {http://www.w3.org/XML/1998/namespace}y:lang="d"|>|$)",
     "00 7C 00 65 7B 80 80 03 6C 61 6E 67 40 64 FF F0",
     "00 78 CF 00 79 80 F0 3C 00 65 7B 81 80 03 6C 61 6E 67 40 64 FF F0"},
    {"names that are none",
     R"(^|<e|<a:b:c|<1|<{u}p:|<f x:y="1"|<{u}1:f|+1=u|+xmlns=u|<p:f|?|?a:b c|&e:f|>|$)",
     "00 3C 00 65 FF; the name of an element: \"b:c\" is no name without colon (NCName); the name of an "
     "element: \"1\" is no name without colon (NCName); an element \"p:\": it has a namespace and no local "
     "name; an attribute \"x:y\": it has a prefix and no namespace (X.891, C.16.1); a prefix: \"1\" is no "
     "name without colon (NCName); a prefix: \"1\" is no name without colon (NCName); a declaration of "
     "prefix \"xmlns\" for the namespace \"u\", which Namespaces in XML reserves; an element \"p:f\": it has "
     "a prefix and no namespace (X.891, C.16.1); the target of a processing instruction: \"\" is no name "
     "without colon (NCName); the target of a processing instruction: \"a:b\" is no name without colon "
     "(NCName); a reference to an entity: \"e:f\" is no name without colon (NCName)",
     "FISException: Tag mismatch: p:"},
    {"strings that are none", "^|<e|'\x01|'\xFF|<f a=\"\x02\"|#\xC3|?t \x03|+p=\xED\xA0\x80|'a\xC3\xA4|>|$",
     "00 3C 00 65 92 00 61 C3 A4 FF; text: no character of XML at octet 0, \"\\x01\"; text: ill-formed UTF-8 "
     "at octet 0, \"\\xFF\"; the value of an attribute: no character of XML at octet 0, \"\\x02\"; a "
     "comment: ill-formed UTF-8 at octet 0, \"\\xC3\"; the data of a processing instruction: no character of "
     "XML at octet 0, \"\\x03\"; a namespace name: ill-formed UTF-8 at octet 0, \"\\xED\\xA0\\x80\"",
     "00 3C 00 65 90 01 90 FF 7C 00 66 78 00 61 40 02 F0 E2 40 C3 E1 00 74 40 03 92 00 61 C3 A4 FF"},
    {"what has no place",
     "'x|<a|+p=u|^|^|' \n|'x|=int 1|&e|[|>|$|<r|!,,|~|>x|+p=u|>s|<s|[|[|<t|#c|$|]|]|>|$|>|' "
     "|'x|<r|!,,s|>|$|$",
     "00 3C 00 72 38 CF 00 70 00 75 F0 3C 00 73 FF F0; text \"x\" outside of a document; an element \"a\" "
     "outside of a document; a declaration of the prefix \"p\" outside of a document; the start of a "
     "document before the root element; text \"x\" before the root element; typed data before the root "
     "element; a reference to the entity \"e\" before the root element; the start of a CDATA section before "
     "the root element; the end of an element before the root element; the end of a document before the root "
     "element; a document type declaration in an element; the end of a document type declaration in an "
     "element; the end of an element \"x\": another one is open; the end of an element \"s\": another one is "
     "open; the start of a CDATA section in a CDATA section; an element \"t\" in a CDATA section; a comment "
     "\"c\" in a CDATA section; the end of a document in a CDATA section; the end of a CDATA section in an "
     "element; the end of a document in an element; text \"x\" behind the root element; an element \"r\" "
     "behind the root element; a document type declaration \"s\" behind the root element; the end of an "
     "element behind the root element; the end of a document outside of a document",
     "AssertionViolationException: checkInputParams(Utility::SIZEOFINT32INBIT, numOfBits)"},
    {"the prolog is held back", "^|#c|!,p,s|#d|?t d|Nn,p,-|~|Ue,-,s,n|!,,|' |<r|Nm,,|>|#e|$",
     "18 C1 00 6E 00 70 F0 D0 00 65 00 73 80 F0 E2 40 63 C7 81 80 E1 00 74 40 64 F0 3C 00 72 F0 E2 40 65 F0; "
     "another document type declaration before the root element; a notation \"m\" in an element",
     "AssertionViolationException: _states.back() == UNINITIALIZED"},
    {"nothing", "^|<r|'|=binary |[|'|]|>|$", "00 3C 00 72 FF",
     "FISEncodingException: Value zero must start on the second bit of a byte"},
    {"entity references", "^|<r|&e|&e|&%p|&[dtd]|>|$", "00 3C 00 72 C8 00 65 C8 80 FF", "00 3C 00 72 FF"},
    {"CDATA sections", "^|<r|'x|[|'x|'x|]|'x|>|$", "00 3C 00 72 90 78 8C 24 78 8C 24 78 A0 FF",
     "00 3C 00 72 90 78 A0 A0 A0 FF"},
};

TEST(StrictWriterTest, Rows) {
    for (const Row& row : ROWS) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(outcome(row, true), row.strict);
        EXPECT_EQ(outcome(row, false), row.usual);
    }
}

// A header announces as many entries as an index can name; a full table takes no more, and what it does not
// have is written in full each time.
TEST(StrictWriterTest, LargeTables) {
    const struct {
        int entries;
        const char* count; ///< nothing where they are too many
        const char* body;
    } rows[] = {{128, "7F", "3C 85 3C 00 78 F0 01 FF F0"},
                {129, "80 00 00", "3C 85 3C 00 78 F0 01 FF F0"},
                {1000, "80 03 67", "3C 85 3C 00 78 F0 01 FF F0"},
                {1048576, "8F FF 7F", "3C 85 3C 00 78 F0 3C 00 78 FF F0"},
                {1048577, "", ""}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.entries);
        std::ostringstream stream;
        Writer writer(stream, false, V::VOC_HASH);
        writer.setStrict(true);
        // Its own limit is far lower.
        Vocabulary<std::string>* const pNames = new MapVocabulary<std::string>();
        writer.getDocumentVocabulary().initialize(V::LOCAL_NAME, pNames);
        std::size_t size = 0;
        bool found = false;
        for (int i = 0; i < row.entries; ++i) {
            const std::string name = "n" + std::to_string(i);
            size += 1 + name.size();
            pNames->index(name, found);
        }
        const Row events{"", "^|<n5|<x|>|<x|>|>|$", "", ""};
        std::string failure;
        playEach(events, writer, [&](const std::string& first) {
            failure = first;
            return false;
        });
        const std::string header = octets("E0 00 00 01 20 00 80") + octets(row.count);
        const std::string body = octets(row.body);
        if (body.empty()) {
            EXPECT_EQ(failure, "FISEncodingException: Cannot write a local name of the vocabulary: there are "
                               "1048577, more than an index can name");
            continue;
        }
        EXPECT_EQ(failure, "");
        EXPECT_EQ(hex(stream.str().substr(0, header.size())), hex(header));
        EXPECT_EQ(stream.str().size(), header.size() + size + body.size());
        EXPECT_EQ(hex(stream.str().substr(stream.str().size() - body.size())), hex(body));
    }
}

// What a parser hands over, its vector tables included, is written again.
TEST(StrictWriterTest, WritesAgainWhatIsRead) {
    for (const Row& row : ROWS) {
        static const std::string LOST[] = {"an external", "an application", "typed", "several prefixes",
                                           "CDATA"};
        const std::string name(row.name);
        if (row.strict.find(';') != std::string::npos || row.strict.find("E0 00") != std::string::npos ||
            std::any_of(std::begin(LOST), std::end(LOST),
                        [&](const std::string& lost) { return name.starts_with(lost); })) {
            continue; // refused, several, or in need of more than this parser
        }
        SCOPED_TRACE(name);
        for (const V::VocabularyImpl impl : ALL_KINDS) {
            std::ostringstream stream;
            Writer writer(stream);
            writer.setStrict(true);
            FastInfosetParser parser(impl);
            parser.setStrict(true);
            parser.initialize(&writer);
            for (int i = 0; i < 2; ++i) {
                stream.str("");
                parseMemory(parser, document(row.strict));
                EXPECT_EQ(hex(stream.str()), hex(document(row.strict)));
            }
        }
    }
}

TEST(StrictWriterTest, IsSetBetweenDocuments) {
    std::ostringstream stream;
    Writer writer(stream, false, V::VOC_MAP);
    writer.startDocument();
    EXPECT_FAILURE("InvalidAccessException: setStrict() within a document", writer.setStrict(true));
    play("<a|'t", writer), writer.endElement("", "a", "a"), writer.endDocument();
    const auto write = [&] {
        stream.str("");
        play("^|#c|<a|'t", writer), writer.endElement("", "a", "a"), writer.endDocument();
        return hex(stream.str().substr(4));
    };
    const std::string expected = "00 E2 40 63 3C 00 61 90 74 FF";
    writer.setStrict(true);
    EXPECT_EQ(write(), expected); // the tables of the document before are gone
    EXPECT_EQ(write(), expected);
    writer.startDocument();
    EXPECT_FAILURE("InvalidAccessException: setStrict() within a document", writer.setStrict(false));
    play("!,,s|~|+p=u|<{u}p:a|[|'x", writer);
    writer.encodedData(1);
    writer.reset(stream); // whatever was open
    EXPECT_EQ(write(), expected);
    writer.setStrict(false);
    writer.reset(stream);
    EXPECT_EQ(write(), expected);
}

} // namespace
} // namespace Tamo::FastInfoset::Test
