// StringDecoder: UTF-16 and restricted alphabets. The first octet chooses: 0 UTF-16, 1 and 2 the built-in
// alphabets, others an alphabet of as many octets as the second octet says.
#include "Failure.h"
#include "FuzzSupport.h"
#include "Octets.h"
#include "Tamo/FastInfoset/DocumentRestrictedAlphabet.h"
#include "Tamo/FastInfoset/StringDecoder.h"
#include "Tamo/TextConverter.h"
#include "Tamo/UTF16Encoding.h"
#include "Tamo/UTF8Encoding.h"

using namespace Tamo;
using namespace Tamo::FastInfoset;
using namespace Tamo::FastInfoset::Fuzz;

namespace {

void decodeUTF16(const std::string& octets) {
    std::string text("before");
    StringDecoder::decodeUTF16(octets, text);
    require(UTF8Encoding::isValid(text), "UTF-16 becomes UTF-8", Test::hex(octets), Test::hex(text));
    std::string back;
    const UTF8Encoding utf8;
    const UTF16Encoding utf16(UTF16Encoding::BIG_ENDIAN_ORDER);
    TextConverter(utf8, utf16, '?').convert(text, back);
    std::string again;
    StringDecoder::decodeUTF16(back, again);
    require(again == text, "text survives UTF-16", Test::hex(text), Test::hex(again));
    // Octets that differ from those of the text were no UTF-16, and a '?' stands for them.
    require(back == octets || text.find('?') != std::string::npos, "no damage goes unmarked",
            Test::hex(octets), Test::hex(text));
}

void decodeAlphabet(RestrictedAlphabet& alphabet, const std::string& octets) {
    std::string text("before");
    StringDecoder::decodeAlphabet(octets, alphabet, text);
    require(UTF8Encoding::isValid(text), "an alphabet gives UTF-8", Test::hex(octets), Test::hex(text));
    const std::size_t codes = 8 * octets.size() / alphabet.bitSize();
    require(text.size() <= 4 * codes, "no more characters than codes", Test::hex(octets), Test::hex(text));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 2) {
        return 0;
    }
    std::string octets(reinterpret_cast<const char*>(data) + 2, size - 2);
    const unsigned int choice = data[0] % 4;
    if (choice == 0) {
        decodeUTF16(octets);
    } else if (choice < 3) {
        DocumentRestrictedAlphabet alphabets;
        decodeAlphabet(alphabets.alphabet(choice), octets);
    } else {
        Test::failureOf([&] {
            const std::size_t length = std::min<std::size_t>(data[1], octets.size());
            DocumentRestrictedAlphabet alphabets;
            alphabets.add(octets.substr(0, length)); // refuses none
            decodeAlphabet(alphabets.alphabet(16), octets.substr(length));
        });
    }
    return 0;
}
