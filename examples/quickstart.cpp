// XML text becomes Fast Infoset in memory, and the Fast Infoset is read as SAX2 events.
//
// [quickstart]
#include "Tamo/FastInfoset/FastInfosetParser.h"
#include "Tamo/FastInfoset/XMLToFastInfoset.h"
#include "Tamo/XML/DefaultHandler.h"
#include <iostream>

struct Printer : Tamo::XML::DefaultHandler {
    void characters(const char ch[], int start, int length) override {
        std::cout.write(ch + start, length) << '\n';
    }
};

int main() try {
    const std::string xml("<order id='7'><item>nut</item><item>bolt</item><item>nut</item></order>");
    const std::string document = Tamo::FastInfoset::XMLToFastInfoset().convert(xml);
    std::cout << xml.size() << " octets of XML, " << document.size() << " of Fast Infoset\n";
    Printer printer;
    Tamo::FastInfoset::FastInfosetParser parser;
    parser.setContentHandler(&printer);
    parser.parseMemoryNP(document.data(), document.size());
} catch (const std::exception& e) { // every Tamo::Exception, and std::out_of_range
    std::cerr << e.what() << '\n';
    return 1;
}
// [/quickstart]
