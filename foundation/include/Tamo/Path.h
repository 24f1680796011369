#ifndef TAMO_PATH_H
#define TAMO_PATH_H

#include "Tamo/Export.h"
#include <string>

namespace Tamo {

/// The name of a file: segments separated by '/'. A value, used by one thread at a time when
/// it is changed; the file system is not consulted.
class TAMO_API Path {
public:
    /// The path that text spells; every text is one.
    explicit Path(const std::string& text) : _text(text) {}

    /// The path as given.
    const std::string& toString() const noexcept { return _text; }

    /// The last segment: "c.xml" of "/a/b/c.xml", empty when the path ends in '/'.
    std::string getFileName() const;

    /// The text after the last dot of the last segment, empty when it has none.
    std::string getExtension() const;

private:
    std::string _text;
};

} // namespace Tamo

#endif
