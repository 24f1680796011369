#ifndef TAMO_FASTINFOSET_CDATAENCODING_H
#define TAMO_FASTINFOSET_CDATAENCODING_H

#include "Tamo/Export.h"
#include "Tamo/FastInfoset/OctetEncoding.h"

namespace Tamo::FastInfoset {

/// The text of a CDATA section (ITU-T X.891, 10.11), carried as it is.
class TAMO_API CDataEncoding : public OctetEncoding {
public:
    /// The algorithm's index.
    static constexpr unsigned int TYPE = 10;

    /// This text (UTF-8); an empty one throws FISEncodingException.
    explicit CDataEncoding(const std::string& text);
    CDataEncoding(const char* data, int length);

    /// Writes text as one octet string; it must not be empty.
    static void encode(BitStreamWriter& writer, const std::string& text);

    /// The length of text in octets.
    static int check(const std::string& text);

    /// Reads an octet string as a new object.
    static AutoPtr<Encoding> decode(BitStreamReader& reader);

    /// Reads an octet string into text, replacing it.
    static void decode(BitStreamReader& reader, std::string& text);

    unsigned int type() const override;
    DecodeMethod decodeMethod() const override;
    CheckMethod checkMethod() const override;
    EncodeMethod encodeMethod() const override;
};

} // namespace Tamo::FastInfoset

#endif
