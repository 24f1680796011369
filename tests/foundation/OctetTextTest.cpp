#include "Tamo/Base64.h"
#include "Tamo/Base64Decoder.h"
#include "Tamo/Base64Encoder.h"
#include "Tamo/HexBinary.h"
#include "Tamo/HexBinaryDecoder.h"
#include "Tamo/HexBinaryEncoder.h"
#include "Tamo/MemoryStream.h"
#include <gtest/gtest.h>
#include <sstream>

using namespace Tamo;

namespace {

std::string allOctets(std::size_t size) {
    std::string octets(size, '\0');
    for (std::size_t i = 0; i < size; ++i) {
        octets[i] = static_cast<char>(i * 7 + i / 256);
    }
    return octets;
}

// Reads octet by octet; true when the stream ends cleanly. The octets before a fault are in octets.
template<class Decoder>
bool readStream(std::string_view text, std::string& octets) {
    MemoryInputStream source(text.data(), text.size());
    Decoder decoder(source);
    for (int c = decoder.get(); c != std::char_traits<char>::eof(); c = decoder.get()) {
        octets.push_back(static_cast<char>(c));
    }
    EXPECT_NE(decoder.eof(), decoder.bad()) << text;
    EXPECT_EQ(decoder.get(), std::char_traits<char>::eof()) << "a fault does not go away";
    return decoder.eof() && !decoder.bad();
}

template<class Code, class Decoder>
void expectDecoded(std::string_view text, const std::string& octets) {
    SCOPED_TRACE(text.substr(0, 80));
    std::string block("before");
    std::string streamed;
    std::size_t size = 99;
    EXPECT_TRUE(Code::decode(text, block));
    EXPECT_EQ(block, "before" + octets);
    EXPECT_TRUE(Code::decodedSize(text, size));
    EXPECT_EQ(size, octets.size());
    EXPECT_TRUE(readStream<Decoder>(text, streamed));
    EXPECT_EQ(streamed, octets);
}

template<class Code, class Decoder>
void expectRefused(std::string_view text) {
    SCOPED_TRACE(text.substr(0, 80));
    std::string block("before");
    std::string streamed;
    std::size_t size = 99;
    EXPECT_FALSE(Code::decode(text, block));
    EXPECT_EQ(block, "before");
    EXPECT_FALSE(Code::decodedSize(text, size));
    EXPECT_EQ(size, 99U);
    EXPECT_FALSE(readStream<Decoder>(text, streamed));
}

template<class Encoder>
std::string writeStream(const std::string& octets, int lineLength, bool byOctet) {
    std::ostringstream target;
    Encoder encoder(target);
    encoder.rdbuf()->setLineLength(lineLength);
    if (byOctet) {
        for (const char octet : octets) {
            encoder.put(octet);
            encoder.flush();
        }
    } else {
        encoder.write(octets.data(), static_cast<std::streamsize>(octets.size()));
    }
    encoder.close();
    EXPECT_TRUE(encoder.good());
    return target.str();
}

template<class Code, class Encoder, class Decoder>
void checkRoundTrips(std::size_t charactersPerGroup, std::size_t groupSize) {
    // Around the sizes of a group and of the streams' buffers.
    for (const std::size_t size :
         {0U, 1U, 2U, 3U, 4U, 255U, 2047U, 2048U, 2049U, 3071U, 3072U, 3073U, 6145U, 100000U}) {
        const std::string octets = allOctets(size);
        const std::string text = writeStream<Encoder>(octets, 0, false);
        EXPECT_EQ(text.size(), (size + groupSize - 1) / groupSize * charactersPerGroup);
        EXPECT_EQ(writeStream<Encoder>(octets, 0, true), text);
        expectDecoded<Code, Decoder>(text, octets);

        std::istringstream lines(writeStream<Encoder>(octets, 76, size % 2 == 0));
        std::string joined;
        for (std::string line; std::getline(lines, line); joined += line) {
            EXPECT_TRUE(line.size() == 76 || (lines.eof() && !line.empty()));
        }
        EXPECT_EQ(joined, text);
    }
}

} // namespace

