#ifndef TAMO_FASTINFOSET_TYPEDCHUNK_H
#define TAMO_FASTINFOSET_TYPEDCHUNK_H

#include "Tamo/AutoPtr.h"
#include "Tamo/Export.h"
#include "Tamo/FastInfoset/Encoding.h"
#include "Tamo/Types.h"
#include "Tamo/UUID.h"
#include <cstddef>
#include <span>
#include <string>
#include <vector>

namespace Tamo::FastInfoset {

/// A character chunk that a document carries by an encoding algorithm (ITU-T X.891, 7.17.7): the algorithm,
/// and all of its values at once. Views, valid as long as the value is, which encoding() shares.
class TAMO_API TypedChunk {
public:
    /// Of a value, the algorithm's index in the document and its URI, empty for a built-in one; borrowed.
    TypedChunk(const AutoPtr<Encoding>& pEncoding, unsigned int algorithm, const std::string& uri) noexcept
        : _pEncoding(pEncoding), _algorithm(algorithm), _uri(uri) {}

    /// The algorithm's index in the document, 1 to 256.
    unsigned int algorithm() const noexcept { return _algorithm; }

    /// The URI that the document declares for it; empty for a built-in one.
    const std::string& uri() const noexcept { return _uri; }

    /// The value itself.
    const AutoPtr<Encoding>& encoding() const noexcept { return _pEncoding; }

    /// The values, in order; empty unless the value is of the class of that built-in algorithm. Octets are
    /// those of hexadecimal and base64 data.
    std::span<const std::byte> octets() const noexcept;
    std::span<const Int16> int16Values() const noexcept;
    std::span<const Int32> int32Values() const noexcept;
    std::span<const Int64> int64Values() const noexcept;
    std::span<const float> floatValues() const noexcept;
    std::span<const double> doubleValues() const noexcept;
    std::span<const UUID> uuidValues() const noexcept;
    const std::vector<bool>& boolValues() const noexcept;

private:
    const AutoPtr<Encoding>& _pEncoding;
    unsigned int _algorithm;
    const std::string& _uri;
};

} // namespace Tamo::FastInfoset

#endif
