// Random documents with every construct, written by the letter and read by the letter again.
#include "DocumentTest.h"
#include "Tamo/FastInfoset/HexEncoding.h"
#include "Tamo/FastInfoset/TypedChunk.h"
#include "Tamo/FastInfoset/TypedChunkHandler.h"
#include "Tamo/XML/AttributesImpl.h"
#include <map>
#include <random>
#include <set>

namespace Tamo::FastInfoset::Test {
namespace {

using V = DocumentVocabulary;

constexpr const char* ALPHABET = "abcdef\xC3\xA9-"; // 8 characters, codes of 4 bits
constexpr const char* URI = "urn:vocabulary";
constexpr const char* ALGORITHMS[] = {"urn:first", "urn:second"};

// Tells chunks apart.
class ChunkRecorder : public TypedRecorder<TypedChunkHandler> {
public:
    bool startTypedChunk(const TypedChunk& chunk) override {
        event("(" + std::to_string(chunk.algorithm()) + chunk.uri());
        return false;
    }
    void endTypedChunk() override { event(")"); }
};

// Gives random events to a writer and to a recorder, which has what reading must give then.
class Author {
public:
    Author(unsigned int seed, FastInfosetWriter& writer, TypedEventRecorder& expected)
        : _random(seed), _writer(writer), _expected(expected) {}

    // A document: over no vocabulary, over one that the header has, over one that it names, with entries
    // beyond.
    void write(V& shared, unsigned int kind) {
        _hasVocabulary = kind > 0;
        if (kind > 0) {
            fill(shared);
            shared.setURI(kind > 1 ? URI : "");
            _writer.useVocabulary(shared);
        }
        bool found = false;
        for (unsigned int i = kind > 2 ? 3 : 0; i > 0; --i) {
            _writer.getDocumentVocabulary().index(V::LOCAL_NAME, name(), found);
            _writer.getDocumentVocabulary().index(V::OTHER_STRING, text(), found);
        }
        properties();
        both([](auto& h) { h.startDocument(); });
        const auto misc = [&] { one({&Author::comment, &Author::instruction}, 3); };
        misc();
        if (below(3) == 0) {
            const std::string publicId = below(2) ? text() : "";
            const std::string systemId = below(2) ? text() : "";
            both([&](auto& h) { h.startDTD("", publicId, systemId); });
            one({&Author::instruction}, 3);
            both([](auto& h) { h.endDTD(); });
            misc();
        }
        element(0);
        misc();
        both([](auto& h) { h.endDocument(); });
    }

private:
    using Step = void (Author::*)();

    void fill(V& tables) {
        bool found = false;
        for (unsigned int i = below(5); i > 0; --i) {
            for (const V::ID id : {V::LOCAL_NAME, V::OTHER_NCNAME}) {
                tables.index(id, name(), found);
            }
            for (const V::ID id : {V::NAMESPACE_NAME, V::OTHER_URI, V::ATTRIBUTE_VALUE,
                                   V::CONTENT_CHARACTER_CHUNK, V::OTHER_STRING}) {
                tables.index(id, text(), found);
            }
        }
        const unsigned int local = tables.index(V::LOCAL_NAME, name(), found);
        tables.elementVocabulary().index({0, 0, local}, found);
        tables.attributeVocabulary().index({1, 1, local}, found);
        tables.restrictedAlphabets().add(ALPHABET);
        for (const char* const uri : ALGORITHMS) {
            tables.algorithms().add(uri);
        }
    }

    unsigned int below(std::size_t bound) { return static_cast<unsigned int>(_random() % bound); }

    template<class Use>
    void both(const Use& use) {
        use(_writer);
        use(_expected);
    }

    void one(std::vector<Step> steps, unsigned int bound) {
        for (unsigned int i = below(bound); i > 0; --i) {
            (this->*steps[below(steps.size())])();
        }
    }

    // Lengths on both sides of where forms change; some texts come again and again.
    std::string text() {
        static constexpr std::size_t SIZES[] = {1,  2,   3,   4,   8,   9,   16,  17,  63,  64,
                                                65, 256, 257, 258, 259, 264, 265, 320, 321, 700};
        if (!_texts.empty() && below(2) == 0) {
            return _texts[below(_texts.size())];
        }
        static const std::string CHARACTERS[] = {
            "a", "b", "<", "&", " ", "\n", "\xC3\xA9", "\xE2\x82\xAC", "\xF0\x9F\x98\x80"};
        const std::size_t size = SIZES[below(below(3) == 0 ? std::size(SIZES) : 6)];
        const bool isASCII = below(2) == 0;
        std::string result;
        while (result.size() < size) {
            const std::string& c = CHARACTERS[below(isASCII ? 6 : std::size(CHARACTERS))];
            result += result.size() + c.size() <= size ? c : "x";
        }
        return _texts.emplace_back(result);
    }

    std::string name() {
        static const std::string NAMES[] = {"a", "b", "c", "d", "\xC3\xA9t\xC3\xA9", "x-1.y_z"};
        return below(20) == 0 ? std::string(60 + below(10), 'n') : NAMES[below(std::size(NAMES))];
    }

