// A handler that overrides what it needs, typed data included, and nothing else; octets from any container.
#include "Tamo/FastInfoset/FISDefaultHandler.h"
#include "Tamo/FastInfoset/FastInfosetParser.h"
#include "Tamo/FastInfoset/FastInfosetWriter.h"
#include <cstddef>
#include <iostream>
#include <sstream>
#include <vector>

using namespace Tamo;

namespace {

// [handler]
class Audit : public FastInfoset::FISDefaultHandler {
public:
    using FISDefaultHandler::encodedData; // the overloads that stay empty

    void startElement(const std::string&, const std::string& localName, const std::string&,
                      const XML::Attributes& attributes) override {
        std::cout << localName;
        for (auto [namespaceName, name, qname, value] : attributes) {
            std::cout << ' ' << name << '=' << value;
        }
        std::cout << (attributes.find("currency") ? ":" : ", of no currency:");
    }
    void encodedData(double value) override { std::cout << " double " << value; }
    void binaryData(const char*, std::size_t length) override { std::cout << ' ' << length << " octets"; }
    void characters(const char ch[], int start, int length) override {
        std::cout << ' ' << std::string_view(ch + start, static_cast<std::size_t>(length));
    }
    void comment(const char[], int, int) override { std::cout << " a comment"; }
    void endElement(const std::string&, const std::string&, const std::string&) override {
        std::cout << '\n';
    }
};
// [/handler]

std::vector<std::byte> invoice() {
    std::ostringstream stream;
    FastInfoset::FastInfosetWriter writer(stream, false, FastInfoset::DocumentVocabulary::VOC_MAP);
    writer.startDocument();
    writer.startElement("invoice", {{"currency", "EUR"}});
    writer.text(12.5);
    writer.comment("two copies");
    writer.text("net");
    writer.text(std::as_bytes(std::span("scan", 4)));
    writer.endElement();
    writer.endDocument();
    const std::string octets = stream.str();
    const auto bytes = std::as_bytes(std::span(octets));
    return {bytes.begin(), bytes.end()};
}

} // namespace

int main() {
    try {
        const std::vector<std::byte> document = invoice();
        // [parse]
        Audit audit;
        FastInfoset::FastInfosetParser parser;
        parser.initialize(&audit); // the content, lexical, DTD and document handler
        parser.parseMemory(document);
        // [/parse]
    } catch (const std::exception& e) {
        std::cerr << e.what() << '\n';
        return 1;
    }
    return 0;
}
