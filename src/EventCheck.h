#ifndef TAMO_FASTINFOSET_EVENTCHECK_H
#define TAMO_FASTINFOSET_EVENTCHECK_H

#include "Tamo/Export.h"
#include "Tamo/Types.h"
#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

namespace Tamo::FastInfoset {

/// The order of events that strict writing asks for: a document with one root element, declarations before
/// it, ends that match, content inside.
///
/// Operations named require... refuse an event that has no place by FISEncodingException, which names it, and
/// change nothing; the others note what has been written. Used by one thread at a time.
class EventCheck {
public:
    /// What is to become of an event.
    enum class Use { WRITE, HOLD, DROP };

    EventCheck() { _open.reserve(16); }

    /// No document.
    void reset() noexcept {
        _place = Place::OUTSIDE;
        _open.clear();
        _hasDocumentType = false;
        _isPrologWritten = false;
    }

    /// Whether a document has begun and not ended.
    bool isOpen() const noexcept { return _place != Place::OUTSIDE; }

    /// Whether an element stands in the root element, and not where it is refused.
    bool isInContent() const noexcept { return _place == Place::CONTENT; }

    /// Whether what stands before the root element is held back still.
    bool holdsProlog() const noexcept { return !_isPrologWritten; }
    void prologWritten() noexcept { _isPrologWritten = true; }

    void startDocument();
    void requireDocumentEnd() const;

    /// Of an element, and of what belongs to one.
    void requireElement(const char* construct, std::string_view name) const;
    TAMO_ALWAYS_INLINE void elementStarted(const std::string& uri, const std::string& localName,
                                           const std::string& qname) {
        _open.push_back(traceOf(uri, localName, qname));
        _place = Place::CONTENT;
    }

    TAMO_ALWAYS_INLINE void requireElementEnd(const std::string& uri, const std::string& localName,
                                              const std::string& qname) const {
        if (_place != Place::CONTENT || _open.back() != traceOf(uri, localName, qname)) [[unlikely]] {
            refuseEnd(localName, qname);
        }
    }
    /// The same whatever the names.
    void requireElementEnd() const {
        if (_place != Place::CONTENT) {
            refuseEnd({}, {});
        }
    }

    void elementEnded() noexcept {
        _open.pop_back();
        if (_open.empty()) [[unlikely]] {
            _place = Place::EPILOG;
        }
    }

    /// Of text: white space beside the root element is to be dropped.
    Use useOfText(std::string_view text) const {
        return _place == Place::CONTENT || _place == Place::CDATA ? Use::WRITE : useOfOtherText(text);
    }

    /// Of typed data, and of what has no place in a CDATA section either.
    void requireTypedData() const;
    void requireContent(const char* construct, std::string_view value) const;

    /// Of comments and processing instructions.
    Use useOfComment(std::string_view text) const;
    Use useOfInstruction(std::string_view target) const;

    /// Of what the header or the prolog holds.
    void requireProlog(const char* construct, std::string_view name) const;

    void startDocumentType(std::string_view systemId);
    void endDocumentType();
    void startCData();
    void endCData();

private:
    enum class Place { OUTSIDE, PROLOG, DOCUMENT_TYPE, CONTENT, CDATA, EPILOG };

    // Enough to tell misuse: the sizes of a name's parts, and of its local name the first and last octets.
    static TAMO_ALWAYS_INLINE UInt64 traceOf(const std::string& uri, const std::string& localName,
                                             const std::string& qname) noexcept {
        const std::string& name = localName.empty() ? qname : localName;
        const char* const p = name.data();
        const std::size_t size = name.size();
        const UInt64 sizes = UInt64{size} << 40 ^ UInt64 { uri.size() } << 24;
        if (size >= 4) [[likely]] {
            return sizes ^ octets<UInt32>(p) ^ UInt64 { octets<UInt32>(p + size - 4) } << 32;
        }
        // Of an empty name there is the NUL behind it.
        return sizes ^ octets<UInt8>(p) ^ (size >= 2 ? UInt64{octets<UInt16>(p + size - 2)} << 8 : 0);
    }

    template<class Word>
    static TAMO_ALWAYS_INLINE Word octets(const char* p) noexcept {
        Word word = 0;
        std::memcpy(&word, p, sizeof(word));
        return word;
    }

    Use useOfOtherText(std::string_view text) const;
    Use heldOrWritten() const noexcept {
        return _place == Place::PROLOG && !_isPrologWritten ? Use::HOLD : Use::WRITE;
    }
    [[noreturn]] TAMO_COLD void refuse(const char* construct, std::string_view value) const;
    [[noreturn]] TAMO_COLD void refuseEnd(const std::string& localName, const std::string& qname) const;

    Place _place = Place::OUTSIDE;
    std::vector<UInt64> _open; // the traces of their names
    bool _hasDocumentType = false;
    bool _isPrologWritten = false;
};

} // namespace Tamo::FastInfoset

#endif
