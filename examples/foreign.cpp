// A Fast Infoset document of somebody else becomes XML text: no file is opened, and what it may cost is
// bounded.
#include "Tamo/Exception.h"
#include "Tamo/FastInfoset/Converter.h"
#include <iostream>
#include <sstream>
#include <string>

using namespace Tamo;

namespace {

void convert(const std::string& document) {
    std::istringstream in(document);
    std::ostringstream out;
    try {
        // [foreign]
        FastInfoset::Converter::convertToXML(in, out, FastInfoset::Converter::Options{});
        // [/foreign]
        std::cout << out.str() << '\n';
    } catch (const Exception& e) {
        std::cout << e.displayText() << '\n';
    }
}

} // namespace

int main() {
    const std::string start("\xE0\x00\x00\x01", 4);
    convert(start + std::string("\x00\x3C\x00r\x80h\xFF", 7));
    // This one names a file as its external vocabulary.
    convert(start + std::string("\x20\x10\x00\x0F", 4) + "file:/etc/passwd");
}
