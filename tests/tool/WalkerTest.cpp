// The walker of the inspecting commands, and what finds departures in what it reads, against the strict
// parser: they accept the same documents, fill the same tables, and leave no bit out.
#include "../codec/Octets.h"
#include "Tamo/FastInfoset/Converter.h"
#include "Tamo/FastInfoset/FISException.h"
#include "Tamo/FastInfoset/FastInfosetParser.h"
#include "Tamo/FastInfoset/FastInfosetWriter.h"
#include "Tamo/FastInfoset/HexEncoding.h"
#include "Tamo/XML/AttributesImpl.h"
#include "Tamo/XML/InputSource.h"
#include "walk/DepartureFinder.h"
#include "walk/DocumentWalker.h"
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>

namespace {

using namespace Tamo::FastInfoset;
using finf::DocumentWalker;
using finf::Field;
using Tamo::FastInfoset::Test::octets;

class Loader : public ExternalVocabularyLoader {
protected:
    DocumentVocabulary load(const std::string& uri) override {
        std::istringstream xml("<known xmlns='urn:known' a='1'>text</known>");
        return uri == "urn:v" ? loadXML(xml) : throw std::runtime_error("unknown vocabulary");
    }
};

/// Expects that fields lie side by side, and parts in fields.
class Tiling : public finf::FieldVisitor {
public:
    void field(const Field& field) override {
        Tamo::UInt64 bits = 0;
        for (const auto& part : field.parts) {
            bits += part.bits;
        }
        isTiled = isTiled && field.bit == end && field.bits == bits &&
                  field.octets.size() == (field.bit + bits + 7) / 8 - field.bit / 8;
        end += bits;
        finder.field(field); // which has to take whatever can be read
    }

