#ifndef TAMO_FINF_DOCUMENTWRITER_H
#define TAMO_FINF_DOCUMENTWRITER_H

#include "Tamo/FastInfoset/FastInfosetWriter.h"
#include "Tamo/FastInfoset/ParserLimits.h"
#include "Tamo/XML/DeliveryMeter.h"
#include "files/CountingBuf.h"
#include <cstddef>
#include <string>

namespace finf {

/// A Fast Infoset writer that refuses what would be lost, a reference to an entity that was not read, and
/// what a reader with the same limits would refuse.
class DocumentWriter : public Tamo::FastInfoset::FastInfosetWriter {
public:
    using FastInfosetWriter::FastInfosetWriter;

    /// Begins with a document. The limits are those that a reader is going to have; what is written is
    /// measured at the buffer, which is borrowed. Of names and texts a little more is counted than the reader
    /// does.
    void setLimits(const Tamo::FastInfoset::ParserLimits& limits, const CountingBuf& written);

    void startElement(const std::string& uri, const std::string& localName, const std::string& qname,
                      const Tamo::XML::Attributes& attributes) override;
    void endElement(const std::string& uri, const std::string& localName, const std::string& qname) override;
    void startPrefixMapping(const std::string& prefix, const std::string& uri) override;
    void characters(const char ch[], int start, int length) override;
    void comment(const char ch[], int start, int length) override;
    void processingInstruction(const std::string& target, const std::string& data) override;

    void setDocumentLocator(const Tamo::XML::Locator* loc) override;

    /// Throws SAXParseException with the place of the reference.
    void skippedEntity(const std::string& name) override;

private:
    void deliver(std::size_t octets);

    Tamo::UInt64 _maxDepth = 0;
    Tamo::UInt64 _depth = 0;
    Tamo::XML::DeliveryMeter _meter;
    const CountingBuf* _pWritten = nullptr;
    const Tamo::XML::Locator* _pLocator = nullptr;
};

} // namespace finf

#endif
