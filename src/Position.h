#ifndef TAMO_FASTINFOSET_POSITION_H
#define TAMO_FASTINFOSET_POSITION_H

#include "Tamo/FastInfoset/FISException.h"

namespace Tamo::FastInfoset {

/// Throws FISEncodingException with the message unless a construct stands where it has to, which is at a
/// certain bit of an octet.
inline void requirePosition(bool holds, const char* message) {
    if (!holds) [[unlikely]] {
        throw FISEncodingException(message);
    }
}

} // namespace Tamo::FastInfoset

#endif
