#include "walk/XMLText.h"
#include "Tamo/UTF8Encoding.h"
#include <algorithm>
#include <iterator>

namespace finf {

namespace {

struct Range {
    int first;
    int last;
};

// XML 1.0, fifth edition: NameStartChar without the colon, and what NameChar has beyond it.
constexpr Range NAME_START[] = {{'A', 'Z'},       {'_', '_'},       {'a', 'z'},        {0xC0, 0xD6},
                                {0xD8, 0xF6},     {0xF8, 0x2FF},    {0x370, 0x37D},    {0x37F, 0x1FFF},
                                {0x200C, 0x200D}, {0x2070, 0x218F}, {0x2C00, 0x2FEF},  {0x3001, 0xD7FF},
                                {0xF900, 0xFDCF}, {0xFDF0, 0xFFFD}, {0x10000, 0xEFFFF}};
constexpr Range NAME_MORE[] = {{'-', '.'}, {'0', '9'}, {0xB7, 0xB7}, {0x300, 0x36F}, {0x203F, 0x2040}};
constexpr Range TEXT[] = {{0x9, 0xA}, {0xD, 0xD}, {0x20, 0xD7FF}, {0xE000, 0xFFFD}, {0x10000, 0x10FFFF}};

template<std::size_t N>
bool isIn(const Range (&ranges)[N], int character) {
    return std::any_of(std::begin(ranges), std::end(ranges), [&](const Range& range) {
        return character >= range.first && character <= range.last;
    });
}

/// Whether accept(character, is the first one) is true for all characters.
template<class Accept>
bool all(std::string_view text, Accept accept) {
    const Tamo::UTF8Encoding utf8;
    bool isFirst = true;
    while (!text.empty()) {
        std::size_t length = 0;
        const int character =
            utf8.decode(reinterpret_cast<const unsigned char*>(text.data()), text.size(), length);
        if (!accept(character, isFirst)) {
            return false;
        }
        isFirst = false;
        text.remove_prefix(length);
    }
    return true;
}

} // namespace

bool XMLText::isNCName(std::string_view text) {
    return !text.empty() && all(text, [](int character, bool isFirst) {
        return isIn(NAME_START, character) || (!isFirst && isIn(NAME_MORE, character));
    });
}

bool XMLText::isText(std::string_view text) {
    return all(text, [](int character, bool) { return isIn(TEXT, character); });
}

} // namespace finf
