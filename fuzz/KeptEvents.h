#ifndef TAMO_FUZZ_KEPTEVENTS_H
#define TAMO_FUZZ_KEPTEVENTS_H

#include "EventRecorder.h"
#include "Tamo/XML/AttributesImpl.h"
#include <cstring>
#include <string>

namespace Tamo::FastInfoset::Fuzz {

/// The events as far as a writer keeps them: no prefixes; text up to its first NUL; identifiers that are
/// empty count as absent; octets that follow one another are one; CDATA borders are lost where the text is
/// indexed.
class KeptEvents : public Test::TypedEventRecorder {
public:
    using Base = Test::TypedEventRecorder;

    bool typedBeforeDTD = false; ///< the writer defers typed values, and writes them into the declaration
    bool emptyName = false;      ///< by index 0; the writer takes the qualified name for the local name then

    void startDocument() override { Base::startDocument(); }
    void endDocument() override {
        flush();
        Base::endDocument();
    }
    void startElement(const std::string& uri, const std::string& localName, const std::string&,
                      const XML::Attributes& attributes) override {
        flush();
        emptyName = emptyName || localName.empty();
        XML::AttributesImpl named; // prefixes may be the writer's
        for (int i = 0; i < attributes.getLength(); ++i) {
            named.addAttribute(attributes.getURI(i), attributes.getLocalName(i), std::string(), "CDATA",
                               attributes.getValue(i));
        }
        Base::startElement(uri, localName, std::string(), named);
    }
    void endElement(const std::string& uri, const std::string& localName, const std::string&) override {
        flush();
        Base::endElement(uri, localName, std::string());
    }
    void characters(const char ch[], int start, int length) override {
        flush();
        Base::characters(ch, start,
                         static_cast<int>(::strnlen(ch + start, static_cast<std::size_t>(length))));
    }
    void processingInstruction(const std::string& target, const std::string& data) override {
        flush();
        Base::processingInstruction(target, data);
    }
    void comment(const char ch[], int start, int length) override {
        flush();
        Base::comment(ch, start, length);
    }
    void startDTD(const std::string& name, const std::string& publicId,
                  const std::string& systemId) override {
        typedBeforeDTD = typedBeforeDTD || _isTyped;
        flush();
        Base::startDTD(name, publicId, systemId);
    }
    void startPrefixMapping(const std::string&, const std::string&) override {}
    void endPrefixMapping(const std::string&) override {}
    void startCDATA() override {}
    void endCDATA() override {}
    void notationDecl(const std::string& name, const std::string* publicId,
                      const std::string* systemId) override {
        Base::notationDecl(name, presentOrNull(publicId), presentOrNull(systemId));
    }
    void unparsedEntityDecl(const std::string& name, const std::string* publicId, const std::string& systemId,
                            const std::string& notationName) override {
        Base::unparsedEntityDecl(name, presentOrNull(publicId), systemId, notationName);
    }
    void binaryData(const char* data, std::size_t length) override {
        _isTyped = true;
        _octets.append(data, length);
    }
    void encodedData(Int16 value) override { typed(value); }
    void encodedData(Int32 value) override { typed(value); }
    void encodedData(Int64 value) override { typed(value); }
    void encodedData(bool value) override { typed(value); }
    void encodedData(float value) override { typed(value); }
    void encodedData(double value) override { typed(value); }
    void encodedData(const UUID& value) override { typed(value); }

private:
    template<class T>
    void typed(const T& value) {
        flush();
        _isTyped = true;
        Base::encodedData(value);
    }

    void flush() {
        _isTyped = false;
        if (!_octets.empty()) {
            Base::binaryData(_octets.data(), _octets.size());
            _octets.clear();
        }
    }

    static const std::string* presentOrNull(const std::string* pIdentifier) {
        return pIdentifier && !pIdentifier->empty() ? pIdentifier : nullptr;
    }

    std::string _octets;
    bool _isTyped = false;
};

} // namespace Tamo::FastInfoset::Fuzz

#endif
