#include "LibxmlPeer.h"
#include "Tamo/FastInfoset/adapters/libxml2.h"
#include <libxml/SAX2.h>
#include <libxml/parser.h>
#include <libxml/parserInternals.h>
#include <libxml/xmlwriter.h>
#include <stdexcept>

namespace Tamo::Benchmarks {

namespace {

void count(void* pContext) {
    ++*static_cast<UInt64*>(static_cast<xmlParserCtxt*>(pContext)->_private);
}

void countStart(void* pContext, const xmlChar*, const xmlChar*, const xmlChar*, int, const xmlChar**, int,
                int, const xmlChar**) {
    count(pContext);
}

void countEnd(void* pContext, const xmlChar*, const xmlChar*, const xmlChar*) {
    count(pContext);
}

void countText(void* pContext, const xmlChar*, int) {
    count(pContext);
}

void countComment(void* pContext, const xmlChar*) {
    count(pContext);
}

void countInstruction(void* pContext, const xmlChar*, const xmlChar*) {
    count(pContext);
}

void noReport(void*, xmlErrorPtr) {}

const xmlChar* text(const std::string& s) {
    return reinterpret_cast<const xmlChar*>(s.c_str());
}

/// A Recording's events on their way to xmlTextWriter.
struct Visitor {
    xmlTextWriterPtr pWriter;
    // The declarations of the element that comes next.
    std::vector<std::pair<std::string, const std::string*>> mappings{};

    void mapping(const std::string& prefix, const std::string& uri) {
        mappings.emplace_back(prefix.empty() ? "xmlns" : "xmlns:" + prefix, &uri);
    }
    void startElement(const std::string& qname, const Recording::Attribute* pAttributes,
                      unsigned int number) {
        xmlTextWriterStartElement(pWriter, text(qname));
        for (const auto& [name, pUri] : mappings) {
            xmlTextWriterWriteAttribute(pWriter, text(name), text(*pUri));
        }
        mappings.clear();
        for (unsigned int i = 0; i < number; ++i) {
            xmlTextWriterWriteAttribute(pWriter, text(*pAttributes[i].pQName), text(*pAttributes[i].pValue));
        }
    }
    void endElement(const std::string&) { xmlTextWriterEndElement(pWriter); }
    void characters(const std::string& s) { xmlTextWriterWriteString(pWriter, text(s)); }
    void processingInstruction(const std::string& target, const std::string& data) {
        xmlTextWriterWritePI(pWriter, text(target), data.empty() ? nullptr : text(data));
    }
    void comment(const std::string& s) { xmlTextWriterWriteComment(pWriter, text(s)); }
    void startCDATA() { xmlTextWriterStartCDATA(pWriter); }
    void endCDATA() { xmlTextWriterEndCDATA(pWriter); }
};

} // namespace

struct LibxmlPeer::Buffer {
    xmlBufferPtr pBuffer = xmlBufferCreate();
};

LibxmlPeer::LibxmlPeer() : _pBuffer(std::make_unique<Buffer>()) {
    xmlInitParser();
}

LibxmlPeer::~LibxmlPeer() {
    xmlBufferFree(_pBuffer->pBuffer);
}

UInt64 LibxmlPeer::parse(const std::string& xml) {
    xmlParserCtxtPtr pContext = xmlCreateMemoryParserCtxt(xml.data(), static_cast<int>(xml.size()));
    if (!pContext) {
        throw std::bad_alloc();
    }
    UInt64 events = 0;
    pContext->_private = &events;
    xmlCtxtUseOptions(pContext, XML_PARSE_NONET | XML_PARSE_NOENT | XML_PARSE_HUGE);
    xmlSAXHandler& sax = *pContext->sax;
    sax.startElementNs = countStart;
    sax.endElementNs = countEnd;
    sax.characters = countText;
    sax.ignorableWhitespace = countText;
    sax.cdataBlock = countText;
    sax.comment = countComment;
    sax.processingInstruction = countInstruction;
    sax.serror = noReport;
    xmlParseDocument(pContext);
    const bool ok = pContext->wellFormed != 0;
    xmlFreeDoc(pContext->myDoc);
    xmlFreeParserCtxt(pContext);
    if (!ok) {
        throw std::runtime_error("libxml2 cannot parse");
    }
    return events;
}

UInt64 LibxmlPeer::parseTree(const std::string& xml) {
    const FastInfoset::Adapters::LibxmlDocument pTree(
        xmlReadMemory(xml.data(), static_cast<int>(xml.size()), nullptr, nullptr,
                      XML_PARSE_NONET | XML_PARSE_NOENT | XML_PARSE_HUGE | XML_PARSE_NOERROR));
    if (!pTree) {
        throw std::runtime_error("libxml2 cannot parse");
    }
    return 1;
}

UInt64 LibxmlPeer::loadTree(const std::string& octets) {
    FastInfoset::Adapters::loadDocument(octets);
    return 1;
}

UInt64 LibxmlPeer::write(const Recording& recording) {
    xmlBufferEmpty(_pBuffer->pBuffer);
    const std::unique_ptr<xmlTextWriter, void (*)(xmlTextWriterPtr)> pWriter(
        xmlNewTextWriterMemory(_pBuffer->pBuffer, 0), xmlFreeTextWriter);
    xmlTextWriterStartDocument(pWriter.get(), nullptr, "UTF-8", nullptr);
    recording.visit(Visitor{pWriter.get()});
    xmlTextWriterEndDocument(pWriter.get());
    xmlTextWriterFlush(pWriter.get());
    return static_cast<UInt64>(xmlBufferLength(_pBuffer->pBuffer));
}

std::string LibxmlPeer::written() const {
    return {reinterpret_cast<const char*>(xmlBufferContent(_pBuffer->pBuffer)),
            static_cast<std::size_t>(xmlBufferLength(_pBuffer->pBuffer))};
}

} // namespace Tamo::Benchmarks
