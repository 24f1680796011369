#ifndef TAMO_BLOCKSINK_H
#define TAMO_BLOCKSINK_H

#include "Tamo/Export.h"
#include "Tamo/Sink.h"
#include <cstddef>

namespace Tamo {

/// A sink that collects octets in a block of its own, whatever is longer aside, and appends block by block.
///
/// What append() throws passes through, from a stream around the sink as that does with what its buffer
/// throws. The octets that it has refused are kept, and offered again by the next operation. The destructor
/// drops what has not been delivered.
class TAMO_API BlockSink : public Sink {
public:
    void deliver() final;

protected:
    BlockSink() noexcept { clear(); }

    /// Appends size octets, at least one; all of them, or none and throws.
    virtual void append(const char* data, std::size_t size) = 0;

    int_type overflow(int_type c) final;
    std::streamsize xsputn(const char* data, std::streamsize count) final;

private:
    static constexpr std::size_t CAPACITY = 4096;

    void clear() noexcept { setp(_block, _block + CAPACITY); }

    char _block[CAPACITY];
};

} // namespace Tamo

#endif
