#include "files/DecompressingBuf.h"
#include "command/FinfError.h"
#include "files/DocumentKind.h"
#include "files/GzipInputBuf.h"
#include "files/ZstdInputBuf.h"
#include <algorithm>

namespace finf {

namespace {

constexpr std::size_t CAPACITY = 65536;

} // namespace

std::unique_ptr<DecompressingBuf> DecompressingBuf::over(std::streambuf& source, Compression compression) {
    switch (compression) {
    case Compression::GZIP:
        return std::make_unique<GzipInputBuf>(source);
    case Compression::ZSTD:
        return std::make_unique<ZstdInputBuf>(source);
    default:
        return nullptr;
    }
}

DecompressingBuf::DecompressingBuf(std::streambuf& source, const char* name)
    : _source(source),
      _name(name),
      _pIn(std::make_unique<char[]>(CAPACITY)),
      _pOut(std::make_unique<char[]>(CAPACITY)) {}

DecompressingBuf::int_type DecompressingBuf::underflow() {
    if (!_fault.empty()) {
        return traits_type::eof();
    }
    std::span<char> room(_pOut.get(), CAPACITY);
    try {
        while (room.size() == CAPACITY) {
            if (_input.empty() && !_hasMoreOutput) {
                fetch();
                if (_input.empty()) {
                    if (!_mayEnd) {
                        throw FinfError(std::string(_name) + " data that ends early");
                    }
                    return traits_type::eof();
                }
            }
            _mayEnd = decompress(_input, room);
            _hasMoreOutput = room.empty();
        }
    } catch (const FinfError& e) {
        _fault = e.what();
        if (room.size() == CAPACITY) {
            return traits_type::eof();
        }
    }
    const std::size_t size = CAPACITY - room.size();
    _beginning.append(_pOut.get(), std::min(size, KIND_OCTETS - _beginning.size()));
    _octetsOut += static_cast<off_type>(size);
    setg(_pOut.get(), _pOut.get(), _pOut.get() + size);
    return traits_type::to_int_type(*gptr());
}

DecompressingBuf::pos_type DecompressingBuf::seekoff(off_type offset, std::ios_base::seekdir from,
                                                     std::ios_base::openmode which) {
    const bool asks = offset == 0 && from == std::ios_base::cur && (which & std::ios_base::in) != 0;
    return asks ? _octetsOut - (egptr() - gptr()) : off_type{-1};
}

// What is there, without waiting for a full block.
void DecompressingBuf::fetch() {
    if (traits_type::eq_int_type(_source.sgetc(), traits_type::eof())) {
        return;
    }
    const std::streamsize there = std::min<std::streamsize>(_source.in_avail(), CAPACITY);
    const std::streamsize count = _source.sgetn(_pIn.get(), std::max<std::streamsize>(there, 1));
    _input = std::string_view(_pIn.get(), static_cast<std::size_t>(count));
}

void DecompressingBuf::damaged() const {
    throw FinfError(std::string("damaged ") + _name + " data");
}

} // namespace finf
