#include "Tamo/TextConverter.h"

namespace Tamo {

int TextConverter::convert(std::string_view source, std::string& dest) const {
    const auto* p = reinterpret_cast<const unsigned char*>(source.data());
    const unsigned char* const pEnd = p + source.size();
    unsigned char sequence[TextEncoding::MAX_SEQUENCE_LENGTH];
    int replaced = 0;
    while (p != pEnd) {
        std::size_t length = 0;
        const int codePoint = _in.decode(p, static_cast<std::size_t>(pEnd - p), length);
        p += length;
        std::size_t size = codePoint == TextEncoding::INVALID ? 0 : _out.encode(codePoint, sequence);
        if (size == 0) {
            size = _out.encode(_defaultChar, sequence);
            ++replaced;
        }
        dest.append(reinterpret_cast<const char*>(sequence), size);
    }
    return replaced;
}

} // namespace Tamo
