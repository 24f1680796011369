#include "Tamo/DecoderBuf.h"
#include "Tamo/Exception.h"
#include <cstddef>

namespace Tamo {

DecoderBuf::DecoderBuf(std::istream& source, const char* what) : _source(source), _what(what) {}

DecoderBuf::int_type DecoderBuf::underflow() {
    if (gptr() != egptr()) {
        return traits_type::to_int_type(*gptr());
    }
    _octets.clear();
    while (_octets.empty()) {
        if (_failed) {
            throw SyntaxException(std::string("Invalid ") + _what + " data");
        }
        char text[4096];
        _source.read(text, sizeof(text));
        const auto size = static_cast<std::size_t>(_source.gcount());
        if (size == 0) {
            if (_source.bad() || !_source.eof()) {
                throw IOException(std::string("Cannot read ") + _what + " data");
            }
            if (complete()) {
                return traits_type::eof();
            }
            _failed = true;
        } else {
            _failed = !decode(std::string_view(text, size), _octets);
        }
    }
    setg(_octets.data(), _octets.data(), _octets.data() + _octets.size());
    return traits_type::to_int_type(*gptr());
}

} // namespace Tamo
