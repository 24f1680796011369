// Typed data: a log is written in values and read back in values, or as text by a reader that wants text.
#include "Tamo/FastInfoset/Converter.h"
#include "Tamo/FastInfoset/FISDefaultHandler.h"
#include "Tamo/FastInfoset/FastInfosetParser.h"
#include "Tamo/FastInfoset/FastInfosetWriter.h"
#include "Tamo/FastInfoset/TypedAttributes.h"
#include <iostream>
#include <numeric>
#include <span>
#include <sstream>
#include <vector>

using namespace Tamo;
using FastInfoset::DocumentVocabulary;
using FastInfoset::FastInfosetParser;
using FastInfoset::FastInfosetWriter;

namespace {

// [write]
std::string writeLog() {
    std::ostringstream octets;
    FastInfosetWriter writer(octets, false, DocumentVocabulary::VOC_MAP);
    writer.startDocument();
    writer.startElement("log");

    writer.startElement("sensor");
    writer.encodedData(UUID("6ba7b810-9dad-11d1-80b4-00c04fd430c8"));
    writer.endElement();

    writer.startElement("kelvin");
    for (const double kelvin : {291.15, 291.4, 293.05}) {
        writer.encodedData(kelvin); // one array: values of one type in a row are joined
    }
    writer.endElement();

    writer.startElement("valid");
    for (const bool valid : {true, true, false}) {
        writer.encodedData(valid);
    }
    writer.endElement();

    writer.startElement("calibration");
    const char curve[] = {'\x10', '\x2f', '\x00', '\xff'};
    writer.binaryData(curve, sizeof(curve));
    writer.endElement();

    writer.endElement();
    writer.endDocument();
    return octets.str();
}
// [/write]

// [handler]
/// Takes values as values.
class LogReader : public FastInfoset::FISDefaultHandler {
public:
    using FISDefaultHandler::encodedData; // the other types are not expected in a log

    void encodedData(double value) override {
        _sum += value;
        ++_count;
    }
    void encodedData(bool value) override { _valid += value ? 1 : 0; }
    void encodedData(const UUID& value) override { std::cout << "sensor " << value.toString() << '\n'; }
    void binaryData(const char*, std::size_t length) override {
        std::cout << "calibration of " << length << " octets\n";
    }
    void endDocument() override {
        std::cout << _count << " values, " << _valid << " valid, mean " << _sum / _count << " K\n";
    }

private:
    double _sum = 0;
    int _count = 0;
    int _valid = 0;
};
// [/handler]

// [copy]
std::string copy(const std::string& document) {
    std::ostringstream octets;
    FastInfosetWriter writer(octets, false, DocumentVocabulary::VOC_MAP);
    // The writer is handed the parser's vocabulary, in which it must be able to look entries up.
    FastInfosetParser parser(DocumentVocabulary::VOC_MAP);
    parser.initialize(&writer);
    parser.parseMemoryNP(document.data(), document.size());
    return octets.str();
}
// [/copy]

// [attributes]
void writePlane(FastInfosetWriter& writer) {
    const std::vector<float> points{0.0f, 0.0f, 1.5f, 0.0f, 1.5f, -0.25f};
    FastInfoset::TypedAttributes attributes;
    attributes.addAttribute("", "name", "name", "plane");
    attributes.addAttribute("", "point", "point", std::span(points));
    writer.startElement("", "Coordinate", "Coordinate", attributes);
    writer.endElement("", "Coordinate", "Coordinate");
}
// [/attributes]

// [read-attributes]
/// Adds up the arrays of numbers that stand in attributes.
class AttributeSum : public FastInfoset::FISDefaultHandler {
public:
    void startElement(const std::string&, const std::string& localName, const std::string&,
                      const XML::Attributes& attributes) override {
        const auto* const pTyped = dynamic_cast<const FastInfoset::TypedAttributes*>(&attributes);
        for (int i = 0; i < attributes.getLength(); ++i) {
            std::cout << localName << ' ' << attributes.getLocalName(i) << '=' << attributes.getValue(i);
            if (pTyped && pTyped->isTyped(i)) {
                const std::span<const float> values = pTyped->floatValues(i);
                std::cout << ", sum " << std::accumulate(values.begin(), values.end(), 0.0f);
            }
            std::cout << '\n';
        }
    }
};
// [/read-attributes]

} // namespace

int main() {
    try {
        const std::string document = writeLog();

        LogReader reader;
        FastInfosetParser parser;
        parser.setContentHandler(&reader);
        parser.parseMemoryNP(document.data(), document.size());

        std::istringstream in(document);
        std::ostringstream text;
        FastInfoset::Converter::convertToXML(in, text, 0);
        std::cout << text.str() << '\n';

        std::ostringstream plane;
        FastInfosetWriter writer(plane, false, DocumentVocabulary::VOC_MAP);
        writer.startDocument();
        writePlane(writer);
        writer.endDocument();
        AttributeSum sum;
        parser.setContentHandler(&sum);
        parser.parseMemoryNP(plane.str().data(), plane.str().size());

        std::cout << document.size() << " octets, the copy is "
                  << (copy(document) == document ? "identical" : "different") << '\n';
    } catch (const std::exception& e) {
        std::cerr << e.what() << '\n';
        return 1;
    }
    return 0;
}
