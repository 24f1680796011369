#ifndef TAMO_FASTINFOSET_NULLENCODING_H
#define TAMO_FASTINFOSET_NULLENCODING_H

#include "Tamo/Export.h"
#include "Tamo/FastInfoset/OctetEncoding.h"

namespace Tamo::FastInfoset {

/// Plain UTF-8 text that no algorithm produced. The parser reuses one such object for every string that it
/// reads.
class TAMO_API NullEncoding : public OctetEncoding {
public:
    /// The algorithm's index.
    static constexpr unsigned int TYPE = 0;

    /// No text yet; room for 1024 octets.
    NullEncoding();

    /// This text (UTF-8); an empty one throws FISEncodingException.
    explicit NullEncoding(const std::string& text);
    NullEncoding(const char* data, int length);

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
