#include "Tamo/FastInfoset/RestrictedAlphabet.h"
#include "Tamo/Bugcheck.h"
#include "Tamo/TextIterator.h"
#include "Tamo/UTF8Encoding.h"
#include <bit>

namespace Tamo::FastInfoset {

RestrictedAlphabet::RestrictedAlphabet(const std::string& utf8Characters) : _characters(utf8Characters) {
    tamo_assert(!utf8Characters.empty());
    const UTF8Encoding utf8;
    const TextIterator end(utf8Characters);
    for (TextIterator it(utf8Characters, utf8); it != end; ++it) {
        const int codePoint = *it;
        _codes.push_back(codePoint < 0 ? static_cast<UInt32>('?') : static_cast<UInt32>(codePoint));
    }
    _codes.push_back(0);
    _bitSize = static_cast<unsigned int>(std::bit_width(_codes.size())) - 1;
}

} // namespace Tamo::FastInfoset
