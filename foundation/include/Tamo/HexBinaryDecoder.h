#ifndef TAMO_HEXBINARYDECODER_H
#define TAMO_HEXBINARYDECODER_H

#include "Tamo/DecoderBuf.h"
#include "Tamo/Export.h"
#include <istream>

namespace Tamo {

/// The buffer of a HexBinaryDecoder; used by one thread at a time.
class TAMO_API HexBinaryDecoderBuf : public DecoderBuf {
public:
    /// A buffer over source.
    explicit HexBinaryDecoderBuf(std::istream& source) : DecoderBuf(source, "hexadecimal") {}

protected:
    bool decode(std::string_view text, std::string& octets) override;
    bool complete() const noexcept override { return _digit == 0; }

private:
    char _digit = 0; // the first digit of an octet whose second one has not been read
};

/// A stream of the octets that pairs of hexadecimal digits in another stream stand for.
///
/// At a valid end the stream is in its end-of-file state and not bad. Anything but a digit, white space
/// included, and an odd number of digits stop it with badbit and without end of file. The other stream must
/// outlive this one. One stream is used by one thread at a time.
class TAMO_API HexBinaryDecoder : public std::istream {
public:
    /// A decoder over source.
    explicit HexBinaryDecoder(std::istream& source);

    /// The buffer.
    HexBinaryDecoderBuf* rdbuf() noexcept { return &_buf; }

private:
    HexBinaryDecoderBuf _buf;
};

} // namespace Tamo

#endif
