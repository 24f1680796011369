#include "compare/DocumentPath.h"
#include <utility>

namespace finf {

const std::string& DocumentPath::open(std::string_view name) {
    const std::size_t count = ++_levels.back().counts[std::string(name)];
    Level level;
    level.parentSize = _text.size();
    _text.append("/").append(name);
    // There is one element in the document, whose number says nothing.
    if (_levels.size() > 1) {
        _text.append("[").append(std::to_string(count)).append("]");
    }
    _levels.push_back(std::move(level));
    return _text;
}

void DocumentPath::close() {
    _text.resize(_levels.back().parentSize);
    _levels.pop_back();
}

std::string DocumentPath::parent() const {
    const std::string parent = _text.substr(0, _levels.back().parentSize);
    return parent.empty() ? "/" : parent;
}

} // namespace finf
