#ifndef TAMO_FASTINFOSET_DOCUMENTVOCABULARY_H
#define TAMO_FASTINFOSET_DOCUMENTVOCABULARY_H

#include "Tamo/Export.h"
#include "Tamo/FastInfoset/DecodingAlgorithm.h"
#include "Tamo/FastInfoset/DocumentAlgorithms.h"
#include "Tamo/FastInfoset/DocumentRestrictedAlphabet.h"
#include "Tamo/FastInfoset/EncodingAlgorithm.h"
#include "Tamo/FastInfoset/QualifiedNameVocabulary.h"
#include "Tamo/FastInfoset/Vocabulary.h"
#include "Tamo/FastInfoset/detail/IndexedVocabulary.h"
#include <array>
#include <cstddef>
#include <memory>
#include <string>
#include <utility>

namespace Tamo::FastInfoset {

/// All vocabulary tables of one document (ITU-T X.891, clause 8), and the URI by which documents can refer to
/// them as an external vocabulary.
///
/// A parser or writer owns one and fills it as the document goes; an application can prepare one and hand it
/// over. Copies are deep. Misuse (a table that does not exist) fails an assertion; the tables' own failures
/// pass through. Used by one thread at a time.
class TAMO_API DocumentVocabulary {
public:
    /// The tables. Deliberate: OTHER_STRING stands before CONTENT_CHARACTER_CHUNK, unlike in the standard;
    /// code that walks the header's tables maps between the two orders.
    enum ID {
        RESTRICTED_ALPHABET = 0,
        ENCODING_ALGORITHM = 1,
        PREFIX = 2,
        NAMESPACE_NAME = 3,
        LOCAL_NAME = 4,
        OTHER_NCNAME = 5,
        OTHER_URI = 6,
        ATTRIBUTE_VALUE = 7,
        OTHER_STRING = 8,
        CONTENT_CHARACTER_CHUNK = 9,
        ELEMENT_NAME = 10,
        ATTRIBUTE_NAME = 11
    };

    /// The kinds of tables.
    enum VocabularyImpl {
        VOC_HASH = 0,  ///< HashVocabulary: fixed limits (40009 local names, 65521 character chunks, ...)
        VOC_MAP = 1,   ///< MapVocabulary: no limits
        VOC_VECTOR = 2 ///< VectorVocabulary: for parsers
    };

    /// The two-bit selector of an encoded character string (ITU-T X.891, 7.17.6).
    enum CharacterStringForm { UTF8 = 0, UTF16 = 1, RESTRICTEDALPHABET = 2, ENCODINGALGORITHM = 3 };

    /// What a name is the name of.
    enum class NameKind { ELEMENT, ATTRIBUTE };

    /// Tag of the constructor that builds no tables.
    struct DontInitialize {};

    /// Tables of one kind with the predefined entries: the prefix "xml" and its namespace name.
    explicit DocumentVocabulary(VocabularyImpl impl);

    /// The same, as an external vocabulary with this URI.
    DocumentVocabulary(const std::string& uri, VocabularyImpl impl);

    /// No tables.
    explicit DocumentVocabulary(DontInitialize);

    /// The entries of other, at the same indexes, in tables of another kind; an entry that occurs twice in
    /// other throws InvalidArgumentException unless the kind is VOC_VECTOR.
    DocumentVocabulary(const DocumentVocabulary& other, VocabularyImpl impl);

    /// Everything but the parser-side algorithms, which are the built-in ones in the copy.
    DocumentVocabulary(const DocumentVocabulary& other);

    /// The same; the parser-side algorithms stay as they are.
    DocumentVocabulary& operator=(const DocumentVocabulary& other);

    ~DocumentVocabulary();

    /// Returns the tables to the predefined entries. Alphabets, algorithms and URI stay.
    void reset();

    /// Makes the tables, of this vocabulary's kind, begin with the entries of another one, without copying
    /// them: that costs the same whatever their number. Alphabets and algorithms by URI become copies of its;
    /// URI, writer-side and parser-side algorithms stay. The other one must not change any more, and may be
    /// used so by any number of vocabularies in any threads; each keeps a share of it. One that is not of
    /// kind VOC_MAP or VOC_HASH, or has a table of the application's own, throws InvalidArgumentException.
    void reset(const std::shared_ptr<const DocumentVocabulary>& pBase);

