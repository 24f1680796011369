#ifndef TAMO_XML_NAMECACHE_H
#define TAMO_XML_NAMECACHE_H

#include "Tamo/Bugcheck.h"
#include "Tamo/StringPool.h"
#include "Tamo/Types.h"
#include "Tamo/XML/DeliveryLimits.h"
#include "Tamo/XML/NamespaceSupport.h"
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
/// the first and the last may be missing; without namespace processing, the qualified name. Or it is a raw
/// name, which the bindings in force resolve: it then holds in their scope only. Most names are
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

        /// What handing it over counts, see DeliveryLimits.
        UInt64 octets() const { return _octets; }

    private:
        friend class NameCache;

        bool is(const char* name, UInt64 scope) const {
            return _scope == scope && std::strcmp(_pKey, name) == 0;
        }

        static const std::string NO_URI;

        UInt64 _scope = AS_DELIVERED;
        const char* _pKey = nullptr;
        std::size_t _keySize = 0;
        StringPool::Id _uri = StringPool::NONE; // in the cache's pool
        const std::string* _pURI = &NO_URI;
        const std::string* _pQName = &_ownQName;
        QName* _pChild = nullptr;    // the element that began directly behind the beginning of this one
        QName* _pFollower = nullptr; // and behind its end, the last time
        UInt64 _octets = 0;
        std::string _localName;
        std::string _ownQName; // unless it is the local name
    };

    /// What keys are: names with their namespaces, or qualified names as documents have them.
    enum class Keys { WITH_NAMESPACES, QUALIFIED_NAMES };

    /// An empty cache.
    explicit NameCache(Keys keys) : _keys(keys), _slots(64) { _open.reserve(32); }

    /// From now on keys are raw names that these bindings, which have just changed, resolve; with null they
    /// are what Expat delivers.
    void resolveWith(const NamespaceSupport* pBindings) noexcept {
        _pBindings = pBindings;
        _elementScope = pBindings ? 2 * pBindings->state() : AS_DELIVERED;
        _attributeScope = pBindings ? _elementScope + 1 : AS_DELIVERED;
        _plainScope = pBindings ? ANY_BINDINGS : AS_DELIVERED;
    }

    /// The number of elements that are open.
    std::size_t depth() const noexcept { return _open.size(); }

    /// Whether a raw name was found that the bindings do not resolve, or that is perhaps no qualified name.
    bool hasOdd() const noexcept { return _hasOdd; }

    /// Whether a part of a name that the XML recommendation allows is also one that Namespaces in XML allow,
    /// as far as its ASCII characters tell.
    static bool isSurelyNCName(std::string_view name) noexcept;

    /// Undoes the last startElement().
    void undoStart() {
        _open.pop_back();
        _pGuess = &_noGuess;
    }

    /// The parts of the name of an element that begins. This and all other names are valid until the next
    /// element begins or ends.
    const QName& startElement(const char* name) {
        beginEvent();
        QName* pName = *_pGuess;
        if (!pName || !pName->is(name, _elementScope)) {
            pName = find(name, _elementScope);
            *_pGuess = pName;
        }
        _open.push_back(pName);
        if (!pName) [[unlikely]] {
            _pGuess = &_noGuess;
            return spill(name, _elementScope);
        }
        _pGuess = &pName->_pChild;
        return *pName;
    }

    /// The parts of the name of one of its attributes.
    const QName& attribute(const char* name) {
        Attribute& guess = _attributes[place(name)];
        if (guess.pAddress == name &&
            (guess.pName->is(name, _plainScope) || guess.pName->is(name, _attributeScope))) {
            return *guess.pName;
        }
        const UInt64 scope = std::strchr(name, ':') ? _attributeScope : _plainScope;
        QName* const pName = find(name, scope);
        if (!pName) [[unlikely]] {
            return spill(name, scope);
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
            pName = find(name, _elementScope);
            if (_open.size() < _forgotten) {
                _forgotten = _open.size();
            }
        }
        if (!pName) [[unlikely]] {
            _pGuess = &_noGuess;
            return spill(name, _elementScope);
        }
        _pGuess = &pName->_pFollower;
        return *pName;
    }

private:
    /// The scope of a name in its parts, and of an attribute's name that bindings do not bear on. That of
    /// other raw names is the number of the bindings, doubled, and one for attributes.
    static constexpr UInt64 AS_DELIVERED = 0;
    static constexpr UInt64 ANY_BINDINGS = 1;

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

    static std::size_t hash(std::string_view key, UInt64 scope);

    /// Forgets the names that found no place.
    void beginEvent() {
        if (!_spill.empty()) [[unlikely]] {
            endSpill();
        }
    }

    QName* find(std::string_view key, UInt64 scope);
    const QName& spill(std::string_view key, UInt64 scope);
    void fill(std::string_view key, QName& name);
    void split(std::string_view key, QName& name);
    void setURI(std::string_view uri, QName& name);
    void resolve(std::string_view key, QName& name);
    void grow();
    void endSpill();

    Keys _keys;
    const NamespaceSupport* _pBindings = nullptr; // null unless names are raw
    UInt64 _elementScope = AS_DELIVERED;
    UInt64 _attributeScope = AS_DELIVERED;
    UInt64 _plainScope = AS_DELIVERED;
    bool _hasOdd = false;
    std::array<std::byte, 3072> _buffer; // enough for small documents
    std::pmr::monotonic_buffer_resource _memory{_buffer.data(), _buffer.size()};
    std::pmr::list<QName> _names{&_memory};
    std::vector<QName*> _slots; // a power of two
    std::size_t _used = 0;
    StringPool _uris;
    StringPool::Id _lastURI = StringPool::NONE; // the last one of a new name
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
