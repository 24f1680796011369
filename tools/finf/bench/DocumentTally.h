#ifndef TAMO_FINF_DOCUMENTTALLY_H
#define TAMO_FINF_DOCUMENTTALLY_H

#include "Tamo/Types.h"
#include <string_view>

namespace finf {

/// What a document says, in one number: two readings of it that differ in a name, a value or a character of
/// text have different sums, but for a chance of 2^-64. Comments and processing instructions do not count.
class DocumentTally {
public:
    void startElement(std::string_view uri, std::string_view localName) { add('<', uri, localName); }
    void attribute(std::string_view uri, std::string_view localName, std::string_view value) {
        add('@', uri, localName);
        add('=', value, {});
    }
    void text(std::string_view part) {
        // A run of text counts the same in whatever parts it comes.
        if (!_inText) {
            octet('"');
            _inText = true;
        }
        octets(part);
    }
    void endElement() { add('>', {}, {}); }

    Tamo::UInt64 sum() const { return _sum; }

private:
    void add(char kind, std::string_view first, std::string_view second) {
        _inText = false;
        octet(kind);
        octets(first);
        octet('\0');
        octets(second);
        octet('\0');
    }
    void octets(std::string_view s) {
        for (const char c : s) {
            octet(c);
        }
    }
    void octet(char c) { _sum = (_sum ^ static_cast<unsigned char>(c)) * 0x100000001B3u; } // FNV-1a

    Tamo::UInt64 _sum = 0xCBF29CE484222325u;
    bool _inText = false;
};

} // namespace finf

#endif
