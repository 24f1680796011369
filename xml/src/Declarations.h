#ifndef TAMO_XML_DECLARATIONS_H
#define TAMO_XML_DECLARATIONS_H

#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <string_view>

namespace Tamo::XML {

/// What a document type declaration declares, as far as events to come depend on it, and Expat's cost. Owned
/// by one parse.
class Declarations {
public:
    /// An internal entity with its replacement text; false when too many of them refer to others.
    bool addInternalEntity(std::string_view text);

    /// An external entity that is parsed, and not a parameter entity.
    void addExternalEntity(const char* name) { _externalEntities.emplace(name); }

    /// The external entity that is referred to, outside of others, in the context that Expat has of it; empty
    /// when there is none.
    std::string externalEntityIn(std::string_view context) const;

    /// An attribute with its type and, unless that is null, its default value; false when its element has too
    /// many of these.
    bool addAttribute(const char* element, const char* attribute, std::string_view type, const char* value);

    /// Whether all attributes are of the type CDATA.
    bool haveNoTypes() const noexcept { return _types.empty(); }

    /// The type of an attribute; valid until the next one is added.
    const std::string& typeOf(const std::string& element, const std::string& attribute);

    /// The type of an attribute that has no declaration.
    static const std::string CDATA;

private:
    std::size_t _referringEntities = 0; // internal ones that refer to others
    // Ordered, because documents can choose names of equal hashes.
    std::set<std::string> _externalEntities;      // names
    std::map<std::string, std::string> _types;    // by element and attribute name
    std::map<std::string, std::size_t> _defaults; // by element name, the number of default values
    std::string _typeKey;
};

} // namespace Tamo::XML

#endif
