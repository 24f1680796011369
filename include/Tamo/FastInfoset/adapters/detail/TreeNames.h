#ifndef TAMO_FASTINFOSET_ADAPTERS_DETAIL_TREENAMES_H
#define TAMO_FASTINFOSET_ADAPTERS_DETAIL_TREENAMES_H

#include "Tamo/FastInfoset/adapters/detail/TreeText.h"
#include "Tamo/Types.h"
#include "Tamo/XML/NamespaceSupport.h"
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace Tamo::FastInfoset::Adapters {

/// The namespaces in force while a tree is built, and the names of elements and attributes with the prefixes
/// that they have in it.
///
/// A document carries namespace names, and prefixes where it likes: by default it gives attributes none. A
/// name keeps its prefix where that is bound to its namespace, takes another one that is, or gets one
/// declared. Names that come again under the same declarations are found in one step, by the place of the
/// local name, and compared. Kept is what a tree keeps of a name, made new with each entry. Used by one
/// thread at a time.
template<class Kept>
class TreeNames {
public:
    /// A name, valid until the next one is asked for.
    struct Name {
        std::string uri;
        std::string localName;
        std::string given; ///< the qualified name as the document has it, empty for none
        std::string prefix;
        std::string qname; ///< as the tree has it
        UInt64 scope = NO_SCOPE;
        Kept kept{};
    };

    void startElement() {
        _namespaces.pushContext();
        ++_depth;
    }

    void endElement() {
        _namespaces.popContext();
        if (!_outerScopes.empty() && _outerScopes.back().depth == _depth) {
            _scope = _outerScopes.back().scope;
            _outerScopes.pop_back();
        }
        --_depth;
    }

    /// Declares a prefix on the element that was started last. False, and nothing declared, where XML has no
    /// such declaration or the element has declared the prefix already: names that need one get another.
    bool declare(const std::string& prefix, const std::string& uri) {
        if (!isDeclarable(prefix, uri) || _namespaces.isDeclared(prefix)) {
            return false;
        }
        TreeText::require("a namespace name", uri);
        enterScope();
        _namespaces.declarePrefix(prefix, uri);
        return true;
    }

    /// The name of an element or an attribute. What has to be declared for it is given to
    /// declared(prefix, uri).
    template<class Declared>
    const Name& element(std::string_view uri, std::string_view localName, std::string_view qname,
                        const Declared& declared) {
        return find<false>(_elements, uri, localName, qname, declared);
    }
    template<class Declared>
    const Name& attribute(std::string_view uri, std::string_view localName, std::string_view qname,
                          const Declared& declared) {
        return find<true>(_attributes, uri, localName, qname, declared);
    }

    /// What the tree keeps of a name.
    static Kept& keptOf(const Name& name) noexcept { return const_cast<Name&>(name).kept; }

private:
    using NamespaceSupport = XML::NamespaceSupport;

    static constexpr UInt64 NO_SCOPE = 0;
    static constexpr UInt64 ANY_SCOPE = ~UInt64{0};

    // The scope around an element that declares.
    struct Outer {
        std::size_t depth;
        UInt64 scope;
    };

    // Names by the place of their local name; one that comes later takes the place of another.
    class Table {
    public:
        Name& slot(std::string_view localName) noexcept {
            const auto place = reinterpret_cast<std::uintptr_t>(localName.data());
            return _slots[(place >> 5 ^ place >> 12) & _mask];
        }

        /// Makes place when many names have taken that of others; slots are empty then.
        void noteMiss() {
            if (++_misses > 2 * _slots.size() && _slots.size() < MOST) {
                _slots = std::vector<Name>(4 * _slots.size());
                _mask = _slots.size() - 1;
                _misses = 0;
            }
        }

    private:
        static constexpr std::size_t LEAST = 16;
        static constexpr std::size_t MOST = 4096;

        std::vector<Name> _slots = std::vector<Name>(LEAST);
        std::size_t _mask = LEAST - 1;
        std::size_t _misses = 0;
    };

    template<bool IS_ATTRIBUTE, class Declared>
    const Name& find(Table& table, std::string_view uri, std::string_view localName, std::string_view qname,
                     const Declared& declared) {
        const bool isFree = IS_ATTRIBUTE && uri.empty(); // whatever is declared
        const Name& known = table.slot(localName);
        if (known.scope == (isFree ? ANY_SCOPE : _scope) && known.localName == localName &&
            known.uri == uri && known.given == qname) {
            return known;
        }
        table.noteMiss();
        Name& name = table.slot(localName);
        resolve(name, uri, localName, qname, IS_ATTRIBUTE, declared);
        name.scope = isFree ? ANY_SCOPE : _scope;
        return name;
    }

    // Namespaces 1.0; the prefix "xml" needs no declaration.
    static bool isDeclarable(std::string_view prefix, std::string_view uri) {
        return uri != NamespaceSupport::XML_NAMESPACE && uri != NamespaceSupport::XMLNS_NAMESPACE &&
               (prefix.empty() || (!uri.empty() && prefix != NamespaceSupport::XML_NAMESPACE_PREFIX &&
                                   prefix != "xmlns" && XML::Characters::isNCName(prefix)));
    }

    void enterScope() {
        if (_outerScopes.empty() || _outerScopes.back().depth != _depth) {
            _outerScopes.push_back({_depth, _scope});
        }
        _scope = ++_lastScope;
    }

    template<class Declared>
    void resolve(Name& name, std::string_view uri, std::string_view localName, std::string_view qname,
                 bool isAttribute, const Declared& declared) {
        name.scope = NO_SCOPE;
        name.kept = {};
        // A source that does not process namespaces has a qualified name alone.
        const std::string_view local = localName.empty() && uri.empty() ? qname : localName;
        TreeText::requireName(isAttribute ? "the name of an attribute" : "the name of an element", local);
        name.uri = uri;
        name.localName = localName;
        name.given = qname;
        if (uri.empty()) {
            if (isAttribute && local == "xmlns") {
                TreeText::refuse("the name of an attribute", local, "it stands for declarations");
            }
            name.prefix.clear();
            if (!isAttribute && !_namespaces.getURI({}).empty()) {
                declareAnew(name, declared); // no namespace is the default
            }
        } else {
            const std::size_t colon = qname.find(':');
            name.prefix = colon == std::string_view::npos ? std::string_view() : qname.substr(0, colon);
            bind(name, isAttribute, declared);
        }
        name.qname = name.prefix;
        name.qname.append(name.prefix.empty() ? "" : ":").append(local);
    }

    // Gives a name in a namespace a prefix that is bound to it.
    template<class Declared>
    void bind(Name& name, bool isAttribute, const Declared& declared) {
        const bool hasPrefix = !name.prefix.empty();
        if ((hasPrefix || !isAttribute) && _namespaces.getURI(name.prefix) == name.uri) {
            return;
        }
        const std::string& other =
            isAttribute ? _namespaces.getAttributePrefix(name.uri) : _namespaces.getPrefix(name.uri);
        if (!other.empty() || (!isAttribute && _namespaces.getURI({}) == name.uri)) {
            name.prefix = other;
            return;
        }
        if (name.uri == NamespaceSupport::XMLNS_NAMESPACE) {
            TreeText::refuse("a name in the namespace", name.uri, "it is that of declarations");
        }
        // An element is named before its attributes, and these have no use for the default namespace.
        const bool isFree = hasPrefix ? isUnbound(name.prefix) && isDeclarable(name.prefix, name.uri)
                                      : !isAttribute && !_namespaces.isDeclared({});
        if (!isFree) {
            do {
                name.prefix = "ns" + std::to_string(++_generated);
            } while (!isUnbound(name.prefix));
        }
        declareAnew(name, declared);
    }

    bool isUnbound(const std::string& prefix) const { return _namespaces.getURI(prefix).empty(); }

    template<class Declared>
    void declareAnew(const Name& name, const Declared& declared) {
        TreeText::require("a namespace name", name.uri);
        enterScope();
        _namespaces.declarePrefix(name.prefix, name.uri);
        declared(name.prefix, name.uri);
    }

    NamespaceSupport _namespaces;
    std::size_t _depth = 0;
    UInt64 _scope = 1; // a number for the declarations in force, never that of others
    UInt64 _lastScope = 1;
    std::vector<Outer> _outerScopes;
    UInt64 _generated = 0;
    Table _elements;
    Table _attributes;
};

} // namespace Tamo::FastInfoset::Adapters

#endif
