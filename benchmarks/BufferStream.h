#ifndef TAMO_BENCHMARKS_BUFFERSTREAM_H
#define TAMO_BENCHMARKS_BUFFERSTREAM_H

#include <cstddef>
#include <ostream>
#include <streambuf>
#include <string_view>
#include <vector>

namespace Tamo::Benchmarks {

/// Where the writers write to: memory that grows once and is then reused, so that what is measured is the
/// writer and not the allocator.
class BufferBuf : public std::streambuf {
public:
    BufferBuf() : _octets(1 << 16) { clear(); }

    /// Forgets the content and keeps the memory.
    void clear() { setp(_octets.data(), _octets.data() + _octets.size()); }

    /// What was written since the last clear().
    std::string_view view() const { return {pbase(), static_cast<std::size_t>(pptr() - pbase())}; }

protected:
    int_type overflow(int_type c) override {
        if (!traits_type::eq_int_type(c, traits_type::eof())) {
            grow(1);
            *pptr() = traits_type::to_char_type(c);
            pbump(1);
        }
        return traits_type::not_eof(c);
    }

    std::streamsize xsputn(const char* text, std::streamsize count) override {
        const auto size = static_cast<std::size_t>(count);
        if (static_cast<std::size_t>(epptr() - pptr()) < size) {
            grow(size);
        }
        traits_type::copy(pptr(), text, size);
        pbump(static_cast<int>(count));
        return count;
    }

private:
    void grow(std::size_t size) {
        const std::size_t used = view().size();
        _octets.resize(2 * _octets.size() + size);
        clear();
        pbump(static_cast<int>(used));
    }

    std::vector<char> _octets;
};

/// The stream over a BufferBuf; documents of up to 2 GiB.
class BufferStream : public std::ostream {
public:
    BufferStream() : std::ostream(nullptr) { rdbuf(&_buf); }

    /// Forgets the content and keeps the memory.
    void reset() {
        clear();
        _buf.clear();
    }

    /// What was written since the last reset().
    std::string_view view() const { return _buf.view(); }

private:
    BufferBuf _buf;
};

} // namespace Tamo::Benchmarks

#endif
