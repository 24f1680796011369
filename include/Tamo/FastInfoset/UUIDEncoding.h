#ifndef TAMO_FASTINFOSET_UUIDENCODING_H
#define TAMO_FASTINFOSET_UUIDENCODING_H

#include "Tamo/Export.h"
#include "Tamo/FastInfoset/Encoding.h"
#include "Tamo/UUID.h"
#include <vector>

namespace Tamo::FastInfoset {

/// An array of UUIDs (ITU-T X.891, 10.10): 16 octets each, in the order in which their text shows them.
///
/// The text form is the canonical texts in upper case separated by single spaces; texts in either letter case
/// are accepted. Errors are FISEncodingException.
class TAMO_API UUIDEncoding : public Encoding {
public:
    /// The algorithm's index.
    static constexpr unsigned int TYPE = 9;

    /// One value.
    explicit UUIDEncoding(const UUID& value);

    /// These values; none throws.
    explicit UUIDEncoding(const std::vector<UUID>& values);

    /// The values of a text; an empty or invalid one throws.
    explicit UUIDEncoding(const std::string& text);

    /// Writes the encoding of text; throws as the constructor, before anything is written.
    static void encode(BitStreamWriter& writer, const std::string& text);

    /// The octets that the values of text take; 0 when it is no valid text.
    static int check(const std::string& text);

    /// Reads an array as a new object; a length that is no multiple of 16 throws.
    static AutoPtr<Encoding> decode(BitStreamReader& reader);

    /// Reads an array and appends its values.
    static void decode(BitStreamReader& reader, std::vector<UUID>& values);

    /// Reads an array as text, replacing text.
    static void decode(BitStreamReader& reader, std::string& text);

    /// The values of text; none when it is not valid as a whole.
    static void parse(const std::string& text, std::vector<UUID>& uuids);

    /// Appends one value.
    void append(const UUID& value) { _values.push_back(value); }

    /// The values.
    const std::vector<UUID>& values() const noexcept { return _values; }

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
    UUIDEncoding() = default;

    std::vector<UUID> _values;
};

} // namespace Tamo::FastInfoset

#endif
