#include "NameWriter.h"
#include "Tamo/FastInfoset/Encoder.h"
#include "Tamo/FastInfoset/FISException.h"
#include <algorithm>
#include <set>
#include <string_view>
#include <tuple>
#include <utility>

namespace Tamo::FastInfoset {

namespace {

// Which parts a name or a declaration has.
unsigned int presence(const std::string& prefix, const std::string& uri) {
    return (prefix.empty() ? 0u : Forms::HAS_PREFIX) | (uri.empty() ? 0u : Forms::HAS_NAMESPACE);
}

} // namespace

void NameWriter::forget() noexcept {
    _ownNames = {};
    _recentNamespace.clear();
    _entries = MOST_ENTRIES;
}

void NameWriter::startDocument() {
    for (const NameKind kind : {NameKind::ELEMENT, NameKind::ATTRIBUTE}) {
        _ownNames[static_cast<std::size_t>(kind)] = _strings.vocabulary().names(kind).size() == 1 ? 1 : 0;
    }
}

unsigned int NameWriter::write(OctetComposer& octets, NameKind kind, unsigned int high,
                               const std::string& prefix, const std::string& uri,
                               const std::string& localName) {
    const bool isElement = kind == NameKind::ELEMENT;
    if (localName.empty()) [[unlikely]] {
        octets.flush();
        _strings.writer().write(high >> (isElement ? 6 : 7), isElement ? 2 : 1); // the construct had begun
    }
    tamo_assert(!localName.empty());
    const HashKey localKey = HashKey::of(localName);
    const HashKey prefixKey = HashKey::of(prefix);
    const FoundString local = _strings.findIdentifying(DocumentVocabulary::LOCAL_NAME, localName, localKey);
    const FoundString foundPrefix = findPart(DocumentVocabulary::PREFIX, prefix, prefixKey);
    const bool isRecent = !uri.empty() && uri == _recentNamespace;
    const HashKey uriKey = isRecent ? HashKey(0, 0) : HashKey::of(uri);
    const FoundString foundUri = isRecent ? FoundString{_recentNamespaceIndex, 0}
                                          : findPart(DocumentVocabulary::NAMESPACE_NAME, uri, uriKey);
    const bool areKnown =
        local.index != NOT_FOUND && foundPrefix.index != NOT_FOUND && foundUri.index != NOT_FOUND;
    if (areKnown) {
        const QualifiedNameEntry name(static_cast<unsigned int>(foundPrefix.index),
                                      static_cast<unsigned int>(foundUri.index),
                                      static_cast<unsigned int>(local.index));
        const FoundName found = find(kind, name, ValueIndex<QualifiedNameEntry>::keyOf(name));
        if (found.index != NOT_FOUND) {
            const auto index = static_cast<unsigned int>(found.index);
            if (isElement && OctetComposer::fitsPosition2(index)) {
                octets.integerAtPosition2(high, index);
            } else if (!isElement && OctetComposer::fitsPosition1(index)) {
                octets.integerAtPosition1(high, index);
            } else {
                octets.flush();
                _strings.writer().write(high >> (isElement ? 6 : 7), isElement ? 2 : 1);
                Encoder::integer(_strings.writer(), index);
            }
            return index;
        }
    }
    ++_entries;
    octets.octet((isElement ? high | Forms::ELEMENT_NAME : Forms::ATTRIBUTE_NAME) | presence(prefix, uri));
    unsigned int prefixId = 0;
    unsigned int uriId = 0;
    if (!prefix.empty()) {
        prefixId =
            _strings.writeIdentifying(octets, prefix, DocumentVocabulary::PREFIX, prefixKey, foundPrefix);
    }
    if (!uri.empty()) {
        uriId = _strings.writeIdentifying(octets, uri, DocumentVocabulary::NAMESPACE_NAME, uriKey, foundUri);
        if (!isRecent && uriId != NOT_FOUND &&
            _strings.vocabulary().indexedVocabulary(DocumentVocabulary::NAMESPACE_NAME)) {
            _recentNamespace = uri;
            _recentNamespaceIndex = uriId;
        }
    }
    const unsigned int localNameId =
        _strings.writeIdentifying(octets, localName, DocumentVocabulary::LOCAL_NAME, localKey, local);
    if (_strings.isStrict() && (prefixId == NOT_FOUND || uriId == NOT_FOUND || localNameId == NOT_FOUND ||
                                _strings.vocabulary().names(kind).size() >= MOST_ENTRIES)) [[unlikely]] {
        return NOT_FOUND;
    }
    return enter(kind, QualifiedNameEntry(prefixId, uriId, localNameId), !areKnown);
}

// Often there is none, which every table of ours has as its placeholder.
TAMO_ALWAYS_INLINE NameWriter::FoundString NameWriter::findPart(DocumentVocabulary::ID id,
                                                                const std::string& text, HashKey key) {
    return text.empty() && _strings.vocabulary().indexedVocabulary(id)
               ? FoundString{0, 0}
               : _strings.findIdentifying(id, text, key);
}

TAMO_ALWAYS_INLINE NameWriter::FoundName NameWriter::find(NameKind kind, const QualifiedNameEntry& name,
                                                          HashKey key) {
    if (const auto* const pTable = _strings.vocabulary().indexedNames(kind)) [[likely]] {
        return pTable->find(name, key);
    }
    bool found = false;
    return {_strings.vocabulary().names(kind).exists(name, found), 0};
}

TAMO_ALWAYS_INLINE unsigned int NameWriter::enter(NameKind kind, const QualifiedNameEntry& name,
                                                  bool hasNewPart) {
    bool qneExists = false;
    if (auto* const pTable = _strings.vocabulary().indexedNames(kind)) [[likely]] {
        const HashKey key = ValueIndex<QualifiedNameEntry>::keyOf(name);
        // A name with a new part is new among names that are made of known ones.
        std::size_t& ownNames = _ownNames[static_cast<std::size_t>(kind)];
        if (hasNewPart && pTable->values().size() == ownNames) [[likely]] {
            ++ownNames;
            return pTable->append(name, key);
        }
        const FoundName found = pTable->find(name, key);
        qneExists = found.index != NOT_FOUND;
        tamo_assert(!qneExists);
        ownNames += pTable->values().size() == ownNames ? 1 : 0;
        return pTable->append(name, key, found);
    }
    const unsigned int index = _strings.vocabulary().names(kind).index(name, qneExists);
    tamo_assert(!qneExists);
    return index;
}

void NameWriter::writeDeclaration(OctetComposer& octets, const std::string& prefix, const std::string& uri) {
    ++_entries;
    octets.octet(Forms::NAMESPACE_ATTRIBUTE | presence(prefix, uri));
    if (!prefix.empty()) {
        _strings.writeIdentifying(octets, prefix, DocumentVocabulary::PREFIX);
    }
    if (!uri.empty()) {
        _strings.writeIdentifying(octets, uri, DocumentVocabulary::NAMESPACE_NAME);
    }
}

std::size_t NameWriter::largestTable() const {
    std::size_t largest = std::max(_strings.vocabulary().names(NameKind::ELEMENT).size(),
                                   _strings.vocabulary().names(NameKind::ATTRIBUTE).size());
    for (const auto id :
         {DocumentVocabulary::PREFIX, DocumentVocabulary::NAMESPACE_NAME, DocumentVocabulary::LOCAL_NAME}) {
        largest = std::max(largest, _strings.vocabulary().vocabulary(id).size());
    }
    return largest;
}

void NameWriter::require(std::span<const Name> names) const {
    // The parts that would be entered, by table, and the names: by their parts, for not all of them have an
    // index yet.
    std::array<std::set<std::string_view>, DocumentVocabulary::ELEMENT_NAME> parts;
    std::set<std::tuple<NameKind, std::string_view, std::string_view, std::string_view>> newNames;
    std::array<std::size_t, 2> nameCounts{_strings.vocabulary().names(NameKind::ELEMENT).size(),
                                          _strings.vocabulary().names(NameKind::ATTRIBUTE).size()};
    const auto require = [&](DocumentVocabulary::ID id, const std::string& part) {
        if (part.size() > Forms::LengthAt1::MOST) {
            StringWriter::throwTooLong(part.size(), Forms::LengthAt1::MOST);
        }
        const Vocabulary<std::string>& table = _strings.vocabulary().vocabulary(id);
        bool found = false;
        const unsigned int index = part.empty() ? 0 : table.exists(part, found);
        if (!part.empty() && !found) {
            parts[id].insert(part);
            if (table.size() + parts[id].size() > MOST_ENTRIES) {
                StringWriter::throwFull("identifying strings", part);
            }
        }
        return index;
    };
    for (const Name& name : names) {
        const unsigned int prefixId = require(DocumentVocabulary::PREFIX, *name.pPrefix);
        const unsigned int uriId = require(DocumentVocabulary::NAMESPACE_NAME, *name.pUri);
        if (!name.pLocalName) {
            continue;
        }
        const unsigned int localNameId = require(DocumentVocabulary::LOCAL_NAME, *name.pLocalName);
        const bool hasNewPart = prefixId == NOT_FOUND || uriId == NOT_FOUND || localNameId == NOT_FOUND;
        bool found = false;
        if (!hasNewPart) {
            _strings.vocabulary().names(name.kind).exists(QualifiedNameEntry(prefixId, uriId, localNameId),
                                                          found);
        }
        if (!found && newNames.emplace(name.kind, *name.pPrefix, *name.pUri, *name.pLocalName).second &&
            ++nameCounts[static_cast<std::size_t>(name.kind)] > MOST_ENTRIES) {
            StringWriter::throwFull(name.kind == NameKind::ELEMENT ? "element names" : "attribute names",
                                    *name.pLocalName);
        }
    }
}

} // namespace Tamo::FastInfoset
