#ifndef TAMO_XML_OPENELEMENTS_H
#define TAMO_XML_OPENELEMENTS_H

#include "Tamo/StringPool.h"
#include "Tamo/Types.h"
#include <cstddef>
#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace Tamo::XML {

/// The elements that XMLWriter has open, with the names for their end tags.
///
/// The names of the outer elements, which are all there are in most documents, stand one behind the other. A
/// document can be deep and its names long though a short index stands for each of them: from a certain size
/// on an element has the numbers of its name's parts, which are held once. Owned by one writer.
class OpenElements {
public:
    /// What the writer knows of an element.
    struct State {
        bool hasText = false;
        bool hasChildren = false;
        bool preserve = false; ///< xml:space="preserve" is in force
    };

    /// A name as it has been written, in one or two parts.
    struct Name {
        std::string_view first; ///< empty when the second part is all
        std::string_view second;
    };

    bool empty() const noexcept { return _outer.empty(); }
    std::size_t size() const noexcept { return _outer.size() + (_pInner ? _pInner->size() : 0); }

    /// The innermost element.
    State& back() noexcept { return _pInner ? _pInner->back().state : _outer.back().state; }

    /// Its name, valid until the next operation that is not const.
    Name name() const noexcept {
        if (_pInner) [[unlikely]] {
            const Inner& inner = _pInner->back();
            return {_texts.text(inner.prefix), _texts.text(inner.localName)};
        }
        return {{}, std::string_view(_names).substr(_outer.back().begin)};
    }

    /// Opens an element.
    void push(std::string_view prefix, std::string_view localName, State state) {
        if (_names.size() < MOST_NAMES && _outer.size() < MOST_OUTER) [[likely]] {
            const auto begin = static_cast<UInt32>(_names.size());
            if (!prefix.empty()) {
                _names.append(prefix);
            }
            _names.append(localName);
            _outer.push_back({begin, state});
        } else {
            pushInner(prefix, localName, state);
        }
    }

    /// Closes the innermost element.
    void pop() noexcept {
        if (!_pInner) [[likely]] {
            _names.resize(_outer.back().begin);
            _outer.pop_back();
        } else {
            popInner();
        }
    }

private:
    static constexpr std::size_t MOST_NAMES = 64 * 1024; // octets
    static constexpr std::size_t MOST_OUTER = 1024;

    struct Outer {
        UInt32 begin; ///< of its name in _names
        State state;
    };

    struct Inner {
        StringPool::Id prefix;
        StringPool::Id localName;
        State state;
    };

    void pushInner(std::string_view prefix, std::string_view localName, State state);
    void popInner() noexcept;

    std::string _names;
    std::vector<Outer> _outer;
    std::unique_ptr<std::deque<Inner>> _pInner; // inside of them; null for none
    StringPool _texts;                          // their names' parts
};

} // namespace Tamo::XML

#endif