    /// Whether the tables hold what another vocabulary has, on which reset() has laid them, and nothing else.
    bool holdsOnly(const DocumentVocabulary& base) const;

    /// True when all tables are there and hold the predefined entries alone, and there are no alphabets
    /// beyond the built-in ones.
    bool isPredefined() const;

    /// Deletes all tables. Alphabets, algorithms and URI stay.
    void clear();

    /// The table of strings for id, PREFIX to CONTENT_CHARACTER_CHUNK.
    Vocabulary<std::string>& vocabulary(ID voc) {
        checkTable(voc);
        return *_vocabularies[voc];
    }
    const Vocabulary<std::string>& vocabulary(ID voc) const {
        checkTable(voc);
        return *_vocabularies[voc];
    }

    /// The table of strings for id as what finds its values without virtual calls; null for a table of
    /// another kind and when tables have been replaced.
    IndexedVocabulary<std::string>* indexedVocabulary(ID voc) noexcept { return _indexed.strings[voc]; }
    const IndexedVocabulary<std::string>* indexedVocabulary(ID voc) const noexcept {
        return _indexed.strings[voc];
    }

    /// The table of names of a kind in the same way.
    IndexedVocabulary<QualifiedNameEntry>* indexedNames(NameKind kind) noexcept {
        return kind == NameKind::ELEMENT ? _indexed.pElements : _indexed.pAttributes;
    }
    const IndexedVocabulary<QualifiedNameEntry>* indexedNames(NameKind kind) const noexcept {
        return kind == NameKind::ELEMENT ? _indexed.pElements : _indexed.pAttributes;
    }

    /// The string at index of a table of strings.
    const std::string& value(ID vocabulary, unsigned int index) const;

    /// The index of s in a table of strings, adding it when absent.
    unsigned int index(ID vocabulary, const std::string& s, bool& found);

    /// The index of s in a table of strings, or 0xFFFFFFFF.
    unsigned int exists(ID vocabulary, const std::string& s, bool& found) const;

    /// Puts a table in the place of the one for id, and takes it over unless the assertion fails that id is
    /// one of a table of strings. A parser and a writer use the table by its operations alone.
    void initialize(ID vocabulary, Vocabulary<std::string>* table);

    /// The table of element names.
    Vocabulary<QualifiedNameEntry>& elementVocabulary() {
        tamo_assert(_pElementVocabulary);
        return *_pElementVocabulary;
    }
    const Vocabulary<QualifiedNameEntry>& elementVocabulary() const {
        tamo_assert(_pElementVocabulary);
        return *_pElementVocabulary;
    }

    /// The table of attribute names.
    Vocabulary<QualifiedNameEntry>& attributeVocabulary() {
        tamo_assert(_pAttributeVocabulary);
        return *_pAttributeVocabulary;
    }
    const Vocabulary<QualifiedNameEntry>& attributeVocabulary() const {
        tamo_assert(_pAttributeVocabulary);
        return *_pAttributeVocabulary;
    }

    /// The table of names of a kind.
    Vocabulary<QualifiedNameEntry>& names(NameKind kind) {
        return kind == NameKind::ELEMENT ? elementVocabulary() : attributeVocabulary();
    }
    const Vocabulary<QualifiedNameEntry>& names(NameKind kind) const {
        return kind == NameKind::ELEMENT ? elementVocabulary() : attributeVocabulary();
    }

    /// The restricted alphabets.
    DocumentRestrictedAlphabet& restrictedAlphabets() noexcept { return _alphabets; }
    const DocumentRestrictedAlphabet& restrictedAlphabets() const noexcept { return _alphabets; }

    /// The writer-side algorithms.
    EncodingAlgorithm& encodings() noexcept { return _encodings; }
    const EncodingAlgorithm& encodings() const noexcept { return _encodings; }

    /// The parser-side algorithms.
    DecodingAlgorithm& decodings() noexcept { return _decodings; }
    const DecodingAlgorithm& decodings() const noexcept { return _decodings; }

    /// The algorithms that the vocabulary declares by their URIs, which the strict mode reads and writes; an
    /// external vocabulary says here with which index its own begin. Kept by reset() and clear().
    DocumentAlgorithms& algorithms() noexcept { return _algorithms; }
    const DocumentAlgorithms& algorithms() const noexcept { return _algorithms; }

    /// The kind of the tables.
    VocabularyImpl impl() const noexcept { return _impl; }

