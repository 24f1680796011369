#include "Reading.h"
#include <algorithm>

namespace Tamo::XML {

bool Reading::takesOnWay(Callback callback) noexcept {
    if (_state == State::PASSING_OVER) {
        if (callback == Callback::COMMON && --_passOver == 0) {
            _state = State::PASSING_ENDS;
        }
        return false;
    }
    if (_state == State::PASSING_ENDS && callback != Callback::NAMESPACE_END) {
        _state = State::RESOLVED;
        return true;
    }
    return false;
}

bool Reading::takesOnWay(std::string_view& text) noexcept {
    if (_state == State::PASSING_OVER) {
        const auto known = static_cast<std::size_t>(std::min<UInt64>(_passOver, text.size()));
        text.remove_prefix(known);
        _passOver -= known;
        if (_passOver == 0) {
            _state = State::PASSING_ENDS;
        }
        if (text.empty()) {
            return false;
        }
    }
    return takesOnWay(Callback::COMMON);
}

} // namespace Tamo::XML
