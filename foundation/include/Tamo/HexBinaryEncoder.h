#ifndef TAMO_HEXBINARYENCODER_H
#define TAMO_HEXBINARYENCODER_H

#include "Tamo/EncoderBuf.h"
#include "Tamo/Export.h"
#include <ostream>

namespace Tamo {

/// The buffer of a HexBinaryEncoder; used by one thread at a time.
class TAMO_API HexBinaryEncoderBuf : public EncoderBuf {
public:
    /// A buffer in front of target.
    explicit HexBinaryEncoderBuf(std::ostream& target) : EncoderBuf(target, 1) {}

    /// Chooses between upper-case digits and lower-case ones, the default.
    void setUppercase(bool uppercase) noexcept { _uppercase = uppercase; }

protected:
    void encode(std::string_view octets, std::string& text) const override;

private:
    bool _uppercase = false;
};

/// A stream that writes octets as pairs of hexadecimal digits to another stream, which must outlive it.
///
/// Call close() at the end, or let the destructor do it, which hides errors. A failed target sets badbit. One
/// stream is used by one thread at a time.
class TAMO_API HexBinaryEncoder : public std::ostream {
public:
    /// An encoder in front of target.
    explicit HexBinaryEncoder(std::ostream& target);
    ~HexBinaryEncoder() override;

    /// Writes what is pending; nothing may be written afterwards.
    void close();

    /// The buffer with the settings.
    HexBinaryEncoderBuf* rdbuf() noexcept { return &_buf; }

private:
    HexBinaryEncoderBuf _buf;
};

} // namespace Tamo

#endif
