#ifndef TAMO_XML_NAMESPACESUPPORT_H
#define TAMO_XML_NAMESPACESUPPORT_H

#include "Tamo/Bugcheck.h"
#include "Tamo/Export.h"
#include "Tamo/Types.h"
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace Tamo::XML {

/// The prefix bindings in scope: a stack of contexts, one for each open element.
///
/// A value, used by one thread at a time. A context without declarations costs no allocation, and a long
/// scope is searched through an index, so that depth costs little. Returned references stay valid until the
/// next operation that is not const. The prefix `xml` is always bound and cannot be declared otherwise.
class TAMO_API NamespaceSupport {
public:
    /// The prefix "xml".
    static inline const std::string XML_NAMESPACE_PREFIX{"xml"};
    /// The namespace name that "xml" is bound to.
    static inline const std::string XML_NAMESPACE{"http://www.w3.org/XML/1998/namespace"};

    /// The namespace name of declarations themselves, which nothing may be bound to.
    static inline const std::string XMLNS_NAMESPACE{"http://www.w3.org/2000/xmlns/"};

    /// One base context with nothing but `xml` bound.
    NamespaceSupport();

    /// Returns to the state after construction.
    void reset();

    /// Opens a context inside the current one.
    void pushContext() { _contexts.push_back({static_cast<UInt32>(_count), 0}); }

    /// Closes the current context and forgets its bindings; the base context cannot be closed (assertion).
    void popContext() {
        tamo_assert(_contexts.size() > 1);
        if (_count != _contexts.back().first) [[unlikely]] {
            removeContext();
        }
        _contexts.pop_back();
    }

    /// Binds a prefix in the current context, in place of what the same context bound it to.
    /// Returns false and does nothing for the prefix `xml`.
    bool declarePrefix(const std::string& prefix, const std::string& uri);

    /// Removes a prefix from the current context only; returns whether it was declared there.
    bool undeclarePrefix(const std::string& prefix);

    /// Whether the prefix is declared in the current context.
    bool isDeclared(std::string_view prefix) const;

    /// The namespace name that the prefix is bound to; empty when there is none.
    const std::string& getURI(std::string_view prefix) const;

    /// True when the current context has declared nothing, or nothing that is still there.
    bool declaresNothing() const noexcept { return _contexts.back().first == _count; }

    /// A number for the bindings in force, never 0: equal numbers mean equal bindings. It is the same again
    /// when what was declared is removed, and often when it is declared again.
    UInt64 state() const noexcept { return _state; }

    /// A prefix in force for the namespace name: the empty one when the default namespace is uri, else the
    /// one declared innermost. Empty when there is none (see isMapped) and for an empty uri.
    const std::string& getPrefix(const std::string& uri) const;

    /// The innermost prefix in force that is not empty, as attributes need it; empty when there is none.
    const std::string& getAttributePrefix(const std::string& uri) const;

    /// Whether some prefix in force, the empty one included, is bound to uri.
    bool isMapped(const std::string& uri) const;

    /// The prefixes declared in the current context, in order of declaration, without the built-in `xml`.
    std::vector<std::string> getDeclaredPrefixes() const;

    /// Calls visit(prefix, uri) for every declaration of the current context, in order, without copying.
    template<class Visitor>
    void visitDeclared(Visitor&& visit) const {
        for (std::size_t i = _contexts.back().first; i < _count; ++i) {
            if (_bindings[i].live) {
                visit(_bindings[i].prefix, _bindings[i].uri);
            }
        }
    }

private:
    static constexpr UInt32 NONE = 0xFFFFFFFF;
    /// Up to this many bindings a plain scan is faster than the index.
    static constexpr std::size_t SCAN_LIMIT = 24;

    struct Binding {
        std::string prefix;
        std::string uri;
        UInt32 outer = NONE;      ///< the binding of the same prefix that this one hides
        UInt32 nextPrefix = NONE; ///< next older binding in the same bucket of the prefix index
        UInt32 nextURI = NONE;    ///< likewise for the index of namespace names
        UInt64 stateBefore = 0;   ///< the state that it was declared in
        UInt64 stateAfter = 0;    ///< the state that it led to
        bool live = false;        ///< false once undeclared
        bool inForce = false;     ///< false while an inner context binds the prefix anew
    };

    struct Context {
        UInt32 first; ///< its first binding
        UInt32 dead;  ///< how many of its bindings have been undeclared
    };

    UInt32 findPrefix(std::string_view prefix) const;
    UInt32 findURI(const std::string& uri, bool nonEmptyPrefix) const;
    void append(const std::string& prefix, const std::string& uri, UInt32 outer);
    void removeContext();
    void removeLast();
    void remove(UInt32 i);
    void changeStates(std::size_t i, UInt64 stateBefore);
    void compact();
    void link(UInt32 i);
    void unlink(UInt32 i);
    void rebuildIndex();
    bool indexed() const { return !_prefixHeads.empty(); }
    UInt32& prefixHead(std::string_view prefix);
    UInt32& uriHead(const std::string& uri);

    std::vector<Binding> _bindings; // slots above _count are kept: the same is likely to be declared again
    std::size_t _count = 0;
    std::vector<Context> _contexts;
    UInt64 _state = 1;
    UInt64 _lastState = 1;            // that was ever in use
    std::vector<UInt32> _prefixHeads; // empty while a scan will do
    std::vector<UInt32> _uriHeads;
};

} // namespace Tamo::XML

#endif
