#ifndef TAMO_FASTINFOSET_NUMBERENCODING_H
#define TAMO_FASTINFOSET_NUMBERENCODING_H

#include "Tamo/Export.h"
#include "Tamo/FastInfoset/Encoding.h"
#include "Tamo/Types.h"
#include <string>
#include <utility>
#include <vector>

namespace Tamo::FastInfoset {

/// What the encodings of arrays of numbers share (ITU-T X.891, 10.4 to 10.9): values of a fixed width, most
/// significant octet first. Value is the type of a number, Derived the class that has this one as its base
/// and the algorithm's index as its TYPE.
///
/// The text form is the values in the spelling of NumberFormatter, separated by single spaces; no other text
/// is accepted. Errors are FISEncodingException. One object is used by one thread at a time; the static
/// operations are thread-safe. Instantiated for the classes of this library only.
template<class Derived, class Value>
class TAMO_API NumberEncoding : public Encoding {
public:
    /// One value.
    explicit NumberEncoding(Value value) : _values(1, value) {}

    /// These values.
    explicit NumberEncoding(const std::vector<Value>& values) : _values(values) {}
    explicit NumberEncoding(std::vector<Value>&& values) noexcept : _values(std::move(values)) {}

    /// The values of a text; an empty or invalid one throws.
    explicit NumberEncoding(const std::string& text);

    /// Writes the encoding of text; throws as the constructor, before anything is written.
    static void encode(BitStreamWriter& writer, const std::string& text);

    /// The octets that the values of text take; 0 when it is no valid text.
    static int check(const std::string& text);

    /// Reads an array as a new object; a length that is no multiple of the width throws.
    static AutoPtr<Encoding> decode(BitStreamReader& reader);

    /// Reads an array and appends its values.
    static void decode(BitStreamReader& reader, std::vector<Value>& values);

    /// Reads an array as text, replacing text.
    static void decode(BitStreamReader& reader, std::string& text);

    /// The values of text; none when it is not valid as a whole.
    static void parse(const std::string& text, std::vector<Value>& values);

    /// Appends one value.
    void append(Value value) { _values.push_back(value); }

    /// The values.
    const std::vector<Value>& values() const noexcept { return _values; }

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
    std::vector<Value> _values;
};

} // namespace Tamo::FastInfoset

#endif
