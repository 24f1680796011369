#ifndef TAMO_FASTINFOSET_BOOLENCODING_H
#define TAMO_FASTINFOSET_BOOLENCODING_H

#include "Tamo/Export.h"
#include "Tamo/FastInfoset/Encoding.h"
#include <vector>

namespace Tamo::FastInfoset {

/// An array of booleans (ITU-T X.891, 10.7): four bits that count the unused bits of the last octet, then one
/// bit a value.
///
/// The text form is "true" and "false" separated by single spaces; no other text is accepted. Errors are
/// FISEncodingException.
class TAMO_API BoolEncoding : public Encoding {
public:
    /// The algorithm's index.
    static constexpr unsigned int TYPE = 6;

    /// One value.
    explicit BoolEncoding(bool value);

    /// These values.
    explicit BoolEncoding(const std::vector<bool>& values);

    /// The values of a text; an empty or invalid one throws.
    explicit BoolEncoding(const std::string& text);

    /// The same; a string literal would else be taken for a bool.
    explicit BoolEncoding(const char* text);

    /// Writes the encoding of text; throws as the constructor, before anything is written.
    static void encode(BitStreamWriter& writer, const std::string& text);

    /// The octets that the values of text take without the four bits in front; 0 when it is no valid text.
    static int check(const std::string& text);

    /// Reads an array, its unused bits included, as a new object; more unused bits than there are bits
    /// throws.
    static AutoPtr<Encoding> decode(BitStreamReader& reader);

    /// Reads an array and appends its values.
    static void decode(BitStreamReader& reader, std::vector<bool>& values);

    /// Reads an array as text, replacing text.
    static void decode(BitStreamReader& reader, std::string& text);

    /// The values of text; none when it is not valid as a whole.
    static void parse(const std::string& text, std::vector<bool>& values);

    /// Appends one value.
    void append(bool value) { _values.push_back(value); }

    /// The values.
    const std::vector<bool>& values() const noexcept { return _values; }

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
    std::vector<bool> _values;
};

} // namespace Tamo::FastInfoset

#endif
