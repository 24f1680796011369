#ifndef TAMO_FASTINFOSET_COMMONFORMS_H
#define TAMO_FASTINFOSET_COMMONFORMS_H

#include "Forms.h"
#include "Tamo/Export.h"
#include "Tamo/FastInfoset/BitStreamReader.h"
#include "Tamo/Types.h"
#include <cstddef>

namespace Tamo::FastInfoset {

/// The common forms of integers and lengths (ITU-T X.891, C.22 to C.27), read from the octets that a
/// BitStreamReader surely has.
///
/// A place in those octets: it goes forward by accept(), and the reader is told by leave(). While there are
/// not areEnough() none of the other operations may be used. A form that is not common makes an operation
/// return false (null); nothing is consumed then, and what has been yielded is meaningless. Every operation
/// reads within the octet that first() yields, whose higher bits its user has taken, and the octets behind
/// it. A local variable whose address goes nowhere stays in registers: so all is inline, and what is not
/// common is read from the reader in apart().
class CommonForms {
public:
    TAMO_ALWAYS_INLINE explicit CommonForms(const BitStreamReader& reader) noexcept { enter(reader); }

    CommonForms(const CommonForms&) = delete;
    CommonForms& operator=(const CommonForms&) = delete;

    /// Lets read() take from the reader what is not common, and goes on behind it; returns what it returns.
    template<class Read>
    TAMO_ALWAYS_INLINE auto apart(BitStreamReader& reader, const Read& read) {
        leave(reader);
        struct Entered {
            CommonForms& octets;
            BitStreamReader& reader;
            ~Entered() { octets.enter(reader); }
        };
        const Entered entered{*this, reader};
        return read();
    }

    /// Puts the reader behind what has been accepted; nothing else may be used then.
    TAMO_ALWAYS_INLINE void leave(BitStreamReader& reader) const noexcept {
        if (_p) [[likely]] {
            reader.advanceTo(_p);
        }
    }

    /// Whether there are as many octets as the integers and the length of one construct can take.
    TAMO_ALWAYS_INLINE bool areEnough() const noexcept { return _pEnd - _p >= ENOUGH; }

    /// Where the next form begins.
    TAMO_ALWAYS_INLINE const unsigned char* place() const noexcept { return _p; }

    /// The octet that the next form begins in.
    TAMO_ALWAYS_INLINE unsigned int first() const noexcept { return *_p; }

    /// Whether the octet that a list ends in is done with it: it ends something else too, or a child follows.
    /// Four other bits and an end behind them are no document.
    TAMO_ALWAYS_INLINE bool isEndWhole() const noexcept {
        return (*_p & 0x0F) == Forms::TERMINATOR || _p[1] < Forms::TERMINATOR_FIRST;
    }

    /// Whether the octet that a list ends in has nothing but ends and padding, as the strict mode wants it.
    TAMO_ALWAYS_INLINE bool isEndPlain() const noexcept {
        return *_p == Forms::TERMINATOR_FIRST || *_p == Forms::TERMINATOR_TWICE;
    }

    /// Consumes the form that has been read last.
    TAMO_ALWAYS_INLINE void accept() noexcept { _p += _size; }

    /// Consumes the first octet.
    TAMO_ALWAYS_INLINE void acceptOctet() noexcept { ++_p; }

    /// An integer at bit position 1 (X.891, C.25); not 0, nor one that may lie beyond 2^20.
    TAMO_ALWAYS_INLINE bool integerAtPosition1(unsigned int& val) noexcept {
        using Form = Forms::IntegerAt1;
        return isShort<Form>(val) || isInThree<Form>(val);
    }

    /// An integer at bit position 2 (X.891, C.27), up to 2080.
    TAMO_ALWAYS_INLINE bool integerAtPosition2(unsigned int& val) noexcept {
        return isShort<Forms::IntegerAt2>(val);
    }

    /// An integer at bit position 3 (X.891, C.28), up to 263184.
    TAMO_ALWAYS_INLINE bool integerAtPosition3(unsigned int& val) noexcept {
        using Form = Forms::IntegerAt3;
        return isShort<Form>(val) || isInThree<Form>(val);
    }

    /// A length at bit position 1 (X.891, C.22), up to 320.
    TAMO_ALWAYS_INLINE bool lengthAtPosition1(std::size_t& length) noexcept {
        return isShortLength<Forms::LengthAt1>(length);
    }

    /// A length at bit position 4 (X.891, C.23), up to 264.
    TAMO_ALWAYS_INLINE bool lengthAtPosition4(std::size_t& length) noexcept {
        return isShortLength<Forms::LengthAt4>(length);
    }

    /// A length at bit position 6 (X.891, C.24).
    TAMO_ALWAYS_INLINE bool lengthAtPosition6(std::size_t& length) noexcept {
        using Form = Forms::LengthAt6;
        if (!isShortLength<Form>(length)) {
            length = (static_cast<std::size_t>(_p[1]) << 24 | static_cast<std::size_t>(_p[2]) << 16 |
                      static_cast<std::size_t>(_p[3]) << 8 | _p[4]) +
                     Form::IN_TWO + 1;
            _size = 5;
        }
        return true;
    }

    /// Consumes a length that has just been read and the string behind it; null when that is not there whole.
    TAMO_ALWAYS_INLINE const char* string(std::size_t length) noexcept {
        const unsigned char* const pString = _p + _size;
        // An octet more than the string is wanted, so that the end of the source is met elsewhere.
        if (static_cast<std::size_t>(_pEnd - pString) <= length) {
            return nullptr;
        }
        _p = pString + length;
        return reinterpret_cast<const char*>(pString);
    }

private:
    // Begins where the reader stands; there are no octets when that is within one.
    TAMO_ALWAYS_INLINE void enter(const BitStreamReader& reader) noexcept {
        const std::size_t left = reader.cachedOctets(_p);
        if (left == 0 || reader.bitPos() != 0) [[unlikely]] {
            _p = nullptr;
        }
        _pEnd = _p ? _p + left : nullptr;
    }

    // An integer in one octet or two.
    template<class Form>
    TAMO_ALWAYS_INLINE bool isShort(unsigned int& val) noexcept {
        const unsigned int x = *_p & Form::BITS;
        if (x < Form::IN_ONE) {
            val = x + 1;
            _size = 1;
            return true;
        }
        val = ((x & Form::HIGH_TWO) << 8 | _p[1]) + Form::IN_ONE + 1;
        _size = 2;
        return x < Form::MARK_THREE;
    }

    // One in three, if it is not short.
    template<class Form>
    TAMO_ALWAYS_INLINE bool isInThree(unsigned int& val) noexcept {
        const unsigned int x = *_p & Form::BITS;
        val =
            ((x & Form::HIGH_THREE) << 16 | static_cast<unsigned int>(_p[1]) << 8 | _p[2]) + Form::IN_TWO + 1;
        _size = 3;
        return x < Form::END_THREE;
    }

    // A length in one octet or two.
    template<class Form>
    TAMO_ALWAYS_INLINE bool isShortLength(std::size_t& length) noexcept {
        const unsigned int x = *_p & Form::BITS;
        if (x < Form::IN_ONE) {
            length = x + 1;
            _size = 1;
            return true;
        }
        length = _p[1] + Form::IN_ONE + 1;
        _size = 2;
        return x == Form::MARK_TWO;
    }

    static constexpr std::ptrdiff_t ENOUGH = 6; // an index or a length in the longest form, twice

    const unsigned char* _p = nullptr;
    const unsigned char* _pEnd = nullptr;
    std::size_t _size = 0; // of the form read last
};

} // namespace Tamo::FastInfoset

#endif
