#include "bench/BenchCommand.h"
#include "Tamo/Exception.h"
#include "Tamo/FastInfoset/FastInfosetParser.h"
#include "Tamo/FastInfoset/FastInfosetWriter.h"
#include "Tamo/NullStream.h"
#include "Tamo/XML/Attributes.h"
#include "bench/DocumentTally.h"
#include "bench/EventRecording.h"
#include "bench/ExpatParser.h"
#include "command/CommonOptions.h"
#include "command/FinfError.h"
#include "convert/FastInfosetToXML.h"
#include "convert/XMLToFastInfoset.h"
#include "files/DocumentKind.h"
#include "files/InputFile.h"
#include "walk/Text.h"
#include <algorithm>
#include <cmath>
#include <ctime>
#include <iomanip>
#include <iostream>
#include <sstream>

namespace finf {

using Tamo::FastInfoset::DocumentVocabulary;
using Tamo::FastInfoset::FastInfosetParser;
using Tamo::FastInfoset::FastInfosetWriter;

namespace {

/// How long one measurement takes at least: small documents are processed several times.
constexpr double SHORTEST = 2e-3;

class TallyHandler : public Tamo::XML::DefaultHandler {
public:
    void startElement(const std::string& uri, const std::string& localName, const std::string&,
                      const Tamo::XML::Attributes& attrs) override {
        tally.startElement(uri, localName);
        for (int i = 0; i < attrs.getLength(); ++i) {
            tally.attribute(attrs.getURI(i), attrs.getLocalName(i), attrs.getValue(i));
        }
    }
    void endElement(const std::string&, const std::string&, const std::string&) override {
        tally.endElement();
    }
    void characters(const char ch[], int start, int length) override {
        tally.text({ch + start, static_cast<std::size_t>(length)});
    }

    DocumentTally tally;
};

class CountingHandler : public Tamo::XML::DefaultHandler {
public:
    void startElement(const std::string&, const std::string&, const std::string&,
                      const Tamo::XML::Attributes&) override {
        ++events;
    }
    void endElement(const std::string&, const std::string&, const std::string&) override { ++events; }
    void characters(const char[], int, int) override { ++events; }
    void processingInstruction(const std::string&, const std::string&) override { ++events; }
    void startPrefixMapping(const std::string&, const std::string&) override { ++events; }
    void endPrefixMapping(const std::string&) override { ++events; }
    void startCDATA() override { ++events; }
    void endCDATA() override { ++events; }
    void comment(const char[], int, int) override { ++events; }

