#include "Tamo/FastInfoset/DocumentVocabulary.h"
#include "OwnTable.h"
#include "Tamo/Exception.h"
#include "Tamo/FastInfoset/HashVocabulary.h"
#include "Tamo/FastInfoset/MapVocabulary.h"
#include "Tamo/FastInfoset/VectorVocabulary.h"
#include "Tamo/XML/NamespaceSupport.h"
#include <array>
#include <iterator>
#include <utility>

namespace Tamo::FastInfoset {

namespace {

// How many entries the tables with a limit accept, the placeholder included.
constexpr unsigned long ELEMENT_NAME_LIMIT = 10009;
constexpr unsigned long ATTRIBUTE_NAME_LIMIT = 10009;

// In the order of the identifiers, from PREFIX to CONTENT_CHARACTER_CHUNK.
constexpr unsigned long STRING_LIMITS[] = {251, 251, 40009, 40009, 19, 40009, 19, 65521};

// Enters the values of from, placeholder aside, at the indexes that they have there.
template<class T>
void enterAll(const Vocabulary<T>& from, Vocabulary<T>& to) {
    for (std::size_t i = to.size(); i < from.size(); ++i) {
        bool found = false;
        to.index(from.value(static_cast<unsigned int>(i)), found);
        if (found) {
            throw InvalidArgumentException("A vocabulary in which an entry occurs twice cannot be searched",
                                           "index " + std::to_string(i));
        }
    }
}

// An entry as it is looked for: with 0 for what is absent.
const std::string& searched(const std::string& entry) noexcept {
    return entry;
}
QualifiedNameEntry searched(const QualifiedNameEntry& name) noexcept {
    const auto part = [](UInt32 index) { return index != QualifiedNameEntry::ABSENT ? index : 0; };
    return {part(name.prefixId()), part(name.namespaceId()), part(name.localNameId())};
}

// The same of tables in which an entry may occur twice.
template<class T>
void enterSearched(const Vocabulary<T>& from, IndexedVocabulary<T>& to) {
    for (unsigned int i = 0; i < to.size(); ++i) {
        if (i >= from.size() || from.value(i) != to.values()[i]) {
            throw InvalidArgumentException("A vocabulary lacks the entry that every one begins with",
                                           "index " + std::to_string(i));
        }
    }
    for (auto i = static_cast<unsigned int>(to.size()); i < from.size(); ++i) {
        const T& value = searched(from.value(i));
        to.append(value, ValueIndex<T>::keyOf(value));
    }
}

} // namespace

DocumentVocabulary::DocumentVocabulary(VocabularyImpl impl) : _impl(impl) {
    reset();
}

DocumentVocabulary::DocumentVocabulary(const std::string& uri, VocabularyImpl impl) : _impl(impl), _uri(uri) {
    reset();
}

DocumentVocabulary::DocumentVocabulary(DontInitialize) {}

DocumentVocabulary::DocumentVocabulary(const DocumentVocabulary& other, VocabularyImpl impl)
    : _impl(impl),
      _alphabets(other._alphabets),
      _encodings(other._encodings),
      _algorithms(other._algorithms),
      _uri(other._uri) {
    reset();
    for (std::size_t id = PREFIX; id <= CONTENT_CHARACTER_CHUNK; ++id) {
        enterAll(other.vocabulary(static_cast<ID>(id)), *_vocabularies[id]);
    }
    enterAll(other.elementVocabulary(), *_pElementVocabulary);
    enterAll(other.attributeVocabulary(), *_pAttributeVocabulary);
}

DocumentVocabulary::DocumentVocabulary(const DocumentVocabulary& other) {
    copy(other);
}

DocumentVocabulary& DocumentVocabulary::operator=(const DocumentVocabulary& other) {
    if (this != &other) {
        // Nothing is given up before all of the copy is there.
        DocumentVocabulary copied(other);
        clear();
        _impl = copied._impl;
        _vocabularies = std::move(copied._vocabularies);
        _pElementVocabulary = std::move(copied._pElementVocabulary);
        _pAttributeVocabulary = std::move(copied._pAttributeVocabulary);
        _alphabets = std::move(copied._alphabets);
        _encodings = std::move(copied._encodings);
        _algorithms = std::move(copied._algorithms);
        _uri = std::move(copied._uri);
        _ownTables = copied._ownTables;
        _indexed = copied._indexed;
    }
    return *this;
}

DocumentVocabulary::~DocumentVocabulary() = default;

void DocumentVocabulary::reset() {
    if (!_ownTables) {
        clear();
    }
    // Emptying the tables is the same as building them anew, and costs a small document nothing.
    switch (_impl) {
    case VOC_VECTOR:
        emptyTables<VectorVocabulary<std::string>, VectorVocabulary<QualifiedNameEntry>>();
        break;
    case VOC_MAP:
        emptyTables<MapVocabulary<std::string>, MapVocabulary<QualifiedNameEntry>>();
        break;
    case VOC_HASH:
        emptyTables<HashVocabulary<std::string>, HashVocabulary<QualifiedNameEntry>>();
        break;
    }
    init();
    takeAsOwn();
}

// Every table is of the kind that _impl says, and has its own limit.
void DocumentVocabulary::takeAsOwn() {
    _ownTables = true;
    if (_impl != VOC_VECTOR) {
        for (std::size_t id = PREFIX; id < _vocabularies.size(); ++id) {
            _indexed.strings[id] = static_cast<IndexedVocabulary<std::string>*>(_vocabularies[id].get());
        }
        _indexed.pElements = static_cast<IndexedVocabulary<QualifiedNameEntry>*>(_pElementVocabulary.get());
        _indexed.pAttributes =
            static_cast<IndexedVocabulary<QualifiedNameEntry>*>(_pAttributeVocabulary.get());
    }
}

bool DocumentVocabulary::isPredefined() const {
    if (!_pElementVocabulary || !_pAttributeVocabulary || _vocabularies.size() != ELEMENT_NAME) {
        return false;
    }
    // What was built here has its placeholders, and "xml" first; in an application's table they are looked
    // for.
    const auto isEmpty = [this]<class T>(const Vocabulary<T>& table) {
        return table.size() == 1 && (_ownTables || table.value(0) == T());
    };
    const auto holdsOnly = [this](const StringTable* pTable, std::string_view value) {
        return pTable && pTable->size() == 2 &&
               (_ownTables || (pTable->value(0).empty() && pTable->value(1) == value));
    };
    for (std::size_t id = LOCAL_NAME; id <= CONTENT_CHARACTER_CHUNK; ++id) {
        if (!_vocabularies[id] || !isEmpty(*_vocabularies[id])) {
            return false;
        }
    }
    return holdsOnly(_vocabularies[PREFIX].get(), XML::NamespaceSupport::XML_NAMESPACE_PREFIX) &&
           holdsOnly(_vocabularies[NAMESPACE_NAME].get(), XML::NamespaceSupport::XML_NAMESPACE) &&
           isEmpty(*_pElementVocabulary) && isEmpty(*_pAttributeVocabulary) &&
           _alphabets.alphabets().size() == DocumentRestrictedAlphabet::BUILT_IN;
}

void DocumentVocabulary::clear() {
    _vocabularies.resize(0);
    _pElementVocabulary.reset();
    _pAttributeVocabulary.reset();
    _pTables.reset();
    _ownTables = false;
    _indexed = IndexedTables();
}

template<class Strings, class Names>
struct DocumentVocabulary::Tables : TableSet {
    Names elements{ELEMENT_NAME_LIMIT};
    Names attributes{ATTRIBUTE_NAME_LIMIT};
    std::array<Strings, std::size(STRING_LIMITS)> strings{
        Strings(STRING_LIMITS[0]), Strings(STRING_LIMITS[1]), Strings(STRING_LIMITS[2]),
        Strings(STRING_LIMITS[3]), Strings(STRING_LIMITS[4]), Strings(STRING_LIMITS[5]),
        Strings(STRING_LIMITS[6]), Strings(STRING_LIMITS[7])};
};

template<class Strings, class Names>
void DocumentVocabulary::create() {
    auto pTables = std::make_unique_for_overwrite<Tables<Strings, Names>>();
    _vocabularies.resize(PREFIX);
    for (Strings& table : pTables->strings) {
        _vocabularies.push_back(StringTablePtr(&table, DeleteTable{true}));
    }
    _pElementVocabulary = NameTablePtr(&pTables->elements, DeleteTable{true});
    _pAttributeVocabulary = NameTablePtr(&pTables->attributes, DeleteTable{true});
    _pTables = std::move(pTables);
}

// The tables that were built here, of these classes, without their entries; or new ones.
template<class Strings, class Names>
void DocumentVocabulary::emptyTables() {
    if (!_ownTables) {
        create<Strings, Names>();
        return;
    }
    for (std::size_t id = PREFIX; id < _vocabularies.size(); ++id) {
        static_cast<Strings&>(*_vocabularies[id]).reset();
    }
    static_cast<Names&>(*_pElementVocabulary).reset();
    static_cast<Names&>(*_pAttributeVocabulary).reset();
}

// The same, laid on those of another vocabulary.
template<class Strings, class Names>
void DocumentVocabulary::layTables(const std::shared_ptr<const DocumentVocabulary>& pBase) {
    if (!_ownTables) {
        clear();
        create<Strings, Names>();
    }
    for (std::size_t id = PREFIX; id < _vocabularies.size(); ++id) {
        static_cast<Strings&>(*_vocabularies[id]).reset(*pBase->_indexed.strings[id], pBase);
    }
    static_cast<Names&>(*_pElementVocabulary).reset(*pBase->_indexed.pElements, pBase);
    static_cast<Names&>(*_pAttributeVocabulary).reset(*pBase->_indexed.pAttributes, pBase);
}

void DocumentVocabulary::reset(const std::shared_ptr<const DocumentVocabulary>& pBase) {
    if (!pBase || !pBase->_indexed.pElements) {
        throw InvalidArgumentException("A vocabulary to begin with must be one that can be searched");
    }
    switch (_impl) {
    case VOC_VECTOR:
        layTables<VectorVocabulary<std::string>, VectorVocabulary<QualifiedNameEntry>>(pBase);
        break;
    case VOC_MAP:
        layTables<MapVocabulary<std::string>, MapVocabulary<QualifiedNameEntry>>(pBase);
        break;
    case VOC_HASH:
        layTables<HashVocabulary<std::string>, HashVocabulary<QualifiedNameEntry>>(pBase);
        break;
    }
    takeAsOwn();
    _alphabets = pBase->_alphabets;
    _algorithms = pBase->_algorithms;
}

bool DocumentVocabulary::holdsOnly(const DocumentVocabulary& base) const {
    if (!_ownTables || !base._indexed.pElements ||
        _alphabets.alphabets().size() != base._alphabets.alphabets().size() ||
        _algorithms.uris().size() != base._algorithms.uris().size()) {
        return false;
    }
    const auto isOnly = []<class T>(const Vocabulary<T>& table, const IndexedVocabulary<T>& below) {
        const VerbTable<T>& values = *OwnTable::valuesOf(table);
        return values.base() == &below.values() && values.ownSize() == 0;
    };
    for (std::size_t id = PREFIX; id < _vocabularies.size(); ++id) {
        if (!isOnly(*_vocabularies[id], *base._indexed.strings[id])) {
            return false;
        }
    }
    return isOnly(*_pElementVocabulary, *base._indexed.pElements) &&
           isOnly(*_pAttributeVocabulary, *base._indexed.pAttributes);
}

void DocumentVocabulary::init() {
    bool dummy = false;
    tamo_assert(_vocabularies[DocumentVocabulary::PREFIX]->index("xml", dummy) == 1);
    tamo_assert(_vocabularies[DocumentVocabulary::NAMESPACE_NAME]->index(XML::NamespaceSupport::XML_NAMESPACE,
                                                                         dummy) == 1);
}

const std::string& DocumentVocabulary::value(ID vocabulary, unsigned int index) const {
    tamo_assert(vocabulary > DocumentVocabulary::ENCODING_ALGORITHM &&
                vocabulary < DocumentVocabulary::ELEMENT_NAME);
    return this->vocabulary(vocabulary).value(index);
}

unsigned int DocumentVocabulary::index(ID vocabulary, const std::string& s, bool& found) {
    tamo_assert(vocabulary > DocumentVocabulary::ENCODING_ALGORITHM &&
                vocabulary < DocumentVocabulary::ELEMENT_NAME);
    return this->vocabulary(vocabulary).index(s, found);
}

unsigned int DocumentVocabulary::exists(ID vocabulary, const std::string& s, bool& found) const {
    tamo_assert(vocabulary > DocumentVocabulary::ENCODING_ALGORITHM &&
                vocabulary < DocumentVocabulary::ELEMENT_NAME);
    return this->vocabulary(vocabulary).exists(s, found);
}

void DocumentVocabulary::initialize(ID vocabulary, Vocabulary<std::string>* table) {
    tamo_assert(vocabulary > DocumentVocabulary::ENCODING_ALGORITHM &&
                vocabulary < DocumentVocabulary::ELEMENT_NAME);
    StringTablePtr pTable(table);
    if (_vocabularies.size() <= static_cast<std::size_t>(vocabulary)) {
        _vocabularies.resize(static_cast<std::size_t>(vocabulary) + 1);
    }
    _vocabularies[vocabulary] = std::move(pTable);
    _ownTables = false;
    _indexed = IndexedTables();
}

void DocumentVocabulary::copy(const DocumentVocabulary& other) {
    _impl = other._impl;
    _uri = other._uri;
    for (const auto& pTable : other._vocabularies) {
        _vocabularies.push_back(StringTablePtr(pTable ? pTable->clone() : nullptr));
    }
    _alphabets = other._alphabets;
    _encodings = other._encodings;
    _algorithms = other._algorithms;
    _pElementVocabulary =
        NameTablePtr(other._pElementVocabulary ? other._pElementVocabulary->clone() : nullptr);
    _pAttributeVocabulary =
        NameTablePtr(other._pAttributeVocabulary ? other._pAttributeVocabulary->clone() : nullptr);
    if (other._ownTables) {
        takeAsOwn();
    }
}

DocumentVocabulary DocumentVocabulary::searchable() const {
    DocumentVocabulary result(_uri, VOC_MAP);
    result._alphabets = _alphabets;
    result._encodings = _encodings;
    result._algorithms = _algorithms;
    for (std::size_t id = PREFIX; id < ELEMENT_NAME; ++id) {
        enterSearched(vocabulary(static_cast<ID>(id)), *result._indexed.strings[id]);
    }
    enterSearched(elementVocabulary(), *result._indexed.pElements);
    enterSearched(attributeVocabulary(), *result._indexed.pAttributes);
    return result;
}

DocumentVocabulary DocumentVocabulary::operator-(const DocumentVocabulary& doc) const {
    DocumentVocabulary result{DontInitialize()};
    result._impl = _impl;
    auto itDoc = doc._vocabularies.begin();
    for (const auto& pTable : _vocabularies) {
        tamo_assert(itDoc != doc._vocabularies.end());
        if (!pTable) {
            result._vocabularies.push_back(StringTablePtr());
        } else {
            result._vocabularies.push_back(
                StringTablePtr(*itDoc ? pTable->subtract(**itDoc) : pTable->clone()));
        }
        ++itDoc;
    }
    result._alphabets = _alphabets - doc._alphabets;
    result._pElementVocabulary = NameTablePtr(elementVocabulary().subtract(doc.elementVocabulary()));
    result._pAttributeVocabulary = NameTablePtr(attributeVocabulary().subtract(doc.attributeVocabulary()));
    return result;
}

} // namespace Tamo::FastInfoset
