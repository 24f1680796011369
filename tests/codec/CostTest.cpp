// What documents cost that were made to cost much, whichever way they go: work is counted, not timed.
#include "AllocationCount.h"
#include "Attacks.h"
#include "DocumentTest.h"
#include "Tamo/FastInfoset/Converter.h"
#include "Tamo/FastInfoset/FISDefaultHandler.h"
#include "Tamo/FastInfoset/FastInfosetReader.h"
#include "Tamo/MemoryStream.h"
#include "Tamo/XML/Attributes.h"
#include "Tamo/XML/SAXParser.h"
#include "Tamo/XML/XMLWriter.h"

namespace Tamo::FastInfoset::Test {
namespace {

// What one way of a document came to.
struct Cost {
    std::size_t callbacks = 0;
    std::size_t octets = 0; ///< delivered or written
    std::size_t allocations = 0;
    std::size_t allocated = 0;
    std::size_t peak = 0;
    std::string failure;
};

class CountingStream : private std::streambuf, public std::ostream {
public:
    explicit CountingStream(Cost& cost) : std::ostream(this), _cost(cost) {}

private:
    int overflow(int c) override {
        ++_cost.octets;
        return c;
    }
    std::streamsize xsputn(const char*, std::streamsize size) override {
        _cost.octets += static_cast<std::size_t>(size);
        return size;
    }

    Cost& _cost;
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

void parse(const std::string& document, Cost& cost, bool strict) {
    CountingHandler handler(cost);
    GivenVocabulary loader;
    FastInfosetParser parser;
    parser.setStrict(strict);
    parser.setExternalVocabularyLoader(&loader);
    parser.initialize(&handler);
    parser.parseMemoryNP(document.data(), document.size());
}

void toCursor(const std::string& document, Cost& cost) {
    GivenVocabulary loader;
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
    CountingStream out(cost);
    FastInfosetWriter writer(out, false, DocumentVocabulary::VOC_MAP);
    writer.setStrict(strict);
    GivenVocabulary loader;
    FastInfosetParser parser(DocumentVocabulary::VOC_MAP);
    parser.setStrict(strict);
    parser.setExternalVocabularyLoader(&loader);
    parser.initialize(&writer);
    parser.parseMemoryNP(document.data(), document.size());
}

void toFastInfoset(const std::string& document, Cost& cost) {
    reencode(document, cost, false);
}

void toXML(const std::string& document, Cost& cost) {
    CountingStream out(cost);
    MemoryInputStream in(document.data(), document.size());
    Converter::convertToXML(in, out, Converter::Options());
}

void xmlToHandler(const std::string& xml, Cost& cost) {
    CountingHandler handler(cost);
    XML::SAXParser parser;
    parser.setContentHandler(&handler);
    parser.parseMemoryNP(xml.data(), xml.size());
}

void xmlToFastInfoset(const std::string& xml, Cost& cost) {
    CountingStream out(cost);
    MemoryInputStream in(xml.data(), xml.size());
    Converter::convertToFIS(in, out, 16, 0);
}

void xmlToXML(const std::string& xml, Cost& cost) {
    CountingStream out(cost);
    XML::XMLWriter writer(out);
    XML::SAXParser parser;
    parser.setContentHandler(&writer);
    parser.parseMemoryNP(xml.data(), xml.size());
}

const struct Way {
    const char* name;
    bool isXML;
    bool isHandler;
    void (*go)(const std::string& document, Cost& cost);
} WAYS[] = {{"parser", false, true, [](const auto& d, Cost& c) { parse(d, c, false); }},
            {"parser strictly", false, false, [](const auto& d, Cost& c) { parse(d, c, true); }},
            {"cursor", false, false, toCursor},
            {"re-encoded", false, false, toFastInfoset},
            {"re-encoded strictly", false, false, [](const auto& d, Cost& c) { reencode(d, c, true); }},
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
    cost.failure = failureOf([&] { way.go(document, cost); });
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
        forEachDamaged(document, [](const std::string& damaged) {
            for (const Way& way : WAYS) {
                if (!way.isXML) {
                    EXPECT_LE(costOf(way, damaged).peak, 512 * 1024u) << way.name << " " << hex(damaged);
                }
            }
        });
    }
}

} // namespace
} // namespace Tamo::FastInfoset::Test
