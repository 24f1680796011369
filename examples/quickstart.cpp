// XML text becomes Fast Infoset in memory, and the Fast Infoset is read as SAX2 events.
//
// [quickstart]
#include "Tamo/FastInfoset/Converter.h"
#include "Tamo/FastInfoset/FastInfosetParser.h"
#include "Tamo/XML/Attributes.h"
#include "Tamo/XML/DefaultHandler.h"
#include <iostream>
#include <sstream>

struct Printer : Tamo::XML::DefaultHandler {
    void startElement(const std::string&, const std::string& localName, const std::string&,
                      const Tamo::XML::Attributes& attributes) override {
        std::cout << localName << " has " << attributes.getLength() << " attribute(s)\n";
    }
    void characters(const char ch[], int start, int length) override {
        std::cout.write(ch + start, length) << '\n';
    }
};

int main() {
    try {
        std::istringstream xml("<order id='7'><item>nut</item><item>bolt</item><item>nut</item></order>");
        std::ostringstream fis;
        Tamo::FastInfoset::Converter::convertToFIS(xml, fis, 16, 0); // strings up to 16 octets are indexed
        const std::string document = fis.str();
        std::cout << xml.str().size() << " octets of XML, " << document.size() << " of Fast Infoset\n";

        Printer printer;
        Tamo::FastInfoset::FastInfosetParser parser;
        parser.setContentHandler(&printer);
        parser.parseMemoryNP(document.data(), document.size());
    } catch (const Tamo::Exception& e) {
        std::cerr << e.displayText() << '\n';
        return 1;
    } catch (const std::exception& e) { // std::out_of_range, for a document that refers to what it lacks
        std::cerr << e.what() << '\n';
        return 1;
    }
    return 0;
}
// [/quickstart]
