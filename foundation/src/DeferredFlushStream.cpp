#include "Tamo/DeferredFlushStream.h"
#include <algorithm>

namespace Tamo {

DeferredFlushBuf::DeferredFlushBuf(std::ostream& target, std::size_t capacity)
    : _pTarget(&target), _capacity(std::max<std::size_t>(capacity, 1)), _pBuffer(new char[_capacity]) {
    clear();
}

void DeferredFlushBuf::reset(std::ostream& target) noexcept {
    _pTarget = &target;
    clear();
}

bool DeferredFlushBuf::passOn() {
    const auto size = static_cast<std::size_t>(pptr() - _pBuffer.get());
    // Emptied first: what a failing target has refused is not offered again.
    clear();
    return size == 0 ? !_pTarget->fail() : write(_pBuffer.get(), size);
}

DeferredFlushBuf::int_type DeferredFlushBuf::overflow(int_type c) {
    if (unused() == 0 && !passOn()) {
        return traits_type::eof();
    }
    if (!traits_type::eq_int_type(c, traits_type::eof())) {
        *pptr() = traits_type::to_char_type(c);
        advance(1);
    }
    return traits_type::not_eof(c);
}

std::streamsize DeferredFlushBuf::xsputn(const char* text, std::streamsize count) {
    const auto size = static_cast<std::size_t>(count);
    if (size > unused()) {
        if (!passOn()) {
            return 0;
        }
        if (size >= _capacity) {
            return write(text, size) ? count : 0;
        }
    }
    std::copy_n(text, size, pptr());
    advance(size);
    return count;
}

void DeferredFlushBuf::advance(std::size_t size) noexcept {
    // Moves the put area's beginning too, which pbump would not, but pbump counts in int.
    setp(pptr() + size, epptr());
}

bool DeferredFlushBuf::write(const char* text, std::size_t size) {
    return !_pTarget->write(text, static_cast<std::streamsize>(size)).fail();
}

DeferredFlushOutputStream::DeferredFlushOutputStream(std::ostream& target, std::size_t capacity)
    : std::ostream(nullptr), _pTarget(&target), _buf(target, capacity) {
    rdbuf(&_buf);
}

DeferredFlushOutputStream::~DeferredFlushOutputStream() {
    try {
        if (!_buf.isEmpty()) {
            _buf.passOn();
        }
    } catch (...) {
        // Whoever wants to see errors calls finish().
    }
}

void DeferredFlushOutputStream::reset(std::ostream& target) {
    _pTarget = &target;
    _buf.reset(target);
    clear();
}

void DeferredFlushOutputStream::finish() {
    bool passed = false;
    try {
        passed = _buf.passOn() && !_pTarget->flush().fail();
    } catch (const std::ios_base::failure&) {
        // A target that throws has failed; this stream reports it in its own way.
    }
    if (!passed) {
        setstate(std::ios::badbit);
    }
}

} // namespace Tamo
