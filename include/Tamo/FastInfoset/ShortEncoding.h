#ifndef TAMO_FASTINFOSET_SHORTENCODING_H
#define TAMO_FASTINFOSET_SHORTENCODING_H

#include "Tamo/Export.h"
#include "Tamo/FastInfoset/Encoding.h"
#include "Tamo/Types.h"
#include <vector>

namespace Tamo::FastInfoset {

/// An array of signed 16-bit integers (ITU-T X.891, 10.4): two's complement, most significant octet first.
///
/// The text form is the values in their canonical decimal spelling, separated by single spaces; no other text
/// is accepted. Errors are FISEncodingException.
class TAMO_API ShortEncoding : public Encoding {
public:
    /// The algorithm's index.
    static constexpr unsigned int TYPE = 3;

    /// One value.
    explicit ShortEncoding(Int16 value);

    /// These values.
    explicit ShortEncoding(const std::vector<Int16>& values);

    /// The values of a text; an empty or invalid one throws.
    explicit ShortEncoding(const std::string& text);

    /// Writes the encoding of text; throws as the constructor, before anything is written.
    static void encode(BitStreamWriter& writer, const std::string& text);

    /// The octets that the values of text take; 0 when it is no valid text.
    static int check(const std::string& text);

    /// Reads an array as a new object; a length that is no multiple of the width throws.
    static AutoPtr<Encoding> decode(BitStreamReader& reader);

    /// Reads an array and appends its values.
    static void decode(BitStreamReader& reader, std::vector<Int16>& values);

    /// Reads an array as text, replacing text.
    static void decode(BitStreamReader& reader, std::string& text);

    /// The values of text (-32768 to 32767); none when it is not valid as a whole.
    static void parse(const std::string& text, std::vector<Int16>& values);

    /// Appends one value.
    void append(Int16 value) { _values.push_back(value); }

    unsigned int type() const override;
    bool merge(const Encoding& other) override;
    void write(BitStreamWriter& writer) const override;
    DecodeMethod decodeMethod() const override;
    CheckMethod checkMethod() const override;
    EncodeMethod encodeMethod() const override;

    using Encoding::handle;
    /// One `encodedData` call per value.
    void handle(FISContentHandler* handler) const override;

    void createContent() override;

private:
    std::vector<Int16> _values;
};

} // namespace Tamo::FastInfoset

#endif
