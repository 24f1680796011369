// What documents cost that were made to cost much, whichever way they go: work is counted, not timed.
#include "AllocationCount.h"
#include "Attacks.h"
#include "DocumentTest.h"
#include "Tamo/FastInfoset/Converter.h"
#include "Tamo/FastInfoset/ExternalVocabularyLoader.h"
#include "Tamo/FastInfoset/FISDefaultHandler.h"
#include "Tamo/FastInfoset/FastInfosetReader.h"
#include "Tamo/MemoryStream.h"
#include "Tamo/XML/Attributes.h"
#include "Tamo/XML/SAXParser.h"
#include "Tamo/XML/XMLWriter.h"
#include <cstdio>
#include <cstdlib>
#include <ctime>

namespace Tamo::FastInfoset::Test {
namespace {

// What one way of a document came to.
struct Cost {
    std::size_t callbacks = 0;
    std::size_t octets = 0; ///< delivered or written
    std::size_t allocations = 0;
    std::size_t allocated = 0;
    std::size_t peak = 0;
    std::clock_t time = 0; ///< reported, and nothing else
    std::string failure;
};

class CountingBuf : public std::streambuf {
public:
    std::size_t octets = 0;

private:
    int overflow(int c) override {
        ++octets;
        return c;
    }
    std::streamsize xsputn(const char*, std::streamsize size) override {
        octets += static_cast<std::size_t>(size);
        return size;
    }
};

// Looks at everything and keeps nothing.
class CountingHandler : public FISDefaultHandler {
public:
    explicit CountingHandler(Cost& cost) : _cost(cost) {}

    void startElement(const std::string& uri, const std::string& localName, const std::string& qname,
                      const XML::Attributes& attributes) override {
        count(uri.size() + localName.size() + qname.size());
        for (int i = 0; i < attributes.getLength(); ++i) {
            count(attributes.getURI(i).size() + attributes.getLocalName(i).size() +
                  attributes.getQName(i).size() + attributes.getValue(i).size());
        }
    }
    void endElement(const std::string& uri, const std::string& localName, const std::string& qname) override {
        count(uri.size() + localName.size() + qname.size());
    }
    void characters(const char[], int, int length) override { count(static_cast<std::size_t>(length)); }
    void startPrefixMapping(const std::string& prefix, const std::string& uri) override {
        count(prefix.size() + uri.size());
    }
    void endPrefixMapping(const std::string& prefix) override { count(prefix.size()); }

private:
    void count(std::size_t octets) {
        ++_cost.callbacks;
        _cost.octets += octets;
    }

