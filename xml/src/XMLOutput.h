#ifndef TAMO_XML_XMLOUTPUT_H
#define TAMO_XML_XMLOUTPUT_H

#include <cstddef>
#include <cstring>
#include <memory>
#include <ostream>
#include <string_view>
#include <utility>

namespace Tamo::XML {

/// A buffer of XML text: escapes and checks what is put into it, and passes it on to a stream in large
/// pieces.
///
/// Without a stream it collects the text in memory. Every operation that takes text from outside checks that
/// it is UTF-8 and made of XML 1.0 characters, and throws XMLException with `what` in its message otherwise.
/// A stream that fails is an IOException. Owned by one XMLWriter.
class XMLOutput {
public:
    /// A buffer in front of the stream, which is borrowed; null to collect.
    explicit XMLOutput(std::ostream* pStream);

    XMLOutput(const XMLOutput&) = delete;
    XMLOutput& operator=(const XMLOutput&) = delete;

    /// Forgets what is in the buffer, and goes on in front of another stream; not to collect.
    void reset(std::ostream& stream) noexcept {
        _pStream = &stream;
        _size = 0;
    }

    /// Markup, not checked.
    void put(char c) {
        if (_size == _capacity) [[unlikely]] {
            passOrGrow(1);
        }
        _pBuffer[_size++] = c;
    }

    /// Markup, not checked.
    void put(std::string_view markup) {
        if (markup.size() > _capacity - _size) [[unlikely]] {
            putLong(markup);
            return;
        }
        if (!markup.empty()) { // an empty view need not point anywhere
            std::memcpy(_pBuffer.get() + _size, markup.data(), markup.size());
            _size += markup.size();
        }
    }

    /// Character data of an element.
    void putText(std::string_view text);

    /// Character data of an open CDATA section. `brackets` counts the `]` at the end of what it holds so far;
    /// the section is closed and opened again around what it cannot hold.
    void putCDATA(std::string_view text, std::size_t& brackets);

    /// An attribute's value without its quotation marks, which are double.
    void putAttributeValue(std::string_view value, const char* what);

    /// A name without colon; `what` says whose.
    void putNCName(std::string_view name, const char* what) {
        checkNCName(name, what);
        put(name);
    }

    /// A name with at most one colon; `what` says whose.
    void putQName(std::string_view name, const char* what);

    /// A comment with its markup.
    void putComment(std::string_view text);

    /// A processing instruction with its markup.
    void putProcessingInstruction(std::string_view target, std::string_view data);

    /// A public identifier in quotation marks.
    void putPublicId(std::string_view publicId);

    /// A system identifier in quotation marks.
    void putSystemId(std::string_view systemId);

    /// What has been collected.
    std::string_view collected() const { return {_pBuffer.get(), _size}; }

    /// Forgets what has been collected.
    void clear() { _size = 0; }

    /// Passes the buffer on to the stream.
    void pass();

    /// Throws XMLException unless name is a name without colon.
    static void checkNCName(std::string_view name, const char* what);

    /// Throws XMLException: "Cannot write WHAT: REASON".
    [[noreturn]] static void refuse(const char* what, std::string_view reason);

    /// The same with a value, in quotation marks and shortened, between the two.
    [[noreturn]] static void refuse(const char* what, std::string_view value, std::string_view reason);

private:
    template<int STOP>
    void putEscaped(std::string_view text, const char* what);
    void passOrGrow(std::size_t size);
    void putLong(std::string_view markup);
    void putChecked(std::string_view text, const char* what);

    std::ostream* _pStream;
    std::unique_ptr<char[]> _pBuffer;
    std::size_t _size = 0;
    std::size_t _capacity = 0;
};

} // namespace Tamo::XML

#endif
