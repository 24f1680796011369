// Document type declaration, notations and unparsed entities.
#include "Tamo/FastInfoset/Converter.h"
#include "Tamo/FastInfoset/FastInfosetParser.h"
#include "Tamo/FastInfoset/FastInfosetWriter.h"
#include "Tamo/XML/DefaultHandler.h"
#include <iostream>
#include <sstream>

using namespace Tamo;

namespace {

// [write]
void write(std::ostream& out) {
    const std::string jpeg("image/jpeg");
    FastInfoset::FastInfosetWriter writer(out, false, FastInfoset::DocumentVocabulary::VOC_MAP);
    // They stand in the header, so they come first; after startDocument they are refused.
    writer.notationDecl("jpeg", &jpeg, nullptr);
    writer.unparsedEntityDecl("cover", nullptr, "cover.jpg", "jpeg");
    writer.startDocument();
    writer.startDTD("book", "-//Example//Book 1.0//EN", "book.dtd");
    writer.endDTD();
    writer.element("book", {{"picture", "cover"}});
    writer.endDocument();
}
// [/write]

/// Prints what it is told, in the order in which it is told.
class Printer : public XML::DefaultHandler {
public:
    void notationDecl(const std::string& name, const std::string* publicId,
                      const std::string* systemId) override {
        std::cout << "notation " << name << ", public " << (publicId ? *publicId : "none") << ", system "
                  << (systemId ? *systemId : "none") << '\n';
    }
    void unparsedEntityDecl(const std::string& name, const std::string*, const std::string& systemId,
                            const std::string& notationName) override {
        std::cout << "entity " << name << ", " << systemId << ", of notation " << notationName << '\n';
    }
    void startDocument() override { std::cout << "start of document\n"; }
    void startDTD(const std::string& name, const std::string& publicId,
                  const std::string& systemId) override {
        std::cout << "document type '" << name << "', " << publicId << ", " << systemId << '\n';
    }
    void startElement(const std::string&, const std::string& localName, const std::string&,
                      const XML::Attributes&) override {
        std::cout << "element " << localName << '\n';
    }
};

} // namespace

int main() {
    try {
        std::ostringstream out;
        write(out);
        const std::string document = out.str();

        // [read]
        Printer printer;
        FastInfoset::FastInfosetParser parser;
        parser.setContentHandler(&printer);
        parser.setDTDHandler(&printer);
        parser.setLexicalHandler(&printer);
        parser.parseMemoryNP(document.data(), document.size());
        // [/read]

        std::istringstream in(document);
        std::ostringstream text;
        FastInfoset::Converter::convertToXML(in, text, 0);
        std::cout << text.str() << '\n';
    } catch (const std::exception& e) {
        std::cerr << e.what() << '\n';
        return 1;
    }
    return 0;
}
