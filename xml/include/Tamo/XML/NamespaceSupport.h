#ifndef TAMO_XML_NAMESPACESUPPORT_H
#define TAMO_XML_NAMESPACESUPPORT_H

#include "Tamo/Export.h"
#include "Tamo/StringConstant.h"
#include "Tamo/StringPool.h"
#include "Tamo/Types.h"
#include <cstddef>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Tamo::XML {

/// The prefix bindings in scope: a stack of contexts, one for each open element.
///
/// Used by one thread at a time. A context without declarations costs nothing but its count,
/// prefixes and namespace names are held once however often they are declared, and every operation takes time
/// in the length of its arguments and at most the logarithm of what is declared. Returned references stay
/// valid until the next operation that is not const, pushContext() aside. The prefix `xml` is always bound
/// and cannot be declared otherwise.
class TAMO_API NamespaceSupport {
public:
    /// The prefix "xml".
    static constexpr StringConstant XML_NAMESPACE_PREFIX{"xml"};
    /// The namespace name that "xml" is bound to.
    static constexpr StringConstant XML_NAMESPACE{"http://www.w3.org/XML/1998/namespace"};

    /// The namespace name of declarations themselves, which nothing may be bound to.
    static constexpr StringConstant XMLNS_NAMESPACE{"http://www.w3.org/2000/xmlns/"};

    /// One base context with nothing but `xml` bound.
    NamespaceSupport();

    /// Returns to the state after construction.
    void reset();

    /// Opens a context inside the current one.
    void pushContext() { ++_contexts.back().emptyAbove; }

    /// Closes the current context and forgets its bindings; the base context cannot be closed (assertion).
    void popContext() {
        Context& context = _contexts.back();
        if (context.emptyAbove != 0) [[likely]] {
            --context.emptyAbove;
        } else {
            popDeclaring();
        }
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
    bool declaresNothing() const noexcept { return first() == _count; }

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
        for (std::size_t i = first(); i < _count; ++i) {
            if (_bindings[i].live) {
                visit(_prefixes.text(_bindings[i].prefix), _uris.text(_bindings[i].uri));
            }
        }
    }

private:
    static constexpr UInt32 NONE = StringPool::NONE;
    /// The empty prefix, which is the first in its pool for ever.
    static constexpr StringPool::Id NO_PREFIX = 0;
    /// How many bindings' slots a reset keeps.
    static constexpr std::size_t MOST_KEPT = 64;

    struct Binding {
        StringPool::Id prefix = NONE;
        StringPool::Id uri = NONE;
        UInt32 outer = NONE;    ///< the binding of the same prefix that this one hides
        UInt32 changes = 0;     ///< how many changes there were when it was declared
        UInt64 stateBefore = 0; ///< the state that it was declared in
        UInt64 stateAfter = 0;  ///< the state that it led to
        bool live = false;      ///< false once undeclared
    };

    /// A context that declares something, or is the base.
    struct Context {
        UInt32 first;           ///< its first binding
        UInt32 dead;            ///< how many of its bindings have been undeclared
        std::size_t emptyAbove; ///< contexts directly above it that have declared nothing
    };

    std::size_t first() const noexcept {
        return _contexts.back().emptyAbove == 0 ? _contexts.back().first : _count;
    }

    UInt32 findPrefix(std::string_view prefix) const;
    void append(std::string_view prefix, std::string_view uri, UInt32 outer);
    void popDeclaring();
    void removeLast();
    void remove(UInt32 i);
    void changedBelow(UInt32 i);
    void compact();
    void bind(UInt32 i);
    void unbind(UInt32 i);
    void addUse(UInt32 i);
    void removeUse(UInt32 i);
    void clear();

    StringPool _prefixes; // each with its innermost binding
    StringPool _uris;     // each with the last binding of it that is in force and has a prefix
    // Of namespace names that have several such bindings the others.
    std::set<std::pair<StringPool::Id, UInt32>> _otherUses;
    std::vector<Binding> _bindings; // slots above _count are kept: the same is likely to be declared again
    std::size_t _count = 0;
    std::vector<Context> _contexts;
    UInt64 _state = 1;
    UInt64 _lastState = 1;       // that was ever in use
    UInt32 _changes = 0;         // of bindings that others were above
    UInt32 _lowestChange = NONE; // where the lowest of these was, if that is not the last one
};

} // namespace Tamo::XML

#endif
