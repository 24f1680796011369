#include "Tamo/StringPool.h"
#include "Tamo/Hash.h"
#include <algorithm>
#include <bit>
#include <utility>

namespace Tamo {

StringPool::Id StringPool::intern(std::string_view text) {
    const Id known = find(text);
    if (known != NONE) {
        hold(known);
        return known;
    }
    const bool isNew = _firstUnused == NONE;
    const Id id = isNew ? static_cast<Id>(_size) : _firstUnused;
    if (isNew && _size >= OWN && _more.size() == _size - OWN) {
        _more.push_back(std::make_unique<Entry>());
    }
    Entry& entry = this->entry(id);
    entry.text = text;
    if (!_slots.empty() || _size >= MOST_SCANNED) {
        entry.key = HashKey::of(text);
        enter(id);
    }
    if (isNew) {
        ++_size;
    } else {
        _firstUnused = entry.mark;
    }
    ++_inUse;
    entry.uses = 1;
    entry.mark = NONE;
    return id;
}

void StringPool::clear() noexcept {
    for (Entry& entry : _own) {
        entry.uses = 0;
        shrink(entry);
    }
    _more.clear();
    _size = 0;
    _inUse = 0;
    _firstUnused = NONE;
    _slots.clear();
    _taken = 0;
    _crowded.clear();
}

// A few strings are compared one by one: that is cheaper than the key of a long one.
StringPool::Id StringPool::scan(std::string_view text) const noexcept {
    for (Id id = 0; id < _size; ++id) {
        const Entry& candidate = _own[id];
        if (candidate.text.size() == text.size() && candidate.uses != 0 && equalText(candidate.text, text)) {
            return id;
        }
    }
    return NONE;
}

StringPool::Id StringPool::search(std::string_view text, HashKey key) const {
    std::size_t place = home(key);
    for (std::size_t probes = 0; probes < MOST_PROBES; ++probes, place = (place + 1) & (_slots.size() - 1)) {
        const UInt32 slot = _slots[place];
        if (slot == FREE) {
            return NONE;
        }
        if (slot >= FIRST_ENTRY) {
            const Entry& candidate = entry(slot - FIRST_ENTRY);
            if (candidate.key == key && candidate.text.size() == text.size() &&
                (HashKey::isExact(text.size()) || equalText(candidate.text, text))) {
                return slot - FIRST_ENTRY;
            }
        }
    }
    const auto it = _crowded.empty() ? _crowded.end() : _crowded.find(text);
    return it == _crowded.end() ? NONE : it->second;
}

std::size_t StringPool::home(HashKey key) const noexcept {
    return static_cast<std::size_t>(key.hash() >> (64 - std::countr_zero(_slots.size())));
}

// Half of the slots are free at least, so that a search is short.
void StringPool::enter(Id id) {
    if (2 * (_taken + 1) > _slots.size()) {
        enterAll();
    }
    std::size_t place = home(entry(id).key);
    for (std::size_t probes = 0; probes < MOST_PROBES; ++probes, place = (place + 1) & (_slots.size() - 1)) {
        if (_slots[place] < FIRST_ENTRY) {
            _taken += _slots[place] == FREE ? 1 : 0;
            _slots[place] = id + FIRST_ENTRY;
            return;
        }
    }
    _crowded.emplace(entry(id).text, id);
}

// All entries in use anew, in as many slots as they need.
void StringPool::enterAll() {
    const bool hasKeys = !_slots.empty();
    _slots.assign(std::max(FIRST_SLOTS, std::bit_ceil(std::max(4 * _inUse, _size))), FREE);
    _taken = 0;
    _crowded.clear();
    for (Id id = 0; id < _size; ++id) {
        if (entry(id).uses != 0) {
            if (!hasKeys) {
                entry(id).key = HashKey::of(entry(id).text);
            }
            enter(id);
        }
    }
}

void StringPool::leave(Id id) noexcept {
    std::size_t place = home(entry(id).key);
    for (std::size_t probes = 0; probes < MOST_PROBES; ++probes, place = (place + 1) & (_slots.size() - 1)) {
        if (_slots[place] == id + FIRST_ENTRY) {
            _slots[place] = LEFT;
            return;
        }
    }
    const auto it = _crowded.find(entry(id).text);
    if (it != _crowded.end()) {
        _crowded.erase(it);
    }
}

void StringPool::forget(Id id) noexcept {
    if (!_slots.empty()) {
        leave(id);
    }
    --_inUse;
    entry(id).mark = std::exchange(_firstUnused, id);
    shrink(entry(id));
}

// A string that is forgotten keeps its storage for the next one, unless it is long.
void StringPool::shrink(Entry& entry) noexcept {
    if (entry.text.capacity() > LONGEST_KEPT) {
        std::string().swap(entry.text);
    }
}

} // namespace Tamo
