#ifndef TAMO_FASTINFOSET_HELDPROLOG_H
#define TAMO_FASTINFOSET_HELDPROLOG_H

#include <string>
#include <string_view>
#include <vector>

namespace Tamo::FastInfoset {

/// Events before the root element, kept until the header has been written, which holds what is declared among
/// them. Takes memory in proportion to their strings. Used by one thread at a time.
class HeldProlog {
public:
    enum class Kind {
        COMMENT,             ///< its text
        INSTRUCTION,         ///< target and data
        START_DOCUMENT_TYPE, ///< public and system identifier
        END_DOCUMENT_TYPE
    };

    struct Event {
        Kind kind;
        std::string first;
        std::string second;
    };

    /// Keeps an event behind the others.
    void add(Kind kind, std::string_view first = {}, std::string_view second = {}) {
        _events.push_back({kind, std::string(first), std::string(second)});
    }

    const std::vector<Event>& events() const noexcept { return _events; }

    /// Forgets them.
    void clear() noexcept { std::vector<Event>().swap(_events); }

private:
    std::vector<Event> _events;
};

} // namespace Tamo::FastInfoset

#endif
