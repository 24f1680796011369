#include "Tamo/Base64.h"
#include "Tamo/Base64Decoder.h"
#include "Tamo/Base64Encoder.h"
#include "Tamo/HexBinary.h"
#include "Tamo/HexBinaryDecoder.h"
#include "Tamo/HexBinaryEncoder.h"
#include "Tamo/MemoryStream.h"
#include "Tamo/StringTokenizer.h"
#include <gtest/gtest.h>
#include <sstream>

using namespace Tamo;

namespace {

template<class BlockCode, class EncoderStream, class DecoderStream, std::size_t GROUP_OCTETS>
struct Code {
    using Block = BlockCode;
    using Encoder = EncoderStream;
    using Decoder = DecoderStream;
    static constexpr std::size_t GROUP = GROUP_OCTETS; // becomes one character more
};

using Hex = Code<HexBinary, HexBinaryEncoder, HexBinaryDecoder, 1>;
using Base = Code<Base64, Base64Encoder, Base64Decoder, 3>;

// Reads octet by octet; true when the stream ends cleanly. The octets before a fault are in octets.
template<class C>
bool readStream(std::string_view text, std::string& octets) {
    MemoryInputStream source(text.data(), text.size());
    typename C::Decoder decoder(source);
    for (int c = decoder.get(); c != EOF; c = decoder.get()) {
        octets.push_back(static_cast<char>(c));
    }
    EXPECT_NE(decoder.eof(), decoder.bad()) << text;
    return decoder.eof() && !decoder.bad();
}

// Decodes in a block, by size and in a stream; octets is null for a text that is to be refused.
template<class C>
void check(std::string_view text, const std::string* octets) {
    std::string block("before"), streamed;
    std::size_t size = 0;
    EXPECT_EQ(C::Block::decode(text, block), octets != nullptr) << text;
    EXPECT_EQ(block, "before" + (octets ? *octets : ""));
    EXPECT_EQ(C::Block::decodedSize(text, size), octets != nullptr) << text;
    EXPECT_EQ(readStream<C>(text, streamed), octets != nullptr) << text;
    EXPECT_TRUE(!octets || (streamed == *octets && size == octets->size())) << text;
}

template<class C>
std::string writeStream(const std::string& octets, int lineLength, std::size_t pieceSize) {
    std::ostringstream target;
    typename C::Encoder encoder(target);
    encoder.rdbuf()->setLineLength(lineLength);
    for (std::size_t i = 0; i < octets.size(); i += pieceSize) {
        encoder << octets.substr(i, pieceSize) << std::flush;
    }
    encoder.close();
    EXPECT_TRUE(encoder.good());
    return target.str();
}

template<class C>
void checkRoundTrips() {
    // Around the sizes of a group and of the streams' buffers.
    for (const std::size_t size : {0U, 1U, 2U, 3U, 4U, 2047U, 2048U, 2049U, 3071U, 3072U, 3073U, 50000U}) {
        std::string octets(size, '\0'), joined;
        for (std::size_t i = 0; i < size; ++i) {
            octets[i] = static_cast<char>(i * 7 + i / 256);
        }
        const std::string text = writeStream<C>(octets, 0, 100000);
        EXPECT_EQ(text.size(), (size + C::GROUP - 1) / C::GROUP * (C::GROUP + 1));
        EXPECT_EQ(writeStream<C>(octets, 0, 1), text);
        check<C>(text, &octets);
        std::istringstream lines(writeStream<C>(octets, 76, 5000));
        for (std::string line; std::getline(lines, line); joined += line) {
            EXPECT_TRUE(line.size() == 76 || (lines.eof() && !line.empty()));
        }
        EXPECT_EQ(joined, text);
    }
}

} // namespace

TEST(HexBinary, RoundTripsThroughBlocksAndStreams) {
    checkRoundTrips<Hex>();
    std::string text;
    const std::string octets("\x0A\x1B\xFF");
    HexBinary::encode(octets, text);
    EXPECT_EQ(text, "0A1BFF");
    check<Hex>("0a1BfF", &octets);
    std::ostringstream target;
    {
        HexBinaryEncoder encoder(target);
        encoder << '\xAB' << std::flush;
        encoder.rdbuf()->setUppercase(true);
        encoder << '\xCD';
    }
    EXPECT_EQ(target.str(), "abCD") << "the destructor closes";
}

TEST(HexBinary, RefusesEverythingElse) {
    for (const std::string& text :
         StringTokenizer("0|0A1|0G|G0|/0|:0|@0|`0|g0|0A | 0A|0A\n|0x0A|0A\xB0\xB0|--", "|")) {
        check<Hex>(text, nullptr);
    }
    check<Hex>(std::string_view("0A\0\0", 4), nullptr);
    check<Hex>(std::string(4096, 'A') + "?A", nullptr);
    std::string octets;
    EXPECT_FALSE(readStream<Hex>("41424?4344", octets));
    EXPECT_EQ(octets, "AB") << "what comes before the fault is delivered";
}

TEST(Base64, RoundTripsThroughBlocksAndStreams) {
    checkRoundTrips<Base>();
    std::string text;
    for (const char* octets : {"f", "fo", "foo", "\xFB\xEF\xBE\xFF\xFF\xFF", ""}) {
        Base64::encode(octets, text);
    }
    EXPECT_EQ(text, "Zg==Zm8=Zm9v++++////");
    const std::string octets("foob");
    check<Base>(" Zm\t9v\r\nYg=\n= ", &octets);
}

TEST(Base64, RefusesEverythingElse) {
    for (const std::string& text : StringTokenizer("Z|Zg|Zm8|Zg=|Zm9vYg|Zm9vYg=|=|==|====|Z===|Zg===|Zm9v=|"
                                                   "Zg=o|Zg==Zg==|Zg==Zm9v|Zg== =|Zg==x|Zm8=Zm8=|"
                                                   "Zm9\xC3|Zm9-|Zm9_|Zm9.|Zm9v\v|Zm9v\f|Zm9v!",
                                                   "|")) {
        check<Base>(text, nullptr);
    }
    check<Base>(std::string_view("Zm9\0", 4), nullptr);
    std::string octets;
    EXPECT_FALSE(readStream<Base>("Zm9vYm!y", octets));
    EXPECT_EQ(octets, "foo");
}

TEST(OctetStreams, FailuresOfTheOtherStreamShow) {
    std::stringstream other("4142");
    other.setstate(std::ios::failbit);
    Base64Encoder encoder(other);
    encoder << "x";
    encoder.close();
    EXPECT_TRUE(encoder.bad());
    HexBinaryDecoder decoder(other);
    EXPECT_EQ(decoder.get(), EOF);
    EXPECT_TRUE(decoder.bad() && !decoder.eof());
}
