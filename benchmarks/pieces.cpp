// Google Benchmark: the pieces that parsing and writing are made of. Times are for one operation (label
// "items").

#include "BufferStream.h"
#include "CountingStream.h"
#include "Tamo/FastInfoset/BitStreamReader.h"
#include "Tamo/FastInfoset/BitStreamWriter.h"
#include "Tamo/FastInfoset/Decoder.h"
#include "Tamo/FastInfoset/DocumentVocabulary.h"
#include "Tamo/FastInfoset/Encoder.h"
#include "Tamo/FastInfoset/FastInfosetParser.h"
#include "Tamo/FastInfoset/FastInfosetWriter.h"
#include "Tamo/FastInfoset/HashVocabulary.h"
#include "Tamo/FastInfoset/MapVocabulary.h"
#include "Tamo/FastInfoset/VectorVocabulary.h"
#include "Tamo/MemoryStream.h"
#include "Tamo/XML/AttributesImpl.h"
#include "Tamo/XML/DefaultHandler.h"
#include "Tamo/XML/NamespaceSupport.h"
#include "Tamo/XML/XMLWriter.h"
#include <benchmark/benchmark.h>
#include <optional>
#include <string>
#include <vector>

using namespace Tamo;
using namespace Tamo::Benchmarks;
using namespace Tamo::FastInfoset;

