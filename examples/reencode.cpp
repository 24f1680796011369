// Reader, filter, writer: a Fast Infoset document goes through a filter into another Fast Infoset document.
#include "Tamo/FastInfoset/Converter.h"
#include "Tamo/FastInfoset/FastInfosetParser.h"
#include "Tamo/FastInfoset/FastInfosetWriter.h"
#include "Tamo/XML/Attributes.h"
#include "Tamo/XML/XMLFilterImpl.h"
#include <cstddef>
#include <iostream>
#include <sstream>

using namespace Tamo;

namespace {

// [filter]
/// Drops the elements named "internal" with all that is in them, and calls "customer" "buyer".
class Redaction : public XML::XMLFilterImpl {
public:
    using XML::XMLFilterImpl::XMLFilterImpl;

    void startDocument() override {
        _dropped = 0; // a document that ended in an exception has left its depth here
        XMLFilterImpl::startDocument();
    }
    void startElement(const std::string& uri, const std::string& localName, const std::string&,
                      const XML::Attributes& attributes) override {
        if (_dropped > 0 || localName == "internal") {
            ++_dropped;
        } else {
            // The qualified name may be left empty: namespace and local name are what counts.
            XMLFilterImpl::startElement(uri, renamed(localName), std::string(), attributes);
        }
    }
    void endElement(const std::string& uri, const std::string& localName, const std::string&) override {
        if (_dropped > 0) {
            --_dropped;
        } else {
            XMLFilterImpl::endElement(uri, renamed(localName), std::string());
        }
    }
    void characters(const char ch[], int start, int length) override {
        if (_dropped == 0) {
            XMLFilterImpl::characters(ch, start, length);
        }
    }
    void startPrefixMapping(const std::string& prefix, const std::string& uri) override {
        if (_dropped == 0) {
            XMLFilterImpl::startPrefixMapping(prefix, uri);
        }
    }
    void processingInstruction(const std::string&, const std::string&) override {}
    void comment(const char[], int, int) override {}

private:
    static const std::string& renamed(const std::string& localName) {
        static const std::string BUYER("buyer");
        return localName == "customer" ? BUYER : localName;
    }

    std::size_t _dropped = 0; // how many open elements are being dropped
};
// [/filter]

// [pipeline]
void redact(std::istream& in, std::ostream& out) {
    FastInfoset::FastInfosetParser parser;
    Redaction filter(&parser);
    FastInfoset::FastInfosetWriter writer(out, false, FastInfoset::DocumentVocabulary::VOC_MAP);
    filter.setContentHandler(&writer);
    filter.setDTDHandler(&writer);
    filter.setLexicalHandler(&writer);
    filter.parse(in);
}
// [/pipeline]

} // namespace

int main() {
    try {
        std::istringstream xml("<order xmlns='urn:example:orders' id='7'><!-- by fax -->"
                               "<customer>Ines Weber</customer>"
                               "<internal><margin>12.5</margin><note>slow payer</note></internal>"
                               "<item sku='4711'>nut</item></order>");
        std::stringstream fis;
        std::stringstream redacted;
        std::ostringstream result;
        FastInfoset::Converter::convertToFIS(xml, fis, 16, 0);
        redact(fis, redacted);
        FastInfoset::Converter::convertToXML(redacted, result, 0);
        std::cout << fis.str().size() << " octets in, " << redacted.str().size() << " octets out\n"
                  << result.str() << '\n';
    } catch (const std::exception& e) { // std::out_of_range: an index that stands for nothing
        std::cerr << e.what() << '\n';
        return 1;
    }
    return 0;
}
