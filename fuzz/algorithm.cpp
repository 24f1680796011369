// The decode function of every encoding algorithm, and its way back. The first octet chooses the algorithm
// and mode, the second the bit position of the length.
#include "EventRecorder.h"
#include "Failure.h"
#include "FuzzSupport.h"
#include "Tamo/FastInfoset/BitStreamReader.h"
#include "Tamo/FastInfoset/BitStreamWriter.h"
#include "Tamo/FastInfoset/DecodingAlgorithm.h"
#include "Tamo/FastInfoset/Encoding.h"
#include "Tamo/FastInfoset/EncodingAlgorithm.h"
#include "Tamo/FastInfoset/NullEncoding.h"
#include "Tamo/FastInfoset/StringDecoder.h"
#include "Tamo/MemoryStream.h"
#include <sstream>

using namespace Tamo;
using namespace Tamo::FastInfoset;
using namespace Tamo::FastInfoset::Fuzz;

namespace {

using Pointer = AutoPtr<Encoding>;

Pointer decoded(int algorithm, BitStreamReader& reader) {
    static const DecodingAlgorithm ALGORITHMS;
    return algorithm == 0 ? NullEncoding::decode(reader) : ALGORITHMS.read(algorithm, reader);
}

Pointer decoded(int algorithm, const std::string& octets, int position) {
    BitStreamReader reader(octets.data(), octets.size());
    unsigned char dropped = 0;
    reader.read(dropped, position);
    return decoded(algorithm, reader);
}

// What a writer writes behind four bits.
std::string written(const std::function<void(BitStreamWriter&)>& use) {
    std::ostringstream stream;
    {
        BitStreamWriter writer(stream, false);
        writer.writeBits(4, false);
        use(writer);
    }
    return stream.str();
}

std::string valuesOf(const Encoding& encoding) {
    Test::TypedEventRecorder recorder;
    encoding.handle(&recorder);
    return recorder.events();
}

// Text that a check function measures can be written, and comes back as text that is written to the same
// octets.
void checkText(const Encoding& encoding, const std::string& text) {
    if (encoding.checkMethod()(text) <= 0) {
        return;
    }
    const std::string octets = written([&](BitStreamWriter& w) { encoding.encodeMethod()(w, text); });
    const Pointer pRead = decoded(static_cast<int>(encoding.type()), octets, 4);
    const std::string again = StringDecoder::textOf(*pRead);
    require(encoding.checkMethod()(again) > 0, "decoded text can be encoded", text, again);
    require(written([&](BitStreamWriter& w) { encoding.encodeMethod()(w, again); }) == octets,
            "text survives its encoding", text, again);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 3) {
        return 0;
    }
    const int algorithm = data[0] % 12;
    const int position = data[1] % 7 + 1;
    const std::string octets(reinterpret_cast<const char*>(data) + 2, size - 2);
    const auto outcome = [&](BitStreamReader& reader) {
        reader.setStrict((data[0] & 0x80) != 0);
        Outcome result;
        result.failure = Test::failureOf([&] {
            unsigned char dropped = 0;
            reader.read(dropped, position);
            Pointer pValue = decoded(algorithm, reader);
            const Encoding& value = *pValue;
            result.events = valuesOf(value);

            const Pointer pAgain = decoded(algorithm, written([&](auto& w) { value.write(w); }), 4);
            require(valuesOf(*pAgain) == result.events, "values survive their encoding", result.events,
                    valuesOf(*pAgain));
            require(pAgain->merge(value), "values of one algorithm merge");
            const std::string merged = valuesOf(*pAgain);
            require(merged.starts_with(result.events) &&
                        (merged.size() > result.events.size() || merged.empty()),
                    "merged values are all there", result.events, merged);

            const std::string text = StringDecoder::textOf(*pValue);
            pValue->createContent();
            Test::EventRecorder recorder;
            value.handle(static_cast<XML::ContentHandler*>(&recorder));
            require(recorder.events() == "'" + text, "text of a value", recorder.events(), text);
            checkText(value, text);
            checkText(value, octets.substr(octets.size() / 2));
        });
        return result;
    };
    const Block block(octets);
    BitStreamReader memoryReader(block.data(), block.size());
    const Outcome memory = outcome(memoryReader);
    MemoryInputStream input(octets.data(), octets.size());
    BitStreamReader streamReader(input);
    const Outcome stream = outcome(streamReader);
    require(memory.failure == stream.failure, "memory and stream fail alike", memory.failure, stream.failure);
    require(memory.events == stream.events, "memory and stream deliver the same", memory.events,
            stream.events);
    return 0;
}
