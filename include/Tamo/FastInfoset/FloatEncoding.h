#ifndef TAMO_FASTINFOSET_FLOATENCODING_H
#define TAMO_FASTINFOSET_FLOATENCODING_H

#include "Tamo/Export.h"
#include "Tamo/FastInfoset/Encoding.h"
#include "Tamo/Types.h"
#include <vector>

namespace Tamo::FastInfoset {

/// An array of IEEE 754 single-precision numbers (ITU-T X.891, 10.8): 4 octets each, most significant first.
///
/// Deliberate: as text only positive normal numbers are accepted (zero, negative and subnormal numbers are
/// refused), while values given as numbers or read from a document may be any.
///
/// The text form is the values in their shortest spelling as double, separated by single spaces; no other
/// text is accepted. Errors are FISEncodingException.
class TAMO_API FloatEncoding : public Encoding {
public:
    /// The algorithm's index.
    static constexpr unsigned int TYPE = 7;

    /// One value.
    explicit FloatEncoding(float value);

    /// These values.
    explicit FloatEncoding(const std::vector<float>& values);

    /// The values of a text; an empty or invalid one throws.
    explicit FloatEncoding(const std::string& text);

    /// Writes the encoding of text; throws as the constructor, before anything is written.
    static void encode(BitStreamWriter& writer, const std::string& text);

    /// The octets that the values of text take; 0 when it is no valid text.
    static int check(const std::string& text);

    /// Reads an array as a new object; a length that is no multiple of the width throws.
    static AutoPtr<Encoding> decode(BitStreamReader& reader);

    /// Reads an array and appends its values.
    static void decode(BitStreamReader& reader, std::vector<float>& values);

    /// Reads an array as text, replacing text.
    static void decode(BitStreamReader& reader, std::string& text);

    /// The values of text (1.1754943508222875e-38 to 3.4028234663852886e+38); none when it is not valid as a
    /// whole.
    static void parse(const std::string& text, std::vector<float>& values);

    /// Appends one value.
    void append(float value) { _values.push_back(value); }

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
    std::vector<float> _values;
};

} // namespace Tamo::FastInfoset

#endif
