#ifndef TAMO_FASTINFOSET_CONSTRUCTWRITER_H
#define TAMO_FASTINFOSET_CONSTRUCTWRITER_H

#include "Forms.h"
#include "PutArea.h"
#include "Tamo/Export.h"
#include "Tamo/FastInfoset/BitStreamWriter.h"
#include <cstddef>
#include <streambuf>

namespace Tamo::FastInfoset {

/// The bit writer of a whole document: it also says where the octets of a construct can be composed, one
/// after the other, before they are sent on together.
///
/// That is a std::streambuf, the sink or the stream's own with LEAST places or more, or null, which stands
/// for an area of the writer's own. Used by one thread at a time.
class ConstructWriter final : public BitStreamWriter {
public:
    /// The fewest octets that can be composed at once.
    static constexpr std::size_t LEAST = 512;

    /// Where octets are composed before take() sends them on.
    struct Area {
        char* pBegin;
        char* pEnd; ///< behind the last place
    };

    using BitStreamWriter::BitStreamWriter;

    /// Starts a construct, that is complete(false), and tells where its octets are composed.
    TAMO_ALWAYS_INLINE std::streambuf* startConstruct() {
        std::streambuf* const pBuf = buffer();
        if (!isPlain() || !emitPending(*pBuf) || synchronises(*pBuf)) [[unlikely]] {
            complete(false);
            return place();
        }
        return PutArea::left(*pBuf) >= LEAST ? pBuf : nullptr;
    }

    /// The same in the middle of a construct; pending bits are passed over.
    TAMO_ALWAYS_INLINE std::streambuf* place() noexcept {
        std::streambuf* const pBuf = buffer();
        return pBuf && isPlain() && PutArea::left(*pBuf) >= LEAST ? pBuf : nullptr;
    }

    /// The area in that place, until the next operation.
    TAMO_ALWAYS_INLINE Area area(std::streambuf* pBuf) noexcept {
        return pBuf ? Area{PutArea::next(*pBuf), PutArea::end(*pBuf)} : Area{_own, _own + LEAST};
    }

    /// Takes over the octets from the beginning of the area in that place to before pEnd.
    TAMO_ALWAYS_INLINE void take(std::streambuf* pBuf, const char* pEnd) {
        if (pBuf) [[likely]] {
            PutArea::advance(*pBuf, static_cast<std::size_t>(pEnd - PutArea::next(*pBuf)));
        } else if (pEnd != _own) {
            write(_own, static_cast<std::size_t>(pEnd - _own));
        }
    }

    /// Appends the terminator of a list, at bit position 0 or 4.
    TAMO_ALWAYS_INLINE void writeTerminator() {
        if (_pendingBits == 0) {
            _octet = static_cast<char>(Forms::TERMINATOR_FIRST);
            _pendingBits = 4;
            return;
        }
        std::streambuf* const pBuf = buffer();
        if (_pendingBits == 4 && isPlain() && PutArea::left(*pBuf) != 0) [[likely]] {
            putOctet(*pBuf, static_cast<char>(_octet | static_cast<char>(Forms::TERMINATOR)));
        } else {
            write(Forms::TERMINATOR, 4);
        }
    }

private:
    // The last bits with what makes an octet of them.
    TAMO_ALWAYS_INLINE void putOctet(std::streambuf& buf, char octet) noexcept {
        PutArea::put(buf, [octet](char* p) {
            *p = octet;
            return p + 1;
        });
        _octet = 0;
        _pendingBits = 0;
    }

    // The partial octet with zeros, if there is a place for it.
    TAMO_ALWAYS_INLINE bool emitPending(std::streambuf& buf) noexcept {
        if (_pendingBits != 0) {
            if (PutArea::left(buf) == 0) [[unlikely]] {
                return false;
            }
            putOctet(buf, _octet);
        }
        return true;
    }

    // Whether flushing the buffer is wanted and may do something.
    TAMO_ALWAYS_INLINE bool synchronises(std::streambuf& buf) const noexcept {
        return PutArea::syncOf(buf) != _pDefaultSync && _flushes;
    }

    PutArea::Sync _pDefaultSync = PutArea::defaultSync();
    char _own[LEAST];
};

} // namespace Tamo::FastInfoset

#endif
