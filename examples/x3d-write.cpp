// A scene of numbers written as binary X3D, against the vocabulary that its readers hold, and read back.
#include "Tamo/FastInfoset/FastInfosetParser.h"
#include "Tamo/FastInfoset/FastInfosetReader.h"
#include "Tamo/FastInfoset/FastInfosetWriter.h"
#include "Tamo/StringSink.h"
#include "Tamo/XML/XMLWriter.h"
#include "X3DFiles.h"
#include <algorithm>
#include <array>
#include <iostream>
#include <span>
#include <sstream>
#include <string>
#include <vector>

namespace {

using namespace Tamo;
using FastInfoset::FastInfosetReader;

// [write]
std::string writeX3D(const std::vector<float>& points, const std::vector<Int32>& faces,
                     const example::X3DLists& lists) {
    example::DocumentVocabulary vocabulary = example::x3dVocabulary(lists);
    vocabulary.setURI(example::X3DLoader::URIS[0]); // which the header names instead of the entries
    std::string octets;
    StringSink sink(octets);
    FastInfoset::FastInfosetWriter writer(sink, false, example::DocumentVocabulary::VOC_MAP);
    writer.setStrict(true);
    writer.useVocabulary(vocabulary);
    {
        const FastInfoset::FastInfosetWriter::Document document(writer);
        writer.startElement("X3D", {{"profile", "Interchange"}, {"version", "3.2"}});
        writer.startElement("Scene");
        writer.startElement("Shape");
        writer.startElement("Appearance");
        writer.element("Material", {{"diffuseColor", std::array{1.0f, 0.0f, 0.0f}}});
        writer.endElement();
        writer.startElement("IndexedFaceSet", {{"solid", "false"}, {"coordIndex", faces}});
        writer.element("Coordinate", {{"point", points}});
        for (int open = 4; open != 0; --open) {
            writer.endElement();
        }
    }
    return octets;
}
// [/write]

// [read]
void readShapes(const std::string& octets, const example::X3DLists& lists) {
    example::X3DLoader loader(lists);
    FastInfosetReader reader;
    reader.setExternalVocabularyLoader(&loader);
    reader.open(octets);
    while (reader.next() != FastInfosetReader::END_DOCUMENT) {
        if (reader.event() != FastInfosetReader::START_ELEMENT) {
            continue;
        }
        for (int i = 0; i < reader.attributes().getLength(); ++i) {
            const std::span<const float> values = reader.attributeFloatValues(i);
            if (!values.empty()) {
                std::cout << reader.localName() << ' ' << reader.attributes().getLocalName(i) << ": "
                          << values.size() << " floats up to " << *std::ranges::max_element(values) << '\n';
            }
        }
    }
}
// [/read]

} // namespace

int main() {
    try {
        const example::X3DLists lists = example::x3dLists(TAMO_X3D);
        std::vector<float> points; // a piece of land, 50 points wide and long
        std::vector<Int32> faces;
        for (Int32 i = 0; i < 2500; ++i) {
            const Int32 row = i / 50, column = i % 50;
            const float x = static_cast<float>(column) / 10, z = static_cast<float>(row) / 10;
            points.insert(points.end(), {x, x * z / 10, z});
            if (row != 0 && column != 0) {
                faces.insert(faces.end(), {i - 51, i - 50, i, i - 1, -1});
            }
        }
        const std::string octets = writeX3D(points, faces, lists);
        readShapes(octets, lists);

        example::X3DLoader loader(lists);
        FastInfoset::FastInfosetParser parser;
        parser.setStrict(true);
        parser.setExternalVocabularyLoader(&loader);
        std::ostringstream text;
        XML::XMLWriter writer(text);
        parser.initialize(&writer);
        parser.parseMemoryNP(octets.data(), octets.size());
        std::cout << "XML " << text.str().size() << " octets, binary X3D " << octets.size() << '\n'
                  << text.str().substr(0, 200) << "...\n";
    } catch (const std::exception& e) {
        std::cerr << e.what() << '\n';
        return 1;
    }
    return 0;
}
