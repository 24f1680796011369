#ifndef TAMO_XML_EXPATMEMORY_H
#define TAMO_XML_EXPATMEMORY_H

#include "Tamo/Types.h"
#include <cstddef>
#include <expat.h>

namespace Tamo::XML {

/// The memory of the Expat parsers of one document, with a limit: what Expat keeps of a document can be many
/// times the document, a namespace name for each attribute or each binding among it.
///
/// Expat does not say for which parser it wants memory. So while this exists, what Expat takes in this thread
/// is of this memory, and then again of the one that was there before: memories nest, as documents do that
/// are read while another one is. The parsers end before it.
class ExpatMemory {
public:
    ExpatMemory() noexcept;
    ~ExpatMemory();
    ExpatMemory(const ExpatMemory&) = delete;
    ExpatMemory& operator=(const ExpatMemory&) = delete;

    /// Lets Expat have a part of memory for each of this many octets of the document.
    void allowFor(UInt64 octets) noexcept { _most = BASE + FACTOR * octets; }

    /// Whether Expat has wanted more than it may have.
    bool isExceeded() const noexcept { return _isExceeded; }

    /// What Expat is to be created with.
    static const XML_Memory_Handling_Suite& suite() noexcept;

private:
    static constexpr UInt64 BASE = 4 * 1024 * 1024;
    /// An open element is three octets of a document at least, and some 150 octets in Expat.
    static constexpr UInt64 FACTOR = 64;

    struct Block;

    static void* allocate(std::size_t size);
    static void* reallocate(void* p, std::size_t size);
    static void release(void* p);
    bool take(std::size_t size) noexcept;

    ExpatMemory* _pOuter;
    UInt64 _taken = 0;
    UInt64 _most = BASE;
    bool _isExceeded = false;
};

} // namespace Tamo::XML

#endif