TEST(HexBinary, RoundTripsThroughBlocksAndStreams) {
    checkRoundTrips<HexBinary, HexBinaryEncoder, HexBinaryDecoder>(2, 1);
    std::string text;
    HexBinary::encode("\x0A\x1B\xFF", text);
    EXPECT_EQ(text, "0A1BFF");
    expectDecoded<HexBinary, HexBinaryDecoder>("0a1BfF", "\x0A\x1B\xFF");
    std::ostringstream target;
    {
        HexBinaryEncoder encoder(target);
        encoder << '\xAB';
        encoder.flush();
        encoder.rdbuf()->setUppercase(true);
        encoder << '\xCD';
    }
    EXPECT_EQ(target.str(), "abCD") << "the destructor closes";
}

TEST(HexBinary, RefusesEverythingElse) {
    for (const char* text : {"0", "0A1", "0G", "G0", "/0", ":0", "@0", "`0", "g0", "0A ", " 0A", "0A\n",
                             "0x0A", "0A\xB0\xB0", "--"}) {
        expectRefused<HexBinary, HexBinaryDecoder>(text);
    }
    expectRefused<HexBinary, HexBinaryDecoder>(std::string_view("0A\0\0", 4));
    expectRefused<HexBinary, HexBinaryDecoder>(std::string(4096, 'A') + "?A");
    std::string octets;
    EXPECT_FALSE(readStream<HexBinaryDecoder>("41424?4344", octets));
    EXPECT_EQ(octets, "AB") << "what comes before the fault is delivered";
}

TEST(Base64, RoundTripsThroughBlocksAndStreams) {
    checkRoundTrips<Base64, Base64Encoder, Base64Decoder>(4, 3);
    const char* const rows[][2] = {{"", ""},
                                   {"f", "Zg=="},
                                   {"fo", "Zm8="},
                                   {"foo", "Zm9v"},
                                   {"foob", "Zm9vYg=="},
                                   {"fooba", "Zm9vYmE="},
                                   {"foobar", "Zm9vYmFy"},
                                   {"\xFB\xEF\xBE\xFF\xFF\xFF", "++++////"}};
    for (const auto& row : rows) {
        std::string text;
        Base64::encode(row[0], text);
        EXPECT_EQ(text, row[1]);
        expectDecoded<Base64, Base64Decoder>(row[1], row[0]);
    }
    expectDecoded<Base64, Base64Decoder>(" Z\tg\r\n=\n= ", "f");
    expectDecoded<Base64, Base64Decoder>("Zm9v\nYmFy", "foobar");
    expectDecoded<Base64, Base64Decoder>(" \n", "");
}

TEST(Base64, RefusesEverythingElse) {
    for (const char* text : {"Z",
                             "Zg",
                             "Zm8",
                             "Zg=",
                             "Zm9vYg",
                             "Zm9vYg=",
                             "=",
                             "==",
                             "====",
                             "Z===",
                             "Zg===",
                             "Zm9v=",
                             "Zg=o",
                             "Zg==Zg==",
                             "Zg== =",
                             "Zg==x",
                             "Zm8=Zm8=",
                             "Zm9\xC3",
                             "Zm9-",
                             "Zm9_",
                             "Zm9.",
                             "Zm9v\v",
                             "Zm9v\f",
                             "Zm\xA0"
                             "9v"}) {
        expectRefused<Base64, Base64Decoder>(text);
    }
    expectRefused<Base64, Base64Decoder>(std::string_view("Zm9\0", 4));
    std::string octets;
    EXPECT_FALSE(readStream<Base64Decoder>("Zm9vYm!y", octets));
    EXPECT_EQ(octets, "foo");
}

TEST(OctetStreams, FailuresOfTheOtherStreamShow) {
    std::ostringstream target;
    target.setstate(std::ios::failbit);
    Base64Encoder encoder(target);
    encoder << "x";
    encoder.close();
    EXPECT_TRUE(encoder.bad());

    std::istringstream source("4142");
    source.setstate(std::ios::failbit);
    HexBinaryDecoder decoder(source);
    EXPECT_EQ(decoder.get(), std::char_traits<char>::eof());
    EXPECT_TRUE(decoder.bad() && !decoder.eof());
}
