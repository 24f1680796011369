// DocumentWalker of finf, which reads a document construct by construct: it accepts what the parser accepts,
// leaves the same vocabulary, and its fields hold every bit once.
#include "Failure.h"
#include "FuzzSupport.h"
#include "Tamo/FastInfoset/FastInfosetParser.h"
#include "Tamo/MemoryStream.h"
#include "Tamo/XML/InputSource.h"
#include "walk/DocumentWalker.h"

using namespace Tamo;
using namespace Tamo::FastInfoset;
using namespace Tamo::FastInfoset::Fuzz;

namespace {

class Seamless : public finf::FieldVisitor {
public:
    UInt64 next = 0;

    void field(const finf::Field& field) override {
        require(field.bit == next, "fields follow one another", std::to_string(next),
                std::to_string(field.bit));
        UInt64 bits = 0;
        for (const finf::FieldPart& part : field.parts) {
            bits += part.bits;
        }
        require(bits == field.bits, "a field is its parts", std::to_string(field.bits), std::to_string(bits));
        next += field.bits;
    }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string document(reinterpret_cast<const char*>(data), size);
    Loader loader(document);
    FastInfosetParser parser;
    parser.setLimits(limits());
    parser.setExternalVocabularyLoader(&loader);
    MemoryInputStream parsed(document.data(), document.size());
    XML::InputSource source(parsed);
    const std::string failure = Test::failureOf([&] { parser.parse(&source); });

    Seamless visitor;
    MemoryInputStream walked(document.data(), document.size());
    Loader walkersLoader(document);
    finf::DocumentWalker walker(walked, visitor, walkersLoader, limits());
    const std::string walkersFailure = Test::failureOf([&] {
        while (walker.step()) {
        }
        walker.trailingOctets();
    });
    require(failure.empty() == walkersFailure.empty(), "parser and walker accept the same", failure,
            walkersFailure);
    if (failure.empty()) {
        require(visitor.next == 8 * document.size(), "no octet is left out", std::to_string(visitor.next));
        require(describedVocabulary(parser.vocabulary()) == describedVocabulary(walker.vocabulary()),
                "parser and walker fill the same tables", describedVocabulary(parser.vocabulary()),
                describedVocabulary(walker.vocabulary()));
    } else {
        walker.current();
        require(!walker.current().place().empty(), "a fault has a place");
    }
    return 0;
}
