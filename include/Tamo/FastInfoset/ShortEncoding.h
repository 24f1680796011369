#ifndef TAMO_FASTINFOSET_SHORTENCODING_H
#define TAMO_FASTINFOSET_SHORTENCODING_H

#include "Tamo/FastInfoset/NumberEncoding.h"

namespace Tamo::FastInfoset {

class TAMO_API ShortEncoding;
extern template class TAMO_API NumberEncoding<ShortEncoding, Int16>;

/// An array of signed 16-bit integers (ITU-T X.891, 10.4), two's complement: 2 octets each.
///
/// The texts of values are canonical decimal ones, from -32768 to 32767. Used by one thread at a time.
class TAMO_API ShortEncoding : public NumberEncoding<ShortEncoding, Int16> {
public:
    /// The algorithm's index.
    static constexpr unsigned int TYPE = 3;

    using NumberEncoding::NumberEncoding;
};

} // namespace Tamo::FastInfoset

#endif
