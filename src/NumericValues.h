#ifndef TAMO_FASTINFOSET_NUMERICVALUES_H
#define TAMO_FASTINFOSET_NUMERICVALUES_H

#include "Tamo/ByteOrder.h"
#include "Tamo/FastInfoset/BitStreamReader.h"
#include "Tamo/FastInfoset/BitStreamWriter.h"
#include "Tamo/FastInfoset/Encoder.h"
#include "Tamo/FastInfoset/FISException.h"
#include "Tamo/FastInfoset/PrimitiveDecoder.h"
#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

namespace Tamo::FastInfoset {

/// What the encodings of value arrays share: splitting and joining their text forms, and block transfer of
/// values of a fixed width, most significant octet first.
class NumericValues {
public:
    /// Calls accept(piece) for the pieces of text between single spaces, empty ones included; when one is
    /// refused values is emptied, for a text is valid as a whole or not at all.
    template<class Values, class Accept>
    static void split(std::string_view text, Values& values, Accept accept) {
        values.clear();
        std::size_t start = 0;
        for (;;) {
            const std::size_t end = std::min(text.find(' ', start), text.size());
            if (!accept(text.substr(start, end - start))) {
                values.clear();
                return;
            }
            if (end == text.size()) {
                return;
            }
            start = end + 1;
        }
    }

    /// Appends the texts of all values to text, single spaces between them; append(text, value) spells one.
    template<class Values, class Append>
    static void join(const Values& values, std::string& text, Append append) {
        bool first = true;
        for (const auto& value : values) {
            if (!first) {
                text.push_back(' ');
            }
            first = false;
            append(text, value);
        }
    }

    /// Appends the values of other, which may be values itself.
    template<class Values>
    static void merge(Values& values, const Values& other) {
        const std::size_t count = other.size();
        for (std::size_t i = 0; i < count; ++i) {
            values.push_back(typename Values::value_type(other[i]));
        }
    }

    /// Writes the length in octets and the values.
    template<class T>
    static void write(BitStreamWriter& writer, const std::vector<T>& values) {
        Encoder::nonEmptyStringLength(writer, values.size() * sizeof(T));
        char octets[BLOCK * sizeof(T)];
        for (std::size_t done = 0; done < values.size();) {
            const std::size_t count = std::min(values.size() - done, BLOCK);
            ByteOrder::toBigEndianOctets(values.data() + done, count, octets);
            writer.write(octets, count * sizeof(T));
            done += count;
        }
    }

    /// Reads a length, which must be a multiple of the width, and appends that many values. Room is made only
    /// for values whose octets are there; valueName says in the message what they are.
    template<class T>
    static void read(BitStreamReader& reader, std::vector<T>& values, const char* valueName) {
        std::size_t length = 0;
        PrimitiveDecoder::nonEmptyStringLength(reader, length);
        if (length % sizeof(T) != 0) {
            throw FISEncodingException(std::string("Illegal size entry for ") + valueName + " value");
        }
        std::size_t remaining = length / sizeof(T);
        std::string straddling;
        while (remaining > 0) {
            const unsigned char* pOctets = nullptr;
            std::size_t count = std::min(reader.cachedOctets(pOctets) / sizeof(T), remaining);
            if (count == 0) {
                // A value across two buffers, or the end of the input, which the reader reports.
                reader.read(straddling, sizeof(T));
                append(straddling.data(), 1, values);
                count = 1;
            } else {
                append(pOctets, count, values);
                reader.advance(static_cast<UInt64>(count) * sizeof(T) * 8);
            }
            remaining -= count;
        }
    }

private:
    static constexpr std::size_t BLOCK = 1024;

    // Block by block, each in the nearest memory: filling the room with zeros first would go through all of
    // it twice.
    template<class T>
    static void append(const void* octets, std::size_t count, std::vector<T>& values) {
        if (values.capacity() - values.size() < count) {
            values.reserve(std::max(values.size() + count, 2 * values.size()));
        }
        T block[BLOCK];
        for (std::size_t done = 0; done < count;) {
            const std::size_t n = std::min(count - done, BLOCK);
            ByteOrder::fromBigEndianOctets(static_cast<const char*>(octets) + done * sizeof(T), n, block);
            values.insert(values.end(), block, block + n);
            done += n;
        }
    }
};

} // namespace Tamo::FastInfoset

#endif
