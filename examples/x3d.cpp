// Binary X3D to XML text: an external vocabulary and an encoding algorithm that are not the standard's.
#include "Tamo/FastInfoset/FastInfosetParser.h"
#include "Tamo/XML/XMLWriter.h"
#include "X3DFiles.h"
#include "X3DQuantizedFloats.h"
#include <iostream>

namespace {

// [read]
void readX3D(std::istream& scene, std::ostream& text, const example::X3DLists& lists) {
    example::X3DLoader loader(lists);
    Tamo::FastInfoset::FastInfosetParser parser;
    parser.setStrict(true); // algorithms by URI, and no departure from X.891
    parser.setExternalVocabularyLoader(&loader);
    parser.decodingAlgorithms().add(example::X3DQuantizedFloats::URI, &example::X3DQuantizedFloats::decode);
    Tamo::XML::XMLWriter writer(text, Tamo::XML::XMLWriter::WRITE_XML_DECLARATION);
    parser.initialize(&writer);
    parser.parse(scene);
}
// [/read]

} // namespace

// A scene and the directory with the lists can be given; without, it is the sample.
int main(int argc, char** argv) {
    try {
        const std::string directory = argc > 2 ? argv[2] : TAMO_X3D;
        const std::string path = argc > 1 ? argv[1] : directory + "/scene.x3db";
        std::ifstream scene(path, std::ios::binary);
        if (!scene) {
            throw std::runtime_error("cannot read " + path);
        }
        readX3D(scene, std::cout, example::x3dLists(directory));
        std::cout << '\n';
    } catch (const std::exception& e) {
        std::cerr << e.what() << '\n';
        return 1;
    }
    return 0;
}
