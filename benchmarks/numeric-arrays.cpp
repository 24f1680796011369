// Arrays of numbers: how far writing and reading are from a block copy with swapped octets, that many calls
// of one value each cost the same per value whatever their number, and what a numeric document takes as XML,
// as Fast Infoset with text and as Fast Infoset with typed data.

#include "BufferStream.h"
#include "ChecksumHandler.h"
#include "Comparison.h"
#include "Compression.h"
#include "ExpatPeer.h"
#include "Tamo/ByteOrder.h"
#include "Tamo/FastInfoset/DoubleEncoding.h"
#include "Tamo/FastInfoset/FISDefaultHandler.h"
#include "Tamo/FastInfoset/FastInfosetParser.h"
#include "Tamo/FastInfoset/FastInfosetReader.h"
#include "Tamo/FastInfoset/FastInfosetWriter.h"
#include "Tamo/FastInfoset/IntEncoding.h"
#include "Tamo/FastInfoset/TypedAttributes.h"
#include "Tamo/FastInfoset/TypedChunk.h"
#include "Tamo/XML/AttributesImpl.h"
#include "Tamo/XML/DefaultHandler.h"
#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <exception>
#include <iostream>
#include <span>
#include <stdexcept>
#include <vector>

using namespace Tamo;
using namespace Tamo::Benchmarks;
using FastInfoset::DoubleEncoding;
using FastInfoset::Encoding;
using FastInfoset::FastInfosetParser;
using FastInfoset::FastInfosetWriter;
using FastInfoset::IntEncoding;
using FastInfoset::TypedAttributes;

namespace {

constexpr std::size_t MILLION = 1000000;
constexpr int ROUNDS = 15;

const std::string NONE;
const std::string ROOT("values");

BufferStream out;

/// Typed values back in an array of their own.
class Collector : public TypedChecksumHandler {
public:
    std::vector<double> doubles;
    std::vector<Int32> ints;

    using TypedChecksumHandler::encodedData;
    void encodedData(double value) override { doubles.push_back(value); }
    void encodedData(Int32 value) override { ints.push_back(value); }
};

/// Numbers of a text, as an application that reads XML has to make them.
class NumberReader : public XML::DefaultHandler {
public:
    std::vector<double> doubles;

