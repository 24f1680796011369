#ifndef TAMO_FASTINFOSET_PARSERLIMITS_H
#define TAMO_FASTINFOSET_PARSERLIMITS_H

#include "Tamo/Export.h"
#include "Tamo/Types.h"
#include "Tamo/XML/DeliveryLimits.h"

namespace Tamo::FastInfoset {

/// What a parser accepts of a document before it throws FISException "Limit exceeded: ..." with the limit's
/// value.
///
/// The memory that a parser takes is bounded by the document's size whatever the limits; they are for
/// programs that want less, and against documents that are small and cost much to process. The defaults are
/// beyond every document that is meant to be read. Typed values that a typed handler takes are no delivered
/// octets: they are as large as the document carries them. Nor is the text that it, or the program with a
/// cursor, has made of them: of booleans up to 48 octets for each octet, of others less. A plain value.
struct TAMO_API ParserLimits {
    /// How many elements may be open at a time. An element costs one octet of the document and 4 octets of
    /// memory here, 8 while the list of them grows, and handlers keep books of their own.
    UInt64 maxDepth = 4194304;

    /// The octets of one string or array as the document carries it; by default what the format can express.
    /// A comment beyond the range of int is refused in any case, because SAX2 reports it in one call.
    UInt64 maxStringLength = 0xFFFFFFFFu + UInt64{321};

    /// The entries of one vocabulary table, the placeholder and built-in entries included, whether the header
    /// brings them or the body; and the restricted alphabets beyond the built-in ones. No limit by default:
    /// an index names 2^20 entries, and strings beyond them are not kept unless they are parts of names.
    UInt64 maxTableEntries = 0xFFFFFFFFFFFFFFFF;

    /// As in XML::DeliveryLimits: all that one document hands to its handlers. A short index can stand for a
    /// long string any number of times.
    UInt64 maxDeliveredOctets = XML::DeliveryLimits().maxDeliveredOctets;
    UInt64 maxAmplification = XML::DeliveryLimits().maxAmplification;
    UInt64 amplificationThreshold = XML::DeliveryLimits().amplificationThreshold;

    /// The last three, as the XML layer takes them.
    XML::DeliveryLimits delivery() const noexcept {
        return {maxDeliveredOctets, maxAmplification, amplificationThreshold};
    }
};

} // namespace Tamo::FastInfoset

#endif
