#include "XercesPeer.h"
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/sax2/DefaultHandler.hpp>
#include <xercesc/sax2/SAX2XMLReader.hpp>
#include <xercesc/sax2/XMLReaderFactory.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLUni.hpp>

namespace Tamo::Benchmarks {

namespace {

class CountingHandler : public xercesc::DefaultHandler {
public:
    UInt64 events = 0;

    void startElement(const XMLCh* const, const XMLCh* const, const XMLCh* const,
                      const xercesc::Attributes&) override {
        ++events;
    }
    void endElement(const XMLCh* const, const XMLCh* const, const XMLCh* const) override { ++events; }
    void characters(const XMLCh* const, const XMLSize_t) override { ++events; }
    void processingInstruction(const XMLCh* const, const XMLCh* const) override { ++events; }
    void comment(const XMLCh* const, const XMLSize_t) override { ++events; }
    void startPrefixMapping(const XMLCh* const, const XMLCh* const) override { ++events; }
};

} // namespace

class XercesPeer::Reader {
public:
    Reader() {
        xercesc::XMLPlatformUtils::Initialize();
        _pReader.reset(xercesc::XMLReaderFactory::createXMLReader());
        _pReader->setFeature(xercesc::XMLUni::fgSAX2CoreNameSpaces, true);
        _pReader->setFeature(xercesc::XMLUni::fgSAX2CoreValidation, false);
        _pReader->setFeature(xercesc::XMLUni::fgXercesSchema, false);
        _pReader->setFeature(xercesc::XMLUni::fgXercesLoadExternalDTD, false);
        _pReader->setContentHandler(&_handler);
        _pReader->setLexicalHandler(&_handler);
        _pReader->setErrorHandler(&_handler);
    }
    ~Reader() {
        _pReader.reset();
        xercesc::XMLPlatformUtils::Terminate();
    }
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;

    UInt64 parse(const std::string& xml) {
        _handler.events = 0;
        const xercesc::MemBufInputSource source(reinterpret_cast<const XMLByte*>(xml.data()), xml.size(), "");
        _pReader->parse(source);
        return _handler.events;
    }

private:
    CountingHandler _handler;
    std::unique_ptr<xercesc::SAX2XMLReader> _pReader;
};

XercesPeer::XercesPeer() : _pReader(std::make_unique<Reader>()) {}

XercesPeer::~XercesPeer() = default;

UInt64 XercesPeer::parse(const std::string& xml) {
    return _pReader->parse(xml);
}

} // namespace Tamo::Benchmarks
