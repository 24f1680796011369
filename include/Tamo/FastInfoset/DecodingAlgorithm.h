#ifndef TAMO_FASTINFOSET_DECODINGALGORITHM_H
#define TAMO_FASTINFOSET_DECODINGALGORITHM_H

#include "Tamo/Export.h"
#include "Tamo/FastInfoset/Encoding.h"
#include <vector>

namespace Tamo::FastInfoset {

/// The parser's table of encoding algorithms, numbered as EncodingAlgorithm numbers them. A plain value.
class TAMO_API DecodingAlgorithm {
public:
    /// The built-in algorithms.
    DecodingAlgorithm();

    /// Appends an algorithm; the first one gets the index EncodingAlgorithm::USER_DEFINED.
    void add(Encoding::DecodeMethod decodeMethod);

    /// Reads a value of algorithm index as a new object; an index that is not in use throws FISException
    /// "Invalid decoding defined".
    AutoPtr<Encoding> read(int index, BitStreamReader& reader) const;

private:
    std::vector<Encoding::DecodeMethod> _decodings; // the application's
};

} // namespace Tamo::FastInfoset

#endif
