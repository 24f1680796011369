#ifndef TAMO_FASTINFOSET_OCTETCOMPOSER_H
#define TAMO_FASTINFOSET_OCTETCOMPOSER_H

#include "ConstructWriter.h"
#include "Forms.h"
#include "Tamo/Export.h"
#include "Tamo/Hash.h"
#include "Tamo/HashKey.h"
#include <cstddef>
#include <cstring>
#include <string_view>

namespace Tamo::FastInfoset {

/// Composes the integers and strings of one construct (ITU-T X.891, C.22 to C.28) as whole octets and hands
/// them to a ConstructWriter, which must be on an octet boundary, together.
///
/// The octets are those that Encoder writes bit by bit. The argument high holds the bits of the first octet
/// that stand before the integer or length. What has been composed when an exception passes is still written.
/// A local variable whose address goes nowhere stays in registers: so all is inline, and what is rare goes
/// through apart().
class OctetComposer {
public:
    TAMO_ALWAYS_INLINE explicit OctetComposer(ConstructWriter& writer) noexcept
        : OctetComposer(writer, writer.place()) {}

    /// Composes in the place that the writer has just told.
    TAMO_ALWAYS_INLINE OctetComposer(ConstructWriter& writer, std::streambuf* pBuf) noexcept
        : _writer(writer) {
        begin(pBuf);
    }

    OctetComposer(const OctetComposer&) = delete;
    OctetComposer& operator=(const OctetComposer&) = delete;

    TAMO_ALWAYS_INLINE ~OctetComposer() {
        if (_pNext) [[unlikely]] {
            rescue(_writer, _pBuf, _pNext);
        }
    }

    /// Hands over what has been composed; to be called at the end, and before the writer is used directly.
    TAMO_ALWAYS_INLINE void flush() {
        if (const char* const pEnd = _pNext) {
            _pNext = nullptr;
            _pEnd = nullptr; // so that next() asks for another area
            _writer.take(_pBuf, pEnd);
        }
    }

    /// Hands over what has been composed, lets write(composer) write what follows, and goes on behind that.
    /// What write has captured by reference has to be in memory for that.
    template<class Write>
    TAMO_ALWAYS_INLINE void apart(const Write& write) {
        const char* const pEnd = _pNext;
        _pNext = nullptr;
        begin(writeApart(_writer, _pBuf, pEnd, write));
    }

    /// Whether a value can be written as an integer at a bit position by the operations below. Encoder writes
    /// the others, or throws.
    static bool fitsPosition1(std::size_t val) noexcept { return val <= Forms::IntegerAt1::IN_THREE; }
    static bool fitsPosition2(std::size_t val) noexcept { return val - 1 < Forms::IntegerAt2::IN_THREE; }
    static bool fitsPosition3(std::size_t val) noexcept { return val - 1 < Forms::IntegerAt3::IN_THREE; }

    /// An octet as it is.
    TAMO_ALWAYS_INLINE void octet(unsigned int value) { _pNext = put(next(), value); }

    /// An integer, 0 to 2^20, at bit position 1 (X.891, C.25).
    TAMO_ALWAYS_INLINE void integerAtPosition1(unsigned int high, std::size_t val) {
        if (val == 0) [[unlikely]] {
            octet(high | Forms::IntegerAt1::ZERO);
        } else {
            integer<Forms::IntegerAt1>(high, val);
        }
    }

    /// An integer, 1 to 526368, at bit position 2 (X.891, C.27).
    TAMO_ALWAYS_INLINE void integerAtPosition2(unsigned int high, std::size_t val) {
        integer<Forms::IntegerAt2>(high, val);
    }

    /// An integer, 1 to 263184, at bit position 3 (X.891, C.28).
    TAMO_ALWAYS_INLINE void integerAtPosition3(unsigned int high, std::size_t val) {
        integer<Forms::IntegerAt3>(high, val);
    }

    /// The same for an integer that stands alone at p, where it fits; returns what is behind it.
    static TAMO_ALWAYS_INLINE char* integerAtPosition2(char* p, unsigned int high, std::size_t val) noexcept {
        return putInteger<Forms::IntegerAt2>(p, high, val);
    }
    static TAMO_ALWAYS_INLINE char* integerAtPosition3(char* p, unsigned int high, std::size_t val) noexcept {
        return putInteger<Forms::IntegerAt3>(p, high, val);
    }

    /// A string, not empty, whose length stands at bit position 1 (X.891, C.22).
    TAMO_ALWAYS_INLINE void stringAtPosition1(unsigned int high, std::string_view text) {
        append(putLength<Forms::LengthAt1>(next(), high, text.size()), text);
    }

    /// A string, not empty, whose length stands at bit position 4 (X.891, C.23).
    TAMO_ALWAYS_INLINE void stringAtPosition4(unsigned int high, std::string_view text) {
        append(putLength<Forms::LengthAt4>(next(), high, text.size()), text);
    }

