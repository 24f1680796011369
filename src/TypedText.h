#ifndef TAMO_FASTINFOSET_TYPEDTEXT_H
#define TAMO_FASTINFOSET_TYPEDTEXT_H

#include <string>

namespace Tamo::FastInfoset {

class Encoding;

/// How typed values become text where there is a choice (ITU-T X.891, 10.8 to 10.10). A plain value.
struct TypedText {
    /// UUIDs in lower case.
    bool lowerCaseUUIDs = false;
    /// Numbers with a fraction in the canonical form of XML Schema.
    bool canonicalNumbers = false;

    /// Builds the content of a value.
    void createContent(Encoding& value) const;

    /// The text of a value: its content, or the hexadecimal or base64 form of its octets.
    std::string of(Encoding& value) const;
};

} // namespace Tamo::FastInfoset

#endif