    finf::DepartureFinder finder{[this](const finf::Field& field, const std::string& what, Tamo::UInt64) {
        // No matter of a parser: what is behind the document, what XML does not know, what no boolean uses,
        // and a name that the document does not use.
        if (field.construct != finf::Construct::TRAILING_OCTETS && what.find("(X.891") != std::string::npos &&
            what.find("unused bits") == std::string::npos && !what.starts_with("there is no ")) {
            departures += what + '|';
        }
    }};
    std::string departures;
    Tamo::UInt64 end = 0;
    bool isTiled = true;
};

std::vector<std::size_t> tableSizes(const DocumentVocabulary& vocabulary) {
    std::vector<std::size_t> sizes{vocabulary.elementVocabulary().size(),
                                   vocabulary.attributeVocabulary().size()};
    for (int id = DocumentVocabulary::PREFIX; id < DocumentVocabulary::ELEMENT_NAME; ++id) {
        sizes.push_back(vocabulary.vocabulary(static_cast<DocumentVocabulary::ID>(id)).size());
    }
    return sizes;
}

/// Takes the values of all algorithms that are declared.
Tamo::AutoPtr<Encoding> octetsOf(const std::string& uri, unsigned int, std::string_view octets) {
    return !uri.empty() ? Tamo::AutoPtr<Encoding>(new HexEncoding(octets.data(), octets.size()))
                        : throw FISEncodingException("not declared");
}

/// True when the parser accepts the document, and as is expected the walker finds nothing against it.
bool accepted(const std::string& document, const ParserLimits& limits = {}) {
    Loader loader;
    std::istringstream forParser(document);
    FastInfosetParser parser;
    parser.setStrict(true);
    parser.decodingAlgorithms().setFallback(&octetsOf);
    parser.setExternalVocabularyLoader(&loader);
    parser.setLimits(limits);
    Tamo::XML::InputSource source(forParser);
    std::string failure;
    try {
        parser.parse(&source);
    } catch (const std::exception& e) {
        failure = e.what();
    }

    for (const std::size_t shown : {static_cast<std::size_t>(-1), std::size_t{0}}) {
        Tiling tiling;
        std::istringstream forWalker(document);
        DocumentWalker walker(forWalker, tiling, loader, limits);
        walker.setMaxShownArray(shown);
        tiling.finder.setVocabulary(walker.vocabulary());
        std::string walkFailure;
        try {
            while (walker.step()) {
            }
            if (failure.empty()) {
                EXPECT_EQ(tableSizes(walker.vocabulary()), tableSizes(parser.vocabulary()));
            }
            walker.trailingOctets();
            EXPECT_EQ(tiling.end, 8 * document.size());
        } catch (const std::exception& e) {
            walkFailure = e.what();
            EXPECT_LE(walker.current().bit, 8 * document.size());
        }
        EXPECT_TRUE(tiling.isTiled);
        walkFailure += tiling.departures;
        EXPECT_EQ(walkFailure.empty(), failure.empty()) << walkFailure << " / " << failure;
    }
    return failure.empty();
}

/// Documents that between them use every construct that can be read.
std::vector<std::string> documents() {
    const std::string declaration = "<?xml encoding='finf'?>";
    const std::string header = "E0 00 00 01 7F 00 00 75 01 64 64 ";
    // An alphabet of four characters, and an entry that is there twice.
    const std::string tables =
        "00 03 61 62 63 64 00 00 61 00 00 70 00 00 75 01 00 6C 00 6C 00 00 74 00 00 73 00 11 00 76 00 20 00 "
        "00 01 00 30 30 33 00 00 00 07 00 03 01 01 00 00 03 01 01 01 C2 00 6E 80 F0 D0 00 65 80 81 F0 04 75 "
        "74 66 2D 38 01 40 31 C6 80 E1 00 74 80 F0 40 78 00 61 80 F0 88 3C 0F 8C 7C 41 A0 F0 E1 82 80 F0";
    return {
        declaration + octets(header + "0F FF " + tables),
        declaration + octets(header + "1F FF 04 75 72 6E 3A 76 " + tables),
        octets("E0 00 00 01 00 78 CD 00 75 CF 00 70 00 76 F0 3D 81 00 61 7B 81 82 00 78 40 31 79 81 00 "
               "79 40 32 F0 9C 25 63 64 8C 14 38 8C 1A 01 3F C0 00 00 98 01 12 3F 85 20 AC CB 00 65 00 73 "
               "00 70 E2 41 6E 6F FF"),
        // A declaration with two processing instructions, lengths in their middle and long forms, a
        // reference to an entity, UTF-16, arrays of every kind.
        octets("E0 00 00 01 00 C5 00 70 E1 00 74 40 31 E1 80 80 F0 3C 00 61 82 00 61 62 63 93 00 00 00 00") +
            std::string(259, 'y') +
            octets(
                "85 20 AC 8C 02 00 DE AD BE 8C 05 01 02 8C 0A 01 FF FF 00 07 8C 0E 01 00 01 11 70 8C 12 05 "
                "FF FF FF FF FF FF FF FB 8C 15 0A 80 8C 1A 01 3F C0 00 00 8C 1E 05 BF D0 00 00 00 00 00 00 "
                "8C 22 0D 00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F 8C 26 00 3C 26 3E CA 00 65 80 E2 "
                "80 3F 00 70 00 75 00 62 FF F0")};
}

TEST(WalkerTest, AgreesWithTheParserOnEveryDamage) {
    for (const std::string& document : documents()) {
        int count[2] = {0, 0};
        for (std::size_t length = 0; length <= document.size(); ++length) {
            ++count[accepted(document.substr(0, length))];
        }
        for (std::size_t bit = 0; bit < document.size() * 8; ++bit) {
            std::string damaged = document;
            damaged[bit / 8] = static_cast<char>(damaged[bit / 8] ^ (0x80 >> bit % 8));
            ++count[accepted(damaged)];
        }
        EXPECT_GT(count[0], 100);
        EXPECT_GT(count[1], 100);
        EXPECT_TRUE(accepted(document + "trailing") || document.size() < 60);
    }
}

TEST(WalkerTest, AgreesOnLimits) {
    int count[2] = {0, 0};
    for (const std::string& document : documents()) {
        for (std::size_t limit = 0; limit < 300; ++limit) {
            ++count[accepted(document, {.maxDepth = limit})];
            ++count[accepted(document, {.maxStringLength = limit})];
            ++count[accepted(document, {.maxTableEntries = limit})];
        }
    }
    EXPECT_GT(count[0], 100);
}

TEST(WalkerTest, AgreesOnSamples) {
    for (const char* name : {"article.xml", "catalogue.xml", "drawing.svg", "order.xml", "sensors.xml"}) {
        std::ifstream xml(std::string(TAMO_SAMPLES "/") + name);
        std::ostringstream out;
        Converter::convertToFIS(xml, out, 16, 0);
        const std::string document = out.str();
        EXPECT_TRUE(accepted(document)) << name;
        for (std::size_t length = 0; length < document.size(); length += 13) {
            EXPECT_FALSE(accepted(document.substr(0, length))) << name << length;
        }
    }
}

// Integers of every form: names of 9000 elements and attributes, and their indexes.
TEST(WalkerTest, AgreesOnLongIndexes) {
    std::ostringstream out;
    FastInfosetWriter writer(out, false, DocumentVocabulary::VOC_MAP);
    writer.setMaxIndexedStringLength(-1);
    writer.startDocument();
    writer.startElement("", "root", "");
    for (int i = 0; i < 18000; ++i) {
        const std::string text = std::to_string(i % 9000);
        Tamo::XML::AttributesImpl attributes;
        attributes.addAttribute("", "a" + text, "", "CDATA", text);
        writer.startElement("", "e" + text, "", attributes);
        writer.characters(text);
        writer.endElement("", "", "");
    }
    writer.endElement("", "", "");
    writer.endDocument();
    EXPECT_TRUE(accepted(out.str()));
}

TEST(WalkerTest, DepthCostsNoStack) {
    std::string document = octets("E0 00 00 01 00 3C 00 61");
    document.append(999999, '\0').append(500000, '\xFF').append(1, '\xF0');
    EXPECT_TRUE(accepted(document));
    document.pop_back();
    EXPECT_FALSE(accepted(document));
}

// Of large arrays the walker reads the first values alone, and refuses what the parser refuses of the whole.
TEST(WalkerTest, LargeArraysOfEveryLength) {
    constexpr std::size_t SIZES[] = {0, 1, 1, 2, 4, 8, 1, 4, 8, 16};
    for (unsigned int algorithm = 1; algorithm <= 9; ++algorithm) {
        for (std::size_t size = 49; size < 82; ++size) {
            for (const char first : {'\0', '\x70', '\xF0'}) {
                SCOPED_TRACE(std::to_string(algorithm) + ", " + std::to_string(size));
                const unsigned int bits = algorithm - 1;
                std::string document = octets("E0 00 00 01 00 3C 00 61");
                document += static_cast<char>(0x8C | (bits >> 6));
                document += static_cast<char>((bits & 0x3F) << 2 | 2);
                document += static_cast<char>(size - 3);
                document += first + std::string(size - 1, '\0') + "\xFF";
                const bool isWhole = size % SIZES[algorithm] == 0;
                EXPECT_EQ(accepted(document), isWhole);
            }
        }
    }
}

} // namespace
