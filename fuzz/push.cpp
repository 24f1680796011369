// A document and what stands behind it, fed in pieces of chance and in single octets, in both modes: the
// events and the failure are those of the parser, document after document.
#include "EventRecorder.h"
#include "Failure.h"
#include "FuzzSupport.h"
#include "Tamo/FastInfoset/FastInfosetParser.h"
#include "Tamo/FastInfoset/FastInfosetPushParser.h"
#include <random>

using namespace Tamo;
using namespace Tamo::FastInfoset;
using namespace Tamo::FastInfoset::Fuzz;

namespace {

class Reading {
public:
    Reading(std::string_view octets, bool strict) : _loader(octets) {
        parser.setStrict(strict);
        parser.setLimits(limits());
        parser.setExternalVocabularyLoader(&_loader);
        recorder.connectAll(parser);
    }

    FastInfosetParser parser;
    Test::TypedEventRecorder recorder;

private:
    Loader _loader;
};

// Feeds pieces, each in a block of its own, until a document ends or there are no more; what has been taken.
template<class Random>
std::size_t feed(FastInfosetPushParser& push, std::string_view octets, std::size_t largest, Random& random) {
    for (std::size_t at = 0; at < octets.size();) {
        const Block piece(octets.substr(at, 1 + random() % largest));
        const FastInfosetPushParser::Fed fed =
            push.feed(std::as_bytes(std::span(piece.data(), piece.size())));
        at += piece.size();
        if (fed.status == FastInfosetPushParser::Status::FINISHED) {
            require(fed.leftOver <= piece.size(), "no more is left over than was fed");
            return at - fed.leftOver;
        }
        require(fed.leftOver == 0, "an unfinished document takes all");
        require(push.keptOctets() <= octets.size(), "no more is kept than was fed");
    }
    push.finish();
    return octets.size();
}

void compare(std::string_view octets, bool strict, std::size_t largest) {
    Reading whole(octets, strict);
    Reading fed(octets, strict);
    FastInfosetPushParser push(fed.parser);
    std::minstd_rand random(static_cast<unsigned int>(std::hash<std::string_view>()(octets)));
    while (!octets.empty()) {
        whole.recorder.clear();
        fed.recorder.clear();
        const Block block(octets);
        const std::string expected =
            Test::failureOf([&] { whole.parser.parseMemoryNP(block.data(), block.size()); });
        std::size_t taken = 0;
        const std::string failure = Test::failureOf([&] { taken = feed(push, octets, largest, random); });
        require(expected == failure, "parser and push parser fail alike", expected, failure);
        require(whole.recorder.events() == fed.recorder.events(), "parser and push parser report the same",
                whole.recorder.events(), fed.recorder.events());
        if (!failure.empty()) {
            return;
        }
        require(!strict || taken == whole.parser.documentSize(), "documents end at the same octet");
        octets.remove_prefix(taken);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view octets(reinterpret_cast<const char*>(data), size);
    for (const bool strict : {false, true}) {
        for (const std::size_t largest : {std::size_t{1}, std::size_t{8}, size + 1}) {
            compare(octets, strict, largest);
        }
    }
    return 0;
}
