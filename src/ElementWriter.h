#ifndef TAMO_FASTINFOSET_ELEMENTWRITER_H
#define TAMO_FASTINFOSET_ELEMENTWRITER_H

#include "NameWriter.h"
#include "OpenConstructs.h"
#include "StringWriter.h"
#include "Tamo/Export.h"
#include "Tamo/FastInfoset/EncodingAlgorithm.h"
#include "Tamo/Types.h"
#include "Tamo/XML/AttributesSnapshot.h"
#include "WrittenNames.h"
#include <cstddef>
#include <span>
#include <streambuf>
#include <string>
#include <string_view>
#include <vector>

namespace Tamo::FastInfoset {

class TypedAttributes;

/// Writes the beginnings of elements: declarations, name and attributes (ITU-T X.891, 7.3 and 7.4), and their
/// ends. Used by one thread at a time.
///
/// What an element needs is looked up first, and then composed: nothing is written before it is certain what.
/// WrittenNames knows most names whole, so that neither the bindings nor the tables are asked.
class ElementWriter {
public:
    /// To a stream or sink, with tables of a kind or over a copy of a vocabulary.
    template<class Target, class Tables>
    ElementWriter(Target& target, const Tables& tables) : _newNames(target, tables) {}

    ElementWriter(const ElementWriter&) = delete;
    ElementWriter& operator=(const ElementWriter&) = delete;

    /// What writes all other strings of the document.
    StringWriter& strings() noexcept { return _newNames.strings(); }
    const StringWriter& strings() const noexcept { return _newNames.strings(); }

    /// Forgets what it knows of the tables, which may have changed.
    void forgetNames() noexcept {
        _newNames.forget();
        _names.clear();
        _pSharedNames = nullptr;
    }

    /// Forgets what it knows of the tables of the last document; what a vocabulary holds that this one shares
    /// with it stays.
    void forgetDocument() noexcept;

    /// Forgets what was generated for the last document.
    void reset() noexcept { _prefixCounter = 0; }

    /// Begins a document, whose header has been written.
    void startDocument() { _newNames.startDocument(); }

    /// The hot path: an element that declares nothing, by the index of its name, without attributes.
    TAMO_ALWAYS_INLINE void start(const std::string& uri, const std::string& localName,
                                  const std::string& qname, const XML::Attributes& list) {
        if (_attributes.isStable(list)) [[likely]] {
            startStable(uri, localName, qname, list);
        } else {
            startOther(uri, localName, qname, list);
        }
    }

    /// Whether documents are written by the letter: then with the algorithms of which the values of
    /// attributes are, borrowed. Names and values are checked, before anything of their element is written;
    /// an element has a namespace context of its own when something is declared for it; an attribute in a
    /// namespace has a prefix.
    void setStrict(const EncodingAlgorithm* pAlgorithms) noexcept {
        _strict = pAlgorithms != nullptr;
        _pAlgorithms = pAlgorithms;
        strings().setStrict(_strict);
        forgetNames();
    }

    /// The same element in the strict mode; what has been declared for one that is refused is forgotten.
    TAMO_ALWAYS_INLINE void startStrict(const std::string& uri, const std::string& localName,
                                        const std::string& qname, const XML::Attributes& list) {
        if (_attributes.isStable(list)) [[likely]] {
            startStableStrictly(uri, localName, qname, list);
        } else {
            startOther(uri, localName, qname, list);
        }
    }

    /// Declares a prefix for the next element in the strict mode.
    void declare(const std::string& prefix, const std::string& uri);

    /// Ends the innermost element.
    TAMO_ALWAYS_INLINE void end() {
        writer().writeTerminator();
        constructs().endElement();
    }

private:
    using ID = DocumentVocabulary::ID;
    using NameKind = DocumentVocabulary::NameKind;

    // Whether an element is written where it may declare and CDATA sections may be, or where nothing of that
    // is possible.
    enum class Extent { PLAIN, FULL };

    enum class Mode { USUAL, STRICT };

    // The name of an element as the event gives it.
    struct ElementName {
        const std::string& uri;
        const std::string& localName;
        const std::string& qname;
    };

    // An attribute on its way out: its name by its index, or in full where that is NOT_FOUND. The strings
    // belong to the attribute list, the bindings or ownLocalName.
    struct Attribute {
        unsigned int index = WrittenNames::NOT_FOUND;
        const std::string* pValue = nullptr;
        const std::string* pPrefix = nullptr;
        const std::string* pUri = nullptr;
        const std::string* pLocalName = nullptr;
        const std::string* pQName = nullptr; // where the name is to be remembered
    };

    struct Declaration {
        const std::string* pPrefix;
        const std::string* pUri;
    };

    // What writing attributes takes.
    struct Needs {
        bool declaration = false; // of a prefix that is not bound
        bool newNames = false;
        UInt64 sizes = 0; // of values and of new names' parts, combined by "or"
    };

