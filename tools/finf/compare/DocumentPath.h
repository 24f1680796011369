#ifndef TAMO_FINF_DOCUMENTPATH_H
#define TAMO_FINF_DOCUMENTPATH_H

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace finf {

/// The way from the document to the element that is open: "/order/item[2]".
class DocumentPath {
public:
    DocumentPath() : _levels(1) {}

    /// Enters an element and returns the way to it.
    const std::string& open(std::string_view name);

    /// Leaves the element.
    void close();

    /// The way to the open element; empty outside of all elements.
    const std::string& text() const noexcept { return _text; }

    /// The way to the element around it, "/" for the document.
    std::string parent() const;

private:
    struct Level {
        std::size_t parentSize = 0;                // of _text without the element
        std::map<std::string, std::size_t> counts; // of the elements in it, by name
    };

    std::string _text;
    std::vector<Level> _levels; // that of the document first
};

} // namespace finf

#endif