    Tamo::UInt64 events = 0;
};

template<class Handler>
void setHandler(FastInfosetParser& parser, Handler& handler) {
    parser.setContentHandler(&handler);
    parser.setDTDHandler(&handler);
    parser.setLexicalHandler(&handler);
}

Tamo::UInt64 sumOf(const std::string& fastInfoset) {
    TallyHandler handler;
    FastInfosetParser parser;
    setHandler(parser, handler);
    parser.parseMemoryNP(fastInfoset.data(), fastInfoset.size());
    return handler.tally.sum();
}

/// The processor time of this thread, which other processes do not take part in.
double now() {
    struct timespec time {};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

double secondsOf(const std::function<void()>& work, int times) {
    const double start = now();
    for (int i = 0; i < times; ++i) {
        work();
    }
    return now() - start;
}

double median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

} // namespace

BenchCommand::BenchCommand(CLI::App& parent)
    : Command(parent, "bench", "Time parsing and writing beside Expat's parsing of the same information") {
    app()
        .add_option("FILE", _options.inputs, "Documents, XML text or Fast Infoset; they are held in memory")
        ->type_name("")
        ->required();
    app()
        .add_option("--rounds", _rounds, "How often each is measured, in turn; the median counts")
        ->type_name("N")
        ->check(CLI::Range(1, 1000000).description(""))
        ->capture_default_str();
    app().add_flag("--json", _json, "Print JSON, times in microseconds");
    addVocabularyOption(app(), _options.vocabularies);
    addLimitOptions(app(), _options.limits);
}

ExitStatus BenchCommand::run() {
    ExitStatus status = DONE;
    for (const std::string& path : _options.inputs) {
        status = std::max(status, attempt(path, [&] { measure(path); }));
    }
    if (_json) {
        printJson();
    } else if (!_results.empty()) {
        printTable();
    }
    return status;
}

void BenchCommand::measure(const std::string& path) {
    std::string xml = InputFile::readAll(path);
    if (kindOf(xml) == DocumentKind::FAST_INFOSET) {
        FastInfosetToXML toXML(_options);
        xml = toXML.converted(xml);
    }
    const Options plain;
    XMLToFastInfoset toFastInfoset(plain);
    const std::string fastInfoset = toFastInfoset.converted(xml);

    FastInfosetParser parser;
    EventRecording recording;
    setHandler(parser, recording);
    parser.parseMemoryNP(fastInfoset.data(), fastInfoset.size());
    auto kind = DocumentVocabulary::VOC_HASH;
    const auto write = [&](std::ostream& out) {
        FastInfosetWriter writer(out, false, kind);
        recording.replay(writer);
    };
    std::ostringstream written;
    try {
        write(written);
    } catch (const Tamo::PoolOverflowException&) {
        // More names or strings than the faster tables take.
        kind = DocumentVocabulary::VOC_MAP;
        written.str({});
        write(written);
    }

    // Before the clock starts: all three are about the same document.
    ExpatParser expat;
    const Tamo::UInt64 sum = expat.sum(xml);
    if (sumOf(fastInfoset) != sum || sumOf(written.str()) != sum) {
        throw FinfError("Expat and the Fast Infoset parser do not report the same document");
    }

    CountingHandler handler;
    setHandler(parser, handler);
    Tamo::NullOutputStream null;
    const std::vector<double> times = medians({
        [&] { expat.count(xml); },
        [&] { parser.parseMemoryNP(fastInfoset.data(), fastInfoset.size()); },
        [&] { write(null); },
    });
    _results.push_back({path, xml.size(), fastInfoset.size(), times[0], times[1], times[2]});
}

std::vector<double> BenchCommand::medians(const std::vector<std::function<void()>>& candidates) const {
    std::vector<int> repetitions;
    for (const auto& candidate : candidates) {
        candidate(); // warms up
        repetitions.push_back(
            static_cast<int>(std::ceil(SHORTEST / std::max(secondsOf(candidate, 1), 1e-8))));
    }
    // In turn, so that what slows the machine down for a while slows all of them down.
    std::vector<std::vector<double>> times(candidates.size());
    for (int round = 0; round < _rounds; ++round) {
        for (std::size_t i = 0; i < candidates.size(); ++i) {
            times[i].push_back(secondsOf(candidates[i], repetitions[i]) / repetitions[i]);
        }
    }
    std::vector<double> result;
    for (const auto& measured : times) {
        result.push_back(median(measured));
    }
    return result;
}

void BenchCommand::printTable() const {
    std::cout << "Microseconds of processor time, median of " << _rounds
              << " rounds, and the part of Expat's time that it is.\n"
                 "Expat "
              << ExpatParser::version()
              << " by itself parses the XML text; parsing and writing are those of Fast Infoset.\n"
                 "  XML octets  Fast Infoset         Expat       parsing           writing\n"
              << std::fixed;
    for (const Result& result : _results) {
        const auto cell = [&](double time) {
            std::cout << std::setw(14) << std::setprecision(1) << time * 1e6 << " (" << std::setprecision(2)
                      << time / result.expat << ')';
        };
        std::cout << std::setw(12) << result.xmlSize << std::setw(14) << result.fastInfosetSize
                  << std::setw(14) << std::setprecision(1) << result.expat * 1e6;
        cell(result.parsing);
        cell(result.writing);
        std::cout << "  " << result.path << '\n';
    }
}

void BenchCommand::printJson() const {
    const char* separator = "[\n";
    for (const Result& result : _results) {
        std::string path;
        Text::appendJson(path, result.path);
        std::cout << separator << "{\"file\": " << path << ", \"rounds\": " << _rounds
                  << ", \"xmlOctets\": " << result.xmlSize
                  << ", \"fastInfosetOctets\": " << result.fastInfosetSize << std::fixed
                  << std::setprecision(3) << ", \"expat\": " << result.expat * 1e6
                  << ", \"parsing\": " << result.parsing * 1e6 << ", \"writing\": " << result.writing * 1e6
                  << '}';
        separator = ",\n";
    }
    std::cout << (_results.empty() ? "[]\n" : "\n]\n");
}

} // namespace finf
