// Documents by the letter of the standard: an algorithm by its URI, and what is no document.
#include "DeltaEncoding.h"
#include "Tamo/Exception.h"
#include "Tamo/FastInfoset/FastInfosetParser.h"
#include "Tamo/FastInfoset/FastInfosetWriter.h"
#include "Tamo/XML/XMLWriter.h"
#include <iostream>
#include <sstream>

using namespace Tamo;
using example::DeltaEncoding;

namespace {

const std::string DELTA("urn:example:delta");

// [write]
std::string writeStrictly(const std::vector<Int32>& values) {
    std::ostringstream octets;
    FastInfoset::FastInfosetWriter writer(octets, false, FastInfoset::DocumentVocabulary::VOC_MAP);
    writer.setStrict(true);
    writer.encodingAlgorithms().add(DELTA, &DeltaEncoding::encode, &DeltaEncoding::check);
    writer.startDocument();
    writer.startElement("levels");
    writer.insertEncoding(new DeltaEncoding(values)); // the header declares its URI
    writer.endElement();
    writer.endDocument();
    return octets.str();
}
// [/write]

// [read]
std::string readXML(const std::string& octets, bool strict) {
    std::ostringstream text;
    XML::XMLWriter writer(text);
    FastInfoset::FastInfosetParser parser;
    parser.setStrict(strict);
    parser.decodingAlgorithms().add(DELTA, &DeltaEncoding::decode);
    parser.initialize(&writer);
    parser.parseMemoryNP(octets.data(), octets.size());
    return text.str();
}
// [/read]

} // namespace

int main() {
    std::cout << readXML(writeStrictly({1000, 1001, 1003, 1002}), true) << '\n';
    // The element's text is an octet that is no UTF-8.
    const std::string broken("\xE0\0\0\1\0\x3C\0a\x80\xE9\xFF", 11);
    for (const bool strict : {false, true}) {
        try {
            readXML(broken, strict);
            std::cout << "read\n";
        } catch (const Exception& e) {
            std::cout << e.displayText() << '\n';
        }
    }
}
