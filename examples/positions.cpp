// An algorithm of the application's own: positions along a track, as the differences between neighbours.
#include "DeltaEncoding.h"
#include "Tamo/FastInfoset/Converter.h"
#include "Tamo/FastInfoset/FastInfosetParser.h"
#include "Tamo/FastInfoset/FastInfosetWriter.h"
#include "Tamo/XML/XMLWriter.h"
#include <iostream>
#include <sstream>
#include <vector>

using namespace Tamo;
using example::DeltaEncoding;

namespace {

// [write]
std::string writeTrack(const std::vector<Int32>& positions) {
    const std::string none;
    std::ostringstream octets;
    FastInfoset::FastInfosetWriter writer(octets, false, FastInfoset::DocumentVocabulary::VOC_MAP);
    writer.encodingAlgorithms().add(&DeltaEncoding::encode, &DeltaEncoding::check);
    writer.startDocument();
    writer.startElement("track");
    writer.insertEncoding(AutoPtr<FastInfoset::Encoding>(new DeltaEncoding(positions)));
    writer.endElement();
    writer.endDocument();
    return octets.str();
}
// [/write]

// [read]
void printTrack(FastInfoset::FastInfosetParser& parser, const std::string& document) {
    try {
        std::ostringstream text;
        XML::XMLWriter writer(text);
        parser.initialize(&writer);
        parser.parseMemoryNP(document.data(), document.size());
        std::cout << text.str() << '\n';
    } catch (const FastInfoset::FISException& e) {
        std::cout << e.displayText() << '\n';
    }
}
// [/read]

} // namespace

int main() {
    try {
        const std::vector<Int32> positions = {53551086, 53551102, 53551117, 53551109, 53551090};
        const std::string document = writeTrack(positions);
        std::cout << positions.size() << " positions in a document of " << document.size() << " octets\n";

        // [register]
        FastInfoset::FastInfosetParser parser;
        parser.decodingAlgorithms().add(&DeltaEncoding::decode); // the same order as in the writer
        // [/register]
        printTrack(parser, document);
        printTrack(parser, document); // what was registered outlives the document

        FastInfoset::FastInfosetParser stranger;
        printTrack(stranger, document);
        std::istringstream xml("<track>none</track>");
        std::ostringstream plain;
        FastInfoset::Converter::convertToFIS(xml, plain, 16, 0);
        printTrack(stranger, plain.str()); // and can be used again
    } catch (const std::exception& e) {
        std::cerr << e.what() << '\n';
        return 1;
    }
    return 0;
}
