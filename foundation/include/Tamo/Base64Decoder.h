#ifndef TAMO_BASE64DECODER_H
#define TAMO_BASE64DECODER_H

#include "Tamo/Base64.h"
#include "Tamo/DecoderBuf.h"
#include "Tamo/Export.h"
#include <istream>

namespace Tamo {

/// The buffer of a Base64Decoder; used by one thread at a time.
class TAMO_API Base64DecoderBuf : public DecoderBuf {
public:
    /// A buffer over source.
    explicit Base64DecoderBuf(std::istream& source) : DecoderBuf(source, "base64") {}

protected:
    bool decode(std::string_view text, std::string& octets) override;
    bool complete() const noexcept override { return Base64::complete(_state); }

private:
    Base64::State _state;
};

/// A stream of the octets that base64 text in another stream stands for (see Base64 for what is valid).
///
/// At a valid end the stream is in its end-of-file state and not bad. An invalid character, missing or
/// misplaced padding, and data after padding stop it with badbit and without end of file. The other stream
/// must outlive this one. One stream is used by one thread at a time.
class TAMO_API Base64Decoder : public std::istream {
public:
    /// A decoder over source.
    explicit Base64Decoder(std::istream& source);

    /// The buffer.
    Base64DecoderBuf* rdbuf() noexcept { return &_buf; }

private:
    Base64DecoderBuf _buf;
};

} // namespace Tamo

#endif
