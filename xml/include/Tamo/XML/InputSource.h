#ifndef TAMO_XML_INPUTSOURCE_H
#define TAMO_XML_INPUTSOURCE_H

#include "Tamo/Export.h"
#include <istream>
#include <string>

namespace Tamo::XML {

/// What a reader reads: a byte stream, a character stream or a system identifier to open.
///
/// Streams are borrowed and must outlive the parse. A reader uses the byte stream when there is one, else the
/// character stream, else the system identifier. Used by one thread at a time; throws nothing.
class TAMO_API InputSource {
public:
    /// A source without anything; set a stream or a system identifier before use.
    InputSource() = default;

    /// A source over a byte stream.
    explicit InputSource(std::istream& byteStream) : _pByteStream(&byteStream) {}

    /// A source that the reader opens by its system identifier, a URI or a path.
    explicit InputSource(const std::string& systemId) : _systemId(systemId) {}

    /// Sets the byte stream; the reader finds out its encoding unless setEncoding names it.
    void setByteStream(std::istream& byteStream) { _pByteStream = &byteStream; }
    /// Sets the byte stream; null removes it.
    void setByteStream(std::istream* pByteStream) { _pByteStream = pByteStream; }
    /// The byte stream, or null.
    std::istream* getByteStream() const { return _pByteStream; }

    /// Sets the character stream: UTF-8, whatever the document says of itself.
    void setCharacterStream(std::istream& characterStream) { _pCharacterStream = &characterStream; }
    /// Sets the character stream; null removes it.
    void setCharacterStream(std::istream* pCharacterStream) { _pCharacterStream = pCharacterStream; }
    /// The character stream, or null.
    std::istream* getCharacterStream() const { return _pCharacterStream; }

    /// Sets the system identifier; with a stream, it only names the source and is the base of relative
    /// references.
    void setSystemId(const std::string& systemId) { _systemId = systemId; }
    /// The system identifier, or the empty string.
    const std::string& getSystemId() const { return _systemId; }

    /// Sets the public identifier.
    void setPublicId(const std::string& publicId) { _publicId = publicId; }
    /// The public identifier, or the empty string.
    const std::string& getPublicId() const { return _publicId; }

    /// Sets the encoding of the byte stream, which overrides what the document says of itself.
    void setEncoding(const std::string& encoding) { _encoding = encoding; }
    /// The encoding of the byte stream, or the empty string when the document says it.
    const std::string& getEncoding() const { return _encoding; }

private:
    std::istream* _pByteStream = nullptr;
    std::istream* _pCharacterStream = nullptr;
    std::string _systemId;
    std::string _publicId;
    std::string _encoding;
};

} // namespace Tamo::XML

#endif
