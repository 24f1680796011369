// DocumentWalker of finf, which reads a document construct by construct: with DepartureFinder it accepts what
// the parser accepts in the strict mode, leaves the same vocabulary, and its fields hold every bit once.
#include "Failure.h"
#include "FuzzSupport.h"
#include "Tamo/FastInfoset/FISException.h"
#include "Tamo/FastInfoset/FastInfosetParser.h"
#include "Tamo/FastInfoset/HexEncoding.h"
#include "Tamo/MemoryStream.h"
#include "Tamo/XML/InputSource.h"
#include "walk/DepartureFinder.h"
#include "walk/DocumentWalker.h"

using namespace Tamo;
using namespace Tamo::FastInfoset;
using namespace Tamo::FastInfoset::Fuzz;

namespace {

class Seamless : public finf::FieldVisitor {
public:
    UInt64 next = 0;
    std::string departures;
    finf::DepartureFinder finder{[this](const finf::Field& field, const std::string& what, UInt64) {
        // No matter of a parser: what is behind the document, what XML does not know, what no boolean uses,
        // an attribute that is there twice, and a name that the document does not use.
        if (field.construct != finf::Construct::TRAILING_OCTETS && what.find("(X.891") != std::string::npos &&
            what.find("unused bits") == std::string::npos && !what.starts_with("there is no ") &&
            !what.starts_with("the element has this attribute")) {
            departures += what + '|';
        }
    }};

    void field(const finf::Field& field) override {
        require(field.bit == next, "fields follow one another", std::to_string(next),
                std::to_string(field.bit));
        UInt64 bits = 0;
        for (const finf::FieldPart& part : field.parts) {
            bits += part.bits;
        }
        require(bits == field.bits, "a field is its parts", std::to_string(field.bits), std::to_string(bits));
        next += field.bits;
        finder.field(field);
    }
};

// Takes the values of all algorithms that are declared.
AutoPtr<Encoding> octetsOf(const std::string& uri, unsigned int, std::string_view octets) {
    return !uri.empty() ? AutoPtr<Encoding>(new HexEncoding(octets.data(), octets.size()))
                        : throw FISEncodingException("not declared");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string document(reinterpret_cast<const char*>(data), size);
    Loader loader(document);
    FastInfosetParser parser;
    parser.setStrict(true);
    parser.decodingAlgorithms().setFallback(&octetsOf);
    parser.setLimits(limits());
    parser.setExternalVocabularyLoader(&loader);
    MemoryInputStream parsed(document.data(), document.size());
    XML::InputSource source(parsed);
    const std::string failure = Test::failureOf([&] { parser.parse(&source); });

    Seamless visitor;
    MemoryInputStream walked(document.data(), document.size());
    Loader walkersLoader(document);
    finf::DocumentWalker walker(walked, visitor, walkersLoader, limits());
    visitor.finder.setVocabulary(walker.vocabulary());
    const std::string walkersFailure = Test::failureOf([&] {
        while (walker.step()) {
        }
        walker.trailingOctets();
    });
    require(failure.empty() == (walkersFailure.empty() && visitor.departures.empty()),
            "parser and walker accept the same", failure, walkersFailure + visitor.departures);
    if (failure.empty()) {
        require(visitor.next == 8 * document.size(), "no octet is left out", std::to_string(visitor.next));
        require(describedVocabulary(parser.vocabulary()) == describedVocabulary(walker.vocabulary()),
                "parser and walker fill the same tables", describedVocabulary(parser.vocabulary()),
                describedVocabulary(walker.vocabulary()));
    } else if (!walkersFailure.empty()) {
        walker.current();
        require(!walker.current().place().empty(), "a fault has a place");
    }
    return 0;
}
