#ifndef TAMO_DECODERBUF_H
#define TAMO_DECODERBUF_H

#include "Tamo/Export.h"
#include <istream>
#include <streambuf>
#include <string>
#include <string_view>

namespace Tamo {

/// The buffer of a stream that gives the octets of text that it reads from another stream, which must outlive
/// it.
///
/// The octets before an invalid character are delivered; then every further read throws SyntaxException,
/// which the stream's operations turn into badbit. Text is read ahead in blocks. One buffer is used by one
/// thread at a time.
class TAMO_API DecoderBuf : public std::streambuf {
public:
    DecoderBuf(const DecoderBuf&) = delete;
    DecoderBuf& operator=(const DecoderBuf&) = delete;

protected:
    /// A buffer over source; what names the code in messages.
    DecoderBuf(std::istream& source, const char* what);

    /// Appends the octets of a further piece of text; false when a character is invalid.
    virtual bool decode(std::string_view text, std::string& octets) = 0;

    /// True when the text may end here.
    virtual bool complete() const noexcept = 0;

    int_type underflow() override;

private:
    std::istream& _source;
    const char* const _what;
    bool _failed = false;
    std::string _octets;
};

} // namespace Tamo

#endif
