#ifndef TAMO_FINF_EVENTRECORDING_H
#define TAMO_FINF_EVENTRECORDING_H

#include "Tamo/FastInfoset/FastInfosetWriter.h"
#include "Tamo/XML/DefaultHandler.h"
#include <functional>
#include <string>
#include <vector>

namespace finf {

/// The events of a document, to be written again and again without what it costs to read them. It takes
/// several times the memory of the document.
class EventRecording : public Tamo::XML::DefaultHandler {
public:
    /// Hands all events to the writer.
    void replay(Tamo::FastInfoset::FastInfosetWriter& writer) const;

    void startDocument() override;
    void endDocument() override;
    void startElement(const std::string& uri, const std::string& localName, const std::string& qname,
                      const Tamo::XML::Attributes& attrs) override;
    void endElement(const std::string& uri, const std::string& localName, const std::string& qname) override;
    void characters(const char ch[], int start, int length) override;
    void processingInstruction(const std::string& target, const std::string& data) override;
    void startPrefixMapping(const std::string& prefix, const std::string& uri) override;
    void endPrefixMapping(const std::string& prefix) override;
    void startDTD(const std::string& name, const std::string& publicId, const std::string& systemId) override;
    void endDTD() override;
    void startCDATA() override;
    void endCDATA() override;
    void comment(const char ch[], int start, int length) override;
    void notationDecl(const std::string& name, const std::string* publicId,
                      const std::string* systemId) override;
    void unparsedEntityDecl(const std::string& name, const std::string* publicId, const std::string& systemId,
                            const std::string& notationName) override;

private:
    using Event = std::function<void(Tamo::FastInfoset::FastInfosetWriter&)>;

    std::vector<Event> _events;
};

} // namespace finf

#endif
