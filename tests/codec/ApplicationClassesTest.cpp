// Classes of an application's own, which keep to their interfaces and to nothing else.
#include "DocumentTest.h"
#include "Tamo/FastInfoset/Decoder.h"
#include "Tamo/FastInfoset/FISDefaultHandler.h"
#include "Tamo/FastInfoset/IntEncoding.h"
#include "Tamo/FastInfoset/MapVocabulary.h"
#include "Tamo/FastInfoset/VectorVocabulary.h"
#include "Tamo/XML/AttributesImpl.h"
#include "Tamo/XML/XMLWriter.h"
#include <map>

namespace Tamo::FastInfoset::Test {
namespace {

using ID = DocumentVocabulary::ID;

// A list that has one string for everything that it yields.
class OneString : public XML::AttributesImpl {
public:
    int getLength() const override { return _throws ? throw RuntimeException("list") : 3; }
    const std::string& getURI(int i) const override { return use(i == 1 ? "u" : ""); }
    const std::string& getLocalName(int i) const override { return use("name" + std::to_string(i)); }
    const std::string& getQName(int i) const override {
        return use((i == 1 ? "p:name" : "name") + std::to_string(i));
    }
    const std::string& getType(int) const override { return use("CDATA"); }
    const std::string& getValue(int i) const override {
        return use(i == 0 ? "" : "value" + std::to_string(i));
    }

    void failFromNowOn() { _throws = true; }

private:
    const std::string& use(const std::string& text) const { return _string = text; }

