#ifndef TAMO_FASTINFOSET_FISCONTENTHANDLER_H
#define TAMO_FASTINFOSET_FISCONTENTHANDLER_H

#include "Tamo/Export.h"
#include "Tamo/Types.h"
#include "Tamo/UUID.h"
#include "Tamo/XML/ContentHandler.h"
#include <cstddef>

namespace Tamo::FastInfoset {

/// A SAX2 content handler that takes typed data as values instead of text.
///
/// Set as a parser's content handler it receives one call per value, in document order; plain text still
/// arrives through `characters`. Called on the thread that parses; arguments are valid during the call only.
class TAMO_API FISContentHandler : public XML::ContentHandler {
public:
    /// length octets of hexadecimal or base64 data.
    virtual void binaryData(const char* data, std::size_t length) = 0;
    virtual void encodedData(Int16 value) = 0;
    virtual void encodedData(Int32 value) = 0;
    virtual void encodedData(Int64 value) = 0;
    virtual void encodedData(bool value) = 0;
    virtual void encodedData(float value) = 0;
    virtual void encodedData(double value) = 0;
    virtual void encodedData(const UUID& value) = 0;
};

} // namespace Tamo::FastInfoset

#endif
