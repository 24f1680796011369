#ifndef TAMO_FASTINFOSET_FLOATENCODING_H
#define TAMO_FASTINFOSET_FLOATENCODING_H

#include "Tamo/FastInfoset/NumberEncoding.h"

namespace Tamo::FastInfoset {

class TAMO_API FloatEncoding;
extern template class TAMO_API NumberEncoding<FloatEncoding, float>;

/// An array of IEEE 754 single-precision numbers (ITU-T X.891, 10.8): 4 octets each.
///
/// The texts of values are their shortest spellings as double.
/// Deliberate: as text only positive normal numbers are accepted (zero, negative and subnormal numbers are
/// refused), from 1.1754943508222875e-38 to 3.4028234663852886e+38, while values given as numbers or read
/// from a document may be any. Used by one thread at a time.
class TAMO_API FloatEncoding : public NumberEncoding<FloatEncoding, float> {
public:
    /// The algorithm's index.
    static constexpr unsigned int TYPE = 7;

    using NumberEncoding::NumberEncoding;
};

} // namespace Tamo::FastInfoset

#endif
