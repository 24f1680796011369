#ifndef TAMO_ENCODERBUF_H
#define TAMO_ENCODERBUF_H

#include "Tamo/Export.h"
#include <array>
#include <cstddef>
#include <ostream>
#include <streambuf>
#include <string>
#include <string_view>

namespace Tamo {

/// The buffer of a stream that takes octets and writes them as text to another stream, which must outlive it.
///
/// Octets are encoded in blocks; what is pending reaches the target at close(). One buffer is used by one
/// thread at a time.
class TAMO_API EncoderBuf : public std::streambuf {
public:
    EncoderBuf(const EncoderBuf&) = delete;
    EncoderBuf& operator=(const EncoderBuf&) = delete;

    /// Breaks the text with a line feed after every lineLength characters; 0, the default, means no breaks.
    void setLineLength(int lineLength) noexcept { _lineLength = lineLength > 0 ? lineLength : 0; }

    /// Writes what is pending, an incomplete group included; false when the target has failed. Nothing may be
    /// written afterwards.
    bool close();

protected:
    /// A buffer in front of target, whose code takes groups of groupSize octets.
    EncoderBuf(std::ostream& target, std::size_t groupSize);

    /// Appends the text of the octets; only the last call of a stream gets an incomplete group.
    virtual void encode(std::string_view octets, std::string& text) const = 0;

    int_type overflow(int_type c) override;
    int sync() override;

private:
    bool passOn(std::size_t count);
    void write(std::string_view text);

    std::ostream& _target;
    const std::size_t _groupSize;
    int _lineLength = 0;
    int _column = 0;
    std::string _text;
    std::array<char, 3072> _octets; // a multiple of every group size
};

} // namespace Tamo

#endif