    void characters(const char ch[], int start, int length) override {
        _text.append(ch + start, static_cast<std::size_t>(length));
    }
    void endElement(const std::string&, const std::string&, const std::string&) override {
        const char* p = _text.data();
        const char* const end = p + _text.size();
        while (p < end) {
            double value = 0;
            const auto result = std::from_chars(p, end, value);
            doubles.push_back(value);
            p = result.ptr + 1;
        }
        _text.clear();
    }

private:
    std::string _text;
};

/// Best time of some rounds, in seconds of the processor.
template<class Work>
double best(Work work) {
    double least = 1e9;
    for (int round = 0; round < ROUNDS; ++round) {
        const double start = Comparison::threadSeconds();
        work();
        least = std::min(least, Comparison::threadSeconds() - start);
    }
    return least;
}

void expect(bool condition, const char* what) {
    if (!condition) {
        throw std::runtime_error(what);
    }
}

template<class Content>
std::string document(Content content) {
    out.reset();
    {
        FastInfosetWriter writer(out);
        writer.startDocument();
        writer.startElement(NONE, ROOT, ROOT);
        content(writer);
        writer.endElement(NONE, ROOT, ROOT);
        writer.endDocument();
    }
    return std::string(out.view());
}

template<class E, class T>
AutoPtr<Encoding> encodingOf(const std::vector<T>& values) {
    return AutoPtr<Encoding>(new E(values));
}

template<class Handler>
void read(const std::string& octets, Handler& handler) {
    FastInfosetParser parser;
    parser.setContentHandler(&handler);
    parser.parseMemoryNP(octets.data(), octets.size());
}

void row(const char* what, double seconds, double floor, std::size_t count) {
    std::printf("| %s | %.3f | %.2f | %.1f |\n", what, seconds * 1e3,
                seconds * 1e9 / static_cast<double>(count), seconds / floor);
}

template<class E, class T>
void measureArray(const char* type, const std::vector<T>& values, std::vector<T> Collector::*pField) {
    const AutoPtr<Encoding> encoding = encodingOf<E>(values);
    const std::string octets = document([&](FastInfosetWriter& w) { w.insertEncoding(encoding); });
    const std::string byCalls = document([&](FastInfosetWriter& w) {
        for (const T value : values) {
            w.encodedData(value);
        }
    });
    expect(octets == byCalls, "an array and its values one by one give different documents");
    Collector collector;
    read(octets, collector);
    expect(collector.*pField == values, "an array comes back changed");
    Collector checked;
    (checked.*pField).reserve(values.size());

    std::vector<char> swapped(values.size() * sizeof(T));
    std::vector<T> back(values.size());
    const double writeFloor = best([&] {
        ByteOrder::toBigEndianOctets(values.data(), values.size(), swapped.data());
        out.reset();
        out.write(swapped.data(), static_cast<std::streamsize>(swapped.size()));
    });
    const double readFloor = best([&] {
        std::memcpy(swapped.data(), out.view().data(), swapped.size());
        ByteOrder::fromBigEndianOctets(swapped.data(), back.size(), back.data());
    });

    const auto write = [&](auto content) {
        return best([&] {
            out.reset();
            FastInfosetWriter writer(out);
            writer.startDocument();
            writer.startElement(NONE, ROOT, ROOT);
            content(writer);
            writer.endElement(NONE, ROOT, ROOT);
            writer.endDocument();
        });
    };
    std::printf("\n%zu values of type %s:\n\n| job | ms | ns a value | times the block copy "
                "|\n|---|---:|---:|---:|\n",
                values.size(), type);
    row("block copy with swapped octets, out", writeFloor, writeFloor, values.size());
    row("written as one chunk, the encoding being there",
        write([&](FastInfosetWriter& w) { w.insertEncoding(encoding); }), writeFloor, values.size());
    row("written as one chunk, from an array",
        write([&](FastInfosetWriter& w) { w.insertEncoding(encodingOf<E>(values)); }), writeFloor,
        values.size());
    for (const std::size_t count : {values.size() / 4, values.size() / 2, values.size()}) {
        const std::string name = "written by " + std::to_string(count) + " calls of encodedData";
        row(name.c_str(), write([&](FastInfosetWriter& w) {
                for (std::size_t i = 0; i < count; ++i) {
                    w.encodedData(values[i]);
                }
            }),
            writeFloor * static_cast<double>(count) / static_cast<double>(values.size()), count);
    }
    row("block copy with swapped octets, in", readFloor, readFloor, values.size());
    row("read typed, the handler adds up", best([&] {
            TypedChecksumHandler handler;
            read(octets, handler);
        }),
        readFloor, values.size());
    row("read typed, the handler fills an array", best([&] {
            (checked.*pField).clear();
            read(octets, checked);
        }),
        readFloor, values.size());
    row("read as text", best([&] {
            ChecksumHandler handler;
            read(octets, handler);
        }),
        readFloor, values.size());
}

std::string xmlOf(const std::vector<double>& values) {
    std::string xml = "<values>";
    char digits[32];
    for (const double value : values) {
        const auto result = std::to_chars(digits, digits + sizeof digits, value);
        xml.append(digits, result.ptr).push_back(' ');
    }
    xml.back() = '<';
    return xml + "/values>";
}

/// Takes the values of a chunk in one call, or of an attribute.
class WholeCollector : public FastInfoset::FISDefaultHandler {
public:
    std::vector<double> doubles;
    std::vector<float> floats;