    /// The URI as an external vocabulary; empty when none.
    const std::string& getURI() const noexcept { return _uri; }

    /// Makes this the external vocabulary with a URI.
    void setURI(const std::string& uri) { _uri = uri; }

    /// The same vocabulary in tables of kind VOC_MAP, in which an entry may occur twice, and absent parts of
    /// names are 0; without the parser-side algorithms. One that does not begin with the predefined entries
    /// throws InvalidArgumentException.
    DocumentVocabulary searchable() const;

    /// What this vocabulary holds beyond other: tables without placeholder that list the entries to announce,
    /// in their order. A table that other does not reach fails an assertion.
    DocumentVocabulary operator-(const DocumentVocabulary& other) const;

private:
    using StringTable = Vocabulary<std::string>;
    using NameTable = Vocabulary<QualifiedNameEntry>;

    // Tables that were made together, in one piece of memory.
    struct TableSet {
        virtual ~TableSet() = default;
    };
    template<class Strings, class Names>
    struct Tables;

    // A table of a set is deleted with the set.
    struct DeleteTable {
        DeleteTable() noexcept : isOfSet(false) {}
        explicit DeleteTable(bool ofSet) noexcept : isOfSet(ofSet) {}
        template<class T>
        void operator()(Vocabulary<T>* pTable) const {
            if (!isOfSet) {
                delete pTable;
            }
        }
        bool isOfSet;
    };
    using StringTablePtr = std::unique_ptr<StringTable, DeleteTable>;
    using NameTablePtr = std::unique_ptr<NameTable, DeleteTable>;

    // The tables of strings by their identifiers, in place.
    class StringTables {
    public:
        StringTables() = default;
        StringTables(StringTables&&) = delete;
        StringTables& operator=(StringTables&& other) noexcept {
            _tables = std::move(other._tables);
            _size = std::exchange(other._size, 0);
            return *this;
        }

        std::size_t size() const noexcept { return _size; }
        StringTablePtr& operator[](std::size_t id) noexcept { return _tables[id]; }
        const StringTablePtr& operator[](std::size_t id) const noexcept { return _tables[id]; }
        StringTablePtr* begin() noexcept { return _tables.data(); }
        StringTablePtr* end() noexcept { return _tables.data() + _size; }
        const StringTablePtr* begin() const noexcept { return _tables.data(); }
        const StringTablePtr* end() const noexcept { return _tables.data() + _size; }

        void push_back(StringTablePtr pTable) noexcept { _tables[_size++] = std::move(pTable); }

        void resize(std::size_t size) noexcept {
            while (_size > size) {
                _tables[--_size].reset();
            }
            _size = size;
        }

    private:
        std::array<StringTablePtr, ELEMENT_NAME> _tables;
        std::size_t _size = 0;
    };

    // The tables again as what they are, when every one was built here; null otherwise.
    struct IndexedTables {
        IndexedVocabulary<std::string>* strings[ELEMENT_NAME] = {};
        IndexedVocabulary<QualifiedNameEntry>* pElements = nullptr;
        IndexedVocabulary<QualifiedNameEntry>* pAttributes = nullptr;
    };

    template<class Strings, class Names>
    void create();
    template<class Strings, class Names>
    void emptyTables();
    template<class Strings, class Names>
    void layTables(const std::shared_ptr<const DocumentVocabulary>& pBase);
    void init();
    void copy(const DocumentVocabulary& other);
    void takeAsOwn();
    void checkTable(ID voc) const {
        tamo_assert(voc > DocumentVocabulary::ENCODING_ALGORITHM && voc < DocumentVocabulary::ELEMENT_NAME);
        tamo_assert(voc < _vocabularies.size());
        tamo_check_ptr(_vocabularies[voc]);
    }

    VocabularyImpl _impl = VOC_HASH;
    std::unique_ptr<TableSet> _pTables; // null when no table is of a set
    StringTables _vocabularies;
    DocumentRestrictedAlphabet _alphabets;
    EncodingAlgorithm _encodings;
    DecodingAlgorithm _decodings;
    DocumentAlgorithms _algorithms;
    NameTablePtr _pElementVocabulary;
    NameTablePtr _pAttributeVocabulary;
    std::string _uri;
    bool _ownTables = false; // every table was built here with its own limit, so that reset() may keep it
    IndexedTables _indexed;
};

} // namespace Tamo::FastInfoset

#endif