    Cost& _cost;
};

class NoVocabularies : public ExternalVocabularyLoader {
public:
    DocumentVocabulary load(const std::string&) override {
        return DocumentVocabulary(DocumentVocabulary::VOC_VECTOR);
    }
};

void parse(const std::string& document, Cost& cost, bool strict) {
    CountingHandler handler(cost);
    NoVocabularies loader;
    FastInfosetParser parser;
    parser.setStrict(strict);
    parser.setExternalVocabularyLoader(&loader);
    parser.initialize(&handler);
    parser.parseMemoryNP(document.data(), document.size());
}

void toHandler(const std::string& document, Cost& cost) {
    parse(document, cost, false);
}

void toHandlerStrictly(const std::string& document, Cost& cost) {
    parse(document, cost, true);
}

void toCursor(const std::string& document, Cost& cost) {
    NoVocabularies loader;
    FastInfosetReader reader;
    reader.setExternalVocabularyLoader(&loader);
    reader.open(document);
    for (auto event = reader.next(); event != FastInfosetReader::END_DOCUMENT; event = reader.next()) {
        ++cost.callbacks;
        cost.octets += reader.uri().size() + reader.localName().size() + reader.qname().size();
        if (event == FastInfosetReader::START_ELEMENT) {
            cost.callbacks += reader.prefixMappings().size();
        }
    }
}

void reencode(const std::string& document, Cost& cost, bool strict) {
    CountingBuf buf;
    std::ostream out(&buf);
    FastInfosetWriter writer(out, false, DocumentVocabulary::VOC_MAP);
    writer.setStrict(strict);
    NoVocabularies loader;
    FastInfosetParser parser(DocumentVocabulary::VOC_MAP);
    parser.setStrict(strict);
    parser.setExternalVocabularyLoader(&loader);
    parser.initialize(&writer);
    cost.failure = failureOf([&] { parser.parseMemoryNP(document.data(), document.size()); });
    cost.octets = buf.octets;
}

void toFastInfoset(const std::string& document, Cost& cost) {
    reencode(document, cost, false);
}

void toStrictFastInfoset(const std::string& document, Cost& cost) {
    reencode(document, cost, true);
}

void toXML(const std::string& document, Cost& cost) {
    CountingBuf buf;
    std::ostream out(&buf);
    MemoryInputStream in(document.data(), document.size());
    cost.failure = failureOf([&] { Converter::convertToXML(in, out, Converter::Options()); });
    cost.octets = buf.octets;
}

void xmlToHandler(const std::string& xml, Cost& cost) {
    CountingHandler handler(cost);
    XML::SAXParser parser;
    parser.setContentHandler(&handler);
    parser.parseMemoryNP(xml.data(), xml.size());
}

void xmlToFastInfoset(const std::string& xml, Cost& cost) {
    CountingBuf buf;
    std::ostream out(&buf);
    MemoryInputStream in(xml.data(), xml.size());
    cost.failure = failureOf([&] { Converter::convertToFIS(in, out, 16, 0); });
    cost.octets = buf.octets;
}

void xmlToXML(const std::string& xml, Cost& cost) {
    CountingBuf buf;
    std::ostream out(&buf);
    XML::XMLWriter writer(out);
    XML::SAXParser parser;
    parser.setContentHandler(&writer);
    cost.failure = failureOf([&] { parser.parseMemoryNP(xml.data(), xml.size()); });
    cost.octets = buf.octets;
}

const struct Way {
    const char* name;
    bool isXML;
    bool isHandler;
    void (*go)(const std::string& document, Cost& cost);
} WAYS[] = {{"parser", false, true, toHandler},
            {"parser strictly", false, false, toHandlerStrictly},
            {"cursor", false, false, toCursor},
            {"re-encoded", false, false, toFastInfoset},
            {"re-encoded strictly", false, false, toStrictFastInfoset},
            {"to XML", false, false, toXML},
            {"SAX parser", true, true, xmlToHandler},
            {"to Fast Infoset", true, false, xmlToFastInfoset},
            {"XML again", true, false, xmlToXML}};

// What is held beside the octets of the document themselves.
constexpr std::size_t memoryBound(std::size_t size, std::size_t forEach = 16) {
    return 16 * 1024 * 1024 + forEach * size;
}

Cost costOf(const Way& way, const std::string& document, std::size_t memory = 16) {
    Cost cost;
    const AllocationCount count;
    const std::clock_t start = std::clock();
    const std::string failure = failureOf([&] { way.go(document, cost); });
    cost.time = std::clock() - start;
    cost.failure += failure;
    cost.allocations = count.number();
    cost.allocated = count.octets();
    cost.peak = count.peak();
    EXPECT_LE(cost.peak, memoryBound(document.size(), memory));
    return cost;
}

bool isLimit(const std::string& failure) {
    return failure.find("Limit exceeded") != std::string::npos;
}

// At most what the limits on delivery let through, with an octet or two of markup for each.
void expectLimited(const Cost& cost, std::size_t size) {
    constexpr XML::DeliveryLimits LIMITS;
    const std::size_t most =
        std::max<std::size_t>(LIMITS.amplificationThreshold, LIMITS.maxAmplification * size);
    EXPECT_LE(cost.callbacks * XML::DeliveryLimits::CALLBACK, most);
    EXPECT_LE(cost.octets, most + most / 4);
}

// Twice the document, twice the work; what every document costs is no part of it.
void expectLinear(const Cost& half, const Cost& whole) {
    const auto expectTwice = [](const char* what, std::size_t first, std::size_t second, std::size_t base) {
        EXPECT_LE(static_cast<double>(second), 2.2 * static_cast<double>(first) + static_cast<double>(base))
            << what;
    };
    expectTwice("callbacks", half.callbacks, whole.callbacks, 100);
    expectTwice("octets", half.octets, whole.octets, 1000);
    expectTwice("allocations", half.allocations, whole.allocations, 1000);
    expectTwice("octets allocated", half.allocated, whole.allocated, 1024 * 1024);
}

void report(const Attack& attack, const Way& way, std::size_t size, const Cost& cost) {
    if (std::getenv("TAMO_REPORT_COSTS")) {
        std::printf(
            "%-26s %-15s %9zu octets %9zu callbacks %10zu out %9zu allocations %10zu peak %6.0f ms %s\n",
            attack.name, way.name, size, cost.callbacks, cost.octets, cost.allocations, cost.peak,
            static_cast<double>(cost.time) * 1000 / CLOCKS_PER_SEC, cost.failure.substr(0, 80).c_str());
    }
}

TEST(CostTest, WorkAndMemoryFollowTheDocument) {
    for (const Attack& attack : attacks()) {
        const std::string half = attack.make(attack.n / 2);
        const std::string whole = attack.make(attack.n);
        for (const Way& way : WAYS) {
            if (way.isXML != attack.isXML) {
                continue;
            }
            SCOPED_TRACE(std::string(attack.name) + ", " + way.name);
            const Cost first = costOf(way, half, attack.memory);
            const Cost second = costOf(way, whole, attack.memory);
            report(attack, way, half.size(), first);
            report(attack, way, whole.size(), second);
            for (const Cost* pCost : {&first, &second}) {
                EXPECT_TRUE(pCost->failure.empty() || isLimit(pCost->failure)) << pCost->failure;
            }
            if (way.isHandler) {
                EXPECT_EQ(isLimit(second.failure), attack.outcome == Attack::REFUSED);
            }
            if (attack.outcome == Attack::REPEATED && way.go == toFastInfoset) {
                EXPECT_LE(second.octets, 4 * attack.n * attack.n);
            } else if (second.failure.empty()) {
                expectLinear(first, second);
            } else {
                expectLimited(second, whole.size());
            }
        }
    }
}

TEST(CostTest, DamagedDocumentsTakeLittleMemory) {
    std::vector<std::string> documents = everyConstruct(false);
    documents.push_back(everyConstruct(true).front());
    for (const std::string& document : documents) {
        const auto expectLittle = [](const std::string& damaged) {
            for (const Way& way : WAYS) {
                if (!way.isXML) {
                    EXPECT_LE(costOf(way, damaged).peak, 512 * 1024u) << way.name << " " << hex(damaged);
                }
            }
        };
        for (std::size_t length = 0; length < document.size(); ++length) {
            expectLittle(document.substr(0, length));
        }
        for (std::size_t bit = 0; bit < document.size() * 8; ++bit) {
            std::string damaged = document;
            damaged[bit / 8] = static_cast<char>(damaged[bit / 8] ^ (0x80 >> bit % 8));
            expectLittle(damaged);
        }
    }
}

} // namespace
} // namespace Tamo::FastInfoset::Test
