// A cursor over the document: the program asks for what comes next and keeps its own order.
#include "Tamo/FastInfoset/FastInfosetReader.h"
#include "Tamo/FastInfoset/FastInfosetWriter.h"
#include "Tamo/XML/AttributesImpl.h"
#include <iostream>
#include <numeric>
#include <sstream>

using namespace Tamo;
using FastInfoset::FastInfosetReader;

namespace {

// [write]
void writeStation(FastInfoset::FastInfosetWriter& writer, const std::string& name,
                  std::span<const double> kelvin) {
    const std::string none;
    XML::AttributesImpl attributes;
    attributes.addAttribute(none, "name", none, none, name);
    writer.startElement(none, "station", none, attributes);
    writer.dataElement(none, "remark", none, "serviced in May");
    writer.startElement(none, "kelvin", none);
    writer.encodedData(kelvin); // one array of doubles
    writer.endElement(none, "kelvin", none);
    writer.endElement(none, "station", none);
}
// [/write]

std::string writeLog() {
    std::ostringstream octets;
    FastInfoset::FastInfosetWriter writer(octets, false, FastInfoset::DocumentVocabulary::VOC_MAP);
    writer.startDocument();
    writer.startElement("", "log", "");
    writeStation(writer, "harbour", std::vector<double>{291.15, 291.4, 293.05});
    writeStation(writer, "airport", std::vector<double>{288.5, 289});
    writer.endElement("", "log", "");
    writer.endDocument();
    return octets.str();
}

// [read]
// The cursor stands on the start of a station and leaves at its end.
void readStation(FastInfosetReader& reader) {
    std::cout << reader.attribute("name").value_or("unnamed");
    while (reader.next() != FastInfosetReader::END_ELEMENT) {
        if (reader.event() != FastInfosetReader::START_ELEMENT) {
            continue;
        }
        if (reader.localName() == "remark") {
            std::cout << " (" << reader.elementText() << ')';
        } else if (reader.localName() == "kelvin" && reader.next() == FastInfosetReader::TEXT) {
            const std::span<const double> values = reader.doubleValues();
            std::cout << ": " << values.size() << " values, the last " << values.back() << ", as text "
                      << reader.text();
            reader.next();
        } else {
            reader.skipElement();
        }
    }
    std::cout << '\n';
}

void readLog(std::istream& in) {
    FastInfosetReader reader;
    reader.open(in);
    while (reader.next() != FastInfosetReader::END_DOCUMENT) {
        if (reader.event() == FastInfosetReader::START_ELEMENT && reader.localName() == "station") {
            readStation(reader);
        }
    }
}
// [/read]

} // namespace

int main() {
    try {
        std::istringstream in(writeLog());
        readLog(in);
    } catch (const std::exception& e) {
        std::cerr << e.what() << '\n';
        return 1;
    }
    return 0;
}
