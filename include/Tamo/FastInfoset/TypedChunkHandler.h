#ifndef TAMO_FASTINFOSET_TYPEDCHUNKHANDLER_H
#define TAMO_FASTINFOSET_TYPEDCHUNKHANDLER_H

#include "Tamo/Export.h"
#include "Tamo/FastInfoset/FISContentHandler.h"

namespace Tamo::FastInfoset {

class TypedChunk;

/// A handler of typed data that is told where each chunk begins and ends, and by which algorithm the document
/// carries it: in the strict mode of a parser. FastInfosetWriter implements it.
///
/// Called on the thread that parses; arguments are valid during the call only.
class TAMO_API TypedChunkHandler : public FISContentHandler {
public:
    /// A chunk begins. True when the handler has taken its values from it; else they follow one by one, as
    /// FISContentHandler has them.
    virtual bool startTypedChunk(const TypedChunk& chunk) = 0;

    /// The chunk that began last ends.
    virtual void endTypedChunk() = 0;
};

} // namespace Tamo::FastInfoset

#endif
