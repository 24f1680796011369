#ifndef TAMO_FASTINFOSET_OPENCONSTRUCTS_H
#define TAMO_FASTINFOSET_OPENCONSTRUCTS_H

#include "Tamo/Bugcheck.h"
#include "Tamo/XML/NamespaceSupport.h"
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace Tamo::FastInfoset {

/// What the writer has begun and not ended, with the namespace bindings in force. Used by one thread at a
/// time.
///
/// Most elements declare nothing: they are counted, and get the state and the context that they have done
/// without by settle(), before anything else is done with those.
class OpenConstructs {
public:
    enum State { UNINITIALIZED, DOCUMENT, ELEMENT, CDATA, DTD, ELEMENT_WITH_BINDINGS };

    OpenConstructs() {
        _states.reserve(16); // as deep as most documents are
        reset();
    }

    OpenConstructs(const OpenConstructs&) = delete;
    OpenConstructs& operator=(const OpenConstructs&) = delete;

    /// Forgets all of them; the bindings begin anew with the next document.
    void reset() {
        _states.assign(1, UNINITIALIZED);
        _plainElements = 0;
        _hasOwnBindings = false;
    }

    void startDocument() {
        push(DOCUMENT);
        _hasOwnBindings = false;
        _namespaces.reset();
        _namespaces.pushContext();
    }

    /// Whether character data is within a CDATA section.
    bool isInCData() const { return top() == CDATA; }

    /// Whether an element may follow that needs no state and no namespace context of its own.
    TAMO_ALWAYS_INLINE bool isPlainPlace() const noexcept {
        return _plainElements != 0 ||
               (_namespaces.declaresNothing() && !_states.empty() && _states.back() != CDATA);
    }

    /// Begins such an element.
    void startPlainElement() noexcept { ++_plainElements; }

    /// Begins one that has a context of its own, which has been pushed.
    void startDeclaringElement() {
        _states.push_back(std::exchange(_hasOwnBindings, false) ? ELEMENT_WITH_BINDINGS : ELEMENT);
    }

    /// Opens the context in which the next element declares what it does not share with the ones behind it,
    /// unless it is open: in the strict mode. What the element contains has another one above it.
    void openOwnBindings() {
        settle();
        if (!_hasOwnBindings) {
            _namespaces.pushContext();
            _hasOwnBindings = true;
        }
    }

    /// Forgets what has been declared there, if it is open.
    void dropOwnBindings() {
        if (_hasOwnBindings) {
            _hasOwnBindings = false;
            _namespaces.popContext();
        }
    }

    /// Takes back one declaration of it.
    void undeclareOwn(const std::string& prefix) {
        if (_hasOwnBindings) {
            _namespaces.undeclarePrefix(prefix);
            if (_namespaces.declaresNothing()) {
                dropOwnBindings();
            }
        }
    }

    TAMO_ALWAYS_INLINE void endElement() {
        if (_plainElements != 0) [[likely]] {
            --_plainElements;
        } else {
            const bool hadBindings = !_states.empty() && _states.back() == ELEMENT_WITH_BINDINGS;
            pop();
            _namespaces.popContext();
            if (hadBindings) {
                _namespaces.popContext();
            }
        }
    }

    void push(State state) {
        settle();
        _states.push_back(state);
    }

    void pop() {
        settle();
        tamo_assert(!_states.empty());
        _states.pop_back();
    }

    /// Whether nothing has begun, or all has ended.
    bool isNothingOpen() const noexcept { return _plainElements == 0 && _states.size() <= 1; }

    /// Nothing has begun.
    void requireUninitialized() {
        settle();
        tamo_assert(!_states.empty());
        tamo_assert(_states.back() == UNINITIALIZED);
    }

    /// Gives the plain elements their states and contexts.
    void settle() {
        for (; _plainElements != 0; --_plainElements) {
            _namespaces.pushContext();
            _states.push_back(ELEMENT);
        }
    }

    /// The bindings; to be changed behind settle() only.
    XML::NamespaceSupport& namespaces() noexcept { return _namespaces; }
    const XML::NamespaceSupport& namespaces() const noexcept { return _namespaces; }

private:
    State top() const {
        tamo_assert(!_states.empty());
        return _states.back(); // plain elements begin where this is no CDATA section, and it is none then
    }

    std::vector<State> _states;
    std::size_t _plainElements = 0; // the innermost elements
    bool _hasOwnBindings = false;   // the innermost context is the next element's
    XML::NamespaceSupport _namespaces;
};

} // namespace Tamo::FastInfoset

#endif
