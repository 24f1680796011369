#include "Tamo/FastInfoset/QualifiedNameVocabulary.h"
#include <tuple>

namespace Tamo::FastInfoset {

bool QualifiedNameEntry::operator<(const QualifiedNameEntry& other) const noexcept {
    return std::tie(_prefixId, _namespaceId, _localNameId) <
           std::tie(other._prefixId, other._namespaceId, other._localNameId);
}

UInt32 hash(const QualifiedNameEntry& entry) noexcept {
    constexpr UInt32 SPREAD = 1000003;
    return (entry.prefixId() ^ SPREAD) * (entry.namespaceId() ^ SPREAD) * (entry.localNameId() ^ SPREAD);
}

} // namespace Tamo::FastInfoset
