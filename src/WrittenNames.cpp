#include "Tamo/FastInfoset/WrittenNames.h"

namespace Tamo::FastInfoset {

void WrittenNames::enter(const std::string& uri, const std::string& localName, const std::string& qname,
                         UInt64 bindings, unsigned int index) {
    if (_entries.empty()) {
        _entries.resize(FIRST_SIZE);
    }
    const Entry& old = _entries[slot(uri, localName)];
    if (old.pLocalName && *old.pLocalName != localName && _entries.size() < MOST) {
        // Names push each other out: more room, which the names in use soon fill again.
        const std::size_t size = _entries.size() * 2;
        _entries.clear();
        _entries.resize(size);
    }
    Entry& entry = _entries[slot(uri, localName)];
    entry.pUri = &uri;
    entry.pLocalName = &localName;
    entry.bindings = bindings;
    entry.index = index;
    entry.qname = qname;
}

void WrittenNames::clear() noexcept {
    for (Entry& entry : _entries) {
        entry.pLocalName = nullptr;
    }
}

} // namespace Tamo::FastInfoset