    mutable std::string _string;
    bool _throws = false;
};

TEST(ApplicationClassesTest, AttributeListsThatReuseAString) {
    const auto write = [](const XML::Attributes& list) {
        return document([&](FastInfosetWriter& writer) {
            play("^|+p=u|<r", writer);
            for (const char* const uri : {"", "u", "v"}) {
                writer.startElement(uri, "a", "", list);
                play(">", writer);
            }
            play(">|-p|$", writer);
        });
    };
    OneString list;
    const XML::AttributesImpl copy(static_cast<const XML::Attributes&>(list));
    EXPECT_EQ(copy.getQName(1) + copy.getValue(1) + copy.getURI(1), "p:name1value1u");
    EXPECT_EQ(hex(write(list)), hex(write(copy)));

    const auto writeXML = [](const XML::Attributes& attributes) {
        std::ostringstream xml;
        XML::XMLWriter writer(xml);
        writer.startDocument();
        writer.startElement("", "a", "a", attributes);
        writer.endElement("", "", "");
        writer.endDocument();
        return xml.str();
    };
    EXPECT_EQ(writeXML(list), R"(<a xmlns:p="u" name0="" p:name1="value1" name2="value2"/>)");
    EXPECT_EQ(writeXML(copy), writeXML(list));

    // One that throws leaves an element that has begun, whichever way the element would have gone.
    for (const char* const before : {"^|<r", "^|+p=u"}) {
        OneString failing;
        failing.failFromNowOn();
        std::ostringstream stream;
        FastInfosetWriter writer(stream);
        play(before, writer);
        const std::string octets = stream.str();
        EXPECT_FAILURE("RuntimeException: list", writer.startElement("", "a", "", failing));
        writer.comment("c");
        EXPECT_EQ(hex(stream.str().substr(octets.size())), "00 E2 40 63");
    }
}

// Keeps its values elsewhere than the base class, and yields them in one string.
class OwnTable : public Vocabulary<std::string> {
public:
    unsigned int index(const std::string& value, bool& found) override {
        const auto [it, isNew] = _indexes.try_emplace(value, static_cast<unsigned int>(_indexes.size()));
        found = !isNew;
        return it->second;
    }
    unsigned int exists(const std::string& value, bool& found) const override {
        const auto it = _indexes.find(value);
        found = it != _indexes.end();
        return found ? it->second : NOT_FOUND;
    }
    const std::string& value(unsigned int index) const override {
        for (const auto& [text, number] : _indexes) {
            if (number == index) {
                return _yielded = text;
            }
        }
        throw std::out_of_range("OwnTable");
    }
    std::size_t size() const override { return _indexes.size(); }
    bool empty() const override { return _indexes.empty(); }
    Vocabulary<std::string>* subtract(const Vocabulary<std::string>& other) const override {
        auto* const pResult = new OwnTable;
        pResult->_indexes.clear();
        for (unsigned int i = 0; i < size(); ++i) {
            bool found = false;
            other.exists(value(i), found);
            if (!found) {
                pResult->index(value(i), found);
            }
        }
        return pResult;
    }
    Vocabulary<std::string>* clone() const override { return new OwnTable(*this); }

private:
    std::map<std::string, unsigned int> _indexes{{"", 0}};
    mutable std::string _yielded;
};

class Shouting : public MapVocabulary<std::string> {
public:
    const std::string& value(unsigned int index) const override {
        _yielded = MapVocabulary::value(index);
        for (char& c : _yielded) {
            c = static_cast<char>(c >= 'a' && c <= 'z' ? c - 'a' + 'A' : c);
        }
        return _yielded;
    }
    Vocabulary<std::string>* clone() const override { return new Shouting(*this); }

private:
    mutable std::string _yielded;
};

template<class Table>
void replaceTables(DocumentVocabulary& vocabulary) {
    for (int id = DocumentVocabulary::PREFIX; id < DocumentVocabulary::ELEMENT_NAME; ++id) {
        auto* const pTable = new Table;
        bool found = false;
        for (std::size_t i = 1; i < vocabulary.vocabulary(static_cast<ID>(id)).size(); ++i) {
            pTable->index(vocabulary.value(static_cast<ID>(id), static_cast<unsigned int>(i)), found);
        }
        vocabulary.initialize(static_cast<ID>(id), pTable);
    }
}

// Every kind of string and name, again by index, and declarations whose parts come from one table.
constexpr const char* EVENTS =
    "Nn,p,s|Nm,s,-|Ue,s,s,n|^|!,p,s|?t d|~|+p=u|<{u}p:a {u}b=\"12\" c=\"v\" d=\"v\"|'x|'x|#d|<{u}p:a "
    "{u}b=\"v\" "
    "c=\"12\" d=\"v\"|<long e=\"a value that is long\"|'a text that is long|>|?t d|>|>|-p|$";

TEST(ApplicationClassesTest, TablesOfTheApplication) {
    DocumentVocabulary empty("urn:v", DocumentVocabulary::VOC_MAP);
    std::ostringstream stream;
    FastInfosetWriter writer(stream, false, empty);
    writer.setExternalVocabulary("urn:v", empty);
    play(EVENTS, writer);
    const std::string octets = stream.str();

    // The parser sees what value() and index() say; tables stay for a document that names their vocabulary.
    const auto events = [&](auto replace) {
        DocumentVocabulary vocabulary("urn:v", DocumentVocabulary::VOC_VECTOR);
        replace(vocabulary);
        FastInfosetParser parser(vocabulary);
        EventRecorder recorder;
        recorder.connect(parser);
        EXPECT_FAILURE("", parseMemory(parser, octets));
        EXPECT_EQ(parser.vocabulary().vocabulary(DocumentVocabulary::OTHER_URI).size(), 3u);
        return recorder.events();
    };
    const std::string expected = events([](auto&) {});
    EXPECT_EQ(events(replaceTables<OwnTable>), expected);
    const std::string shouted = events(replaceTables<Shouting>);
    EXPECT_NE(shouted.find("<{U}P:A {U}B=\"12\" C=\"v\" D=\"V\"|'x|'X|#D|<{U}P:A {U}B=\"V\" C=\"12\" D"),
              std::string::npos)
        << shouted;
    const std::string initial = document("20 00 90 01 00 6C 00 6D 00 00 6E F0"); // two local names, an NCName
    DocumentVocabulary vocabulary("urn:w", DocumentVocabulary::VOC_VECTOR);
    replaceTables<OwnTable>(vocabulary);
    BitStreamReader reader(initial.data() + 7, initial.size() - 7);
    Decoder::handleVocabulary(reader, vocabulary.vocabulary(DocumentVocabulary::LOCAL_NAME));
    EXPECT_EQ(vocabulary.value(DocumentVocabulary::LOCAL_NAME, 2), "m");

    // The writer writes with them what it writes with its own.
    const auto written = [](auto replace) {
        return document([&](FastInfosetWriter& w) {
            add(w.getDocumentVocabulary(), DocumentVocabulary::LOCAL_NAME, {"announced"});
            replace(w.getDocumentVocabulary());
            play(EVENTS, w);
        });
    };
    EXPECT_EQ(hex(written(replaceTables<OwnTable>)), hex(written([](auto&) {})));
    // Vector tables find no strings: those that are repeated are literals, as are parts of new names.
    const DocumentVocabulary vector(DocumentVocabulary::VOC_VECTOR);
    std::ostringstream repeated;
    FastInfosetWriter finding(repeated, false, vector);
    play("^|<a b=\"c\"|'x|'x|#d|#d|<a b=\"c\"|>|<b|>|?t d|?t d|>|$", finding);
    EXPECT_EQ(hex(repeated.str()),
              hex(document("00 7C 00 61 78 00 62 40 63 F0 90 78 90 78 E2 40 64 E2 40 64 40 00 "
                           "40 63 FF 3C 00 62 F0 E1 00 74 40 64 E1 00 74 40 64 FF")));
}

TEST(ApplicationClassesTest, TablesThatAreNotTaken) {
    struct Counted : VectorVocabulary<std::string> {
        explicit Counted(int& count) : deleted(count) {}
        ~Counted() override { ++deleted; }
        int& deleted;
    };
    int deleted = 0;
    auto pTable = std::make_unique<Counted>(deleted);
    DocumentVocabulary vocabulary(DocumentVocabulary::VOC_MAP);
    EXPECT_FAILURE("AssertionViolationException: vocabulary > DocumentVocabulary::ENCODING_ALGORITHM && "
                   "vocabulary < DocumentVocabulary::ELEMENT_NAME",
                   vocabulary.initialize(DocumentVocabulary::ELEMENT_NAME, pTable.get()));
    EXPECT_EQ(deleted, 0);

    // A name that is in its table before its parts are in theirs.
    std::ostringstream stream;
    FastInfosetWriter writer(stream, false, DocumentVocabulary::VOC_MAP);
    play("^", writer);
    bool found = false;
    writer.getDocumentVocabulary().elementVocabulary().index(QualifiedNameEntry(0, 0, 2), found);
    play("<r", writer);
    EXPECT_FAILURE("AssertionViolationException: !qneExists", play("<e", writer));
    // The element that has thrown has a namespace context, and no state.
    EXPECT_FAILURE("", play(">|>|>", writer));
}

// An algorithm that asks for octets which are not there, as the built-in ones never do.
AutoPtr<Encoding> decodeOctet(BitStreamReader& reader) {
    std::size_t length = 0;
    Decoder::nonEmptyStringLength(reader, length);
    unsigned short value = 0;
    reader.read(value, 16);
    return AutoPtr<Encoding>(new IntEncoding(value));
}

TEST(ApplicationClassesTest, AlgorithmsAtTheEndOfADocument) {
    const std::string whole = document("00 8C 7D 12 34 F0");
    FastInfosetParser parser;
    parser.decodingAlgorithms().add(&decodeOctet);
    parseMemory(parser, whole);
    for (std::size_t size = 0; size < whole.size(); ++size) {
        const std::string cut = whole.substr(0, size);
        EXPECT_TRUE(failureOf([&] { parseMemory(parser, cut); }).starts_with("FISParseException: ")) << size;
        std::istringstream stream(cut);
        EXPECT_TRUE(failureOf([&] { parseStream(parser, stream); }).starts_with("FISParseException: "))
            << size;
    }
}

template<class T>
concept Encodable = requires(FastInfosetWriter& writer, T value) {
    writer.encodedData(value);
};

TEST(ApplicationClassesTest, OnlyValuesThatFitAreTypedData) {
    static_assert(!Encodable<const char*> && !Encodable<char[5]> && !Encodable<int*> &&
                  !Encodable<std::nullptr_t> && !Encodable<std::string> && !Encodable<char> &&
                  !Encodable<char16_t> && !Encodable<unsigned long long> && !Encodable<std::size_t> &&
                  !Encodable<long double>);
    const std::string octets = document([](FastInfosetWriter& w) {
        w.startDocument();
        const auto write = [&](auto value) {
            w.encodedData(value);
            w.comment("");
        };
        write(static_cast<signed char>(-1)), write(static_cast<unsigned char>(255));
        write(static_cast<unsigned short>(65535)), write(4294967295u), write(-5LL), write(-6L), write(true);
        w.endDocument();
    });
    EXPECT_EQ(eventsOf(octets),
              "^|=short -1|#|=short 255|#|=int 65535|#|=long 4294967295|#|=long -5|#|=long -6|#|="
              "bool true|#|$");
}

} // namespace
} // namespace Tamo::FastInfoset::Test
