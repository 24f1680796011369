// A cursor over the document: the program asks for what comes next and keeps its own order.
#include "Tamo/FastInfoset/FISException.h"
#include "Tamo/FastInfoset/FastInfosetReader.h"
#include "Tamo/FastInfoset/FastInfosetWriter.h"
#include <iostream>
#include <numeric>
#include <sstream>

using namespace Tamo;
using FastInfoset::FastInfosetReader;

namespace {

// [write]
void writeStation(FastInfoset::FastInfosetWriter& writer, std::string_view name,
                  std::span<const double> kelvin) {
    writer.startElement("station", {{"name", name}});
    writer.element("remark", "serviced in May");
    writer.element("kelvin", {{"unit", "K"}}, kelvin); // one array of doubles
    writer.endElement();
}

void writeLog(std::ostream& out) {
    FastInfoset::FastInfosetWriter writer(out, false, FastInfoset::DocumentVocabulary::VOC_MAP);
    const FastInfoset::FastInfosetWriter::Document document(writer); // ends with the scope
    writer.startElement("log");
    writeStation(writer, "harbour", std::vector<double>{291.15, 291.4, 293.05});
    writeStation(writer, "airport", std::vector<double>{288.5, 289});
    writer.endElement();
}
// [/write]

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

// [errors]
void readOrExplain(std::istream& in) {
    try {
        readLog(in);
    } catch (const FastInfoset::FISException& e) { // whatever is wrong with the document
        std::cout << "\ndamaged: " << e.what() << '\n';
    }
}
// [/errors]

} // namespace

int main() {
    try {
        std::stringstream octets;
        writeLog(octets);
        readLog(octets);
        std::istringstream torn(octets.str().substr(0, 80));
        readOrExplain(torn);
    } catch (const std::exception& e) {
        std::cerr << e.what() << '\n';
        return 1;
    }
    return 0;
}
