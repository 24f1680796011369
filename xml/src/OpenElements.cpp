#include "OpenElements.h"

namespace Tamo::XML {

void OpenElements::pushInner(std::string_view prefix, std::string_view localName, State state) {
    auto pFirst = _pInner ? nullptr : std::make_unique<std::deque<Inner>>();
    std::deque<Inner>& inner = _pInner ? *_pInner : *pFirst;
    const StringPool::Id prefixId = _texts.intern(prefix);
    StringPool::Id localId = StringPool::NONE;
    try {
        localId = _texts.intern(localName);
        inner.push_back({prefixId, localId, state});
    } catch (...) {
        _texts.release(prefixId);
        if (localId != StringPool::NONE) {
            _texts.release(localId);
        }
        throw;
    }
    if (pFirst) {
        _pInner = std::move(pFirst);
    }
}

void OpenElements::popInner() noexcept {
    _texts.release(_pInner->back().prefix);
    _texts.release(_pInner->back().localName);
    _pInner->pop_back();
    if (_pInner->empty()) {
        _pInner.reset();
    }
}

} // namespace Tamo::XML
