#ifndef EXAMPLES_X3DQUANTIZEDFLOATS_H
#define EXAMPLES_X3DQUANTIZEDFLOATS_H

#include "Tamo/FastInfoset/Decoder.h"
#include "Tamo/FastInfoset/Encoding.h"
#include "Tamo/FastInfoset/FISContentHandler.h"
#include "Tamo/FastInfoset/FISException.h"
#include "Tamo/NumberFormatter.h"
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <string>
#include <vector>
#include <zlib.h>

namespace example {

using namespace Tamo;
using namespace Tamo::FastInfoset;

// [encoding]
/// Numbers as binary X3D compresses them, for reading. The octets: the bits of an exponent and those of a
/// mantissa in an octet each, how many octets the rest has when inflated and how many values it holds in four
/// octets each, and a zlib stream. Inflated: the values from the highest bit on, each a sign, an exponent
/// with bias 2^(bits-1), and a mantissa; exponent and mantissa 0 stand for 0. The text: the values in their
/// shortest spelling, separated by single spaces.
class X3DQuantizedFloats : public Encoding {
public:
    static constexpr const char* URI = "encoder://web3d.org/QuantizedzlibFloatArrayEncoder";
    static constexpr unsigned int TYPE = 35; ///< its index in the vocabulary of X3D

    static AutoPtr<Encoding> decode(BitStreamReader& reader) {
        std::string octets;
        Decoder::nonEmptyOctetString(reader, octets);
        return AutoPtr<Encoding>(new X3DQuantizedFloats(octets));
    }

    unsigned int type() const override { return TYPE; }
    bool merge(const Encoding&) override { return false; }
    DecodeMethod decodeMethod() const override { return &decode; }

    // For reading only: nothing is written by this algorithm.
    static void encode(BitStreamWriter&, const std::string&) { throwReadOnly(); }
    static int check(const std::string&) { return 0; }
    void write(BitStreamWriter&) const override { throwReadOnly(); }
    CheckMethod checkMethod() const override { return &check; }
    EncodeMethod encodeMethod() const override { return &encode; }

    using Encoding::handle; // text for a plain handler
    void handle(FISContentHandler* handler) const override {
        for (std::size_t i = 0; handler && i < _values.size(); ++i) {
            handler->encodedData(_values[i]);
        }
    }
    void createContent() override {
        _content.clear();
        for (const float value : _values) {
            _content += _content.empty() ? "" : " ";
            NumberFormatter::append(_content, value);
        }
    }

private:
    static constexpr std::size_t HEADER = 10;               // octets in front of the zlib stream
    static constexpr UInt64 MOST_VALUES = 16 * 1024 * 1024; // zlib makes 1000 octets of one

    // The octets come from a document: whatever they are, the end is values or an exception.
    explicit X3DQuantizedFloats(const std::string& octets) {
        if (octets.size() <= HEADER) {
            throw FISEncodingException("Array of quantized floats ends in its header");
        }
        const auto exponentBits = static_cast<unsigned char>(octets[0]);
        const auto mantissaBits = static_cast<unsigned char>(octets[1]);
        const UInt64 size = number(octets, 2);
        const UInt64 count = number(octets, 6);
        const unsigned int width = 1u + exponentBits + mantissaBits;
        if (exponentBits < 1 || exponentBits > 8 || width > 32) {
            throw FISEncodingException("Quantized floats of " + std::to_string(exponentBits) +
                                       " bits of exponent and " + std::to_string(mantissaBits) +
                                       " of mantissa are not known");
        }
        if (count > MOST_VALUES || size != (count * width + 7) / 8) {
            throw FISEncodingException(std::to_string(count) + " quantized floats in " +
                                       std::to_string(size) + " octets");
        }
        const std::string inflated = inflate(octets.substr(HEADER), size);
        UInt64 bits = 0;
        unsigned int ready = 0; // bits that no value has taken yet
        for (std::size_t i = 0; _values.size() < count;) {
            for (; ready < width; ready += 8) {
                bits = (bits << 8) | static_cast<unsigned char>(inflated[i++]);
            }
            ready -= width;
            _values.push_back(value(bits >> ready, exponentBits, mantissaBits));
        }
    }

    static float value(UInt64 bits, int exponentBits, int mantissaBits) {
        const UInt64 mantissa = bits & ((UInt64{1} << mantissaBits) - 1);
        const UInt64 exponent = (bits >> mantissaBits) & ((UInt64{1} << exponentBits) - 1);
        if (mantissa == 0 && exponent == 0) {
            return 0;
        }
        const double magnitude = std::ldexp(1 + std::ldexp(static_cast<double>(mantissa), -mantissaBits),
                                            static_cast<int>(exponent) - (1 << (exponentBits - 1)));
        const bool isNegative = (bits >> (mantissaBits + exponentBits) & 1) != 0;
        return static_cast<float>(isNegative ? -magnitude : magnitude);
    }

    static UInt64 number(const std::string& octets, std::size_t first) {
        UInt64 value = 0;
        for (std::size_t i = first; i < first + 4; ++i) {
            value = value << 8 | static_cast<unsigned char>(octets[i]);
        }
        return value;
    }

    // Grows with what comes out, and ends when that is more than was announced.
    static std::string inflate(std::string compressed, UInt64 size) {
        z_stream stream{};
        if (inflateInit(&stream) != Z_OK) {
            throw FISEncodingException("zlib cannot be used");
        }
        stream.next_in = reinterpret_cast<Bytef*>(compressed.data());
        stream.avail_in = static_cast<uInt>(compressed.size());
        std::string inflated;
        int status = Z_OK;
        while (status == Z_OK && inflated.size() <= size) {
            Bytef piece[4096];
            stream.next_out = piece;
            stream.avail_out = sizeof(piece);
            status = ::inflate(&stream, Z_NO_FLUSH);
            inflated.append(reinterpret_cast<const char*>(piece), sizeof(piece) - stream.avail_out);
        }
        const bool isAll = stream.avail_in == 0;
        inflateEnd(&stream);
        if (status != Z_STREAM_END || !isAll || inflated.size() != size) {
            throw FISEncodingException("Quantized floats are not the zlib stream of " + std::to_string(size) +
                                       " octets");
        }
        return inflated;
    }

    [[noreturn]] static void throwReadOnly() {
        throw FISEncodingException(std::string("Nothing is written by ") + URI);
    }

    std::vector<float> _values;
};
// [/encoding]

} // namespace example

#endif
