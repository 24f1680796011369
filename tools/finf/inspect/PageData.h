#ifndef TAMO_FINF_PAGEDATA_H
#define TAMO_FINF_PAGEDATA_H

#include "Tamo/Types.h"
#include <ostream>
#include <string>
#include <string_view>
#include <zlib.h>

namespace finf {

/// Octets that a page carries for its script: deflated (RFC 1950), in base64, in blocks that are script
/// elements of a type that browsers do not run. Nothing in them can be taken for markup. What is kept is one
/// block.
class PageData {
public:
    /// The blocks are marked with the name and go to the stream, which is borrowed. Throws std::bad_alloc.
    PageData(std::ostream& out, const char* name);
    ~PageData();

    PageData(const PageData&) = delete;
    PageData& operator=(const PageData&) = delete;

    void write(std::string_view octets);

    /// Seven bits an octet, the least significant ones first; the highest bit says that more follow.
    void writeNumber(Tamo::UInt64 number);

    /// How many octets were written.
    Tamo::UInt64 size() const noexcept { return _size + _pending.size(); }

    /// Writes the rest out; nothing can be written any more.
    void finish();

private:
    void deflate(std::string_view octets, int flush);
    void writeBlock();

    std::ostream& _out;
    const char* const _name;
    z_stream _deflater{};
    std::string _pending; // what is not deflated yet
    std::string _block;   // what is, and not written yet
    Tamo::UInt64 _size = 0;
};

} // namespace finf

#endif
