#ifndef TAMO_TESTS_XML_TRACE_H
#define TAMO_TESTS_XML_TRACE_H

#include "Tamo/XML/Attributes.h"
#include "Tamo/XML/DefaultHandler.h"
#include "Tamo/XML/XMLReader.h"
#include <string>

/// Writes the events that it receives as one line of text.
class Trace : public Tamo::XML::DefaultHandler {
public:
    enum Detail {
        EVERYTHING, ///< every event with qualified names
        INFORMATION ///< expanded names; no prefix mappings, joined text, no CDATA borders
    };

    explicit Trace(Detail detail = EVERYTHING) : _detail(detail) {}

    const std::string& text() const { return _trace; }

    /// Becomes all handlers of the reader.
    void connect(Tamo::XML::XMLReader& reader);

    void setDocumentLocator(const Tamo::XML::Locator*) override { event("L"); }
    void startDocument() override { event("["); }
    void endDocument() override { event("]"); }
    void startElement(const std::string& uri, const std::string& localName, const std::string& qname,
                      const Tamo::XML::Attributes& attributes) override;
    void endElement(const std::string& uri, const std::string& localName, const std::string& qname) override;
    void characters(const char ch[], int start, int length) override;
    void processingInstruction(const std::string& target, const std::string& data) override;
    void startPrefixMapping(const std::string& prefix, const std::string& uri) override;
    void endPrefixMapping(const std::string& prefix) override;
    void skippedEntity(const std::string& name) override { event("&" + name + ";"); }
    void notationDecl(const std::string& name, const std::string* publicId,
                      const std::string* systemId) override;
    void unparsedEntityDecl(const std::string& name, const std::string* publicId, const std::string& systemId,
                            const std::string& notationName) override;
    void startDTD(const std::string& name, const std::string& publicId, const std::string& systemId) override;
    void endDTD() override { event("DTD)"); }
    void startCDATA() override;
    void endCDATA() override;
    void comment(const char ch[], int start, int length) override;

protected:
    /// Called for every event, with its text in the trace.
    virtual void event(const std::string& text);

private:
    std::string nameOf(const std::string& uri, const std::string& localName, const std::string& qname) const;

    Detail _detail;
    std::string _trace;
    bool _inText = false;
};

/// The trace of a document, declarations first if so told.
std::string traceOf(const std::string& xml, Trace::Detail detail = Trace::EVERYTHING,
                    bool declarationsFirst = false);

/// The prefix with a number behind it.
template<class Number>
std::string numbered(const char* prefix, Number number) {
    return std::string(prefix).append(std::to_string(number));
}

#endif
