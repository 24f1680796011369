#ifndef TAMO_FASTINFOSET_EVENTCHECK_H
#define TAMO_FASTINFOSET_EVENTCHECK_H

#include "Tamo/Export.h"
#include "Tamo/HashKey.h"
#include "Tamo/Types.h"
#include <cstddef>
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

    /// Whether character data is within a CDATA section.
    bool isInCData() const noexcept { return _place == Place::CDATA; }

    /// Whether what stands before the root element is held back still.
    bool holdsProlog() const noexcept { return !_isPrologWritten; }
    void prologWritten() noexcept { _isPrologWritten = true; }

    void startDocument();
    void requireDocumentEnd() const;

    /// Of an element, and of what belongs to one.
    void requireElement(const char* construct, std::string_view name) const;
    TAMO_ALWAYS_INLINE void elementStarted(const std::string& uri, const std::string& localName,
                                           const std::string& qname) {
        _open.push_back(keyOf(uri, localName, qname));
        _place = Place::CONTENT;
    }

    TAMO_ALWAYS_INLINE void requireElementEnd(const std::string& uri, const std::string& localName,
                                              const std::string& qname) const {
        if (_place != Place::CONTENT || _open.back() != keyOf(uri, localName, qname)) [[unlikely]] {
            refuseEnd(localName, qname);
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

    // Enough to tell misuse: of a name by its local name and the size of its namespace name.
    static TAMO_ALWAYS_INLINE UInt64 keyOf(const std::string& uri, const std::string& localName,
                                           const std::string& qname) noexcept {
        return HashKey::of(localName.empty() ? qname : localName).hash() + uri.size();
    }

    Use useOfOtherText(std::string_view text) const;
    Use heldOrWritten() const noexcept {
        return _place == Place::PROLOG && !_isPrologWritten ? Use::HOLD : Use::WRITE;
    }
    [[noreturn]] TAMO_COLD void refuse(const char* construct, std::string_view value) const;
    [[noreturn]] TAMO_COLD void refuseEnd(const std::string& localName, const std::string& qname) const;

    Place _place = Place::OUTSIDE;
    std::vector<UInt64> _open;
    bool _hasDocumentType = false;
    bool _isPrologWritten = false;
};

} // namespace Tamo::FastInfoset

#endif
