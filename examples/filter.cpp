// A filter between parser and writer: elements go, and what stays keeps its typed data.
#include "Tamo/FastInfoset/Converter.h"
#include "Tamo/FastInfoset/FISFilter.h"
#include "Tamo/FastInfoset/FastInfosetParser.h"
#include "Tamo/FastInfoset/FastInfosetWriter.h"
#include "Tamo/StringSink.h"
#include <exception>
#include <iostream>
#include <numeric>
#include <span>
#include <sstream>
#include <string>
#include <vector>

using namespace Tamo;
using FastInfoset::DocumentVocabulary;
using FastInfoset::FastInfosetParser;
using FastInfoset::FastInfosetWriter;

namespace {

// [filter]
/// Drops the elements named "internal" with all that is in them.
class Redaction : public FastInfoset::FISFilter {
public:
    using FISFilter::FISFilter;

protected:
    bool drops(const std::string&, const std::string& localName, const XML::Attributes&) override {
        return localName == "internal";
    }
};

std::string redact(const std::string& document) {
    std::string octets;
    StringSink sink(octets);
    FastInfosetWriter writer(sink, false, DocumentVocabulary::VOC_MAP);
    writer.setStrict(true);
    Redaction filter(writer);
    FastInfosetParser parser;
    parser.setStrict(true);
    parser.initialize(&filter);
    parser.parseMemoryNP(document.data(), document.size());
    return octets;
}
// [/filter]

std::string measurement() {
    std::vector<double> kelvin(100);
    std::iota(kelvin.begin(), kelvin.end(), 273.15);
    std::string octets;
    StringSink sink(octets);
    FastInfosetWriter writer(sink, false, DocumentVocabulary::VOC_MAP);
    writer.startDocument();
    writer.startElement("log");
    writer.startElement("internal", {{"kelvin", kelvin}});
    writer.comment("nobody reads this");
    writer.endElement();
    writer.element("run", {{"kelvin", kelvin}}, std::span(kelvin).first(2));
    writer.endElement();
    writer.endDocument();
    return octets;
}

} // namespace

int main() {
    try {
        const std::string document = measurement();
        const std::string redacted = redact(document);
        std::istringstream in(redacted);
        std::ostringstream text;
        FastInfoset::Converter::convertToXML(in, text, 0);
        std::cout << document.size() << " octets, " << redacted.size()
                  << " of them are left, which as XML are " << text.str().size() << '\n'
                  << text.str().substr(0, 40) << "..." << text.str().substr(text.str().size() - 30) << '\n';
    } catch (const std::exception& e) {
        std::cerr << e.what() << '\n';
        return 1;
    }
    return 0;
}
