#include "ElementWriter.h"
#include "AlgorithmIndex.h"
#include "LegalStrings.h"
#include "Tamo/Export.h"
#include "Tamo/FastInfoset/CDataEncoding.h"
#include "Tamo/FastInfoset/FISException.h"
#include "Tamo/FastInfoset/NullEncoding.h"
#include "Tamo/FastInfoset/TypedAttributes.h"
#include "Tamo/XML/Name.h"
#include <algorithm>
#include <string_view>
#include <typeinfo>

namespace Tamo::FastInfoset {

namespace {

using XML::NamespaceSupport;

TAMO_CONSTINIT const std::string EMPTY;

constexpr const char* ATTRIBUTE = "the value of an attribute";

constexpr unsigned int TEXT = 0; // in the place of an algorithm's index

std::string_view prefixOf(const std::string& qname) {
    const std::size_t colon = qname.find(':');
    return colon == std::string::npos ? std::string_view() : std::string_view(qname).substr(0, colon);
}

WrittenNames::Kind kindOf(const std::string& attributeURI, const std::string& elementURI) {
    return attributeURI == elementURI ? WrittenNames::NATIVE_ATTRIBUTE : WrittenNames::FOREIGN_ATTRIBUTE;
}

[[noreturn]] void refusePrefix(const char* construct, const std::string& qname) {
    throw FISEncodingException(std::string("Cannot write ") + construct + " " + LegalStrings::shown(qname) +
                               ": it has a prefix and no namespace (X.891, C.16.1)");
}

// That an attribute without namespace has no prefix; a name that is known counts by its local name.
void requireNoPrefix(const std::string& localName, const std::string& qname) {
    if (qname.size() != localName.size() && !prefixOf(qname).empty()) {
        refusePrefix("an attribute", qname);
    }
}

// Whether one of the sizes that were combined by "or" may be longer than a length can tell.
bool mayBeTooLong(UInt64 sizes) noexcept {
    return (sizes >> 32) != 0;
}

} // namespace

// The list, where its strings may change before they are written.
void ElementWriter::forgetDocument() noexcept {
    const auto* const pElements = strings().vocabulary().indexedNames(NameKind::ELEMENT);
    const auto* const pAttributes = strings().vocabulary().indexedNames(NameKind::ATTRIBUTE);
    const void* const pShared = pElements ? pElements->values().base() : nullptr;
    if (!pShared || pShared != _pSharedNames) {
        forgetNames();
        _pSharedNames = pShared;
    }
    _newNames.forget();
    if (pShared) {
        _names.clearOwn(pElements->values().baseSize(), pAttributes->values().baseSize());
    }
}

const XML::Attributes& ElementWriter::copied(const XML::Attributes& attributes) {
    try {
        return _attributes.of(attributes);
    } catch (...) {
        writer().complete(false);
        writer().write(false); // the element had begun
        throw;
    }
}

// ---- composing

// Writes a name that is not known by its index. Where elements are plain, which they mostly are, it is apart,
// so that the composer stays in registers.
template<ElementWriter::Extent EXTENT, class Write>
TAMO_ALWAYS_INLINE void ElementWriter::composeName(OctetComposer& octets, const Write& write) {
    if constexpr (EXTENT == Extent::PLAIN) {
        octets.apart(write);
    } else {
        write(octets);
    }
}

// Writes what has been found: the element's name by its index, or with pPrefix, and count attributes.
template<ElementWriter::Extent EXTENT>
TAMO_ALWAYS_INLINE void ElementWriter::compose(std::streambuf* pBuf, unsigned int index,
                                               const std::string* pPrefix, const std::string& uri,
                                               const std::string& localName, const std::string& qname,
                                               std::size_t count) {
    OctetComposer octets(writer(), pBuf);
    unsigned int high = count != 0 ? Forms::HAS_ATTRIBUTES : 0;
    if constexpr (EXTENT == Extent::FULL) {
        if (!_declarations.empty()) {
            octets.octet(high | Forms::NAMESPACE_ATTRIBUTES);
            for (const Declaration& declaration : _declarations) {
                _newNames.writeDeclaration(octets, *declaration.pPrefix, *declaration.pUri);
            }
            octets.octet(Forms::TERMINATOR_FIRST);
            high = 0;
        }
    }
    if (!pPrefix) [[likely]] {
        octets.integerAtPosition2(high, index);
    } else {
        const auto write = [=, this, &uri, &localName, &qname](OctetComposer& composer) {
            writeName(composer, high, *pPrefix, {uri, localName, qname}, EXTENT);
        };
        composeName<EXTENT>(octets, write);
    }
    const Attribute* const pAttributes = _attributeList.data();
    for (std::size_t i = 0; i < count; ++i) {
        const Attribute& attribute = pAttributes[i];
        if (attribute.index != WrittenNames::NOT_FOUND) [[likely]] {
            octets.integerAtPosition1(0, attribute.index);
        } else {
            const auto write = [this, &attribute, &uri](OctetComposer& composer) {
                writeName(composer, attribute, uri);
            };
            composeName<EXTENT>(octets, write);
        }
        if constexpr (EXTENT == Extent::PLAIN) {
            strings().writeAttributeValue(octets, *attribute.pValue);
        } else if (isTyped(i)) {
            strings().writeAttributeValue(octets, _typedValues[i]);
        } else {
            strings().write(octets, *attribute.pValue, DocumentVocabulary::ATTRIBUTE_VALUE);
        }
    }
    octets.flush();
    if (count != 0) {
        writer().writeTerminator();
    }
}

// ---- elements that declare nothing

// Looks up the names of an element's attributes, up to one that has to be declared.
template<ElementWriter::Mode MODE>
TAMO_ALWAYS_INLINE ElementWriter::Needs ElementWriter::findAttributes(const XML::Attributes& attributes,
                                                                      std::size_t count,
                                                                      const std::string& elementURI) {
    if (_attributeList.size() < count) [[unlikely]] {
        _attributeList.resize(std::max<std::size_t>(16, count));
    }
    Needs needs;
    Attribute* pAttribute = _attributeList.data();
    for (std::size_t n = 0; n < count; ++n, ++pAttribute) {
        const int i = static_cast<int>(n);
        const std::string& uri = attributes.getURI(i);
        const std::string& localName = attributes.getLocalName(i);
        pAttribute->pValue = &attributes.getValue(i);
        needs.sizes |= pAttribute->pValue->size();
        if constexpr (MODE == Mode::STRICT) {
            LegalStrings::requireText(ATTRIBUTE, *pAttribute->pValue);
        }
        if (uri.empty()) {
            pAttribute->index = _names.findPlain(localName);
            if (pAttribute->index != WrittenNames::NOT_FOUND) [[likely]] {
                continue;
            }
            pAttribute->pPrefix = &EMPTY;
            pAttribute->pQName = &EMPTY;
            if constexpr (MODE == Mode::STRICT) {
                requireNoPrefix(localName, attributes.getQName(i));
            }
        } else {
            const std::string& qname = attributes.getQName(i);
            const WrittenNames::Kind kind = kindOf(uri, elementURI);
            pAttribute->index = _names.find(kind, uri, localName, qname, namespaces().state());
            if (pAttribute->index != WrittenNames::NOT_FOUND) [[likely]] {
                continue;
            }
            pAttribute->pPrefix = MODE == Mode::STRICT ? keptAttributePrefix(uri, qname, count)
                                                       : boundAttributePrefix(uri, qname);
            if (!pAttribute->pPrefix) {
                needs.declaration = true;
                return needs;
            }
            if (kind == WrittenNames::NATIVE_ATTRIBUTE && MODE != Mode::STRICT) {
                pAttribute->pPrefix = &EMPTY;
            }
            pAttribute->pQName = &qname;
        }
        if (localName.empty()) [[unlikely]] {
            needs.declaration = true;
            return needs;
        }
        needs.newNames = true;
        needs.sizes |= uri.size() | localName.size();
        pAttribute->pUri = &uri;
        pAttribute->pLocalName = &localName;
    }
    return needs;
}

// An element that may declare nothing, where its construct starts. The prefixes of names that are not known
// under the bindings in force are looked up first. Writes what startDeclaring() would write; false, with
// nothing written, when that has to.
template<ElementWriter::Mode MODE>
bool ElementWriter::startPlain(std::streambuf* pBuf, unsigned int index, int count, const std::string& uri,
                               const std::string& localName, const std::string& qname,
                               const XML::Attributes& attributes) {
    const std::string* pPrefix = nullptr;
    if (!OctetComposer::fitsPosition2(index)) [[unlikely]] {
        pPrefix = boundElementPrefix({uri, localName, qname});
        if (!pPrefix) {
            return false;
        }
    }
    const auto attributeCount = static_cast<std::size_t>(count);
    const Needs needs = findAttributes<MODE>(attributes, attributeCount, uri);
    if (needs.declaration) [[unlikely]] {
        return false;
    }
    const UInt64 sizes = needs.sizes | (pPrefix ? uri.size() | localName.size() | qname.size() : 0);
    if constexpr (MODE == Mode::STRICT) {
        if (pPrefix || needs.newNames || mayBeTooLong(sizes)) {
            requireLegal(pPrefix, {uri, localName, qname}, attributeCount);
        }
        pBuf = writer().startConstruct();
    } else if (mayBeTooLong(sizes) ||
               ((pPrefix || needs.newNames) && _newNames.isNearlyFull(1 + attributeCount))) [[unlikely]] {
        require(pPrefix, {uri, localName, qname}, attributeCount, {});
    }
    try {
        compose<Extent::PLAIN>(pBuf, index, pPrefix, uri, localName, qname, attributeCount);
    } catch (...) {
        constructs().settle();
        namespaces().pushContext(); // as an element that declares has it by then
        throw;
    }
    return true;
}

template bool ElementWriter::startPlain<ElementWriter::Mode::USUAL>(std::streambuf* pBuf, unsigned int index,
                                                                    int count, const std::string& uri,
                                                                    const std::string& localName,
                                                                    const std::string& qname,
                                                                    const XML::Attributes& attributes);
template bool ElementWriter::startPlain<ElementWriter::Mode::STRICT>(std::streambuf* pBuf, unsigned int index,
                                                                     int count, const std::string& uri,
                                                                     const std::string& localName,
                                                                     const std::string& qname,
                                                                     const XML::Attributes& attributes);

// ---- lists of other classes than that of the last one

void ElementWriter::startOther(const std::string& uri, const std::string& localName, const std::string& qname,
                               const XML::Attributes& list) {
    if (typeid(list) == typeid(TypedAttributes)) {
        startTyped({uri, localName, qname}, static_cast<const TypedAttributes&>(list));
    } else if (_strict) {
        startStableStrictly(uri, localName, qname, _attributes.of(list));
    } else {
        startStable(uri, localName, qname, copied(list));
    }
}

// The careful way is the one that knows typed values: they are no matter of many small elements.
void ElementWriter::startTyped(const ElementName& name, const TypedAttributes& attributes) {
    struct Forgetting {
        std::vector<StringWriter::TypedValue>& values;
        ~Forgetting() { values.clear(); }
    };
    const Forgetting forgetting{_typedValues};
    try {
        const int count = attributes.getLength();
        for (int i = 0; i < count; ++i) {
            Encoding* const pValue = attributes.encoding(i).get();
            const unsigned int algorithm = pValue ? algorithmOf(*pValue, attributes.algorithmURI(i)) : TEXT;
            _typedValues.push_back(algorithm != TEXT ? strings().attributeValue(*pValue, algorithm)
                                                     : StringWriter::TypedValue());
        }
    } catch (...) {
        if (_strict) {
            constructs().dropOwnBindings();
        }
        throw;
    }
    if (!_strict) {
        writer().startConstruct();
    }
    startDeclaring(name, attributes);
}

// The index of a value's algorithm in the document, or TEXT. A value that a document has brought with a URI
// is text where that is not declared.
unsigned int ElementWriter::algorithmOf(const Encoding& value, const std::string& uri) const {
    const unsigned int type = value.type();
    if (type == NullEncoding::TYPE || type == CDataEncoding::TYPE) {
        return TEXT;
    }
    if (!_pAlgorithms) {
        return uri.empty() ? type : TEXT;
    }
    const DocumentAlgorithms& declared = strings().vocabulary().algorithms();
    return uri.empty() ? AlgorithmIndex::of(declared, *_pAlgorithms, value) : declared.indexOf(uri);
}

// ---- elements that may declare

void ElementWriter::startDeclaring(const ElementName& name, const XML::Attributes& attributes) {
    constructs().settle();
    const ElementName full{name.uri, name.localName.empty() ? name.qname : name.localName, name.qname};
    const auto count = static_cast<std::size_t>(attributes.getLength());
    try {
        if (_strict) {
            constructs().openOwnBindings();
        }
        // Copied, because the attributes' declarations can move the bindings.
        _prefix = elementPrefix(name);
        declareAttributeNamespaces(attributes);
        collectDeclarations();
        collectAttributes(attributes, name.uri);
        if (_strict) {
            requireLegal(&_prefix, full, count);
        }
    } catch (...) {
        if (_strict) {
            constructs().dropOwnBindings();
        } else {
            writer().write(false); // the element had begun
        }
        throw;
    }
    UInt64 sizes = _prefix.size() | name.uri.size() | full.localName.size();
    for (const Declaration& declaration : _declarations) {
        sizes |= declaration.pPrefix->size() | declaration.pUri->size();
    }
    for (std::size_t i = 0; i < count; ++i) {
        const Attribute& attribute = _attributeList[i];
        sizes |= attribute.pValue->size() | attribute.pPrefix->size() | attribute.pUri->size() |
                 attribute.pLocalName->size();
    }
    if (!_strict && (mayBeTooLong(sizes) || _newNames.isNearlyFull(1 + count + _declarations.size())))
        [[unlikely]] {
        require(&_prefix, full, count, _declarations);
    }
    namespaces().pushContext();
    compose<Extent::FULL>(_strict ? writer().startConstruct() : writer().place(), WrittenNames::NOT_FOUND,
                          &_prefix, full.uri, full.localName, full.qname, count);
    constructs().startDeclaringElement();
}

void ElementWriter::collectDeclarations() {
    _declarations.clear();
    namespaces().visitDeclared([this](const std::string& prefix, const std::string& uri) {
        _declarations.push_back({&prefix, &uri});
    });
    if (_declarations.size() > 1) {
        std::sort(_declarations.begin(), _declarations.end(),
                  [](const auto& a, const auto& b) { return *a.pPrefix < *b.pPrefix; });
    }
}

void ElementWriter::collectAttributes(const XML::Attributes& attributes, const std::string& elementURI) {
    const auto count = static_cast<std::size_t>(attributes.getLength());
    if (_attributeList.size() < count) {
        _attributeList.resize(count);
    }
    _ownLocalNames.clear();
    _ownPrefixes.clear();
    for (std::size_t n = 0; n < count; ++n) {
        const int i = static_cast<int>(n);
        Attribute& attribute = _attributeList[n];
        attribute.index = WrittenNames::NOT_FOUND;
        attribute.pUri = &attributes.getURI(i);
        attribute.pLocalName = &attributes.getLocalName(i);
        attribute.pValue = isTyped(n) ? &EMPTY : &attributes.getValue(i);
        attribute.pQName = nullptr; // the bindings change with this element
        if (attribute.pLocalName->empty()) {
            _ownLocalNames.reserve(count); // so that its strings stay in place
            // By the letter a qualified name alone is a local name, which has no colon.
            attribute.pLocalName = &_ownLocalNames.emplace_back(
                _strict && attribute.pUri->empty() ? attributes.getQName(i)
                                                   : XML::Name::localName(attributes.getQName(i)));
        }
        if (_strict) {
            LegalStrings::requireText(ATTRIBUTE, *attribute.pValue);
            if (attribute.pUri->empty()) {
                requireNoPrefix(*attribute.pLocalName, attributes.getQName(i));
            }
            attribute.pPrefix = attribute.pUri->empty()
                                    ? &EMPTY
                                    : keptAttributePrefix(*attribute.pUri, attributes.getQName(i), count);
            continue;
        }
        attribute.pPrefix = *attribute.pUri != elementURI ? &namespaces().getPrefix(*attribute.pUri) : &EMPTY;
    }
}

// Refuses what cannot be written whole, before anything of it is written: strings that are too long, and new
// names that the tables have no place for.
TAMO_COLD void ElementWriter::require(const std::string* pPrefix, const ElementName& name, std::size_t count,
                                      std::span<const Declaration> declarations) const {
    for (std::size_t i = 0; i < count; ++i) {
        StringWriter::requireValue(_attributeList[i].pValue->size());
    }
    std::vector<NameWriter::Name> names;
    for (const Declaration& declaration : declarations) {
        names.push_back({NameKind::ELEMENT, declaration.pPrefix, declaration.pUri, nullptr});
    }
    if (pPrefix) {
        names.push_back({NameKind::ELEMENT, pPrefix, &name.uri, &name.localName});
    }
    for (std::size_t i = 0; i < count; ++i) {
        const Attribute& attribute = _attributeList[i];
        if (attribute.index == WrittenNames::NOT_FOUND) {
            names.push_back({NameKind::ATTRIBUTE, attribute.pPrefix, attribute.pUri, attribute.pLocalName});
        }
    }
    _newNames.require(names);
}

// ---- names

void ElementWriter::writeName(OctetComposer& octets, unsigned int high, const std::string& prefix,
                              const ElementName& name, Extent extent) {
    const unsigned int index =
        _newNames.write(octets, NameKind::ELEMENT, high, prefix, name.uri, name.localName);
    if (extent == Extent::PLAIN && index != WrittenNames::NOT_FOUND && remembersNames()) [[likely]] {
        _names.enter(WrittenNames::ELEMENT, name.uri, name.localName, name.qname, namespaces().state(),
                     index);
    }
}

void ElementWriter::writeName(OctetComposer& octets, const Attribute& attribute,
                              const std::string& elementURI) {
    const std::string& uri = *attribute.pUri;
    const std::string& localName = *attribute.pLocalName;
    const unsigned int index =
        _newNames.write(octets, NameKind::ATTRIBUTE, 0, *attribute.pPrefix, uri, localName);
    if (attribute.pQName && index != WrittenNames::NOT_FOUND && remembersNames()) [[likely]] {
        if (uri.empty()) {
            _names.enterPlain(localName, index);
        } else {
            _names.enter(kindOf(uri, elementURI), uri, localName, *attribute.pQName, namespaces().state(),
                         index);
        }
    }
}

// Only with tables of ours: without a placeholder an index does not tell what is absent.
bool ElementWriter::remembersNames() noexcept {
    return strings().vocabulary().indexedNames(NameKind::ELEMENT) != nullptr;
}

// ---- prefixes

// The prefix of an element whose namespace is bound already; null when it would have to be declared.
const std::string* ElementWriter::boundElementPrefix(const ElementName& name) {
    const NamespaceSupport& bindings = namespaces();
    const std::string_view prefix = name.qname == name.localName ? std::string_view() : prefixOf(name.qname);
    if (!prefix.empty()) {
        _prefix = prefix;
        return name.uri.empty() || bindings.getURI(prefix) == name.uri ? &_prefix : nullptr;
    }
    if (name.uri.empty() || (_defaultBindings == bindings.state() && _defaultNamespace == name.uri)) {
        return &EMPTY;
    }
    const std::string& bound = bindings.getPrefix(name.uri);
    if (!bound.empty()) {
        return &bound;
    }
    if (bindings.getURI(bound) != name.uri) {
        return nullptr;
    }
    _defaultNamespace = name.uri;
    _defaultBindings = bindings.state();
    return &EMPTY;
}

// Likewise of an attribute in a namespace: the prefix that it is written with.
const std::string* ElementWriter::boundAttributePrefix(const std::string& uri,
                                                       const std::string& qname) const {
    const NamespaceSupport& bindings = namespaces();
    const std::string_view prefix = prefixOf(qname);
    const std::string& bound = bindings.getPrefix(uri);
    return bindings.getURI(prefix.empty() ? bound : prefix) == uri ? &bound : nullptr;
}

// Declares the prefix where it is not bound.
const std::string& ElementWriter::elementPrefix(const ElementName& name) {
    if (name.localName.empty()) {
        if (_strict && !name.uri.empty()) {
            throw FISEncodingException("Cannot write an element " + LegalStrings::shown(name.qname) +
                                       ": it has a namespace and no local name");
        }
        if (!_strict && (!name.uri.empty() || name.qname.empty())) {
            throw FISException("Tag mismatch", name.qname);
        }
        return EMPTY; // a name without namespace processing has no prefix
    }
    const std::string* pPrefix = boundElementPrefix(name);
    if (!pPrefix && _strict) {
        _prefix = prefixOf(name.qname);
        if (name.qname == name.localName || !isDeclarable(_prefix, name.uri)) {
            _prefix = namespaces().getPrefix(name.uri);
            if (!_prefix.empty() || namespaces().getURI(_prefix) == name.uri) {
                return _prefix;
            }
            _prefix = newPrefix();
        }
        declare(_prefix, name.uri);
        pPrefix = &_prefix;
    } else if (!pPrefix) {
        _prefix = name.qname.empty() || name.qname == name.localName ? newPrefix()
                                                                     : std::string(prefixOf(name.qname));
        namespaces().declarePrefix(_prefix, name.uri);
        pPrefix = &_prefix;
    }
    return *pPrefix;
}

void ElementWriter::declareAttributeNamespaces(const XML::Attributes& attributes) {
    const int count = attributes.getLength();
    for (int i = 0; i < count; ++i) {
        const std::string& uri = attributes.getURI(i);
        const std::string& qname = attributes.getQName(i);
        if (_strict) {
            if (!uri.empty() && !keptAttributePrefix(uri, qname, 0)) {
                const std::string_view prefix = prefixOf(qname);
                declare(isFree(prefix) && isDeclarable(prefix, uri) ? std::string(prefix) : newPrefix(), uri);
            }
        } else if (!uri.empty() && !boundAttributePrefix(uri, qname)) {
            // Deliberate: no prefix is generated; a name without one binds the default namespace.
            namespaces().declarePrefix(std::string(prefixOf(qname)), uri);
        }
    }
}

std::string ElementWriter::newPrefix() {
    std::string prefix;
    do {
        prefix = "ns" + std::to_string(++_prefixCounter);
    } while (_strict && !isFree(prefix));
    return prefix;
}

// ---- the strict mode

void ElementWriter::declare(const std::string& prefix, const std::string& uri) {
    if (!prefix.empty()) {
        LegalStrings::requireName("a prefix", prefix);
    }
    LegalStrings::requireText("a namespace name", uri);
    LegalStrings::requireSize("a namespace name", uri.size());
    if (prefix == "xmlns" || uri == NamespaceSupport::XMLNS_NAMESPACE ||
        uri == NamespaceSupport::XML_NAMESPACE) {
        throw FISEncodingException("Cannot write a declaration of prefix " + LegalStrings::shown(prefix) +
                                   " for the namespace " + LegalStrings::shown(uri) +
                                   ", which Namespaces in XML reserves");
    }
    constructs().openOwnBindings();
    namespaces().declarePrefix(prefix, uri);
}

// What has to be told of an element with new names, whose namespaces are bound and so checked, and of sizes.
void ElementWriter::requireLegal(const std::string* pPrefix, const ElementName& name,
                                 std::size_t count) const {
    if (pPrefix) {
        LegalStrings::requireName("the name of an element", name.localName);
        LegalStrings::requireSize("the name of an element", name.localName.size());
        if (name.uri.empty() && !pPrefix->empty()) {
            refusePrefix("an element", name.qname);
        }
    }
    for (std::size_t i = 0; i < count; ++i) {
        const Attribute& attribute = _attributeList[i];
        LegalStrings::requireSize(ATTRIBUTE, attribute.pValue->size());
        if (attribute.index == WrittenNames::NOT_FOUND) {
            LegalStrings::requireName("the name of an attribute", *attribute.pLocalName);
            LegalStrings::requireSize("the name of an attribute", attribute.pLocalName->size());
        }
    }
}

// Whether nothing in scope binds a prefix, be it to no namespace.
bool ElementWriter::isFree(std::string_view prefix) const {
    return namespaces().getURI(prefix).empty() && !namespaces().isDeclared(prefix);
}

// Whether the element that begins may declare a prefix for a namespace, in whose context this is.
bool ElementWriter::isDeclarable(std::string_view prefix, const std::string& uri) const {
    return !prefix.empty() && !namespaces().isDeclared(prefix) && prefix != "xmlns" &&
           prefix != NamespaceSupport::XML_NAMESPACE_PREFIX && uri != NamespaceSupport::XML_NAMESPACE;
}

// The prefix of an attribute in a namespace where none has to be declared for it: its own, unless that is
// free, or one in scope; null otherwise. At most count of them are asked for one element.
const std::string* ElementWriter::keptAttributePrefix(const std::string& uri, const std::string& qname,
                                                      std::size_t count) {
    const std::string_view prefix = prefixOf(qname);
    const std::string& bound = namespaces().getAttributePrefix(uri);
    if (bound == prefix) {
        return bound.empty() ? nullptr : &bound;
    }
    if (!prefix.empty() && namespaces().getURI(prefix) == uri) {
        if (count == 0) {
            return &EMPTY; // that there is one is enough
        }
        _ownPrefixes.reserve(count); // so that its strings stay in place
        return &_ownPrefixes.emplace_back(prefix);
    }
    if (isFree(prefix) && isDeclarable(prefix, uri)) {
        return nullptr;
    }
    return bound.empty() ? nullptr : &bound;
}

} // namespace Tamo::FastInfoset
