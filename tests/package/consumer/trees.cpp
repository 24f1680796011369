// A program of somebody else with trees of both libraries.
#include "Tamo/FastInfoset/adapters/libxml2-sax.h"
#include "Tamo/FastInfoset/adapters/libxml2.h"
#include "Tamo/FastInfoset/adapters/pugixml.h"
#include <iostream>
#include <sstream>

using namespace Tamo::FastInfoset;

int main() {
    std::ostringstream octets;
    FastInfosetWriter writer(octets, false, DocumentVocabulary::VOC_MAP);
    writer.setStrict(true);
    Adapters::parseXML("<a x='1'><b>text</b></a>", writer);

    const Adapters::LibxmlDocument pTree = Adapters::loadDocument(octets.str());
    std::ostringstream again;
    Adapters::save(pTree.get(), again);
    pugi::xml_document document;
    Adapters::loadDocument(again.str(), document);
    const std::string text = document.child("a").child_value("b");
    std::cout << "trees: " << text << '\n';
    return text == "text" ? 0 : 1;
}
