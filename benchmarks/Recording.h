#ifndef TAMO_BENCHMARKS_RECORDING_H
#define TAMO_BENCHMARKS_RECORDING_H

#include "Tamo/XML/AttributesImpl.h"
#include "Tamo/XML/ContentHandler.h"
#include "Tamo/XML/LexicalHandler.h"
#include <cstddef>
#include <string>
#include <unordered_set>
#include <vector>

namespace Tamo::Benchmarks {

/// The events of one document, prepared so that reporting them again costs next to nothing.
///
/// Filled as a handler; equal strings are stored once and never move. Adjacent character data is joined.
/// Left out is what Fast Infoset does not carry: the name in the document type declaration, attribute types,
/// references to entities that were not read.
class Recording : public XML::ContentHandler, public XML::LexicalHandler {
public:
    Recording() = default;
    Recording(const Recording&) = delete;
    Recording& operator=(const Recording&) = delete;

    /// What a comparison looks at.
    enum Scope { EVERYTHING, WITHOUT_DOCUMENT_TYPE_DECLARATION };

    /// Reports everything; the attribute list that handlers see is the recording's own.
    void replay(XML::ContentHandler& content, XML::LexicalHandler& lexical) const;

    /// Reports everything through an attribute list that is filled anew for every element.
    void replayWithCopies(XML::ContentHandler& content, XML::LexicalHandler& lexical) const;

    /// Describes the first event in which other differs; empty when the recordings carry the same
    /// information. Free are what the Fast Infoset side does not promise: the order of an element's namespace
    /// declarations and when their scopes end, qualified names beyond an element's prefix.
    std::string difference(const Recording& other, Scope scope = EVERYTHING) const;

    /// The number of events, without attributes.
    std::size_t events() const { return _events.size(); }
    /// The number of elements.
    std::size_t elements() const { return _elements; }
    /// The number of attributes.
    std::size_t attributes() const { return _attributes.size(); }
    /// The octets of character data.
    std::size_t textOctets() const { return _textOctets; }
    /// The number of namespace declarations.
    std::size_t mappings() const { return _mappings; }

    void setDocumentLocator(const XML::Locator*) override {}
    void startDocument() override;
    void endDocument() override;
    void startElement(const std::string& uri, const std::string& localName, const std::string& qname,
                      const XML::Attributes& attributes) override;
    void endElement(const std::string& uri, const std::string& localName, const std::string& qname) override;
    void characters(const char ch[], int start, int length) override;
    void ignorableWhitespace(const char ch[], int start, int length) override;
    void processingInstruction(const std::string& target, const std::string& data) override;
    void startPrefixMapping(const std::string& prefix, const std::string& uri) override;
    void endPrefixMapping(const std::string& prefix) override;
    void skippedEntity(const std::string&) override {}
    void startDTD(const std::string& name, const std::string& publicId, const std::string& systemId) override;
    void endDTD() override;
    void startEntity(const std::string&) override {}
    void endEntity(const std::string&) override {}
    void startCDATA() override;
    void endCDATA() override;
    void comment(const char ch[], int start, int length) override;

    /// Calls the visitor's operations of the same names for a writer or a builder that is no SAX2 handler.
    template<class Visitor>
    void visit(Visitor&& visitor) const;

    /// One attribute; the strings belong to the recording.
    struct Attribute {
        const std::string* pUri;
        const std::string* pLocalName;
        const std::string* pQName;
        const std::string* pValue;
    };

private:
    enum class Kind {
        START_DOCUMENT,
        END_DOCUMENT,
        START_MAPPING,
        START_ELEMENT,
        END_ELEMENT,
        END_MAPPING,
        CHARACTERS,
        PROCESSING_INSTRUCTION,
        COMMENT,
        START_CDATA,
        END_CDATA,
        START_DTD,
        END_DTD
    };

    struct Event {
        Kind kind;
        unsigned int attributeCount = 0;
        std::size_t firstAttribute = 0;
        const std::string* pFirst = nullptr;
        const std::string* pSecond = nullptr;
        const std::string* pThird = nullptr;
    };

    template<class ReportElement>
    void report(XML::ContentHandler& content, XML::LexicalHandler& lexical,
                ReportElement&& reportElement) const;

    const std::string* keep(const std::string& text) { return &*_strings.insert(text).first; }
    Event& add(Kind kind);
    void flushText();
    std::string describe(const Event& event) const;
    bool same(const Event& mine, const Recording& other, const Event& others) const;

    std::vector<Event> _events;
    std::vector<Attribute> _attributes;
    std::unordered_set<std::string> _strings;
    std::string _text;
    std::size_t _elements = 0;
    std::size_t _textOctets = 0;
    std::size_t _mappings = 0;
};

template<class Visitor>
void Recording::visit(Visitor&& visitor) const {
    for (const Event& event : _events) {
        switch (event.kind) {
        case Kind::START_MAPPING:
            visitor.mapping(*event.pFirst, *event.pSecond);
            break;
        case Kind::START_ELEMENT:
            visitor.startElement(*event.pThird, _attributes.data() + event.firstAttribute,
                                 event.attributeCount);
            break;
        case Kind::END_ELEMENT:
            visitor.endElement(*event.pThird);
            break;
        case Kind::CHARACTERS:
            visitor.characters(*event.pFirst);
            break;
        case Kind::PROCESSING_INSTRUCTION:
            visitor.processingInstruction(*event.pFirst, *event.pSecond);
            break;
        case Kind::COMMENT:
            visitor.comment(*event.pFirst);
            break;
        case Kind::START_CDATA:
            visitor.startCDATA();
            break;
        case Kind::END_CDATA:
            visitor.endCDATA();
            break;
        default:
            break;
        }
    }
}

} // namespace Tamo::Benchmarks

#endif
