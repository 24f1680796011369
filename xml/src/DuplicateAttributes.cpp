#include "DuplicateAttributes.h"
#include <algorithm>

namespace Tamo::XML {

std::optional<int> DuplicateAttributes::find(const Attributes& attributes) {
    constexpr int FEW = 12;
    const int count = attributes.getLength();
    if (count <= FEW) {
        for (int i = 1; i < count; ++i) {
            const std::string& name = nameOf(attributes, i);
            for (int j = 0; j < i; ++j) {
                if (nameOf(attributes, j) == name && attributes.getURI(j) == attributes.getURI(i)) {
                    return i;
                }
            }
        }
        return std::nullopt;
    }
    // Ordered by keys, so that long names are read once unless they are equal.
    _keys.clear();
    for (int i = 0; i < count; ++i) {
        _keys.push_back({HashKey::of(nameOf(attributes, i)), i});
    }
    const auto compare = [&](const Key& a, const Key& b) {
        if (!(a.name == b.name)) {
            return a.name < b.name ? -1 : 1;
        }
        const int order = nameOf(attributes, a.index).compare(nameOf(attributes, b.index));
        return order != 0 ? order : attributes.getURI(a.index).compare(attributes.getURI(b.index));
    };
    std::sort(_keys.begin(), _keys.end(), [&](const auto& a, const auto& b) { return compare(a, b) < 0; });
    const auto twin = std::adjacent_find(_keys.begin(), _keys.end(),
                                         [&](const auto& a, const auto& b) { return compare(a, b) == 0; });
    return twin == _keys.end() ? std::nullopt : std::optional<int>(twin->index);
}

} // namespace Tamo::XML
