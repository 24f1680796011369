#ifndef TAMO_FASTINFOSET_LONGENCODING_H
#define TAMO_FASTINFOSET_LONGENCODING_H

#include "Tamo/FastInfoset/NumberEncoding.h"

namespace Tamo::FastInfoset {

class TAMO_API LongEncoding;
extern template class TAMO_API NumberEncoding<LongEncoding, Int64>;

/// An array of signed 64-bit integers (ITU-T X.891, 10.6), two's complement: 8 octets each.
///
/// The texts of values are canonical decimal ones, of 64 bits. Used by one thread at a time.
class TAMO_API LongEncoding : public NumberEncoding<LongEncoding, Int64> {
public:
    /// The algorithm's index.
    static constexpr unsigned int TYPE = 5;

    using NumberEncoding::NumberEncoding;
};

} // namespace Tamo::FastInfoset

#endif
