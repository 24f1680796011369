#ifndef TAMO_STRINGPOOL_H
#define TAMO_STRINGPOOL_H

#include "Tamo/Export.h"
#include "Tamo/HashKey.h"
#include "Tamo/Types.h"
#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace Tamo {

/// Strings that are held once however often they are in use: a string becomes a small number.
///
/// Uses are counted; a string without any is forgotten, and its number given to another one. With each string
/// goes one number of the pool's user. A search reads the string and looks at a bounded number of others,
/// also among strings that are chosen for equal hashes, where it takes a logarithm more. A string stays in
/// its place while it is in use. Used by one thread at a time.
class TAMO_API StringPool {
public:
    using Id = UInt32;

    StringPool() = default;
    StringPool(const StringPool&) = delete;
    StringPool& operator=(const StringPool&) = delete;

    /// No string; also what the user's number is at first.
    static constexpr Id NONE = 0xFFFFFFFF;

    /// The number of a string that is in use, or NONE.
    Id find(std::string_view text) const {
        return _slots.empty() ? scan(text) : search(text, HashKey::of(text));
    }

    /// The number of a string, which has one more use from now on.
    Id intern(std::string_view text);

    /// Counts one more use of a string in use.
    void hold(Id id) noexcept { ++entry(id).uses; }

    /// Counts one use less.
    void release(Id id) noexcept {
        if (--entry(id).uses == 0) {
            forget(id);
        }
    }

    const std::string& text(Id id) const noexcept { return entry(id).text; }

    /// The user's number of a string in use.
    UInt32& mark(Id id) noexcept { return entry(id).mark; }
    UInt32 mark(Id id) const noexcept { return entry(id).mark; }

    /// Forgets all strings.
    void clear() noexcept;

private:
    struct Entry {
        std::string text;
        HashKey key{0, 0}; ///< once there are slots
        UInt32 uses = 0;
        UInt32 mark = NONE;
    };

    static constexpr std::size_t MOST_SCANNED = 8;
    static constexpr std::size_t FIRST_SLOTS = 32;
    static constexpr std::size_t MOST_PROBES = 32;
    static constexpr std::size_t LONGEST_KEPT = 256;

    // What stands in a slot: nothing, nothing any more, or an entry's number and FIRST_ENTRY.
    static constexpr UInt32 FREE = 0;
    static constexpr UInt32 LEFT = 1;
    static constexpr UInt32 FIRST_ENTRY = 2;

    static constexpr std::size_t OWN = MOST_SCANNED;

    Entry& entry(Id id) noexcept { return id < OWN ? _own[id] : *_more[id - OWN]; }
    const Entry& entry(Id id) const noexcept { return id < OWN ? _own[id] : *_more[id - OWN]; }

    Id scan(std::string_view text) const noexcept;
    Id search(std::string_view text, HashKey key) const;
    std::size_t home(HashKey key) const noexcept;
    void enter(Id id);
    void leave(Id id) noexcept;
    void enterAll();
    void forget(Id id) noexcept;
    static void shrink(Entry& entry) noexcept;

    Entry _own[OWN]; // the first entries, as many as most pools have
    std::vector<std::unique_ptr<Entry>> _more;
    std::size_t _size = 0;                           // the number of entries
    std::size_t _inUse = 0;                          // of these
    Id _firstUnused = NONE;                          // of the others; the mark of each is the next one
    std::vector<UInt32> _slots;                      // a power of two; none while the entries are few
    std::size_t _taken = 0;                          // of the slots, those that are not free
    std::map<std::string, Id, std::less<>> _crowded; // strings that found no slot near their own
};

} // namespace Tamo

#endif
