#ifndef TAMO_FASTINFOSET_BITMASKS_H
#define TAMO_FASTINFOSET_BITMASKS_H

#include "Tamo/Export.h"

namespace Tamo::FastInfoset {

/// Bit widths and bit masks of the bit streams. Constants, which any thread may use.
class TAMO_API BitMasks {
public:
    static constexpr int SIZEOFCHARINBIT = 8;
    static constexpr int SIZEOFINT16INBIT = 16;
    static constexpr int SIZEOFINT32INBIT = 32;
    static constexpr int SIZEOFINT64INBIT = 64;

    /// Entry k is 2^k.
    static constexpr unsigned char pow2[8] = {1, 2, 4, 8, 16, 32, 64, 128};
    /// Entry k is 2^(7-k): the mask of bit position k, position 0 being the most significant bit.
    static constexpr unsigned char revertedPow2[8] = {128, 64, 32, 16, 8, 4, 2, 1};
    /// Entry k has the k high bits set.
    static constexpr unsigned char highBitMask[9] = {0x00, 0x80, 0xC0, 0xE0, 0xF0, 0xF8, 0xFC, 0xFE, 0xFF};
    /// Entry k has the k low bits set.
    static constexpr unsigned char lowBitMask[9] = {0x00, 0x01, 0x03, 0x07, 0x0F, 0x1F, 0x3F, 0x7F, 0xFF};
};

} // namespace Tamo::FastInfoset

#endif
