#ifndef TAMO_FASTINFOSET_NAMEWRITER_H
#define TAMO_FASTINFOSET_NAMEWRITER_H

#include "StringWriter.h"
#include "Tamo/FastInfoset/DocumentVocabulary.h"
#include <array>
#include <cstddef>
#include <span>
#include <string>

namespace Tamo::FastInfoset {

/// Writes qualified names: as the index of an equal one in the table of its kind, or in full, and then enters
/// them (ITU-T X.891, 7.16). Used by one thread at a time.
class NameWriter {
public:
    using NameKind = DocumentVocabulary::NameKind;

    /// A name in its parts, of which prefix and namespace name may be empty.
    struct Name {
        NameKind kind;
        const std::string* pPrefix;
        const std::string* pUri;
        const std::string* pLocalName; ///< null for a declaration, which has no name but these parts
    };

    /// To a stream or sink, with tables of a kind or over a copy of a vocabulary.
    template<class Target, class Tables>
    NameWriter(Target& target, const Tables& tables) : _strings(target, tables) {}

    NameWriter(const NameWriter&) = delete;
    NameWriter& operator=(const NameWriter&) = delete;

    /// What writes the names' parts.
    StringWriter& strings() noexcept { return _strings; }
    const StringWriter& strings() const noexcept { return _strings; }

    /// Forgets what it knows of the tables, which may have changed.
    void forget() noexcept;

    /// Begins a document, whose header has been written.
    void startDocument();

    /// Writes a name at bit position 2 (an element's, X.891, C.18) or 1 (an attribute's, C.17) behind the
    /// high bits of the octet; returns its index, in the strict mode NOT_FOUND for one that finds no place in
    /// its table, or has a part without index. The name must have a local name, the assertion says so.
    unsigned int write(OctetComposer& octets, NameKind kind, unsigned int high, const std::string& prefix,
                       const std::string& uri, const std::string& localName);

    /// Writes a declaration (X.891, C.12).
    void writeDeclaration(OctetComposer& octets, const std::string& prefix, const std::string& uri);

    /// Whether the tables may not take so many names and declarations more.
    bool isNearlyFull(std::size_t count) {
        if (_entries + count <= MOST_ENTRIES) [[likely]] {
            return false;
        }
        _entries = largestTable();
        return _entries + count > MOST_ENTRIES;
    }

    /// Throws FISEncodingException where names cannot be written together: a part of one is longer than its
    /// length can tell, or a table is full (X.891, 7.13.7 and 7.16.8). To be asked before their construct
    /// begins.
    void require(std::span<const Name> names) const;

private:
    using FoundString = StringWriter::Found;
    using FoundName = ValueIndex<QualifiedNameEntry>::Found;

    static constexpr unsigned int NOT_FOUND = StringWriter::NOT_FOUND;
    static constexpr std::size_t MOST_ENTRIES = Forms::MOST_INTEGER + 1; // with the placeholder

    FoundString findPart(DocumentVocabulary::ID id, const std::string& text, HashKey key);
    FoundName find(NameKind kind, const QualifiedNameEntry& name, HashKey key);
    unsigned int enter(NameKind kind, const QualifiedNameEntry& name, bool hasNewPart);
    std::size_t largestTable() const;

    StringWriter _strings;
    std::string _recentNamespace; // of the last name that was written in full, empty for none
    unsigned int _recentNamespaceIndex = 0;
    // Of each table of names how many entries are made of parts that the other tables have.
    std::array<std::size_t, 2> _ownNames{};
    std::size_t _entries = MOST_ENTRIES; // that no table has more of
};

} // namespace Tamo::FastInfoset

#endif
