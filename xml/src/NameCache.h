#ifndef TAMO_XML_NAMECACHE_H
#define TAMO_XML_NAMECACHE_H

#include "Tamo/Bugcheck.h"
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <list>
#include <memory_resource>
#include <string>
#include <string_view>
#include <vector>

namespace Tamo::XML {

/// The names of a document, split once instead of at every event.
///
/// A key is what Expat delivers: namespace name, local name and prefix with SEPARATOR between them, of which
/// the first and the last may be missing; without namespace processing, the qualified name. Most names are
/// found by a guess that is verified: an attribute where Expat kept the same name before, an element behind
/// the one that it followed before, the end of an element in the stack of those that are open. The cache is
/// bounded but for that stack: names that find no place are split for the current event only. Owned by one
/// parse.
class NameCache {
public:
    /// No XML document can contain it.
    static constexpr char SEPARATOR = '\x01';

    /// A name in its parts.
    class QName {
    public:
        QName() = default;
        QName(const QName&) = delete;
        QName& operator=(const QName&) = delete;

        const std::string& uri() const { return *_pURI; }
        const std::string& localName() const { return _localName; }
        const std::string& qname() const { return *_pQName; }

    private:
        friend class NameCache;

        bool is(const char* name) const { return std::strcmp(_pKey, name) == 0; }

        const char* _pKey = nullptr;
        std::size_t _keySize = 0;
        const std::string* _pURI = &_ownURI;
        const std::string* _pQName = &_ownQName;
        QName* _pChild = nullptr;    // the element that began directly behind the beginning of this one
        QName* _pFollower = nullptr; // and behind its end, the last time
        std::string _localName;
        std::string _ownURI;   // unless another name has it
        std::string _ownQName; // unless it is the local name
    };

    /// A cache for keys with or without namespace parts.
    explicit NameCache(bool namespaces) : _namespaces(namespaces), _slots(64) { _open.reserve(32); }

    /// The parts of the name of an element that begins. This and all other names are valid until the next
    /// element begins or ends.
    const QName& startElement(const char* name) {
        beginEvent();
        QName* pName = *_pGuess;
        if (!pName || !pName->is(name)) {
            pName = find(name);
            *_pGuess = pName;
        }
        _open.push_back(pName);
        if (!pName) [[unlikely]] {
            _pGuess = &_noGuess;
            return spill(name);
        }
        _pGuess = &pName->_pChild;
        return *pName;
    }

    /// The parts of the name of one of its attributes.
    const QName& attribute(const char* name) {
        Attribute& guess = _attributes[place(name)];
        if (guess.pAddress == name && guess.pName->is(name)) {
            return *guess.pName;
        }
        QName* const pName = find(name);
        if (!pName) [[unlikely]] {
            return spill(name);
        }
        guess = {name, pName};
        return *pName;
    }

    /// The parts of the name of the open element that began last; it ends.
    const QName& endElement(const char* name) {
        beginEvent();
        tamo_assert(!_open.empty());
        QName* pName = _open.size() > _forgotten ? _open.back() : nullptr;
        _open.pop_back();
        if (!pName) [[unlikely]] {
            pName = find(name);
            if (_open.size() < _forgotten) {
                _forgotten = _open.size();
            }
        }
        if (!pName) [[unlikely]] {
            _pGuess = &_noGuess;
            return spill(name);
        }
        _pGuess = &pName->_pFollower;
        return *pName;
    }

private:
    static constexpr std::size_t MAX_SLOTS = 8192;
    static constexpr std::size_t MAX_PROBES = 8;
    /// A longer key is not worth keeping; together with MAX_SLOTS this bounds the memory.
    static constexpr std::size_t MAX_KEY = 512;
    /// After this many names without a place the cache begins anew: the document has gone on to other names.
    static constexpr std::size_t MAX_SPILLED = 4096;

    /// Where Expat kept the name of an attribute.
    struct Attribute {
        const char* pAddress;
        const QName* pName;
    };
    static constexpr std::size_t ATTRIBUTES = 64;

    static std::size_t place(const char* address) {
        const auto number = reinterpret_cast<std::uintptr_t>(address);
        return (number ^ number / ATTRIBUTES) % ATTRIBUTES;
    }

    static std::size_t hash(std::string_view key);

    /// Forgets the names that found no place.
    void beginEvent() {
        if (!_spill.empty()) [[unlikely]] {
            endSpill();
        }
    }

    QName* find(std::string_view key);
    const QName& spill(std::string_view key);
    void split(std::string_view key, QName& name) const;
    void grow();
    void endSpill();

    bool _namespaces;
    std::array<std::byte, 3072> _buffer; // enough for small documents
    std::pmr::monotonic_buffer_resource _memory{_buffer.data(), _buffer.size()};
    std::pmr::list<QName> _names{&_memory};
    std::vector<QName*> _slots; // a power of two
    std::size_t _used = 0;
    const std::string* _pURI = nullptr; // the last new one
    std::array<Attribute, ATTRIBUTES> _attributes{};
    QName* _noGuess = nullptr;
    QName** _pGuess = &_noGuess; // where it says which element begins next
    std::vector<QName*> _open;   // null without a place
    std::size_t _forgotten = 0;  // of these from the bottom the names are no longer there
    std::list<QName> _spill;
    std::size_t _spilled = 0;
};

} // namespace Tamo::XML

#endif
