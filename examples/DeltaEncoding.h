#ifndef EXAMPLES_DELTAENCODING_H
#define EXAMPLES_DELTAENCODING_H

#include "Tamo/FastInfoset/Decoder.h"
#include "Tamo/FastInfoset/Encoder.h"
#include "Tamo/FastInfoset/Encoding.h"
#include "Tamo/FastInfoset/EncodingAlgorithm.h"
#include "Tamo/FastInfoset/FISContentHandler.h"
#include "Tamo/FastInfoset/FISException.h"
#include "Tamo/FastInfoset/IntEncoding.h"
#include "Tamo/NumberFormatter.h"
#include <cstddef>
#include <string>
#include <vector>

namespace example {

using namespace Tamo;
using namespace Tamo::FastInfoset;

// [encoding]
/// 32-bit integers. The octets: the difference of each value from the one before it (the first from 0) modulo
/// 2^32, its sign folded into the lowest bit, seven bits an octet, lowest first, the high bit set in all but
/// the last octet. The text: the values in decimal, separated by single spaces.
class DeltaEncoding : public Encoding {
public:
    /// The index that the first algorithm gets which an application adds.
    static constexpr unsigned int TYPE = EncodingAlgorithm::USER_DEFINED;

    explicit DeltaEncoding(const std::vector<Int32>& values) : _values(values) {}

    // The three functions for the tables of algorithms.
    static void encode(BitStreamWriter& writer, const std::string& text) {
        std::vector<Int32> values;
        IntEncoding::parse(text, values);
        if (values.empty()) {
            throw FISEncodingException("Illegal value string for DeltaEncoding", text);
        }
        Encoder::nonEmptyOctetString(writer, toOctets(values));
    }
    static int check(const std::string& text) {
        std::vector<Int32> values;
        IntEncoding::parse(text, values);
        return static_cast<int>(toOctets(values).size());
    }
    static AutoPtr<Encoding> decode(BitStreamReader& reader) {
        std::string octets;
        Decoder::nonEmptyOctetString(reader, octets);
        return AutoPtr<Encoding>(new DeltaEncoding(fromOctets(octets)));
    }

    unsigned int type() const override { return TYPE; }
    bool merge(const Encoding& other) override {
        const auto* pOther = dynamic_cast<const DeltaEncoding*>(&other);
        if (!pOther) {
            return false;
        }
        const std::vector<Int32> more(pOther->_values); // a copy: other may be this object
        _values.insert(_values.end(), more.begin(), more.end());
        return true;
    }
    void write(BitStreamWriter& writer) const override {
        Encoder::nonEmptyOctetString(writer, toOctets(_values));
    }
    DecodeMethod decodeMethod() const override { return &decode; }
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
        for (const Int32 value : _values) {
            _content += (_content.empty() ? "" : " ") + NumberFormatter::format(value);
        }
    }

private:
    static std::string toOctets(const std::vector<Int32>& values) {
        std::string octets;
        UInt32 before = 0;
        for (const Int32 value : values) {
            const UInt32 delta = static_cast<UInt32>(value) - before; // unsigned, so that nothing overflows
            before = static_cast<UInt32>(value);
            UInt32 rest = (delta << 1) ^ ((delta >> 31) != 0 ? 0xFFFFFFFFu : 0u);
            for (; rest >= 0x80; rest >>= 7) {
                octets += static_cast<char>((rest & 0x7F) | 0x80);
            }
            octets += static_cast<char>(rest);
        }
        return octets;
    }
    // The octets come from a document: whatever they are, the end is values or an exception.
    static std::vector<Int32> fromOctets(const std::string& octets) {
        std::vector<Int32> values;
        UInt32 before = 0;
        UInt64 folded = 0;
        int shift = 0;
        for (const char octet : octets) {
            folded |= static_cast<UInt64>(octet & 0x7F) << shift;
            shift += 7;
            if ((octet & 0x80) != 0) {
                if (shift > 28) {
                    throw FISEncodingException("Difference of positions too long");
                }
                continue;
            }
            if (folded > 0xFFFFFFFFu) {
                throw FISEncodingException("Difference of positions too large");
            }
            const auto rest = static_cast<UInt32>(folded);
            before += (rest >> 1) ^ ((rest & 1) != 0 ? 0xFFFFFFFFu : 0u);
            values.push_back(static_cast<Int32>(before));
            folded = 0;
            shift = 0;
        }
        if (shift != 0) {
            throw FISEncodingException("Incomplete difference of positions");
        }
        return values;
    }

    std::vector<Int32> _values;
};
// [/encoding]

} // namespace example

#endif
