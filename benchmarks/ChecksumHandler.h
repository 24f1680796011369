#ifndef TAMO_BENCHMARKS_CHECKSUMHANDLER_H
#define TAMO_BENCHMARKS_CHECKSUMHANDLER_H

#include "Tamo/FastInfoset/FISContentHandler.h"
#include "Tamo/Types.h"
#include "Tamo/UUID.h"
#include "Tamo/XML/Attributes.h"
#include "Tamo/XML/ContentHandler.h"
#include "Tamo/XML/LexicalHandler.h"
#include <string>

namespace Tamo::Benchmarks {

/// The cheapest handler that still looks at every string it is given: it adds up lengths and first octets.
///
/// The sum does not depend on how character data is cut into calls, nor on what readers may report
/// differently (qualified names, ends of prefix mappings), so that all of them must arrive at the same one.
template<class Base>
class ChecksumHandlerBase : public Base, public XML::LexicalHandler {
public:
    /// The sum of everything reported so far.
    UInt64 sum() const { return _sum; }

    void setDocumentLocator(const XML::Locator*) override {}
    void startDocument() override { _sum += 1; }
    void endDocument() override { _sum += 3; }
    void startElement(const std::string& uri, const std::string& localName, const std::string&,
                      const XML::Attributes& attributes) override {
        add(uri);
        add(localName);
        const int length = attributes.getLength();
        for (int i = 0; i < length; ++i) {
            add(attributes.getURI(i));
            add(attributes.getLocalName(i));
            add(attributes.getValue(i));
        }
    }
    void endElement(const std::string& uri, const std::string& localName, const std::string&) override {
        add(uri);
        add(localName);
    }
    void characters(const char ch[], int start, int length) override {
        _sum += static_cast<UInt64>(length);
        if (length > 0) {
            _last = ch[start];
        }
    }
    void ignorableWhitespace(const char ch[], int start, int length) override {
        characters(ch, start, length);
    }
    void processingInstruction(const std::string& target, const std::string& data) override {
        add(target);
        add(data);
    }
    void startPrefixMapping(const std::string& prefix, const std::string& uri) override {
        add(prefix);
        add(uri);
    }
    void endPrefixMapping(const std::string&) override {}
    void skippedEntity(const std::string&) override {}

    void startDTD(const std::string&, const std::string& publicId, const std::string& systemId) override {
        add(publicId);
        add(systemId);
    }
    void endDTD() override { _sum += 5; }
    void startEntity(const std::string&) override {}
    void endEntity(const std::string&) override {}
    void startCDATA() override { _sum += 7; }
    void endCDATA() override { _sum += 11; }
    void comment(const char ch[], int start, int length) override { characters(ch, start, length); }

protected:
    UInt64 _sum = 0;
    volatile char _last = 0;

private:
    void add(const std::string& text) { _sum += text.size() + static_cast<unsigned char>(*text.c_str()); }
};

/// Receives typed data as text.
using ChecksumHandler = ChecksumHandlerBase<XML::ContentHandler>;

/// Receives typed data as values.
class TypedChecksumHandler : public ChecksumHandlerBase<FastInfoset::FISContentHandler> {
public:
    void binaryData(const char*, std::size_t length) override { _sum += length; }
    void encodedData(Int16 value) override { _sum += static_cast<UInt64>(value); }
    void encodedData(Int32 value) override { _sum += static_cast<UInt64>(value); }
    void encodedData(Int64 value) override { _sum += static_cast<UInt64>(value); }
    void encodedData(bool value) override { _sum += value ? 1 : 2; }
    void encodedData(float value) override { _sum += value > 0 ? 1 : 2; }
    void encodedData(double value) override { _sum += value > 0 ? 1 : 2; }
    void encodedData(const UUID&) override { _sum += 16; }
};

} // namespace Tamo::Benchmarks

#endif
