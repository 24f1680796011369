#include "Tamo/EncoderBuf.h"
#include <algorithm>

namespace Tamo {

EncoderBuf::EncoderBuf(std::ostream& target, std::size_t groupSize) : _target(target), _groupSize(groupSize) {
    setp(_octets.data(), _octets.data() + _octets.size());
}

bool EncoderBuf::close() {
    return passOn(static_cast<std::size_t>(pptr() - pbase()));
}

EncoderBuf::int_type EncoderBuf::overflow(int_type c) {
    // The buffer holds whole groups, so that all of it can go; before it is full nothing needs to.
    if (pptr() == epptr() && !passOn(_octets.size())) {
        return traits_type::eof();
    }
    if (!traits_type::eq_int_type(c, traits_type::eof())) {
        *pptr() = traits_type::to_char_type(c);
        pbump(1);
    }
    return traits_type::not_eof(c);
}

int EncoderBuf::sync() {
    const auto pending = static_cast<std::size_t>(pptr() - pbase());
    return passOn(pending - pending % _groupSize) && _target.flush() ? 0 : -1;
}

bool EncoderBuf::passOn(std::size_t count) {
    _text.clear();
    encode(std::string_view(_octets.data(), count), _text);
    const auto left = static_cast<std::size_t>(pptr() - pbase()) - count;
    std::copy_n(_octets.data() + count, left, _octets.data());
    setp(_octets.data(), _octets.data() + _octets.size());
    pbump(static_cast<int>(left));
    write(_text);
    return !_target.fail();
}

void EncoderBuf::write(std::string_view text) {
    if (_lineLength == 0) {
        _target.write(text.data(), static_cast<std::streamsize>(text.size()));
        return;
    }
    while (!text.empty()) {
        if (_column >= _lineLength) {
            _target.put('\n');
            _column = 0;
        }
        const std::string_view line = text.substr(0, static_cast<std::size_t>(_lineLength - _column));
        _target.write(line.data(), static_cast<std::streamsize>(line.size()));
        _column += static_cast<int>(line.size());
        text.remove_prefix(line.size());
    }
}

} // namespace Tamo
