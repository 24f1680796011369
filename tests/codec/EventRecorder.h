#ifndef TAMO_TESTS_EVENTRECORDER_H
#define TAMO_TESTS_EVENTRECORDER_H

#include "Octets.h"
#include "Tamo/Exception.h"
#include "Tamo/FastInfoset/DocumentPropertiesHandler.h"
#include "Tamo/FastInfoset/FISContentHandler.h"
#include "Tamo/FastInfoset/FastInfosetParser.h"
#include "Tamo/XML/DTDHandler.h"
#include "Tamo/XML/LexicalHandler.h"
#include "Tamo/XML/XMLReader.h"
#include <string>
#include <vector>

namespace Tamo::FastInfoset::Test {

/// Writes down the events that it receives, one token each, with '|' between them:
///
///     ^  $             the document starts, ends       'text          characters
///     <{uri}p:e a="v"  an element starts               #text          a comment
///     >                the innermost element ends      ?target data   a processing instruction
///     +p=uri  -p       a prefix mapping starts, ends   [  ]           a CDATA section starts, ends
///     !n,p,s  ~        a DTD starts (name, public and system identifier), ends
///     Nn,p,s  Un,p,s,m a notation, an unparsed entity; an absent identifier is a '-'
///     =int 5           a typed value
///     declaration, none, external uri, vocabulary: what the document says of itself, by the letter also
///     additional id=octets, scheme s, standalone, dependent, version v
///
/// A name is the qualified name, or the local name when there is none; an end that does not fit its element
/// is written with its name. The base is the interface of the content handler, plain or typed.
template<class Base>
class ContentRecorder : public Base,
                        public XML::LexicalHandler,
                        public XML::DTDHandler,
                        public DocumentPropertiesHandler {
public:
    /// What is written down.
    enum Detail {
        EVERYTHING,
        INFORMATION ///< no prefixes of attributes, prefix mappings or DTD names
    };

    explicit ContentRecorder(Detail detail = EVERYTHING) : _detail(detail) {}

    /// Becomes the content, lexical and DTD handler of the reader.
    void connect(XML::XMLReader& reader) {
        reader.setContentHandler(this);
        reader.setDTDHandler(this);
        reader.setLexicalHandler(this);
    }
    /// Becomes the document handler too.
    void connectAll(FastInfosetParser& parser) {
        connect(parser);
        parser.setDocumentHandler(this);
    }

    /// Throws RuntimeException "handler" in place of event number count from now on.
    void failAt(std::size_t count) { _eventsLeft = count; }

    const std::string& events() const { return _events; }
    /// Forgets the events, the elements left open and failAt.
    void clear() {
        _events.clear();
        _open.clear();
        _eventsLeft = static_cast<std::size_t>(-1);
    }

    void setDocumentLocator(const XML::Locator*) override {}
    void startDocument() override { event("^"); }
    void endDocument() override { event("$"); }
    void startElement(const std::string& uri, const std::string& localName, const std::string& qname,
                      const XML::Attributes& attributes) override;
    void endElement(const std::string& uri, const std::string& localName, const std::string& qname) override;
    void characters(const char ch[], int start, int length) override { text('\'', ch, start, length); }
    void ignorableWhitespace(const char ch[], int start, int length) override {
        characters(ch, start, length);
    }
    void processingInstruction(const std::string& target, const std::string& data) override {
        event("?" + target + (data.empty() ? "" : " " + data));
    }
    void startPrefixMapping(const std::string& prefix, const std::string& uri) override {
        mapping("+" + prefix + "=" + uri);
    }
    void endPrefixMapping(const std::string& prefix) override { mapping("-" + prefix); }
    void skippedEntity(const std::string& name) override { event("*" + name); }
    void startDTD(const std::string& name, const std::string& publicId,
                  const std::string& systemId) override {
        event("!" + (_detail == INFORMATION ? "" : name) + "," + publicId + "," + systemId);
    }
    void endDTD() override { event("~"); }
    void startEntity(const std::string&) override {}
    void endEntity(const std::string&) override {}
    void startCDATA() override { event("["); }
    void endCDATA() override { event("]"); }
    void comment(const char ch[], int start, int length) override { text('#', ch, start, length); }
    void notationDecl(const std::string& name, const std::string* publicId,
                      const std::string* systemId) override {
        event("N" + name + "," + orDash(publicId) + "," + orDash(systemId));
    }
    void unparsedEntityDecl(const std::string& name, const std::string* publicId, const std::string& systemId,
                            const std::string& notationName) override {
        event("U" + name + "," + orDash(publicId) + "," + systemId + "," + notationName);
    }
    void setDocumentVocabulary(const DocumentVocabulary&) override { event("vocabulary"); }
    [[noreturn]] DocumentVocabulary& getDocumentVocabulary() override { throw NotImplementedException(""); }
    [[noreturn]] const DocumentVocabulary& getDocumentVocabulary() const override {
        throw NotImplementedException("");
    }
    void setWriteXMLDeclaration(bool flag) override { event(flag ? "declaration" : "none"); }
    void setExternalVocabulary(const std::string& uri, const DocumentVocabulary&) override {
        event("external " + uri);
    }
    void additionalData(const std::string& id, std::span<const std::byte> data) override {
        event("additional " + id + "=" +
              hex(std::string_view(reinterpret_cast<const char*>(data.data()), data.size())));
    }
    void characterEncodingScheme(const std::string& scheme) override { event("scheme " + scheme); }
    void standalone(bool isStandalone) override { event(isStandalone ? "standalone" : "dependent"); }
    void version(const std::string& version) override { event("version " + version); }

protected:
    void event(const std::string& token);

private:
    void mapping(const std::string& token) {
        if (_detail == EVERYTHING) {
            event(token);
        }
    }
    void text(char kind, const char ch[], int start, int length) {
        event(kind + std::string(ch + start, static_cast<std::size_t>(length)));
    }
    static std::string orDash(const std::string* pIdentifier) { return pIdentifier ? *pIdentifier : "-"; }

    Detail _detail;
    std::string _events;
    std::vector<std::string> _open;
    std::size_t _eventsLeft = static_cast<std::size_t>(-1);
};

using EventRecorder = ContentRecorder<XML::ContentHandler>;

/// Writes down typed values as such.
template<class Base>
class TypedRecorder : public ContentRecorder<Base> {
public:
    void binaryData(const char* data, std::size_t length) override;
    void encodedData(Int16 value) override { this->event("=short " + std::to_string(value)); }
    void encodedData(Int32 value) override { this->event("=int " + std::to_string(value)); }
    void encodedData(Int64 value) override { this->event("=long " + std::to_string(value)); }
    void encodedData(bool value) override { this->event(value ? "=bool true" : "=bool false"); }
    void encodedData(float value) override;
    void encodedData(double value) override;
    void encodedData(const UUID& value) override { this->event("=uuid " + value.toString()); }
};

using TypedEventRecorder = TypedRecorder<FISContentHandler>;

} // namespace Tamo::FastInfoset::Test

#endif
