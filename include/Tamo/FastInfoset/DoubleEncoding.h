#ifndef TAMO_FASTINFOSET_DOUBLEENCODING_H
#define TAMO_FASTINFOSET_DOUBLEENCODING_H

#include "Tamo/FastInfoset/NumberEncoding.h"

namespace Tamo::FastInfoset {

class TAMO_API DoubleEncoding;
extern template class TAMO_API NumberEncoding<DoubleEncoding, double>;

/// An array of IEEE 754 double-precision numbers (ITU-T X.891, 10.9): 8 octets each.
///
/// The texts of values are their shortest spellings. Used by one thread at a time.
class TAMO_API DoubleEncoding : public NumberEncoding<DoubleEncoding, double> {
public:
    /// The algorithm's index.
    static constexpr unsigned int TYPE = 8;

    using NumberEncoding::NumberEncoding;
};

} // namespace Tamo::FastInfoset

#endif
