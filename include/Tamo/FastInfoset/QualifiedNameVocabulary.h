#ifndef TAMO_FASTINFOSET_QUALIFIEDNAMEVOCABULARY_H
#define TAMO_FASTINFOSET_QUALIFIEDNAMEVOCABULARY_H

#include "Tamo/Export.h"
#include "Tamo/Hash.h"
#include "Tamo/Types.h"

namespace Tamo::FastInfoset {

/// One entry of a name table (ITU-T X.891, 8.5): the indexes of a name's prefix, namespace name and local
/// name. A plain value. Index 0 and ABSENT both stand for an absent part.
class TAMO_API QualifiedNameEntry {
public:
    /// How a name surrogate marks an absent prefix or namespace name.
    static constexpr UInt32 ABSENT = 0xFFFFFFFF;

    /// All parts absent.
    QualifiedNameEntry() = default;

    QualifiedNameEntry(UInt32 prefix, UInt32 namespaceName, UInt32 localName) noexcept
        : _prefixId(prefix), _namespaceId(namespaceName), _localNameId(localName) {}

    /// Index into the prefix table.
    UInt32 prefixId() const noexcept { return _prefixId; }
    /// Index into the namespace name table.
    UInt32 namespaceId() const noexcept { return _namespaceId; }
    /// Index into the local name table.
    UInt32 localNameId() const noexcept { return _localNameId; }

    bool operator==(const QualifiedNameEntry& other) const noexcept = default;

    /// Lexicographic in the order prefix, namespace name, local name.
    bool operator<(const QualifiedNameEntry& other) const noexcept;

private:
    UInt32 _prefixId = 0;
    UInt32 _namespaceId = 0;
    UInt32 _localNameId = 0;
};

/// The 32-bit hash of an entry.
inline UInt32 hash(const QualifiedNameEntry& entry) noexcept {
    constexpr UInt32 SPREAD = 1000003;
    return (entry.prefixId() ^ SPREAD) * (entry.namespaceId() ^ SPREAD) * (entry.localNameId() ^ SPREAD);
}

} // namespace Tamo::FastInfoset

namespace Tamo {

/// The hash of a name entry modulo the table size.
template<>
struct HashFunction<FastInfoset::QualifiedNameEntry> {
    UInt32 operator()(const FastInfoset::QualifiedNameEntry& entry, UInt32 maxValue) const {
        return FastInfoset::hash(entry) % maxValue;
    }
};

} // namespace Tamo

#endif
