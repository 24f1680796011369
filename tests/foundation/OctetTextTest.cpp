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

struct Hex {
    using Block = HexBinary;
    using Encoder = HexBinaryEncoder;
    using Decoder = HexBinaryDecoder;
    static constexpr std::size_t OCTETS = 1, CHARACTERS = 2; // of a group
};

struct Base {
    using Block = Base64;
    using Encoder = Base64Encoder;
    using Decoder = Base64Decoder;
    static constexpr std::size_t OCTETS = 3, CHARACTERS = 4;
};

// Reads octet by octet; true when the stream ends cleanly. The octets before a fault are in octets.
template<class Code>
bool readStream(std::string_view text, std::string& octets) {
    MemoryInputStream source(text.data(), text.size());
    typename Code::Decoder decoder(source);
    for (int c = decoder.get(); c != EOF; c = decoder.get()) {
        octets.push_back(static_cast<char>(c));
    }
    EXPECT_NE(decoder.eof(), decoder.bad()) << text;
    return decoder.eof() && !decoder.bad();
}

template<class Code>
void expectDecoded(std::string_view text, const std::string& octets) {
    std::string block("before"), streamed;
    std::size_t size = 99;
    EXPECT_TRUE(Code::Block::decode(text, block)) << text;
    EXPECT_EQ(block, "before" + octets);
    EXPECT_TRUE(Code::Block::decodedSize(text, size) && size == octets.size()) << text;
    EXPECT_TRUE(readStream<Code>(text, streamed)) << text;
    EXPECT_EQ(streamed, octets);
}

template<class Code>
void expectRefused(std::string_view text) {
    std::string block("before"), streamed;
    std::size_t size = 99;
    EXPECT_FALSE(Code::Block::decode(text, block) || block != "before") << text;
    EXPECT_FALSE(Code::Block::decodedSize(text, size) || readStream<Code>(text, streamed)) << text;
}

template<class Code>
std::string writeStream(const std::string& octets, int lineLength, std::size_t pieceSize) {
    std::ostringstream target;
    typename Code::Encoder encoder(target);
    encoder.rdbuf()->setLineLength(lineLength);
    for (std::size_t i = 0; i < octets.size(); i += pieceSize) {
        encoder << octets.substr(i, pieceSize) << std::flush;
    }
    encoder.close();
    EXPECT_TRUE(encoder.good());
    return target.str();
}

template<class Code>
void checkRoundTrips() {
    // Around the sizes of a group and of the streams' buffers.
    for (const std::size_t size : {0U, 1U, 2U, 3U, 4U, 2047U, 2048U, 2049U, 3071U, 3072U, 3073U, 50000U}) {
        std::string octets(size, '\0'), joined;
        for (std::size_t i = 0; i < size; ++i) {
            octets[i] = static_cast<char>(i * 7 + i / 256);
        }
        const std::string text = writeStream<Code>(octets, 0, 100000);
        EXPECT_EQ(text.size(), (size + Code::OCTETS - 1) / Code::OCTETS * Code::CHARACTERS);
        EXPECT_EQ(writeStream<Code>(octets, 0, 1), text);
        expectDecoded<Code>(text, octets);
        std::istringstream lines(writeStream<Code>(octets, 76, 5000));
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
    HexBinary::encode("\x0A\x1B\xFF", text);
    EXPECT_EQ(text, "0A1BFF");
    expectDecoded<Hex>("0a1BfF", "\x0A\x1B\xFF");
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
        expectRefused<Hex>(text);
    }
    expectRefused<Hex>(std::string_view("0A\0\0", 4));
    expectRefused<Hex>(std::string(4096, 'A') + "?A");
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
    expectDecoded<Base>(" Z\tg\r\n=\n= ", "f");
    expectDecoded<Base>("Zm9v\nYmFy", "foobar");
    expectDecoded<Base>(" \n", "");
}

TEST(Base64, RefusesEverythingElse) {
    for (const std::string& text : StringTokenizer(
             "Z|Zg|Zm8|Zg=|Zm9vYg|Zm9vYg=|=|==|====|Z===|Zg===|Zm9v=|Zg=o|Zg==Zg==|Zg== =|Zg==x|Zm8=Zm8=|"
             "Zm9\xC3|Zm9-|Zm9_|Zm9.|Zm9v\v|Zm9v\f|Zm\xA0!9v",
             "|")) {
        expectRefused<Base>(text);
    }
    expectRefused<Base>(std::string_view("Zm9\0", 4));
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