    void properties() {
        both([](auto& h) { h.setWriteXMLDeclaration(false); });
        for (unsigned int i = below(4) == 0 ? 1 + below(140) / 135 * 130 : 0; i > 0; --i) {
            const std::string id = text();
            const std::string data = text();
            both([&](auto& h) { h.additionalData(id, std::as_bytes(std::span(data.data(), data.size()))); });
        }
        for (const bool isNotation : {true, false}) {
            for (unsigned int i = below(3); i > 0; --i) {
                const std::string declared = name();
                const std::string identifier = text();
                const std::string* const pPublic = below(2) == 0 ? &identifier : nullptr;
                both([&](auto& h) {
                    isNotation ? h.notationDecl(declared, pPublic, pPublic ? nullptr : &identifier)
                               : h.unparsedEntityDecl(declared, pPublic, identifier, declared);
                });
            }
        }
        if (const std::string scheme = text(); below(4) == 0) {
            both([&](auto& h) { h.characterEncodingScheme(scheme); });
        }
        if (const bool flag = below(2) == 0; below(4) == 0) {
            both([&](auto& h) { h.standalone(flag); });
        }
        if (below(4) == 0) {
            both([](auto& h) { h.version("1.0"); });
        }
    }

    void comment() {
        const std::string content = text();
        both([&](auto& h) { h.comment(content.data(), 0, static_cast<int>(content.size())); });
    }
    void instruction() {
        const std::string target = name();
        const std::string data = below(3) == 0 ? "" : text();
        both([&](auto& h) { h.processingInstruction(target, data); });
    }
    void characters() {
        const std::string content = text();
        both([&](auto& h) { h.characters(content.data(), 0, static_cast<int>(content.size())); });
    }
    void section() {
        both([](auto& h) { h.startCDATA(); });
        characters();
        both([](auto& h) { h.endCDATA(); });
    }
    void reference() {
        const std::string entity = name();
        both([&](auto& h) { h.skippedEntity(entity); });
    }
    void inAlphabet() {
        static const std::string PIECES[] = {"a", "b", "f", "\xC3\xA9", "-"};
        std::string content;
        for (unsigned int i = 1 + below(40); i > 0; --i) {
            content += _hasVocabulary ? PIECES[below(5)] : std::string(1, "0123456789-+.e "[below(15)]);
        }
        _writer.characters(content, _hasVocabulary ? 16 : 1);
        _expected.characters(content.data(), 0, static_cast<int>(content.size()));
    }
    template<class T>
    void values(const T& value) {
        for (unsigned int i = 1 + below(5); i > 0; --i) {
            both([&](auto& h) { h.encodedData(value); });
        }
    }
    void numbers() {
        const auto bits = static_cast<Int64>(UInt64{_random()} << 32 | _random());
        const std::function<void()> kinds[] = {[&] { values(static_cast<Int16>(bits)); },
                                               [&] { values(static_cast<Int32>(bits)); },
                                               [&] { values(bits); },
                                               [&] { values(bits % 2 == 0); },
                                               [&] { values(static_cast<float>(bits)); },
                                               [&] { values(static_cast<double>(bits) / 7); },
                                               [&] { values(UUID("6BA7B810-9DAD-11D1-80B4-00C04FD430C8")); }};
        kinds[below(7)]();
    }
    // Octets, by one of the built-in algorithms or by one of the application's.
    void data() {
        comment(); // what stands side by side would be one
        const std::string content = text();
        if (const unsigned int kind = below(_hasVocabulary ? 4 : 2); kind == 0) {
            _writer.binaryData(content.data(), content.size());
        } else {
            const AutoPtr<Encoding> pValue(new HexEncoding(content.data(), content.size()));
            if (kind == 1) {
                EXPECT_TRUE(_writer.startTypedChunk(TypedChunk(pValue, HexEncoding::TYPE, "")));
                _writer.endTypedChunk();
            } else {
                _writer.insertEncoding(ALGORITHMS[kind - 2], pValue);
            }
        }
        _expected.binaryData(content.data(), content.size());
    }
    void child() { element(_depth); }

    // A prefix in scope, its namespace name and a local name.
    struct Name {
        std::string uri;
        std::string local;
        std::string qname;
    };
    Name nameIn(const std::map<std::string, std::string>& scope, bool isElement) {
        auto it = scope.begin();
        std::advance(it, below(scope.size()));
        const std::string local = name();
        if (!isElement && (it->first.empty() || below(2) == 0)) {
            return {"", local, local};
        }
        return {it->second, local, it->first.empty() ? local : it->first + ":" + local};
    }

