// Parser, filter, writer: a Fast Infoset document goes through a filter into another one, and what stays of
// it keeps its typed data.
#include "Tamo/FastInfoset/Converter.h"
#include "Tamo/FastInfoset/FISFilter.h"
#include "Tamo/FastInfoset/FastInfosetParser.h"
#include "Tamo/FastInfoset/FastInfosetWriter.h"
#include <exception>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

using namespace Tamo;
using FastInfoset::DocumentVocabulary;
using FastInfoset::FastInfosetWriter;

namespace {

// [filter]
/// Drops the elements named "internal" with all that is in them, and calls "customer" "buyer".
class Redaction : public FastInfoset::FISFilter {
public:
    using FISFilter::FISFilter;

    void startElement(const std::string& uri, const std::string& localName, const std::string&,
                      const XML::Attributes& attributes) override {
        // The qualified name may be left empty: namespace and local name are what counts.
        FISFilter::startElement(uri, renamed(localName), std::string(), attributes);
    }
    void endElement(const std::string& uri, const std::string& localName, const std::string&) override {
        FISFilter::endElement(uri, renamed(localName), std::string());
    }

protected:
    bool drops(const std::string&, const std::string& localName, const XML::Attributes&) override {
        return localName == "internal";
    }

private:
    static const std::string& renamed(const std::string& localName) {
        static const std::string BUYER("buyer");
        return localName == "customer" ? BUYER : localName;
    }
};
// [/filter]

// [pipeline]
void redact(std::istream& in, std::ostream& out) {
    FastInfosetWriter writer(out, false, DocumentVocabulary::VOC_MAP);
    Redaction filter(writer);
    // The writer is handed the parser's vocabulary, in which it must be able to look entries up.
    FastInfoset::FastInfosetParser parser(DocumentVocabulary::VOC_MAP);
    parser.initialize(&filter);
    parser.parse(in);
}
// [/pipeline]

void writeOrder(std::ostream& out) {
    const std::vector<double> prices{9.5, 9.25, 8.75, 8};
    FastInfosetWriter writer(out, false, DocumentVocabulary::VOC_MAP);
    const FastInfosetWriter::Document document(writer);
    writer.startElement("order", {{"id", 7}});
    writer.element("customer", "Ines Weber");
    writer.startElement("internal", {{"prices", prices}});
    writer.element("margin", 12.5);
    writer.comment("slow payer");
    writer.endElement();
    writer.element("item", {{"sku", "4711"}}, prices);
    writer.endElement();
}

} // namespace

int main() {
    try {
        std::stringstream order;
        std::stringstream redacted;
        std::ostringstream xml;
        writeOrder(order);
        redact(order, redacted);
        FastInfoset::Converter::convertToXML(redacted, xml, 0);
        std::cout << order.str().size() << " octets in, " << redacted.str().size() << " octets out\n"
                  << xml.str() << '\n';
    } catch (const std::exception& e) { // std::out_of_range: an index that stands for nothing
        std::cerr << e.what() << '\n';
        return 1;
    }
    return 0;
}
