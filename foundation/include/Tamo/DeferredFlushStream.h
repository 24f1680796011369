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

    /// Passes on what is pending; false when the target has failed.
    bool passOn();

protected:
    int_type overflow(int_type c) override;
    std::streamsize xsputn(const char* text, std::streamsize count) override;

private:
    std::size_t unused() const noexcept { return static_cast<std::size_t>(epptr() - pptr()); }
    void advance(std::size_t size) noexcept;
    bool write(const char* text, std::size_t size);

    std::ostream& _target;
    const std::size_t _capacity;
    std::unique_ptr<char[]> _pBuffer;
};

/// A stream that collects what is written, passes it to another stream in whole blocks, and ignores flushes.
///
/// For producers that flush more often than the receiver of the octets wants, such as a writer that flushes
/// after every element in front of a file. Writes bigger than the buffer go straight through. When the target
/// fails, the stream becomes bad at the next block. Call finish() at the end; the destructor passes on what
/// is left too, but hides errors. The target must outlive the stream. One stream is used by one thread at a
/// time.
class TAMO_API DeferredFlushOutputStream : public std::ostream {
public:
    /// A stream in front of target with a buffer of capacity octets.
    explicit DeferredFlushOutputStream(std::ostream& target, std::size_t capacity = 65536);
    ~DeferredFlushOutputStream() override;

    /// Passes on the rest and flushes the target; this stream is bad afterwards if the target has failed.
    void finish();

private:
    std::ostream& _target;
    DeferredFlushBuf _buf;
};

} // namespace Tamo

#endif