    void element(unsigned int depth) {
        std::map<std::string, std::string> scope = _scope;
        std::vector<std::string> declared;
        for (const std::string prefix : {"", "p", "q", "r"}) { // in the order in which the writer has them
            if (below(8) == 0) {
                const std::string uri = prefix.empty() && !scope[""].empty() && below(2) == 0 ? "" : text();
                both([&](auto& h) { h.startPrefixMapping(prefix, uri); });
                declared.push_back(prefix);
                scope[prefix] = uri;
            }
        }
        const Name element = nameIn(scope, true);
        XML::AttributesImpl attributes;
        std::set<std::string> taken;
        for (unsigned int i = below(4); i > 0; --i) {
            const Name attribute = nameIn(scope, false);
            if (taken.insert(attribute.uri + " " + attribute.local).second) {
                attributes.addAttribute(attribute.uri, attribute.local, attribute.qname, "CDATA",
                                        below(5) == 0 ? "" : text());
            }
        }
        both([&](auto& h) { h.startElement(element.uri, element.local, element.qname, attributes); });
        scope.swap(_scope);
        _depth = depth + 1;
        std::vector<Step> steps{&Author::comment, &Author::instruction, &Author::characters,
                                &Author::section, &Author::inAlphabet,  &Author::reference,
                                &Author::numbers, &Author::data};
        steps.insert(steps.end(), depth < 4 ? 6 : 0, &Author::child);
        one(steps, 7);
        _depth = depth;
        scope.swap(_scope);
        both([&](auto& h) { h.endElement(element.uri, element.local, element.qname); });
        for (; !declared.empty(); declared.pop_back()) {
            both([&](auto& h) { h.endPrefixMapping(declared.back()); });
        }
    }

    std::mt19937 _random;
    FastInfosetWriter& _writer;
    TypedEventRecorder& _expected;
    std::map<std::string, std::string> _scope{{"", ""}};
    std::vector<std::string> _texts;
    unsigned int _depth = 0;
    bool _hasVocabulary = false;
};

void connect(FastInfosetParser& parser) {
    parser.setStrict(true);
    for (const char* const uri : ALGORITHMS) {
        parser.decodingAlgorithms().add(uri, &HexEncoding::decode);
    }
}

// Where two lists of events part, or nothing.
std::string difference(const std::string& actual, const std::string& expected) {
    const auto at = std::mismatch(actual.begin(), actual.end(), expected.begin(), expected.end()).first;
    const auto from = static_cast<std::size_t>(at - actual.begin());
    const std::size_t before = from - std::min<std::size_t>(from, 80);
    return actual == expected
               ? ""
               : "..." + actual.substr(before, 160) + "... instead of ..." + expected.substr(before, 160);
}

TEST(StrictRoundTripTest, RandomDocuments) {
    for (unsigned int seed = 0; seed < 3000 && !HasFailure(); ++seed) {
        SCOPED_TRACE(seed);
        const auto impl = ALL_KINDS[seed % 3];
        const int maxIndexed = seed % 5 == 0 ? -1 : seed % 5 == 1 ? 0 : 16;
        std::ostringstream written;
        std::ostringstream again;
        FastInfosetWriter writer(written, false, seed % 2 == 0 ? V::VOC_MAP : V::VOC_HASH);
        TypedEventRecorder expected;
        V vocabulary(V::VOC_VECTOR);
        writer.setStrict(true);
        writer.setMaxIndexedStringLength(maxIndexed);
        Author(seed, writer, expected).write(vocabulary, seed % 4);
        GivenVocabulary loader(vocabulary);
        const std::string document = written.str();

        FastInfosetParser parser(impl, &loader);
        TypedEventRecorder recorder;
        connect(parser);
        recorder.connectAll(parser);
        EXPECT_EQ(failureOf([&] { parseMemory(parser, document); }), "") << hex(document);
        std::string events = recorder.events(); // less what the header says of vocabularies
        for (const std::string told : {"vocabulary|", "external urn:vocabulary|"}) {
            const std::size_t at = events.find(told);
            events.erase(std::min(at, events.size()), at == std::string::npos ? 0 : told.size());
        }
        ASSERT_EQ(difference(events, expected.events()), "");
        EXPECT_EQ(parser.documentSize(), document.size());

        FastInfosetReader reader(V(impl), &loader);
        for (const char* const uri : ALGORITHMS) {
            reader.decodingAlgorithms().add(uri, &HexEncoding::decode);
        }
        recorder.clear();
        reader.open(document);
        replay(reader, recorder);
        parser.setDocumentHandler(nullptr);
        TypedEventRecorder plain;
        plain.connect(parser);
        parseMemory(parser, document);
        EXPECT_EQ(difference(recorder.events(), plain.events()), "");

        FastInfosetWriter second(again, false, seed % 2 == 0 ? V::VOC_HASH : V::VOC_MAP);
        second.setStrict(true);
        second.setMaxIndexedStringLength(maxIndexed);
        parser.initialize(&second);
        parseMemory(parser, document);
        const auto chunks = [&](const std::string& octets) {
            FastInfosetParser fresh(impl, &loader);
            ChunkRecorder chunkRecorder;
            connect(fresh);
            chunkRecorder.connectAll(fresh);
            const std::string failure = failureOf([&] { parseMemory(fresh, octets); });
            return failure + chunkRecorder.events();
        };
        EXPECT_EQ(difference(chunks(again.str()), chunks(document)), "");
    }
}

} // namespace
} // namespace Tamo::FastInfoset::Test
