#ifndef TAMO_FASTINFOSET_ENCODING_H
#define TAMO_FASTINFOSET_ENCODING_H

#include "Tamo/AutoPtr.h"
#include "Tamo/Export.h"
#include "Tamo/RefCountedObject.h"
#include <cstddef>
#include <string>

namespace Tamo::XML {
class ContentHandler;
}

namespace Tamo::FastInfoset {

class BitStreamReader;
class BitStreamWriter;
class FISContentHandler;

/// A value carried as the octets of an encoding algorithm (ITU-T X.891, clause 10).
///
/// Each algorithm has a class derived from this one; applications derive theirs for the algorithms from index
/// 32 on. Objects are made with `new` and shared through AutoPtr<Encoding>; one object is used by one thread
/// at a time. The content is the value's text; a class that keeps typed values builds it in createContent().
class TAMO_API Encoding : public RefCountedObject {
public:
    /// Writes the octets of the algorithm's encoding of text; throws when text is not in the algorithm's text
    /// form.
    using EncodeMethod = void (*)(BitStreamWriter& writer, const std::string& text);
    /// The octets that the encoding of text takes; 0 or less when it cannot be encoded.
    using CheckMethod = int (*)(const std::string& text);
    /// Reads the length and the octets of a value and returns it as a new object.
    using DecodeMethod = AutoPtr<Encoding> (*)(BitStreamReader& reader);

    ~Encoding() override;

    /// The algorithm's index.
    virtual unsigned int type() const = 0;

    /// Appends the values of other when it is of the same algorithm; false, and no change, when it is not.
    virtual bool merge(const Encoding& other) = 0;

    /// Writes the length and the octets of the value.
    virtual void write(BitStreamWriter& writer) const = 0;

    /// The functions of the class that the algorithm tables hold.
    virtual DecodeMethod decodeMethod() const = 0;
    virtual CheckMethod checkMethod() const = 0;
    virtual EncodeMethod encodeMethod() const = 0;

    /// Delivers the value as text, in one call; a null handler is left out.
    virtual void handle(XML::ContentHandler* handler) const;

    /// Delivers the typed values; a null handler is left out.
    virtual void handle(FISContentHandler* handler) const = 0;

    /// The text of the value, or its raw octets for hexadecimal and base64 data.
    virtual const std::string& content() const;
    virtual std::string& content();

    /// Builds the content from the typed values.
    virtual void createContent() = 0;

protected:
    /// Empty content.
    Encoding() = default;
    explicit Encoding(const std::string& content);
    Encoding(const char* data, std::size_t length);

    /// One `characters` call with text, or several where an int cannot count its octets.
    static void deliver(XML::ContentHandler& handler, const std::string& text);

    std::string _content;
};

} // namespace Tamo::FastInfoset

#endif