namespace {

const std::string OCTETS(1 << 16, '\x5A');

// Time for one of the items that an iteration handles, the column "item".
void perItem(benchmark::State& state, std::size_t items) {
    using benchmark::Counter;
    state.counters["item"] =
        Counter(static_cast<double>(items), Counter::kIsIterationInvariantRate | Counter::kInvert);
}

// Bits.

void readBits(benchmark::State& state) {
    const int width = static_cast<int>(state.range(0));
    const std::size_t count = (OCTETS.size() - 8) * 8 / static_cast<std::size_t>(width);
    for (auto _ : state) {
        BitStreamReader reader(OCTETS.data(), OCTETS.size());
        unsigned int sum = 0;
        for (std::size_t i = 0; i < count; ++i) {
            unsigned char bits = 0;
            reader.read(bits, width);
            sum += bits;
        }
        benchmark::DoNotOptimize(sum);
    }
    perItem(state, count);
}
BENCHMARK(readBits)->Arg(1)->Arg(2)->Arg(4)->Arg(8);

void readBitsOfStream(benchmark::State& state) {
    const std::size_t count = OCTETS.size() - 8;
    for (auto _ : state) {
        MemoryInputStream stream(OCTETS.data(), OCTETS.size());
        BitStreamReader reader(stream);
        unsigned int sum = 0;
        for (std::size_t i = 0; i < count; ++i) {
            unsigned char bits = 0;
            reader.read(bits, 8);
            sum += bits;
        }
        benchmark::DoNotOptimize(sum);
    }
    perItem(state, count);
}
BENCHMARK(readBitsOfStream);

void readString(benchmark::State& state) {
    const auto size = static_cast<std::size_t>(state.range(0));
    const std::size_t count = OCTETS.size() / size - 1;
    std::string text;
    for (auto _ : state) {
        BitStreamReader reader(OCTETS.data(), OCTETS.size());
        for (std::size_t i = 0; i < count; ++i) {
            reader.read(text, size);
            benchmark::DoNotOptimize(text.data());
        }
    }
    perItem(state, count);
}
BENCHMARK(readString)->Arg(8)->Arg(64)->Arg(1024);

void writeBits(benchmark::State& state) {
    const int width = static_cast<int>(state.range(0));
    constexpr std::size_t COUNT = 1 << 16;
    BufferStream out;
    for (auto _ : state) {
        out.reset();
        BitStreamWriter writer(out, false);
        for (std::size_t i = 0; i < COUNT; ++i) {
            writer.write(static_cast<unsigned char>(i), width);
        }
        writer.complete();
    }
    perItem(state, COUNT);
}
BENCHMARK(writeBits)->Arg(1)->Arg(2)->Arg(4)->Arg(8);

// Integers, by the bit position at which they start and their value.

void integerForms(benchmark::internal::Benchmark* pBenchmark) {
    for (const int position : {1, 2, 3}) {
        for (const int value : {5, 1500, 60000, 700000}) {
            pBenchmark->Args({position, value});
        }
    }
}

void writeInteger(benchmark::State& state) {
    const int position = static_cast<int>(state.range(0));
    const auto value = static_cast<unsigned int>(state.range(1));
    constexpr std::size_t COUNT = 4096;
    BufferStream out;
    for (auto _ : state) {
        out.reset();
        BitStreamWriter writer(out, false);
        for (std::size_t i = 0; i < COUNT; ++i) {
            writer.writeBits(position, false);
            Encoder::integer(writer, value);
        }
    }
    perItem(state, COUNT);
}
BENCHMARK(writeInteger)->Apply(integerForms);

void readInteger(benchmark::State& state) {
    const int position = static_cast<int>(state.range(0));
    constexpr std::size_t COUNT = 4096;
    BufferStream out;
    BitStreamWriter writer(out, false);
    for (std::size_t i = 0; i < COUNT; ++i) {
        writer.writeBits(position, false);
        Encoder::integer(writer, static_cast<unsigned int>(state.range(1)));
    }
    const std::string octets = std::string(out.view()) + "    ";
    for (auto _ : state) {
        BitStreamReader reader(octets.data(), octets.size());
        unsigned int sum = 0;
        for (std::size_t i = 0; i < COUNT; ++i) {
            unsigned int value = 0;
            reader.skip(position);
            Decoder::integer(reader, value);
            sum += value;
        }
        benchmark::DoNotOptimize(sum);
    }
    perItem(state, COUNT);
}
BENCHMARK(readInteger)->Apply(integerForms);

// Tables.

std::vector<std::string> strings(std::size_t count) {
    std::vector<std::string> values;
    for (std::size_t i = 0; i < count; ++i) {
        values.push_back("value-" + std::to_string(i * 7919));
    }
    return values;
}

template<class Table>
void fillTable(benchmark::State& state) {
    const auto values = strings(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        Table table;
        bool found = false;
        for (const std::string& value : values) {
            benchmark::DoNotOptimize(table.index(value, found));
        }
    }
    perItem(state, values.size());
}
BENCHMARK_TEMPLATE(fillTable, VectorVocabulary<std::string>)->Arg(16)->Arg(1024)->Arg(16384);
BENCHMARK_TEMPLATE(fillTable, HashVocabulary<std::string>)->Arg(16)->Arg(1024)->Arg(16384);
BENCHMARK_TEMPLATE(fillTable, MapVocabulary<std::string>)->Arg(16)->Arg(1024)->Arg(16384);

template<class Table>
void findInTable(benchmark::State& state) {
    const auto values = strings(static_cast<std::size_t>(state.range(0)));
    Table table;
    bool found = false;
    for (const std::string& value : values) {
        table.index(value, found);
    }
    for (auto _ : state) {
        for (const std::string& value : values) {
            benchmark::DoNotOptimize(table.index(value, found));
        }
    }
    perItem(state, values.size());
}
BENCHMARK_TEMPLATE(findInTable, HashVocabulary<std::string>)->Arg(16)->Arg(1024)->Arg(16384);
BENCHMARK_TEMPLATE(findInTable, MapVocabulary<std::string>)->Arg(16)->Arg(1024)->Arg(16384);

void valueOfTable(benchmark::State& state) {
    const auto values = strings(static_cast<std::size_t>(state.range(0)));
    VectorVocabulary<std::string> table;
    bool found = false;
    for (const std::string& value : values) {
        table.index(value, found);
    }
    for (auto _ : state) {
        for (unsigned int i = 1; i < table.size(); ++i) {
            benchmark::DoNotOptimize(table.value(i).data());
        }
    }
    perItem(state, values.size());
}
BENCHMARK(valueOfTable)->Arg(16)->Arg(16384);

// What a small message pays before its first element.

template<DocumentVocabulary::VocabularyImpl impl>
void buildVocabulary(benchmark::State& state) {
    for (auto _ : state) {
        DocumentVocabulary vocabulary(impl);
        benchmark::DoNotOptimize(vocabulary);
    }
}
BENCHMARK_TEMPLATE(buildVocabulary, DocumentVocabulary::VOC_HASH);
BENCHMARK_TEMPLATE(buildVocabulary, DocumentVocabulary::VOC_MAP);
BENCHMARK_TEMPLATE(buildVocabulary, DocumentVocabulary::VOC_VECTOR);

template<DocumentVocabulary::VocabularyImpl impl>
void resetVocabulary(benchmark::State& state) {
    DocumentVocabulary vocabulary(impl);
    for (auto _ : state) {
        vocabulary.reset();
        benchmark::DoNotOptimize(vocabulary);
    }
}
BENCHMARK_TEMPLATE(resetVocabulary, DocumentVocabulary::VOC_HASH);
BENCHMARK_TEMPLATE(resetVocabulary, DocumentVocabulary::VOC_MAP);
BENCHMARK_TEMPLATE(resetVocabulary, DocumentVocabulary::VOC_VECTOR);

template<DocumentVocabulary::VocabularyImpl impl>
void copyVocabulary(benchmark::State& state) {
    const DocumentVocabulary vocabulary(impl);
    for (auto _ : state) {
        DocumentVocabulary copy(vocabulary);
        benchmark::DoNotOptimize(copy);
    }
}
BENCHMARK_TEMPLATE(copyVocabulary, DocumentVocabulary::VOC_HASH);
BENCHMARK_TEMPLATE(copyVocabulary, DocumentVocabulary::VOC_VECTOR);

const std::string NONE;
const std::string EMPTY("empty");

template<DocumentVocabulary::VocabularyImpl impl>
void writeEmptyDocument(benchmark::State& state) {
    for (auto _ : state) {
        CountingStream out;
        FastInfosetWriter writer(out, false, impl);
        writer.startDocument();
        writer.emptyElement(NONE, EMPTY, EMPTY);
        writer.endDocument();
    }
}
BENCHMARK_TEMPLATE(writeEmptyDocument, DocumentVocabulary::VOC_HASH);
BENCHMARK_TEMPLATE(writeEmptyDocument, DocumentVocabulary::VOC_MAP);

void parseEmptyDocument(benchmark::State& state) {
    BufferStream out;
    {
        FastInfosetWriter writer(out);
        writer.startDocument();
        writer.emptyElement(NONE, EMPTY, EMPTY);
        writer.endDocument();
    }
    const bool fresh = state.range(0) != 0;
    XML::DefaultHandler handler;
    std::optional<FastInfosetParser> parser;
    for (auto _ : state) {
        if (fresh || !parser) {
            parser.emplace();
            parser->setContentHandler(&handler);
        }
        parser->parseMemoryNP(out.view().data(), out.view().size());
    }
    state.SetLabel(fresh ? "a parser each time" : "the same parser");
}
BENCHMARK(parseEmptyDocument)->Arg(0)->Arg(1);

// Namespaces and attributes.

void elementWithoutDeclarations(benchmark::State& state) {
    XML::NamespaceSupport namespaces;
    namespaces.pushContext();
    namespaces.declarePrefix("", "urn:default");
    for (int i = 0; i < state.range(0); ++i) {
        namespaces.declarePrefix("p" + std::to_string(i), "urn:namespace:" + std::to_string(i));
    }
    const std::string uri("urn:default");
    for (auto _ : state) {
        namespaces.pushContext();
        benchmark::DoNotOptimize(namespaces.getPrefix(uri).data());
        namespaces.popContext();
    }
}
BENCHMARK(elementWithoutDeclarations)->Arg(0)->Arg(4)->Arg(64);

void elementWithDeclaration(benchmark::State& state) {
    XML::NamespaceSupport namespaces;
    const std::string prefix("p");
    const std::string uri("urn:a-namespace-of-some-length");
    for (auto _ : state) {
        namespaces.pushContext();
        namespaces.declarePrefix(prefix, uri);
        benchmark::DoNotOptimize(namespaces.getURI(prefix).data());
        namespaces.popContext();
    }
}
BENCHMARK(elementWithDeclaration);

void fillAttributes(benchmark::State& state) {
    XML::AttributesImpl attributes;
    const std::string uri;
    const std::string name("attribute");
    const std::string qname;
    const std::string type("CDATA");
    const std::string value(static_cast<std::size_t>(state.range(0)), 'x');
    for (auto _ : state) {
        attributes.clear();
        for (int i = 0; i < 4; ++i) {
            attributes.addAttribute(uri, name, qname, type, value);
        }
        benchmark::DoNotOptimize(attributes.getLength());
    }
    perItem(state, 4);
}
BENCHMARK(fillAttributes)->Arg(4)->Arg(15)->Arg(100);

// XML text.

std::string sampleText(const std::string& kind) {
    std::string text;
    for (int i = 0; text.size() < 4000; ++i) {
        text += kind;
    }
    return text;
}

void writeText(benchmark::State& state) {
    static const char* const KINDS[] = {"nothing to escape in this text ", "a < b && b > c; ",
                                        "\xC3\xA4\xC3\xB6\xC3\xBC\xC3\x9F \xCE\xB1\xCE\xB2\xCE\xB3 ",
                                        "\xE6\x97\xA5\xE6\x9C\xAC\xE8\xAA\x9E\xE3\x81\xAE"};
    static const char* const NAMES[] = {"plain", "escapes", "two octets", "three octets"};
    const auto kind = static_cast<std::size_t>(state.range(0));
    const std::string text = sampleText(KINDS[kind]);
    CountingStream out;
    XML::XMLWriter writer(out);
    writer.startDocument();
    writer.startElement(NONE, EMPTY, EMPTY, XML::AttributesImpl());
    for (auto _ : state) {
        writer.characters(text.data(), 0, static_cast<int>(text.size()));
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(text.size()) *
                            static_cast<std::int64_t>(state.iterations()));
    state.SetLabel(NAMES[kind]);
}
BENCHMARK(writeText)->DenseRange(0, 3);

void writeElement(benchmark::State& state) {
    CountingStream out;
    XML::XMLWriter writer(out);
    const std::string name("name");
    XML::AttributesImpl attributes;
    for (int i = 0; i < state.range(0); ++i) {
        const std::string attribute = "attribute" + std::to_string(i);
        attributes.addAttribute(NONE, attribute, attribute, "CDATA", "a value");
    }
    writer.startDocument();
    writer.startElement(NONE, EMPTY, EMPTY, XML::AttributesImpl());
    for (auto _ : state) {
        writer.startElement(NONE, name, name, attributes);
        writer.endElement(NONE, name, name);
    }
}
BENCHMARK(writeElement)->Arg(0)->Arg(1)->Arg(4)->Arg(16);

} // namespace

BENCHMARK_MAIN();