    bool startTypedChunk(const FastInfoset::TypedChunk& chunk) override {
        doubles.assign(chunk.doubleValues().begin(), chunk.doubleValues().end());
        return true;
    }
    void startElement(const std::string&, const std::string&, const std::string&,
                      const XML::Attributes& attributes) override {
        if (const auto* const pTyped = dynamic_cast<const TypedAttributes*>(&attributes)) {
            floats.assign(pTyped->floatValues(0).begin(), pTyped->floatValues(0).end());
        }
    }
};

void readStrictly(const std::string& octets, XML::ContentHandler& handler) {
    FastInfosetParser parser;
    parser.setStrict(true);
    parser.setContentHandler(&handler);
    parser.parseMemoryNP(octets.data(), octets.size());
}

// Arrays that are handed over as a whole: a chunk of doubles, and floats in an attribute.
void measureWhole(const std::vector<double>& doubles) {
    const std::vector<float> floats(doubles.begin(), doubles.begin() + 300000);
    const std::string chunk =
        document([&](FastInfosetWriter& w) { w.insertEncoding(encodingOf<DoubleEncoding>(doubles)); });
    std::vector<double> back(doubles.size());
    const double chunkFloor =
        best([&] { ByteOrder::fromBigEndianOctets(chunk.data() + 8, back.size() - 1, back.data()); });
    std::printf(
        "\nArrays as a whole:\n\n| job | ms | ns a value | times the block copy |\n|---|---:|---:|---:|\n");
    row("block copy of 1,000,000 doubles", chunkFloor, chunkFloor, doubles.size());
    WholeCollector collector;
    row("the same by a handler of chunks, into an array", best([&] { readStrictly(chunk, collector); }),
        chunkFloor, doubles.size());
    expect(collector.doubles == doubles, "a chunk comes back changed");
    row("the same by the cursor, its span", best([&] {
            FastInfoset::FastInfosetReader reader;
            reader.open(chunk);
            while (reader.next() != FastInfoset::FastInfosetReader::TEXT) {
            }
            expect(reader.doubleValues().back() == doubles.back(), "the cursor has other numbers");
        }),
        chunkFloor, doubles.size());

    std::vector<char> swapped(floats.size() * sizeof(float));
    const double writeFloor = best([&] {
        ByteOrder::toBigEndianOctets(floats.data(), floats.size(), swapped.data());
        out.reset();
        out.write(swapped.data(), static_cast<std::streamsize>(swapped.size()));
    });
    TypedAttributes attributes;
    attributes.addAttribute(NONE, ROOT, ROOT, std::span(floats));
    std::string octets;
    const auto write = [&](const TypedAttributes& list) {
        out.reset();
        FastInfosetWriter writer(out);
        writer.startDocument();
        writer.startElement(NONE, ROOT, ROOT, list);
        writer.endElement(NONE, ROOT, ROOT);
        writer.endDocument();
    };
    row("block copy of 300,000 floats, out", writeFloor, writeFloor, floats.size());
    row("written as an attribute, the list being there", best([&] { write(attributes); }), writeFloor,
        floats.size());
    row("written as an attribute, from an array", best([&] {
            TypedAttributes list;
            list.addAttribute(NONE, ROOT, ROOT, std::span(floats));
            write(list);
        }),
        writeFloor, floats.size());
    octets = std::string(out.view());
    std::vector<float> floatsBack(floats.size());
    const double readFloor = best([&] {
        std::memcpy(swapped.data(), octets.data(), swapped.size());
        ByteOrder::fromBigEndianOctets(swapped.data(), floatsBack.size(), floatsBack.data());
    });
    row("block copy of 300,000 floats, in", readFloor, readFloor, floats.size());
    row("read as an attribute, into an array", best([&] { readStrictly(octets, collector); }), readFloor,
        floats.size());
    expect(collector.floats == floats, "an attribute comes back changed");
    row("read as an attribute, the cursor's span", best([&] {
            FastInfoset::FastInfosetReader reader;
            reader.open(octets);
            while (reader.next() != FastInfoset::FastInfosetReader::START_ELEMENT) {
            }
            expect(reader.attributeFloatValues(0).back() == floats.back(), "the cursor has other numbers");
        }),
        readFloor, floats.size());
}

// One document of a million numbers as different formats carry it.
void measureDocument(const std::vector<double>& values) {
    const std::string xml = xmlOf(values);
    const std::string text(xml, std::strlen("<values>"), xml.size() - std::strlen("<values></values>"));
    const std::string plain = document([&](FastInfosetWriter& w) { w.characters(text); });
    const std::string typed =
        document([&](FastInfosetWriter& w) { w.insertEncoding(encodingOf<DoubleEncoding>(values)); });

    const auto fromXML = [&] {
        NumberReader handler;
        ExpatPeer::parse(xml, handler, handler);
        expect(handler.doubles == values, "the XML text has other numbers");
    };
    const auto fromPlain = [&] {
        NumberReader handler;
        read(plain, handler);
        expect(handler.doubles == values, "the Fast Infoset text has other numbers");
    };
    const auto fromTyped = [&] {
        Collector handler;
        read(typed, handler);
        expect(handler.doubles == values, "the typed data has other numbers");
    };
    std::printf(
        "\nA document of %zu numbers, read into an array of double:\n\n"
        "| format | octets | gzip -6 | zstd -3 | written, ms | read, ms |\n|---|---:|---:|---:|---:|---:|\n",
        values.size());
    const auto line = [](const char* format, const std::string& octets, double written, double reading) {
        std::printf("| %s | %zu | %zu | %zu | %.2f | %.2f |\n", format, octets.size(),
                    Compression::gzip(octets), Compression::zstd(octets), written * 1e3, reading * 1e3);
    };
    line("XML", xml, best([&] { xmlOf(values); }), best(fromXML));
    line("Fast Infoset, numbers as text", plain, best([&] {
             const std::string whole = xmlOf(values);
             document([&](FastInfosetWriter& w) {
                 w.characters(whole.data() + 8, 0, static_cast<int>(text.size()));
             });
         }),
         best(fromPlain));
    line("Fast Infoset, typed", typed, best([&] {
             document([&](FastInfosetWriter& w) { w.insertEncoding(encodingOf<DoubleEncoding>(values)); });
         }),
         best(fromTyped));
}

} // namespace

int main() {
    try {
        // Sensor-like values with few digits; the sequence is the same on every machine.
        std::vector<double> doubles(MILLION);
        std::vector<Int32> ints(MILLION);
        UInt32 state = 12345;
        for (std::size_t i = 0; i < MILLION; ++i) {
            state = state * 1664525u + 1013904223u;
            ints[i] = static_cast<Int32>(state >> 8) - (1 << 23);
            doubles[i] = static_cast<double>(ints[i]) / 1000.0;
        }
        measureArray<DoubleEncoding>("double", doubles, &Collector::doubles);
        measureArray<IntEncoding>("int", ints, &Collector::ints);
        measureWhole(doubles);
        measureDocument(doubles);
        return 0;
    } catch (const std::exception& e) {
        std::cerr << "numeric-arrays: " << e.what() << '\n';
        return 1;
    }
}
