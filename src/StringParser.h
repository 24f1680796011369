#ifndef TAMO_FASTINFOSET_STRINGPARSER_H
#define TAMO_FASTINFOSET_STRINGPARSER_H

#include "CommonForms.h"
#include "StrictText.h"
#include "Tamo/AutoPtr.h"
#include "Tamo/Export.h"
#include "Tamo/FastInfoset/DocumentVocabulary.h"
#include "Tamo/FastInfoset/Encoding.h"
#include "Tamo/FastInfoset/ParserLimits.h"
#include "Tamo/FastInfoset/StringDecoder.h"
#include "Tamo/FastInfoset/VectorVocabulary.h"
#include "Tamo/FastInfoset/VerbTable.h"
#include "Tamo/Types.h"
#include "TypedText.h"
#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>

namespace Tamo::FastInfoset {

class BitStreamReader;

/// Reads strings: an index stands for an equal one in its table, a literal may have to be entered there
/// (ITU-T X.891, 7.13 to 7.17). Keeps to the limits on strings and tables. Used by one thread at a time.
///
/// What an operation yields is of a table, in which it stays, or valid until the next operation.
class StringParser {
public:
    using ID = DocumentVocabulary::ID;

    /// A decoded value: text, or a typed value, which typed() is then, and whose text is given if it has been
    /// made.
    struct Value {
        const std::string* pText = nullptr;
        bool typed = false;
    };

    /// An entry of a table of strings.
    struct Entry {
        const std::string* pValue = nullptr;
        unsigned int index = 0;
    };

    /// What absent parts of names refer to.
    static const std::string EMPTY;

    /// With tables of a kind, or over a copy of a vocabulary.
    template<class Tables>
    explicit StringParser(const Tables& tables) : _vocabulary(tables) {}

    StringParser(const StringParser&) = delete;
    StringParser& operator=(const StringParser&) = delete;

    DocumentVocabulary& vocabulary() noexcept { return _vocabulary; }
    const DocumentVocabulary& vocabulary() const noexcept { return _vocabulary; }

    void setLimits(const ParserLimits& limits) { _limits = limits; }
    const ParserLimits& limits() const noexcept { return _limits; }

    /// Begins a document, whose header has been read, by the reader that reads the rest of it.
    void bindTables(const BitStreamReader& reader);

    /// How typed values become text.
    TypedText& typedText() noexcept { return _typedText; }

    /// The value at an index, or null where a table of this library has none, and of an application's table.
    TAMO_ALWAYS_INLINE const std::string* find(ID id, unsigned int index) const noexcept {
        return _tables[id]->find(index);
    }

    /// A part of a name table's entry, which a name surrogate may mark as absent.
    const std::string& namePart(ID id, unsigned int index) {
        return index == QualifiedNameEntry::ABSENT ? EMPTY : tableValue(id, index);
    }

    /// An identifying string at bit position 0 (X.891, C.13): an index or a literal that is not long, from
    /// the octets at hand; any other form by the reader.
    template<bool STRICT>
    TAMO_ALWAYS_INLINE Entry parseCommonIdentifying(BitStreamReader& reader, CommonForms& octets, ID id) {
        if (octets.areEnough()) [[likely]] {
            if (octets.first() & 0x80) {
                Entry entry;
                if (octets.integerAtPosition1(entry.index) && (entry.pValue = find(id, entry.index)))
                    [[likely]] {
                    octets.accept();
                    return entry;
                }
            } else {
                std::size_t size = 0;
                const char* pLiteral = nullptr;
                if (octets.lengthAtPosition1(size) && size <= _limits.maxStringLength &&
                    (pLiteral = octets.string(size))) [[likely]] {
                    if constexpr (STRICT) {
                        octets.leave(reader);
                        StrictText::requireUTF8(reader, {pLiteral, size});
                    }
                    return addLiteral(id, pLiteral, size);
                }
            }
        }
        return octets.apart(reader, [&] {
            Entry entry;
            entry.pValue = &parseIdentifying(reader, id, entry.index);
            return entry;
        });
    }

    /// An identifying string in any form.
    const std::string& parseIdentifying(BitStreamReader& reader, ID id, unsigned int& index);
    const std::string& parseIdentifying(BitStreamReader& reader, ID id);

