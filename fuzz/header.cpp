// The functions of the Decoder, which read parts of a header. The first octet chooses one, the second the bit
// position at which it starts and whether it is read strictly; the rest is read from memory and from a
// stream.
#include "Failure.h"
#include "FuzzSupport.h"
#include "Octets.h"
#include "Tamo/FastInfoset/Decoder.h"
#include "Tamo/FastInfoset/Encoding.h"
#include "Tamo/MemoryStream.h"

using namespace Tamo;
using namespace Tamo::FastInfoset;
using namespace Tamo::FastInfoset::Fuzz;

namespace {

std::string use(unsigned int function, BitStreamReader& reader, DocumentVocabulary& vocabulary,
                ExternalVocabularyLoader& loader) {
    std::string text;
    unsigned int number = 0;
    std::size_t length = 0;
    switch (function) {
    case 0:
        Decoder::integer(reader, number);
        return std::to_string(number);
    case 1:
        Decoder::nonEmptyStringLength(reader, length);
        return std::to_string(length);
    case 2:
        Decoder::nonEmptyOctetString(reader, text);
        return text;
    case 3:
        Decoder::lengthOfSequence(reader, number);
        return std::to_string(number);
    case 4: {
        const QualifiedNameEntry name = Decoder::nameSurrogate(reader);
        return std::to_string(name.prefixId()) + "," + std::to_string(name.namespaceId()) + "," +
               std::to_string(name.localNameId());
    }
    case 5:
        Decoder::encodedCharacterString(reader, text, vocabulary);
        return text;
    case 6:
        Decoder::documentPreHeader(reader, text);
        return text;
    case 7:
        Decoder::documentHeader(reader, vocabulary, nullptr, &loader);
        break;
    case 8:
        Decoder::skipAdditionalData(reader);
        break;
    case 9:
        Decoder::parseInitialVocabulary(reader, vocabulary, nullptr, &loader);
        break;
    case 10:
        Decoder::handleExternalVocabulary(reader, vocabulary, nullptr, &loader);
        break;
    case 11:
        Decoder::handleRestrictedAlphabet(reader, vocabulary);
        break;
    case 12:
        Decoder::skipEncodingAlgos(reader, vocabulary);
        break;
    case 13:
        Decoder::handleVocabulary(reader, vocabulary.vocabulary(DocumentVocabulary::LOCAL_NAME));
        break;
    case 14:
        Decoder::handleEncodedCharacterStringVoc(
            reader, vocabulary.vocabulary(DocumentVocabulary::ATTRIBUTE_VALUE), vocabulary);
        break;
    default:
        Decoder::handleNameSurrogatesVoc(reader, vocabulary.elementVocabulary());
    }
    return describedVocabulary(vocabulary);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 3) {
        return 0;
    }
    const unsigned int function = data[0] % 16;
    const int position = data[1] % 8;
    const std::string octets(reinterpret_cast<const char*>(data) + 2, size - 2);
    const auto impl = static_cast<DocumentVocabulary::VocabularyImpl>(data[1] / 8 % 3);
    const auto outcome = [&](BitStreamReader& reader) {
        DocumentVocabulary vocabulary(impl);
        Loader loader(octets);
        Outcome result;
        reader.setStrict((data[1] & 0x80) != 0);
        result.failure = Test::failureOf([&] {
            unsigned char dropped = 0;
            if (position > 0) {
                reader.read(dropped, position);
            }
            result.events = use(function, reader, vocabulary, loader);
            result.events += "@" + std::to_string(reader.position());
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
    require(memory.events == stream.events, "memory and stream deliver the same", Test::hex(memory.events),
            Test::hex(stream.events));
    return 0;
}