    // An element whose list is taken as it is.
    TAMO_ALWAYS_INLINE void startStable(const std::string& uri, const std::string& localName,
                                        const std::string& qname, const XML::Attributes& attributes) {
        std::streambuf* const pBuf = writer().startConstruct();
        if (constructs().isPlainPlace() && !localName.empty()) [[likely]] {
            const unsigned int index =
                _names.find(WrittenNames::ELEMENT, uri, localName, qname, namespaces().state());
            const int count = attributes.getLength();
            // An unknown name's index does not fit.
            if (count == 0 && OctetComposer::fitsPosition2(index) && pBuf) [[likely]] {
                PutArea::put(*pBuf, [=](char* p) { return OctetComposer::integerAtPosition2(p, 0, index); });
                constructs().startPlainElement();
                return;
            }
            if (startPlain<Mode::USUAL>(pBuf, index, count, uri, localName, qname, attributes)) [[likely]] {
                constructs().startPlainElement();
                return;
            }
        }
        startDeclaring({uri, localName, qname}, attributes);
    }

    TAMO_ALWAYS_INLINE void startStableStrictly(const std::string& uri, const std::string& localName,
                                                const std::string& qname, const XML::Attributes& attributes) {
        if (constructs().isPlainPlace() && !localName.empty()) [[likely]] {
            const unsigned int index =
                _names.find(WrittenNames::ELEMENT, uri, localName, qname, namespaces().state());
            const int count = attributes.getLength();
            if (count == 0 && OctetComposer::fitsPosition2(index)) [[likely]] {
                if (std::streambuf* const pBuf = writer().startConstruct()) [[likely]] {
                    PutArea::put(*pBuf,
                                 [=](char* p) { return OctetComposer::integerAtPosition2(p, 0, index); });
                    constructs().startPlainElement();
                    return;
                }
            }
            if (!_ownPrefixes.empty()) [[unlikely]] {
                _ownPrefixes.clear();
            }
            if (startPlain<Mode::STRICT>(nullptr, index, count, uri, localName, qname, attributes))
                [[likely]] {
                constructs().startPlainElement();
                return;
            }
        }
        startDeclaring({uri, localName, qname}, attributes);
    }

    void startOther(const std::string& uri, const std::string& localName, const std::string& qname,
                    const XML::Attributes& list);
    void startTyped(const ElementName& name, const TypedAttributes& attributes);
    unsigned int algorithmOf(const Encoding& value, const std::string& uri) const;
    bool isTyped(std::size_t i) const noexcept { return i < _typedValues.size() && _typedValues[i].pValue; }
    const XML::Attributes& copied(const XML::Attributes& attributes);
    template<Mode MODE>
    bool startPlain(std::streambuf* pBuf, unsigned int index, int count, const std::string& uri,
                    const std::string& localName, const std::string& qname,
                    const XML::Attributes& attributes);
    template<Mode MODE>
    Needs findAttributes(const XML::Attributes& attributes, std::size_t count, const std::string& elementURI);
    void startDeclaring(const ElementName& name, const XML::Attributes& attributes);
    void collectDeclarations();
    void collectAttributes(const XML::Attributes& attributes, const std::string& elementURI);
    void require(const std::string* pPrefix, const ElementName& name, std::size_t count,
                 std::span<const Declaration> declarations) const;

    template<Extent EXTENT>
    void compose(std::streambuf* pBuf, unsigned int index, const std::string* pPrefix, const std::string& uri,
                 const std::string& localName, const std::string& qname, std::size_t count);
    template<Extent EXTENT, class Write>
    static void composeName(OctetComposer& octets, const Write& write);
    void writeName(OctetComposer& octets, unsigned int high, const std::string& prefix,
                   const ElementName& name, Extent extent);
    void writeName(OctetComposer& octets, const Attribute& attribute, const std::string& elementURI);
    bool remembersNames() noexcept;

    void requireLegal(const std::string* pPrefix, const ElementName& name, std::size_t count) const;
    bool isFree(std::string_view prefix) const;
    bool isDeclarable(std::string_view prefix, const std::string& uri) const;
    const std::string* keptAttributePrefix(const std::string& uri, const std::string& qname,
                                           std::size_t count);

    const std::string* boundElementPrefix(const ElementName& name);
    const std::string* boundAttributePrefix(const std::string& uri, const std::string& qname) const;
    const std::string& elementPrefix(const ElementName& name);
    void declareAttributeNamespaces(const XML::Attributes& attributes);
    std::string newPrefix();

    ConstructWriter& writer() noexcept { return strings().writer(); }
    OpenConstructs& constructs() noexcept { return strings().constructs(); }
    XML::NamespaceSupport& namespaces() noexcept { return constructs().namespaces(); }
    const XML::NamespaceSupport& namespaces() const noexcept { return strings().constructs().namespaces(); }

    NameWriter _newNames;
    WrittenNames _names;
    XML::AttributesSnapshot _attributes;
    const void* _pSharedNames = nullptr; // the element names that tables were laid on, when names are known
    bool _strict = false;
    const EncodingAlgorithm* _pAlgorithms = nullptr; // null in the default
    int _prefixCounter = 0;
    std::string _defaultNamespace; // under the bindings with this number, none of them for 0
    UInt64 _defaultBindings = 0;

    // Kept for their capacity from element to element.
    std::string _prefix;
    std::vector<Attribute> _attributeList;
    std::vector<std::string> _ownLocalNames;
    std::vector<std::string> _ownPrefixes;
    std::vector<Declaration> _declarations;
    std::vector<StringWriter::TypedValue> _typedValues; // one an attribute of a typed list, else empty
};

} // namespace Tamo::FastInfoset

#endif
