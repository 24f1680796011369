#include "DocumentTest.h"
#include "Tamo/Exception.h"
#include "Tamo/XML/AttributesImpl.h"
#include "Tamo/XML/InputSource.h"
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

void playTyped(const std::string& token, FastInfosetWriter& writer) {
    const std::vector<std::string> words = split(token, ' ');
    const std::string& type = words.at(0);
    const std::string& value = words.at(1);
    if (type == "binary") {
        const std::string data = octets(token.substr(7));
        writer.binaryData(data.data(), data.size());
    } else if (type == "short") {
        writer.encodedData(static_cast<Int16>(std::stoi(value)));
    } else if (type == "int") {
        writer.encodedData(Int32{std::stoi(value)});
    } else if (type == "long") {
        writer.encodedData(Int64{std::stol(value)});
    } else if (type == "bool") {
        writer.encodedData(value == "true");
    } else if (type == "float") {
        writer.encodedData(std::stof(value));
    } else if (type == "double") {
        writer.encodedData(std::stod(value));
    } else {
        writer.encodedData(UUID(value));
    }
}

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
        return playTyped(token, writer);
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
        FastInfosetParser parser(impl);
        TypedEventRecorder recorder;
        recorder.connect(parser);
        parseMemory(parser, document);
        EXPECT_EQ(recorder.events(), events);
        recorder.clear();
        std::istringstream stream(document);
        parseStream(parser, stream);
        EXPECT_EQ(recorder.events(), events);
        recorder.clear();
        DribblingStream dribble(document);
        parseStream(parser, dribble);
        EXPECT_EQ(recorder.events(), events);
        FastInfosetReader reader{DocumentVocabulary(impl)};
        std::istringstream again(document);
        DribblingStream dribbleAgain(document);
        for (std::istream* pStream :
             {static_cast<std::istream*>(&again), static_cast<std::istream*>(&dribbleAgain)}) {
            recorder.clear();
            reader.open(*pStream);
            replay(reader, recorder);
            EXPECT_EQ(recorder.events(), events);
        }
        recorder.clear();
        reader.open(document);
        replay(reader, recorder);
        EXPECT_EQ(recorder.events(), events);
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

void expectDocument(const DocumentRow& row) {
    SCOPED_TRACE(row.name);
    const std::string expected = document(row.octets);
    for (const auto impl : {DocumentVocabulary::VOC_MAP, DocumentVocabulary::VOC_HASH}) {
        const std::string octets = document(
            [&](FastInfosetWriter& writer) {
                writer.setMaxIndexedStringLength(row.maxIndexedStringLength);
                play(row.written, writer);
            },
            impl);
        EXPECT_EQ(hex(octets), hex(expected));
    }
    expectEvents(expected, row.read ? row.read : row.written);
    expectRewritten(expected, row.maxIndexedStringLength);
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
