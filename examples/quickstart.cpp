// XML text becomes Fast Infoset in memory, and the Fast Infoset is read as SAX2 events.
//
// [quickstart]
#include "Tamo/FastInfoset/Converter.h"
#include "Tamo/FastInfoset/FastInfosetParser.h"
#include "Tamo/XML/DefaultHandler.h"
#include <iostream>
#include <sstream>

struct Printer : Tamo::XML::DefaultHandler {
    void characters(const char ch[], int start, int length) override {
        std::cout.write(ch + start, length) << '\n';
    }
};

int main() try {
    std::istringstream xml("<order id='7'><item>nut</item><item>bolt</item><item>nut</item></order>");
    std::ostringstream fis;
    Tamo::FastInfoset::Converter::convertToFIS(xml, fis, 16, 0); // strings up to 16 octets are indexed
    const std::string document = fis.str();
    std::cout << xml.str().size() << " octets of XML, " << document.size() << " of Fast Infoset\n";
    Printer printer;
    Tamo::FastInfoset::FastInfosetParser parser;
    parser.setContentHandler(&printer);
    parser.parseMemoryNP(document.data(), document.size());
} catch (const std::exception& e) { // every Tamo::Exception, and std::out_of_range
    std::cerr << e.what() << '\n';
    return 1;
}
// [/quickstart]
