#ifndef TAMO_FASTINFOSET_DWORDENCODING_H
#define TAMO_FASTINFOSET_DWORDENCODING_H

#include "Tamo/Export.h"
#include "Tamo/FastInfoset/OctetEncoding.h"

namespace Tamo::FastInfoset {

/// Octets carried as they are whose text form is base64 (ITU-T X.891, 10.3). The content holds the raw
/// octets.
class TAMO_API DWordEncoding : public OctetEncoding {
public:
    /// The algorithm's index.
    static constexpr unsigned int TYPE = 2;

    /// No octets; to be filled through content().
    DWordEncoding() = default;

    /// The octets of a text in base64; an empty or invalid text throws FISEncodingException.
    explicit DWordEncoding(const std::string& text);

    /// length raw octets; 0 throws FISEncodingException.
    DWordEncoding(const char* data, std::size_t length);

    /// Writes the octets that text stands for; throws as the constructor.
    static void encode(BitStreamWriter& writer, const std::string& text);

    /// The number of octets that text stands for; -1 when it is empty or invalid.
    static int check(const std::string& text);

    /// Reads an octet string as a new object.
    static AutoPtr<Encoding> decode(BitStreamReader& reader);

    /// Reads an octet string as text, replacing text.
    static void decode(BitStreamReader& reader, std::string& text);

    /// Turns octets into text (padded, no line breaks), replacing text.
    static void decode(const std::string& octets, std::string& text);

    unsigned int type() const override;
    DecodeMethod decodeMethod() const override;
    CheckMethod checkMethod() const override;
    EncodeMethod encodeMethod() const override;

    /// One `characters` call with the text form.
    void handle(XML::ContentHandler* handler) const override;

    /// One `binaryData` call with the raw octets.
    void handle(FISContentHandler* handler) const override;
};

/// The same by the name of what its text is: octets, the built-in algorithm 2 (X.891, 10.3).
using Base64Encoding = DWordEncoding;

} // namespace Tamo::FastInfoset

#endif
