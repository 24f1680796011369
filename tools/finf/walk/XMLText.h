#ifndef TAMO_FINF_XMLTEXT_H
#define TAMO_FINF_XMLTEXT_H

#include <string_view>

namespace finf {

/// What XML 1.0 takes as names and as text. Stateless; all operations are static.
class XMLText {
public:
    /// Whether the UTF-8 text is a name without a colon (Namespaces in XML 1.0, 3).
    static bool isNCName(std::string_view text);

    /// Whether every character of the UTF-8 text may stand in a document (XML 1.0, 2.2).
    static bool isText(std::string_view text);
};

} // namespace finf

#endif
