// Trees of pugixml from Fast Infoset and back: a whole document, and the items of one that is too large for
// that.
#include "Tamo/FastInfoset/Converter.h"
#include "Tamo/FastInfoset/adapters/pugixml.h"
#include <iostream>
#include <sstream>

namespace Adapters = Tamo::FastInfoset::Adapters;
using Tamo::FastInfoset::FastInfosetReader;

namespace {

std::string encoded(const std::string& xml) {
    std::istringstream in(xml);
    std::ostringstream octets;
    Tamo::FastInfoset::Converter::convertToFIS(in, octets, 16, 0);
    return octets.str();
}

// [change]
// Raises all prices of a document in Fast Infoset.
void raisePrices(std::istream& in, std::ostream& out) {
    pugi::xml_document document;
    Adapters::loadDocument(in, document);
    for (const pugi::xpath_node& found : document.select_nodes("//item[@price]")) {
        pugi::xml_attribute price = found.node().attribute("price");
        price.set_value(price.as_int() + 1);
    }
    Adapters::save(document, out);
}
// [/change]

// [items]
// One item at a time: memory is that of the largest.
void printItems(std::string_view octets) {
    FastInfosetReader reader(nullptr);
    reader.open(octets);
    while (reader.next() != FastInfosetReader::END_DOCUMENT) {
        if (reader.event() == FastInfosetReader::START_ELEMENT && reader.localName() == "item") {
            pugi::xml_document document;
            const pugi::xml_node item = Adapters::loadElement(reader, document);
            std::cout << item.child_value("name") << ": " << item.attribute("price").value() << '\n';
        }
    }
}
// [/items]

} // namespace

int main() {
    try {
        std::istringstream in(encoded("<order><item price='7'><name>pen</name></item>"
                                      "<item price='12'><name>ink</name></item></order>"));
        std::ostringstream out;
        raisePrices(in, out);
        printItems(out.str());
    } catch (const std::exception& e) {
        std::cerr << e.what() << '\n';
        return 1;
    }
    return 0;
}
