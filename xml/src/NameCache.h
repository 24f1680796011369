#ifndef TAMO_XML_NAMECACHE_H
#define TAMO_XML_NAMECACHE_H

#include <cstddef>
#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace Tamo::XML {

/// The names of a document, split once instead of at every event.
///
/// A key is what Expat delivers: namespace name, local name and prefix with SEPARATOR between them, of which
/// the first and the last may be missing; without namespace processing, the qualified name. The cache is
/// bounded: names that find no place are split for the current event only. Owned by one parse.
class NameCache {
public:
    /// No XML document can contain it.
    static constexpr char SEPARATOR = '\x01';

    /// A name in its parts.
    struct QName {
        std::string key;
        std::string uri;
        std::string localName;
        std::string qname;
    };

    /// A cache for keys with or without namespace parts.
    explicit NameCache(bool namespaces) : _namespaces(namespaces), _slots(64) {}

    /// The parts of a name; valid until the next call of beginEvent.
    const QName& find(std::string_view key);

    /// Forgets the names that found no place.
    void beginEvent() {
        if (!_spill.empty() || !_displaced.empty()) [[unlikely]] {
            endSpill();
        }
    }

private:
    static constexpr std::size_t MAX_SLOTS = 8192;
    static constexpr std::size_t MAX_PROBES = 8;
    /// A longer key is not worth keeping; together with MAX_SLOTS this bounds the memory.
    static constexpr std::size_t MAX_KEY = 512;
    /// After this many names without a place the cache begins anew: the document has gone on to other names.
    static constexpr std::size_t MAX_SPILLED = 4096;

    static std::size_t hash(std::string_view key);
    void split(std::string_view key, QName& name) const;
    void grow();
    void endSpill();

    bool _namespaces;
    std::vector<std::unique_ptr<QName>> _slots; // a power of two
    std::size_t _used = 0;
    std::deque<QName> _spill;
    std::vector<std::unique_ptr<QName>> _displaced; // lost their place when the table grew
    std::size_t _spilled = 0;
};

} // namespace Tamo::XML

#endif
