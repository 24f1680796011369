#include "DocumentTest.h"
#include "Tamo/Exception.h"
#include "Tamo/XML/AttributesImpl.h"
#include "Tamo/XML/InputSource.h"
#include <map>
#include <memory>
#include <vector>

namespace Tamo::FastInfoset::Test {

namespace {

std::vector<std::string> split(std::string_view text, char separator) {
    std::vector<std::string> pieces(1);
    for (const char c : text) {
        if (c == separator) {
            pieces.emplace_back();
        } else {
            pieces.back().push_back(c);
        }
    }
    return pieces;
}

struct Name {
    std::string uri;
    std::string localName;
    std::string qname;

    explicit Name(const std::string& text) {
        const std::size_t end = text.find('}') + 1; // 0 without a namespace name
        uri = end == 0 ? "" : text.substr(1, end - 2);
        qname = text.substr(end);
        localName = qname.substr(qname.find(':') + 1);
    }
};

void playElement(const std::string& token, FastInfosetWriter& writer) {
    const std::size_t end = token.find(' ');
    XML::AttributesImpl attributes;
    for (std::size_t at = end; at < token.size();) {
        const std::size_t open = token.find('"', at);
        const std::size_t close = token.find('"', open + 1);
        const Name name(token.substr(at + 1, open - at - 2));
        attributes.addAttribute(name.uri, name.localName, name.qname, "CDATA",
                                token.substr(open + 1, close - open - 1));
        at = close + 1;
    }
    const Name name(token.substr(0, end));
    writer.startElement(name.uri, name.localName, name.qname, attributes);
}

// By the type's name: how the writer is given a value.
const std::map<std::string, void (*)(FastInfosetWriter&, const std::string&)> TYPES = {
    {"binary",
     [](auto& writer, auto& text) {
         const std::string data = octets(text);
         writer.binaryData(data.data(), data.size());
     }},
    {"short", [](auto& writer, auto& text) { writer.encodedData(static_cast<Int16>(std::stoi(text))); }},
    {"int", [](auto& writer, auto& text) { writer.encodedData(Int32{std::stoi(text)}); }},
    {"long", [](auto& writer, auto& text) { writer.encodedData(Int64{std::stol(text)}); }},
    {"bool", [](auto& writer, auto& text) { writer.encodedData(text == "true"); }},
    {"float", [](auto& writer, auto& text) { writer.encodedData(std::stof(text)); }},
    {"double", [](auto& writer, auto& text) { writer.encodedData(std::stod(text)); }},
    {"uuid", [](auto& writer, auto& text) { writer.encodedData(UUID(text)); }}};

void playDeclaration(char kind, const std::string& token, FastInfosetWriter& writer) {
    const std::vector<std::string> ids = split(token, ',');
    const auto present = [&](std::size_t i) { return ids.at(i) == "-" ? nullptr : &ids.at(i); };
    if (kind == '!') {
        writer.startDTD(ids.at(0), ids.at(1), ids.at(2));
    } else if (kind == 'N') {
        writer.notationDecl(ids.at(0), present(1), present(2));
    } else {
        writer.unparsedEntityDecl(ids.at(0), present(1), ids.at(2), ids.at(3));
    }
}

void playEvent(char kind, const std::string& token, FastInfosetWriter& writer) {
    const auto length = static_cast<int>(token.size());
    switch (kind) {
    case '^':
        return writer.startDocument();
    case '$':
        return writer.endDocument();
    case '<':
        return playElement(token, writer);
    case '>':
        return writer.endElement("", "", "");
    case '\'':
        return writer.characters(token.data(), 0, length);
    case '#':
        return writer.comment(token.data(), 0, length);
    case '?': {
        const std::size_t space = std::min(token.find(' '), token.size() - 1);
        const bool hasData = token[space] == ' ';
        return writer.processingInstruction(token.substr(0, hasData ? space : token.size()),
                                            hasData ? token.substr(space + 1) : "");
    }
    case '+':
        return writer.startPrefixMapping(token.substr(0, token.find('=')), token.substr(token.find('=') + 1));
    case '-':
        return writer.endPrefixMapping(token);
    case '[':
        return writer.startCDATA();
    case ']':
        return writer.endCDATA();
    case '~':
        return writer.endDTD();
    case '=':
        return TYPES.at(token.substr(0, token.find(' ')))(writer, token.substr(token.find(' ') + 1));
    default:
        return playDeclaration(kind, token, writer);
    }
}

} // namespace

void play(std::string_view events, FastInfosetWriter& writer) {
    for (const std::string& token : split(events, '|')) {
        playEvent(token.at(0), token.substr(1), writer);
    }
}

std::string document(const std::function<void(FastInfosetWriter&)>& use,
                     DocumentVocabulary::VocabularyImpl impl) {
    std::ostringstream stream;
    FastInfosetWriter writer(stream, false, impl);
    use(writer);
    return stream.str();
}

std::string document(std::string_view hexOctets) {
    return octets("E0000001") + octets(hexOctets);
}

std::string eventsOf(const std::string& document) {
    FastInfosetParser parser;
    TypedEventRecorder recorder;
    recorder.connect(parser);
    parseMemory(parser, document);
    return recorder.events();
}

void parseMemory(FastInfosetParser& parser, std::string_view document) {
    const std::unique_ptr<char[]> pBlock(new char[document.size()]);
    std::copy(document.begin(), document.end(), pBlock.get());
    parser.parseMemoryNP(pBlock.get(), document.size());
}

void parseStream(FastInfosetParser& parser, std::istream& stream) {
    XML::InputSource source(stream);
    parser.parse(&source);
}

void expectEvents(const std::string& document, const std::string& events) {
    for (const auto impl : ALL_KINDS) {
        SCOPED_TRACE("tables of kind " + std::to_string(impl));
        TypedEventRecorder recorder;
        FastInfosetParser parser(impl);
        FastInfosetReader reader{DocumentVocabulary(impl)};
        recorder.connect(parser);
        const auto expect = [&](auto read) {
            recorder.clear();
            read();
            EXPECT_EQ(recorder.events(), events);
        };
        const auto expectStream = [&](std::istream&& forParser, std::istream&& forReader) {
            expect([&] { parseStream(parser, forParser); });
            expect([&] { reader.open(forReader), replay(reader, recorder); });
        };
        expect([&] { parseMemory(parser, document); });
        expectStream(std::istringstream(document), std::istringstream(document));
        expectStream(DribblingStream(document), DribblingStream(document));
        expect([&] { reader.open(document), replay(reader, recorder); });
    }
}

void expectRewritten(const std::string& document, int maxIndexedStringLength) {
    for (const auto impl : {DocumentVocabulary::VOC_MAP, DocumentVocabulary::VOC_HASH}) {
        std::ostringstream again;
        FastInfosetWriter writer(again);
        writer.setMaxIndexedStringLength(maxIndexedStringLength);
        FastInfosetParser parser(impl);
        parser.initialize(&writer);
        parseMemory(parser, document);
        EXPECT_EQ(hex(again.str()), hex(document));
    }
}

void expectDocuments(const std::vector<DocumentRow>& rows) {
    for (const DocumentRow& row : rows) {
        SCOPED_TRACE(row.name);
        const std::string expected = document(row.octets);
        const auto write = [&](FastInfosetWriter& writer) {
            writer.setMaxIndexedStringLength(row.maxIndexedStringLength);
            play(row.written, writer);
        };
        EXPECT_EQ(hex(document(write, DocumentVocabulary::VOC_MAP)), hex(expected));
        EXPECT_EQ(hex(document(write, DocumentVocabulary::VOC_HASH)), hex(expected));
        expectEvents(expected, row.read ? row.read : row.written);
        expectRewritten(expected, row.maxIndexedStringLength);
    }
}

void expectFailure(const std::string& document, const std::string& fromMemory,
                   const std::string& fromStream) {
    for (const auto impl : ALL_KINDS) {
        SCOPED_TRACE("tables of kind " + std::to_string(impl));
        FastInfosetParser parser(impl);
        EXPECT_FAILURE(fromMemory, parseMemory(parser, document));
        std::istringstream stream(document);
        EXPECT_FAILURE(fromStream, parseStream(parser, stream));
        DribblingStream dribble(document);
        EXPECT_FAILURE(fromStream, parseStream(parser, dribble));
        TypedEventRecorder recorder;
        FastInfosetReader reader{DocumentVocabulary(impl)};
        reader.open(document);
        EXPECT_FAILURE(fromMemory, replay(reader, recorder));
        EXPECT_FAILURE("InvalidAccessException: No document is open", reader.next());
        recorder.clear();
        recorder.connect(parser);
        parseMemory(parser, octets("E0000001003C0061FF"));
        EXPECT_EQ(recorder.events(), "^|<a|>|$");
    }
}

} // namespace Tamo::FastInfoset::Test
