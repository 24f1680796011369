// A program of somebody else: all three layers, and what has to be one and the same on both sides of a shared
// library's border: exceptions and their classes, the handler interfaces that the parser recognises, the
// vocabulary templates.
#include "Tamo/Exception.h"
#include "Tamo/FastInfoset/Converter.h"
#include "Tamo/FastInfoset/FISDefaultHandler.h"
#include "Tamo/FastInfoset/FISException.h"
#include "Tamo/FastInfoset/FastInfosetParser.h"
#include "Tamo/FastInfoset/FastInfosetWriter.h"
#include "Tamo/FastInfoset/MapVocabulary.h"
#include "Tamo/Version.h"
#include "Tamo/XML/SAXException.h"
#include <cstdlib>
#include <iostream>
#include <sstream>

using namespace Tamo;

TAMO_DECLARE_EXCEPTION(ConsumerException, RuntimeException)
TAMO_IMPLEMENT_EXCEPTION(ConsumerException, RuntimeException, "", "Consumer")

namespace {

void check(bool holds, const char* what) {
    if (!holds) {
        std::cerr << "consumer: " << what << '\n';
        std::exit(1);
    }
}

struct Sum : FastInfoset::FISDefaultHandler {
    using FISDefaultHandler::encodedData;
    void encodedData(Int32 value) override { sum += value; }
    Int32 sum = 0;
};

template<class E>
bool throws(const auto& use) {
    try {
        use();
    } catch (const E&) {
        return true;
    } catch (...) {
    }
    return false;
}

} // namespace

int main() {
    std::ostringstream octets;
    FastInfoset::FastInfosetWriter writer(octets, false, FastInfoset::DocumentVocabulary::VOC_MAP);
    writer.startDocument();
    writer.startElement("", "sum", "");
    writer.encodedData(Int32{40});
    writer.encodedData(Int32{2});
    writer.endElement("", "sum", "");
    writer.endDocument();

    Sum handler; // a FISContentHandler, which the parser finds out by dynamic_cast
    FastInfoset::FastInfosetParser parser;
    parser.initialize(&handler);
    parser.parseMemory(octets.str());
    check(handler.sum == 42, "typed data did not arrive as values");

    check(
        throws<FastInfoset::FISException>([&] { parser.parseMemory(std::string("not a document at all")); }),
        "FISException is another class here");
    check(throws<XML::SAXParseException>([] {
              std::istringstream xml("<a>");
              std::ostringstream out;
              FastInfoset::Converter::convertToFIS(xml, out, 16, 0);
          }),
          "SAXParseException is another class here");
    check(throws<ConsumerException>([] { ConsumerException("m").rethrow(); }), "own exceptions are lost");
    FastInfoset::MapVocabulary<std::string> table(19);
    bool found = false;
    check(table.index("x", found) == table.index("x", found) && found,
          "the vocabulary template does not work");

    check(std::string(version()) == TAMO_VERSION_STRING, "header and library are of different versions");
    std::cout << "consumer of Tamo " << version() << ": all is well\n";
}
