#ifndef TAMO_FASTINFOSET_INVALIDDECODING_H
#define TAMO_FASTINFOSET_INVALIDDECODING_H

#include "Tamo/Export.h"
#include "Tamo/FastInfoset/Encoding.h"

namespace Tamo::FastInfoset {

/// Stands at the positions of the parser's algorithm table that are not in use.
class TAMO_API InvalidDecoding {
public:
    /// Throws FISException "Invalid decoding defined".
    static AutoPtr<Encoding> decode(BitStreamReader& reader);
};

} // namespace Tamo::FastInfoset

#endif
