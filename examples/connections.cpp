// Messages in memory, flushes when they are wanted, and conversions of many documents.
#include "Tamo/DeferredFlushStream.h"
#include "Tamo/Exception.h"
#include "Tamo/FastInfoset/FastInfosetToXML.h"
#include "Tamo/FastInfoset/FastInfosetWriter.h"
#include "Tamo/FastInfoset/XMLToFastInfoset.h"
#include "Tamo/SpanSink.h"
#include "Tamo/StringSink.h"
#include <array>
#include <cstddef>
#include <iostream>
#include <span>
#include <sstream>
#include <string>
#include <vector>

using namespace Tamo;

namespace {

void writeReading(FastInfoset::FastInfosetWriter& writer, double value) {
    writer.startDocument();
    writer.startElement("reading");
    writer.encodedData(value);
    writer.endElement();
    writer.endDocument();
}

// [string]
// The writer is kept; a message goes into a string of its own.
std::string message(FastInfoset::FastInfosetWriter& writer, double value) {
    std::string octets;
    StringSink sink(octets);
    writer.reset(sink);
    writeReading(writer, value);
    return octets; // endDocument has delivered all of it
}
// [/string]

// [span]
// Into memory that is there; what does not fit is an IOException.
std::size_t messageIn(std::span<std::byte> packet, FastInfoset::FastInfosetWriter& writer, double value) {
    SpanSink sink(packet);
    writer.reset(sink);
    writeReading(writer, value);
    return sink.written().size();
}
// [/span]

// [flush]
// One document that goes on and on. The stream is flushed when a reading is complete, and then only.
void writeReadings(std::ostream& connection, const std::vector<double>& values) {
    using FastInfoset::FastInfosetWriter;
    FastInfosetWriter writer(connection, false, FastInfoset::DocumentVocabulary::VOC_MAP);
    writer.setFlush(FastInfosetWriter::Flush::DOCUMENT_END);
    writer.startDocument();
    writer.startElement("readings");
    for (const double value : values) {
        writer.encodedData(value);
        writer.flush(); // the value is on its way
    }
    writer.endElement();
    writer.endDocument();
}
// [/flush]

// [durable]
// A record is in the file when finish() has returned, and the stream is good for the next one.
void append(std::ostream& file, const std::vector<double>& values) {
    DeferredFlushOutputStream out(file);
    FastInfoset::FastInfosetWriter writer(out, false, FastInfoset::DocumentVocabulary::VOC_MAP);
    for (const double value : values) {
        writer.reset(out);
        writeReading(writer, value);
        out.finish();
        if (!out) {
            throw IOException("cannot write the record");
        }
    }
}
// [/durable]

// [convert]
// Parsers, writers and tables are made once.
std::vector<std::string> roundTrips(const std::vector<std::string>& texts) {
    FastInfoset::XMLToFastInfoset toFastInfoset;
    FastInfoset::FastInfosetToXML toXML;
    std::vector<std::string> results;
    for (const std::string& text : texts) {
        results.push_back(toXML.convert(toFastInfoset.convert(text)));
    }
    return results;
}
// [/convert]

// A connection whose other side reads what has been flushed.
class Connection : public std::stringbuf {
public:
    int packets() const { return _packets; }

private:
    int sync() override {
        ++_packets;
        return 0;
    }

    int _packets = 0;
};

} // namespace

int main() try {
    std::string nothing;
    StringSink sink(nothing);
    FastInfoset::FastInfosetWriter writer(sink, false, FastInfoset::DocumentVocabulary::VOC_MAP);
    std::cout << "messages of " << message(writer, 20.5).size() << " and " << message(writer, 21).size()
              << " octets\n";
    std::array<std::byte, 64> packet;
    std::cout << messageIn(packet, writer, 21.5) << " octets in a packet\n";
    try {
        messageIn(std::span(packet).first(16), writer, 22);
    } catch (const IOException& e) {
        std::cout << e.message() << '\n';
    }

    Connection connection;
    std::ostream stream(&connection);
    writeReadings(stream, {1, 2, 3});
    std::cout << connection.packets() << " packets\n";

    std::ostringstream file;
    append(file, {1, 2, 3});
    std::cout << file.view().size() << " octets of records\n";

    for (const std::string& text : roundTrips({"<a b='1'/>", "<a>text</a>"})) {
        std::cout << text << '\n';
    }
} catch (const std::exception& e) {
    std::cerr << e.what() << '\n';
    return 1;
}
