#include "Tamo/Path.h"

namespace Tamo {

std::string Path::getFileName() const {
    return _text.substr(_text.rfind('/') + 1);
}

std::string Path::getExtension() const {
    const std::string name = getFileName();
    const std::size_t dot = name.rfind('.');
    return dot == std::string::npos ? std::string() : name.substr(dot + 1);
}

} // namespace Tamo
