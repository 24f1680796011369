#ifndef TAMO_FINF_DECOMPRESSINGBUF_H
#define TAMO_FINF_DECOMPRESSINGBUF_H

#include "files/Compression.h"
#include <memory>
#include <span>
#include <streambuf>
#include <string>
#include <string_view>

namespace finf {

/// A stream buffer that reads what a compressed source holds, block by block: memory does not grow with what
/// comes out.
class DecompressingBuf : public std::streambuf {
public:
    /// Over the octets of source, which is borrowed; null for Compression::NONE.
    static std::unique_ptr<DecompressingBuf> over(std::streambuf& source, Compression compression);

    /// What is wrong with the compressed data, which ends there; empty when nothing is.
    const std::string& fault() const noexcept { return _fault; }

    /// The first octets that came out, KIND_OCTETS at most.
    std::string_view beginning() const noexcept { return _beginning; }

protected:
    /// A name for messages: "gzip".
    DecompressingBuf(std::streambuf& source, const char* name);

    int_type underflow() override;
    /// Tells where reading stands in what comes out, and nothing else.
    pos_type seekoff(off_type offset, std::ios_base::seekdir from, std::ios_base::openmode which) override;

    /// Decompresses from the front of input to the front of output and takes off both what it has used.
    /// Returns whether the data may end here. Throws FinfError for damaged data.
    virtual bool decompress(std::string_view& input, std::span<char>& output) = 0;

    [[noreturn]] void damaged() const;

private:
    void fetch();

    std::streambuf& _source;
    const char* const _name;
    const std::unique_ptr<char[]> _pIn;
    const std::unique_ptr<char[]> _pOut;
    std::string_view _input;     // what is left of _pIn
    bool _hasMoreOutput = false; // the last block took all the room
    bool _mayEnd = false;
    off_type _octetsOut = 0;
    std::string _fault;
    std::string _beginning;
};

} // namespace finf

#endif
