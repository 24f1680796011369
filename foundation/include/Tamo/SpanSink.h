#ifndef TAMO_SPANSINK_H
#define TAMO_SPANSINK_H

#include "Tamo/Export.h"
#include "Tamo/Sink.h"
#include <cstddef>
#include <span>

namespace Tamo {

/// A sink that fills memory of the caller from its beginning, without a copy in between.
///
/// What does not fit is an IOException that names the size of the span; nothing of it is written. Whoever has
/// the sink behind a std::ostream sees that stream become bad.
class TAMO_API SpanSink final : public Sink {
public:
    explicit SpanSink(std::span<std::byte> octets) noexcept;

    /// What has been written, at any time; the octets behind it are as they were.
    std::span<std::byte> written() const noexcept;

    /// Does nothing: octets are written where they belong.
    void deliver() override;

protected:
    int_type overflow(int_type c) override;
    std::streamsize xsputn(const char* data, std::streamsize count) override;

private:
    [[noreturn]] void throwFull() const;

    std::span<std::byte> _octets;
};

} // namespace Tamo

#endif
