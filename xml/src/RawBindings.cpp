#include "RawBindings.h"
#include "NameCache.h"
#include <algorithm>

namespace Tamo::XML {

bool RawBindings::declare(const char** attributes, std::size_t depth) {
    _bindings.pushContext();
    _depths.push_back(depth);
    for (; *attributes; attributes += 2) {
        if (!isDeclaration(attributes[0])) {
            continue;
        }
        const std::string prefix(attributes[0][5] ? attributes[0] + 6 : "");
        const std::string uri(attributes[1]);
        const bool isPrefix = NameCache::isSurelyNCName(prefix) && !uri.empty() && !prefix.starts_with("xml");
        const std::string& bound = _bindings.getAttributePrefix(uri);
        if ((attributes[0][5] && !(isPrefix && (bound.empty() || bound == prefix))) ||
            uri == NamespaceSupport::XML_NAMESPACE || uri == NamespaceSupport::XMLNS_NAMESPACE) {
            return false;
        }
        _bindings.declarePrefix(prefix, uri);
    }
    return true;
}

const std::vector<const std::string*>& RawBindings::declaredBackwards() {
    _declared.clear();
    _bindings.visitDeclared(
        [this](const std::string& prefix, const std::string&) { _declared.push_back(&prefix); });
    std::reverse(_declared.begin(), _declared.end());
    return _declared;
}

void RawBindings::end() {
    _depths.pop_back();
    _bindings.popContext();
}

} // namespace Tamo::XML
