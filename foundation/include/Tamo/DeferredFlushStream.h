#ifndef TAMO_DEFERREDFLUSHSTREAM_H
#define TAMO_DEFERREDFLUSHSTREAM_H

#include "Tamo/Export.h"
#include <cstddef>
#include <memory>
#include <ostream>
#include <streambuf>

namespace Tamo {

/// The buffer of a DeferredFlushOutputStream. It has std::streambuf's own sync(), which does nothing: that is
/// how flushes are ignored. Used by one thread at a time.
class TAMO_API DeferredFlushBuf : public std::streambuf {
public:
    /// A buffer of capacity octets (at least 1) in front of target.
    DeferredFlushBuf(std::ostream& target, std::size_t capacity);

    /// Whether nothing is pending.
    bool isEmpty() const noexcept { return pptr() == _pBuffer.get(); }

    /// Passes on what is pending; false when the target has failed.
    bool passOn();

    /// Drops what is pending, and goes on in front of another target.
    void reset(std::ostream& target) noexcept;

protected:
    int_type overflow(int_type c) override;
    std::streamsize xsputn(const char* text, std::streamsize count) override;

private:
    std::size_t unused() const noexcept { return static_cast<std::size_t>(epptr() - pptr()); }
    void clear() noexcept { setp(_pBuffer.get(), _pBuffer.get() + _capacity); }
    void advance(std::size_t size) noexcept;
    bool write(const char* text, std::size_t size);

    std::ostream* _pTarget;
    const std::size_t _capacity;
    std::unique_ptr<char[]> _pBuffer;
};

/// A stream that collects what is written, passes it to another stream in whole blocks, and ignores flushes.
///
/// For producers that flush more often than the receiver of the octets wants. Writes bigger than the buffer
/// go straight through. When the target fails, the stream becomes bad at the next block.
/// - flush() does nothing: octets stay here until a block is full.
/// - finish() passes them on and flushes the target. The stream goes on after it: records are made durable
///   one by one with a finish() behind each, as far as a flush of the target makes anything durable.
/// - The destructor passes on what is left without flushing the target, and hides errors. Where nothing is
///   left, behind finish(), it does not touch the target.
///
/// The target must outlive the stream's use of it. One stream is used by one thread at a time.
class TAMO_API DeferredFlushOutputStream : public std::ostream {
public:
    /// A stream in front of target with a buffer of capacity octets.
    explicit DeferredFlushOutputStream(std::ostream& target, std::size_t capacity = 65536);
    ~DeferredFlushOutputStream() override;

    /// Passes on what is here and flushes the target; this stream is bad afterwards if the target has failed.
    /// What it has refused is dropped.
    void finish();

    /// Goes on in front of another target, in a good state. What has not been passed on is dropped.
    void reset(std::ostream& target);

private:
    std::ostream* _pTarget;
    DeferredFlushBuf _buf;
};

} // namespace Tamo

#endif
