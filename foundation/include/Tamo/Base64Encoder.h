#ifndef TAMO_BASE64ENCODER_H
#define TAMO_BASE64ENCODER_H

#include "Tamo/EncoderBuf.h"
#include "Tamo/Export.h"
#include <ostream>

namespace Tamo {

/// The buffer of a Base64Encoder; used by one thread at a time.
class TAMO_API Base64EncoderBuf : public EncoderBuf {
public:
    /// A buffer in front of target.
    explicit Base64EncoderBuf(std::ostream& target) : EncoderBuf(target, 3) {}

protected:
    void encode(std::string_view octets, std::string& text) const override;
};

/// A stream that writes octets in base64 to another stream, which must outlive it.
///
/// Call close() at the end, or let the destructor do it, which hides errors; it writes the last group with
/// its padding. A failed target sets badbit. One stream is used by one thread at a time.
class TAMO_API Base64Encoder : public std::ostream {
public:
    /// An encoder in front of target.
    explicit Base64Encoder(std::ostream& target);
    ~Base64Encoder() override;

    /// Writes what is pending; nothing may be written afterwards.
    void close();

    /// The buffer with the settings.
    Base64EncoderBuf* rdbuf() noexcept { return &_buf; }

private:
    Base64EncoderBuf _buf;
};

} // namespace Tamo

#endif
