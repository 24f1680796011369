#ifndef TAMO_FASTINFOSET_UTILITY_H
#define TAMO_FASTINFOSET_UTILITY_H

#include "Tamo/Export.h"
#include "Tamo/FastInfoset/BitMasks.h"
#include <iosfwd>

namespace Tamo::FastInfoset {

/// The two conversions with fixed options, and the constants of BitMasks.
///
/// Stateless; every operation is static and thread-safe.
class TAMO_API Utility : public BitMasks {
public:
    /// Converter::convertToFIS without white-space filtering.
    static void convertToFIS(std::istream& in, std::ostream& out, int maxIndexedStringLength);

    /// Converter::convertToXML with an XML declaration.
    static void convertToXML(std::istream& in, std::ostream& out);
};

} // namespace Tamo::FastInfoset

#endif
