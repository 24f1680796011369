#include "Tamo/FastInfoset/QualifiedNameVocabulary.h"
#include <tuple>

namespace Tamo::FastInfoset {

bool QualifiedNameEntry::operator<(const QualifiedNameEntry& other) const noexcept {
    return std::tie(_prefixId, _namespaceId, _localNameId) <
           std::tie(other._prefixId, other._namespaceId, other._localNameId);
}

} // namespace Tamo::FastInfoset
