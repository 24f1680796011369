// A scene written as binary X3D, against the vocabulary that its readers hold, and read back.
#include "Tamo/FastInfoset/FastInfosetParser.h"
#include "Tamo/FastInfoset/FastInfosetWriter.h"
#include "Tamo/XML/AttributesImpl.h"
#include "Tamo/XML/SAXParser.h"
#include "Tamo/XML/XMLWriter.h"
#include "X3DFiles.h"
#include <cstring>
#include <iostream>
#include <sstream>

namespace {

using namespace Tamo;

const char SCENE[] = "<X3D profile=\"Interchange\" version=\"3.2\"><Scene><Shape><Appearance>"
                     "<Material diffuseColor=\"1 0 0\"/></Appearance>"
                     "<IndexedFaceSet solid=\"false\" coordIndex=\"0 1 2 -1\">"
                     "<Coordinate point=\"0 0 0 1.5 0 0 0 -0.25 1.5\"/>"
                     "</IndexedFaceSet></Shape></Scene></X3D>";

// [write]
std::string writeX3D(const char* xml, const example::X3DLists& lists) {
    example::DocumentVocabulary vocabulary = example::x3dVocabulary(lists);
    vocabulary.setURI(example::X3DLoader::URIS[0]); // which the header names instead of the entries
    std::ostringstream octets;
    FastInfoset::FastInfosetWriter writer(octets, false, example::DocumentVocabulary::VOC_MAP);
    writer.setStrict(true);
    writer.useVocabulary(vocabulary);
    XML::SAXParser parser;
    parser.setContentHandler(&writer);
    parser.parseMemoryNP(xml, std::strlen(xml));
    return octets.str();
}
// [/write]

} // namespace

int main() {
    try {
        const example::X3DLists lists = example::x3dLists(TAMO_X3D);
        const std::string octets = writeX3D(SCENE, lists);

        example::X3DLoader loader(lists);
        FastInfoset::FastInfosetParser parser;
        parser.setStrict(true);
        parser.setExternalVocabularyLoader(&loader);
        std::ostringstream text;
        XML::XMLWriter writer(text);
        parser.initialize(&writer);
        parser.parseMemoryNP(octets.data(), octets.size());
        std::cout << "XML " << std::strlen(SCENE) << " octets, binary X3D " << octets.size() << '\n'
                  << text.str() << '\n';
    } catch (const std::exception& e) {
        std::cerr << e.what() << '\n';
        return 1;
    }
    return 0;
}
