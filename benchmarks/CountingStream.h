#ifndef TAMO_BENCHMARKS_COUNTINGSTREAM_H
#define TAMO_BENCHMARKS_COUNTINGSTREAM_H

#include "Tamo/Types.h"
#include <array>
#include <cstddef>
#include <ostream>
#include <streambuf>

namespace Tamo::Benchmarks {

/// A buffer that counts octets and keeps none: the cost of a writer alone.
class CountingBuf : public std::streambuf {
public:
    CountingBuf() { rewind(); }

    /// The number of octets so far.
    UInt64 count() const { return _passed + static_cast<UInt64>(pptr() - pbase()); }

protected:
    int_type overflow(int_type c) override {
        _passed = count();
        rewind();
        if (!traits_type::eq_int_type(c, traits_type::eof())) {
            *pptr() = traits_type::to_char_type(c);
            pbump(1);
        }
        return traits_type::not_eof(c);
    }

    std::streamsize xsputn(const char*, std::streamsize size) override {
        _passed += static_cast<UInt64>(size);
        return size;
    }

private:
    void rewind() { setp(_octets.data(), _octets.data() + _octets.size()); }

    std::array<char, 4096> _octets{};
    UInt64 _passed = 0;
};

/// The stream over a CountingBuf.
class CountingStream : public std::ostream {
public:
    CountingStream() : std::ostream(nullptr) { rdbuf(&_buf); }

    /// The number of octets so far.
    UInt64 count() const { return _buf.count(); }

private:
    CountingBuf _buf;
};

} // namespace Tamo::Benchmarks

#endif
