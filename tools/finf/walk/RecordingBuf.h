#ifndef TAMO_FINF_RECORDINGBUF_H
#define TAMO_FINF_RECORDINGBUF_H

#include "Tamo/Types.h"
#include <istream>
#include <streambuf>
#include <string>
#include <string_view>

namespace finf {

/// A stream buffer that hands on the octets of a stream and keeps them until they are no longer of interest.
/// The stream is borrowed; to be read in blocks.
class RecordingBuf : public std::streambuf {
public:
    explicit RecordingBuf(std::istream& source) : _source(source) {}

    /// The octets from position first to position last, or as many of them as are kept.
    std::string_view octets(Tamo::UInt64 first, Tamo::UInt64 last) const;

    /// Says that nothing before position first will be asked for again.
    void forget(Tamo::UInt64 first);

    /// How many octets have been read.
    Tamo::UInt64 size() const noexcept { return _start + _octets.size(); }

    /// Reads what is left of the stream without keeping it.
    void skipRest();

protected:
    std::streamsize xsgetn(char* data, std::streamsize size) override;
    int_type underflow() override;
    int_type uflow() override;

private:
    std::istream& _source;
    std::string _octets;     // those read since _start
    Tamo::UInt64 _start = 0; // position of the first octet kept
};

} // namespace finf

#endif
