#ifndef TAMO_FASTINFOSET_PARSERLIMITS_H
#define TAMO_FASTINFOSET_PARSERLIMITS_H

#include "Tamo/Export.h"
#include "Tamo/Types.h"
#include <cstddef>

namespace Tamo::FastInfoset {

/// What a parser accepts of a document before it throws FISException "Limit exceeded: ..." with the limit's
/// value.
///
/// The memory that a parser takes is bounded by the document's size whatever the limits; they are for
/// programs that want less, and against documents that are small and cost much to process. The defaults are
/// beyond every document that is meant to be read. A plain value.
struct TAMO_API ParserLimits {
    /// How many elements may be open at a time. An element costs one octet of the document and 24 octets of
    /// memory here, and handlers keep books of their own.
    std::size_t maxDepth = 4194304;

    /// The octets of one string or array as the document carries it; by default what the format can express.
    /// Text beyond the range of int is refused in any case, because SAX2 counts characters so.
    std::size_t maxStringLength = 0xFFFFFFFFu + std::size_t{321};

    /// The entries of one vocabulary table, the placeholder and built-in entries included, whether the header
    /// brings them or the body; and the restricted alphabets beyond the built-in ones. The standard's indexes
    /// end at 2^20.
    std::size_t maxTableEntries = 1048577;

    /// The octets of all names, values and texts that one document hands to its handlers. A short index can
    /// stand for a long string any number of times.
    UInt64 maxDeliveredOctets = 68719476736;
};

} // namespace Tamo::FastInfoset

#endif
