#ifndef TAMO_FINF_TEEBUF_H
#define TAMO_FINF_TEEBUF_H

#include <streambuf>
#include <utility>
#include <vector>

namespace finf {

/// A stream buffer that hands on the octets of a source and shows each of them to others, too. All are
/// borrowed; to be read in blocks.
class TeeBuf : public std::streambuf {
public:
    TeeBuf(std::streambuf& source, std::vector<std::streambuf*> others)
        : _source(source), _others(std::move(others)) {}

protected:
    std::streamsize xsgetn(char* data, std::streamsize size) override;
    int_type underflow() override;
    int_type uflow() override;

private:
    std::streambuf& _source;
    const std::vector<std::streambuf*> _others;
};

} // namespace finf

#endif
