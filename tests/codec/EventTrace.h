#ifndef TAMO_TESTS_EVENTTRACE_H
#define TAMO_TESTS_EVENTTRACE_H

#include "Tamo/FastInfoset/FastInfosetParser.h"
#include "Tamo/XML/Attributes.h"
#include "Tamo/XML/DTDHandler.h"
#include "Tamo/XML/InputSource.h"
#include "Tamo/XML/LexicalHandler.h"
#include "TestSupport.h"
#include <stdexcept>

namespace Tamo::FastInfoset::Test {

/// Writes every event down as one word: "<{u}a[p:a] x=1", "'text", ">a". Throws at event number throwAt.
template<class Content>
class EventTrace : public Content, public XML::LexicalHandler, public XML::DTDHandler {
public:
    std::string events;
    int throwAt = -1;

    void connect(XML::XMLReader& reader) {
        reader.setContentHandler(this);
        reader.setDTDHandler(this);
        reader.setProperty(XML::XMLReader::PROPERTY_LEXICAL_HANDLER,
                           static_cast<void*>(static_cast<XML::LexicalHandler*>(this)));
    }

    void setDocumentLocator(const XML::Locator*) override {}
    void startDocument() override { add("doc("); }
    void endDocument() override { add(")"); }
    void startElement(const std::string& uri, const std::string& localName, const std::string& qname,
                      const XML::Attributes& attributes) override {
        std::string word = "<" + braced(uri) + localName;
        word += qname.find(':') == std::string::npos ? "" : "[" + qname + "]";
        for (int i = 0; i < attributes.getLength(); ++i) {
            word += " " + braced(attributes.getURI(i)) + attributes.getLocalName(i) + "=" +
                    attributes.getValue(i);
        }
        add(word);
    }
    void endElement(const std::string&, const std::string& localName, const std::string&) override {
        add(">" + localName);
    }
    void characters(const char ch[], int start, int length) override { add("'" + text(ch, start, length)); }
    void ignorableWhitespace(const char ch[], int start, int length) override {
        characters(ch, start, length);
    }
    void processingInstruction(const std::string& target, const std::string& data) override {
        add("?" + target + "=" + data);
    }
    void startPrefixMapping(const std::string& prefix, const std::string& uri) override {
        add("+" + prefix + "=" + uri);
    }
    void endPrefixMapping(const std::string& prefix) override { add("-" + prefix); }
    void skippedEntity(const std::string& name) override { add("&" + name); }
    void startDTD(const std::string& name, const std::string& publicId,
                  const std::string& systemId) override {
        add("dtd(" + name + "," + publicId + "," + systemId);
    }
    void endDTD() override { add("dtd)"); }
    void startEntity(const std::string&) override {}
    void endEntity(const std::string&) override {}
    void startCDATA() override { add("cdata("); }
    void endCDATA() override { add("cdata)"); }
    void comment(const char ch[], int start, int length) override { add("!" + text(ch, start, length)); }
    void notationDecl(const std::string& name, const std::string* publicId,
                      const std::string* systemId) override {
        add("notation:" + name + "," + orNull(publicId) + "," + orNull(systemId));
    }
    void unparsedEntityDecl(const std::string& name, const std::string* publicId, const std::string& systemId,
                            const std::string& notationName) override {
        add("unparsed:" + name + "," + orNull(publicId) + "," + systemId + "," + notationName);
    }

protected:
    void add(const std::string& word) {
        if (throwAt >= 0 && throwAt-- == 0) {
            throw std::runtime_error("the handler has had enough");
        }
        events += (events.empty() ? "" : " ") + word;
    }

private:
    static std::string braced(const std::string& uri) { return uri.empty() ? "" : "{" + uri + "}"; }
    static std::string text(const char ch[], int start, int length) {
        return std::string(ch + start, static_cast<std::size_t>(length));
    }
    static std::string orNull(const std::string* pText) { return pText ? *pText : "null"; }
};

using TraceRecorder = EventTrace<XML::ContentHandler>;

/// The same for a handler that takes typed data as values.
class TypedTraceRecorder : public EventTrace<FISContentHandler> {
public:
    void binaryData(const char* data, std::size_t length) override {
        add("binary:" + hex(std::string_view(data, length)));
    }
    void encodedData(Int16 value) override { add("short:" + std::to_string(value)); }
    void encodedData(Int32 value) override { add("int:" + std::to_string(value)); }
    void encodedData(Int64 value) override { add("long:" + std::to_string(value)); }
    void encodedData(bool value) override { add(value ? "true" : "false"); }
    void encodedData(float value) override { add("float:" + std::to_string(value)); }
    void encodedData(double value) override { add("double:" + std::to_string(value)); }
    void encodedData(const UUID& value) override { add("uuid:" + value.toString()); }
};

/// The events of a document: read from memory, from a stream and octet by octet, which must agree.
template<class R = TraceRecorder>
std::string eventsOf(const std::string& document,
                     DocumentVocabulary::VocabularyImpl impl = DocumentVocabulary::VOC_VECTOR) {
    R fromMemory;
    FastInfosetParser parser(impl);
    fromMemory.connect(parser);
    parser.parseMemoryNP(document.data(), document.size());
    for (const bool dribbling : {false, true}) {
        std::istringstream whole(document);
        DribblingStream octetByOctet(document);
        XML::InputSource source(dribbling ? static_cast<std::istream&>(octetByOctet) : whole);
        R fromStream;
        FastInfosetParser streamParser(impl);
        fromStream.connect(streamParser);
        streamParser.parse(&source);
        EXPECT_EQ(fromStream.events, fromMemory.events) << "dribbling: " << dribbling;
    }
    return fromMemory.events;
}

} // namespace Tamo::FastInfoset::Test

#endif
