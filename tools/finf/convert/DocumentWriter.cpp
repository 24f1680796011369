#include "convert/DocumentWriter.h"
#include "Tamo/XML/Attributes.h"
#include "Tamo/XML/Locator.h"
#include "Tamo/XML/SAXException.h"
#include "command/FinfError.h"

namespace finf {

namespace {

constexpr std::size_t CALLBACK = Tamo::XML::DeliveryLimits::CALLBACK;

} // namespace

void DocumentWriter::setLimits(const Tamo::FastInfoset::ParserLimits& limits, const CountingBuf& written) {
    _maxDepth = limits.maxDepth;
    _depth = 0;
    _meter.start(limits.delivery());
    _pWritten = &written;
}

void DocumentWriter::startElement(const std::string& uri, const std::string& localName,
                                  const std::string& qname, const Tamo::XML::Attributes& attributes) {
    if (_pWritten && ++_depth > _maxDepth) {
        throw FinfError("nested deeper than finf decode reads; --max-depth changes that");
    }
    std::size_t octets = 2 * (CALLBACK + uri.size() + localName.size() + qname.size());
    for (int i = 0; i < attributes.getLength(); ++i) {
        octets += CALLBACK + attributes.getURI(i).size() + attributes.getLocalName(i).size() +
                  attributes.getValue(i).size();
    }
    deliver(octets);
    FastInfosetWriter::startElement(uri, localName, qname, attributes);
}

void DocumentWriter::endElement(const std::string& uri, const std::string& localName,
                                const std::string& qname) {
    --_depth;
    FastInfosetWriter::endElement(uri, localName, qname);
}

void DocumentWriter::startPrefixMapping(const std::string& prefix, const std::string& uri) {
    deliver(2 * CALLBACK + 2 * prefix.size() + uri.size());
    FastInfosetWriter::startPrefixMapping(prefix, uri);
}

void DocumentWriter::characters(const char ch[], int start, int length) {
    deliver(CALLBACK + static_cast<std::size_t>(length));
    FastInfosetWriter::characters(ch, start, length);
}

void DocumentWriter::comment(const char ch[], int start, int length) {
    deliver(CALLBACK + static_cast<std::size_t>(length));
    FastInfosetWriter::comment(ch, start, length);
}

void DocumentWriter::processingInstruction(const std::string& target, const std::string& data) {
    deliver(CALLBACK + target.size() + data.size());
    FastInfosetWriter::processingInstruction(target, data);
}

void DocumentWriter::deliver(std::size_t octets) {
    if (_pWritten && !_meter.add(octets)) {
        const std::string limit = _meter.exceeds(_pWritten->size());
        if (!limit.empty()) {
            throw FinfError("repeats itself more than finf decode reads (" + limit +
                            "); --max-amplification and --max-output change that");
        }
    }
}

void DocumentWriter::setDocumentLocator(const Tamo::XML::Locator* loc) {
    _pLocator = loc;
    FastInfosetWriter::setDocumentLocator(loc);
}

void DocumentWriter::skippedEntity(const std::string& name) {
    const std::string message =
        "entity " + name + " is declared outside the document, and nothing outside is read";
    if (_pLocator) {
        throw Tamo::XML::SAXParseException(message, *_pLocator);
    }
    throw FinfError(message);
}

} // namespace finf
