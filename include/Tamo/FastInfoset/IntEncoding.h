#ifndef TAMO_FASTINFOSET_INTENCODING_H
#define TAMO_FASTINFOSET_INTENCODING_H

#include "Tamo/FastInfoset/NumberEncoding.h"

namespace Tamo::FastInfoset {

class TAMO_API IntEncoding;
extern template class TAMO_API NumberEncoding<IntEncoding, Int32>;

/// An array of signed 32-bit integers (ITU-T X.891, 10.5), two's complement: 4 octets each.
///
/// The texts of values are canonical decimal ones, from -2147483648 to 2147483647. Used by one thread at a
/// time.
class TAMO_API IntEncoding : public NumberEncoding<IntEncoding, Int32> {
public:
    /// The algorithm's index.
    static constexpr unsigned int TYPE = 4;

    using NumberEncoding::NumberEncoding;
};

} // namespace Tamo::FastInfoset

#endif