    /// The same of one that is there; else EMPTY.
    const std::string& parseIdentifyingIf(BitStreamReader& reader, bool present, ID id);

    /// Another string, at bit position 0 or 2 (X.891, C.14 and C.15).
    Value parseOther(BitStreamReader& reader, ID id);

    /// The same as text: typed values become theirs.
    const std::string& parseOtherText(BitStreamReader& reader, ID id);

    /// The value of an attribute, which is typed where it is an array or octets, or strictly of an
    /// application's algorithm.
    Value parseAttributeValue(BitStreamReader& reader);

    /// Whether a text that was yielded belongs to no table.
    bool isOwnText(const std::string& text) const noexcept { return &text == &_text; }

    /// The last typed value, and its algorithm's index.
    const AutoPtr<Encoding>& typed() const noexcept { return _pTyped; }
    unsigned int typedAlgorithm() const noexcept { return _typedAlgorithm; }

    /// Enters a name in the table of its kind and returns its index.
    template<bool STRICT>
    TAMO_ALWAYS_INLINE unsigned int addName(DocumentVocabulary::NameKind kind,
                                            const QualifiedNameEntry& name) {
        if (STRICT && !_areNamesAppended) [[unlikely]] {
            return addNameAlways(kind, name);
        }
        Vocabulary<QualifiedNameEntry>& names = _vocabulary.names(kind);
        bool found = false;
        const unsigned int index = names.index(name, found);
        requireEntries(names.size());
        return index;
    }

    /// The entry of a name table at an index.
    QualifiedNameEntry name(DocumentVocabulary::NameKind kind, unsigned int index);

    /// Enters a literal that is no part of a name; where it stays, unless the table is of an unusual kind or
    /// full.
    TAMO_ALWAYS_INLINE const std::string* keep(ID id, const char* pText, std::size_t size) {
        VectorVocabulary<std::string>* const pTable = _appendedTables[id];
        if (pTable && _tables[id]->size() < _mostKept) [[likely]] {
            return &pTable->append(std::string_view(pText, size));
        }
        return keepElsewhere(id, pText, size);
    }

    /// Refuses a table with more entries than the limit.
    void requireEntries(std::size_t count) const {
        if (count > _limits.maxTableEntries) [[unlikely]] {
            throwLimitExceeded("Limit exceeded: table entries", _limits.maxTableEntries);
        }
    }

    [[noreturn]] static void throwLimitExceeded(const char* message, UInt64 limit);

private:
    Entry addLiteral(ID id, const char* pText, std::size_t size);
    Value parseEncoded(BitStreamReader& reader);
    Value parseOtherValue(BitStreamReader& reader, ID id);
    const std::string& textOf(const Value& value);
    unsigned int addToTable(ID id, const std::string& s);
    unsigned int addNameAlways(DocumentVocabulary::NameKind kind, const QualifiedNameEntry& name);
    unsigned int addStrictly(ID id, const std::string& s);
    Entry addOtherLiteral(ID id, const char* pText, std::size_t size);
    const std::string* keepElsewhere(ID id, const char* pText, std::size_t size);
    void keepOther(ID id, const std::string& s);
    TAMO_ALWAYS_INLINE const std::string& tableValue(ID id, unsigned int index) {
        const std::string* const pValue = find(id, index);
        return pValue ? *pValue : otherValue(id, index);
    }
    const std::string& otherValue(ID id, unsigned int index);

    DocumentVocabulary _vocabulary;
    std::array<const VerbTable<std::string>*, DocumentVocabulary::ELEMENT_NAME> _tables{};
    std::array<VectorVocabulary<std::string>*, DocumentVocabulary::ELEMENT_NAME> _appendedTables{}; // or null
    std::size_t _mostKept = 0; // entries of a table of strings that are no parts of names
    std::unordered_map<UInt64, std::string> _copiedValues; // by table and index, of an application's tables
    ParserLimits _limits;
    std::string _scratch;
    std::string _octets;
    std::string _text;
    AutoPtr<Encoding> _pTyped;
    unsigned int _typedAlgorithm = 0;
    TypedText _typedText;
    const BitStreamReader* _pReader = nullptr; // of the document that is read
    bool _isStrict = false;
    bool _areNamesAppended = false; // by either table of names, whatever it holds
};

} // namespace Tamo::FastInfoset

#endif
