#include "Declarations.h"
#include "Tamo/Export.h"
#include <algorithm>

namespace Tamo::XML {

namespace {

/// How many internal entities of a document may refer to others. Expat expands a chain of them by recursion,
/// about half a KiB of stack a level, so that a longer chain could end the process.
constexpr std::size_t MAX_REFERRING_ENTITIES = 2000;

/// How many attributes with default values an element may have. Expat looks through all of them for each new
/// one.
constexpr std::size_t MAX_DEFAULT_ATTRIBUTES = 10000;

/// Whether the replacement text refers to another entity. Character references do not count.
bool refersToEntity(std::string_view text) {
    for (std::size_t i = 0; i + 1 < text.size(); ++i) {
        if ((text[i] == '&' || text[i] == '%') && text[i + 1] != '#') {
            return true;
        }
    }
    return false;
}

} // namespace

TAMO_CONSTINIT const std::string Declarations::CDATA{"CDATA"};

bool Declarations::addInternalEntity(std::string_view text) {
    return !refersToEntity(text) || ++_referringEntities <= MAX_REFERRING_ENTITIES;
}

std::string Declarations::externalEntityIn(std::string_view context) const {
    // The context lists bindings ("prefix=name") and the entities that are open, in no particular order.
    // Outside of external entities only one of these is external: the one that is being referred to.
    constexpr char CONTEXT_SEPARATOR = '\f';
    while (!context.empty()) {
        const std::string name(context.substr(0, context.find(CONTEXT_SEPARATOR)));
        if (_externalEntities.contains(name)) {
            return name;
        }
        context.remove_prefix(std::min(context.size(), name.size() + 1));
    }
    return std::string();
}

bool Declarations::addAttribute(const char* element, const char* attribute, std::string_view type,
                                const char* value) {
    if ((value || type == "ID") && ++_defaults[element] > MAX_DEFAULT_ATTRIBUTES) {
        return false;
    }
    // SAX knows neither enumerations nor the names that a notation attribute allows.
    if (type.starts_with('(')) {
        type = "NMTOKEN";
    } else if (type.starts_with("NOTATION")) {
        type = "NOTATION";
    }
    if (type != CDATA) {
        // The first declaration of an attribute is the one that holds.
        _types.emplace(std::string(element).append(1, ' ').append(attribute), type);
    }
    return true;
}

const std::string& Declarations::typeOf(const std::string& element, const std::string& attribute) {
    _typeKey.assign(element).append(1, ' ').append(attribute);
    const auto it = _types.find(_typeKey);
    return it == _types.end() ? CDATA : it->second;
}

} // namespace Tamo::XML