    /// A string, not empty, whose length stands at bit position 6 (X.891, C.24).
    TAMO_ALWAYS_INLINE void stringAtPosition6(unsigned int high, std::string_view text) {
        append(putLength<Forms::LengthAt6>(next(), high, text.size()), text);
    }

    /// The same for a string that is short, which HashKey::isExact() tells.
    TAMO_ALWAYS_INLINE void shortStringAtPosition4(unsigned int high, std::string_view text) {
        appendShort(putLength<Forms::LengthAt4>(next(), high, text.size()), text);
    }
    TAMO_ALWAYS_INLINE void shortStringAtPosition6(unsigned int high, std::string_view text) {
        appendShort(putLength<Forms::LengthAt6>(next(), high, text.size()), text);
    }

private:
    static constexpr std::size_t LONGEST_FORM = 8 + HashKey::MOST_EXACT;

    template<class Write>
    static TAMO_COLD std::streambuf* writeApart(ConstructWriter& writer, std::streambuf* pBuf,
                                                const char* pEnd, const Write& write) {
        writer.take(pBuf, pEnd);
        OctetComposer composer(writer);
        write(composer);
        composer.flush();
        return writer.place();
    }

    // Another exception passes already.
    static void rescue(ConstructWriter& writer, std::streambuf* pBuf, const char* pEnd) noexcept {
        try {
            writer.take(pBuf, pEnd);
        } catch (...) { // NOLINT(bugprone-empty-catch)
        }
    }

    TAMO_ALWAYS_INLINE void begin(std::streambuf* pBuf) noexcept {
        const ConstructWriter::Area area = _writer.area(pBuf);
        _pBuf = pBuf;
        _pNext = area.pBegin;
        _pEnd = area.pEnd;
    }

    template<class Form>
    TAMO_ALWAYS_INLINE void integer(unsigned int high, std::size_t val) {
        _pNext = putInteger<Form>(next(), high, val);
    }

    // An integer from 1 on in one octet, two or three.
    template<class Form>
    static TAMO_ALWAYS_INLINE char* putInteger(char* p, unsigned int high, std::size_t value) noexcept {
        auto val = static_cast<unsigned int>(value);
        if (val <= Form::IN_ONE) {
            p = put(p, high | (val - 1));
        } else if (val <= Form::IN_TWO) {
            val -= Form::IN_ONE + 1;
            p = put(p, high | Form::MARK_TWO | val >> 8);
            p = put(p, val);
        } else {
            val -= Form::IN_TWO + 1;
            p = put(p, high | Form::MARK_THREE | val >> 16);
            p = put(p, val >> 8);
            p = put(p, val);
        }
        return p;
    }

    // Where the longest form of what is no text fits.
    TAMO_ALWAYS_INLINE char* next() {
        if (_pEnd - _pNext < static_cast<std::ptrdiff_t>(LONGEST_FORM)) [[unlikely]] {
            flush();
            begin(_writer.place());
        }
        return _pNext;
    }

    static TAMO_ALWAYS_INLINE char* put(char* p, unsigned int octet) noexcept {
        *p = static_cast<char>(octet);
        return p + 1;
    }

    // A length from 1 to the form's MOST.
    template<class Form>
    static TAMO_ALWAYS_INLINE char* putLength(char* p, unsigned int high, std::size_t size) noexcept {
        if (size <= Form::IN_ONE) {
            return put(p, high | static_cast<unsigned int>(size - 1));
        }
        if (size <= Form::IN_TWO) {
            p = put(p, high | Form::MARK_TWO);
            return put(p, static_cast<unsigned int>(size - Form::IN_ONE - 1));
        }
        return putLong(put(p, high | Form::MARK_FIVE), size - Form::IN_TWO - 1);
    }

    static char* putLong(char* p, std::size_t value) noexcept {
        p = put(p, static_cast<unsigned int>(value >> 24));
        p = put(p, static_cast<unsigned int>(value >> 16));
        p = put(p, static_cast<unsigned int>(value >> 8));
        return put(p, static_cast<unsigned int>(value));
    }

    // It fits.
    TAMO_ALWAYS_INLINE void appendShort(char* p, std::string_view text) noexcept {
        copyShortText(p, text.data(), text.size());
        _pNext = p + text.size();
    }

    TAMO_ALWAYS_INLINE void append(char* p, std::string_view text) {
        _pNext = p;
        if (text.size() <= static_cast<std::size_t>(_pEnd - p)) [[likely]] {
            std::memcpy(p, text.data(), text.size());
            _pNext = p + text.size();
        } else {
            flush();
            _writer.write(text.data(), text.size());
            begin(_writer.place());
        }
    }

    ConstructWriter& _writer;
    std::streambuf* _pBuf; // where the area is
    char* _pNext;          // null when nothing is left to hand over
    char* _pEnd;
};

} // namespace Tamo::FastInfoset

#endif
