// A program that parses and does nothing else: it is linked without Expat.
#include <Tamo/FastInfoset/FISDefaultHandler.h>
#include <Tamo/FastInfoset/FastInfosetParser.h>
#include <Tamo/FastInfoset/FastInfosetReader.h>
#include <iostream>
#include <string>
#include <string_view>

using namespace Tamo::FastInfoset;

namespace {

class Names : public FISDefaultHandler {
public:
    void startElement(const std::string&, const std::string& localName, const std::string&,
                      const Tamo::XML::Attributes&) override {
        names += localName;
    }

    std::string names;
};

} // namespace

int main() {
    constexpr std::string_view DOCUMENT("\xE0\x00\x00\x01\x00\x3C\x00r\xFF", 9);
    Names handler;
    FastInfosetParser parser(DocumentVocabulary::VOC_VECTOR, nullptr);
    parser.setContentHandler(&handler);
    parser.parseMemoryNP(DOCUMENT.data(), DOCUMENT.size());

    FastInfosetReader reader(nullptr);
    reader.open(DOCUMENT);
    while (reader.next() != FastInfosetReader::END_DOCUMENT) {
        if (reader.event() == FastInfosetReader::START_ELEMENT) {
            handler.names += reader.localName();
        }
    }
    std::cout << handler.names << '\n';
    return handler.names == "rr" ? 0 : 1;
}
