#include "TextRun.h"
#include <algorithm>

namespace Tamo::XML {

// Makes the buffer longer, or the run complete.
bool TextRun::extendFor(std::string_view& text) {
    if (_size + text.size() <= MOST) {
        _buffer.resize(std::min(MOST, std::max(2 * _buffer.size(), _size + text.size())));
        return true;
    }
    std::size_t fitting = MOST - _size;
    while (fitting > 0 && (static_cast<unsigned char>(text[fitting]) & 0xC0) == 0x80) {
        --fitting; // not inside a character
    }
    _buffer.resize(MOST);
    text.copy(_buffer.data() + _size, fitting);
    _size += fitting;
    text.remove_prefix(fitting);
    return false;
}

} // namespace Tamo::XML
