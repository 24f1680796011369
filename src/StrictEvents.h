#ifndef TAMO_FASTINFOSET_STRICTEVENTS_H
#define TAMO_FASTINFOSET_STRICTEVENTS_H

#include "AlphabetCodes.h"
#include "ElementWriter.h"
#include "EventCheck.h"
#include "HeaderWriter.h"
#include "HeldProlog.h"
#include "Tamo/FastInfoset/EncodingAlgorithm.h"
#include "Tamo/FastInfoset/TypedChunk.h"
#include <optional>
#include <string>
#include <string_view>

namespace Tamo::FastInfoset {

/// The events of the writer in the strict mode: what makes no document by the letter of ITU-T X.891 is
/// refused by FISEncodingException, which names construct and value, before anything of it is written; the
/// prolog is held back until the root element begins, behind whose start the header cannot change. Used by
/// one thread at a time.
class StrictEvents {
public:
    /// With the parts of one writer.
    StrictEvents(ElementWriter& elements, HeaderWriter& header, const EncodingAlgorithm& algorithms) noexcept
        : _elements(elements), _header(header), _algorithms(algorithms) {}

    StrictEvents(const StrictEvents&) = delete;
    StrictEvents& operator=(const StrictEvents&) = delete;

    /// Forgets the document.
    void reset() noexcept {
        _check.reset();
        _prolog.clear();
        _codes.reset();
    }

    void startDocument();
    /// To be asked before the end is written; forgets the document then.
    void requireDocumentEnd();

    TAMO_ALWAYS_INLINE void startElement(const std::string& uri, const std::string& localName,
                                         const std::string& qname, const XML::Attributes& attributes) {
        if (!_check.isInContent()) [[unlikely]] {
            startRoot(localName, qname);
        }
        _elements.startStrict(uri, localName, qname, attributes);
        _check.elementStarted(uri, localName, qname);
    }

    TAMO_ALWAYS_INLINE void endElement(const std::string& uri, const std::string& localName,
                                       const std::string& qname) {
        _check.requireElementEnd(uri, localName, qname);
        endRequiredElement();
    }

    /// Ends the innermost element, whatever its name.
    void endElement() {
        _check.requireElementEnd();
        endRequiredElement();
    }

    void startPrefixMapping(const std::string& prefix, const std::string& uri);
    TAMO_ALWAYS_INLINE void characters(std::string_view text) {
        if (_check.isInContent() && !text.empty()) [[likely]] {
            strings().writeLegalText(text);
        } else {
            otherCharacters(text);
        }
    }
    void characters(std::string_view text, unsigned int alphabet);
    void skippedEntity(const std::string& name);
    void comment(std::string_view text);
    void processingInstruction(const std::string& target, const std::string& data);
    void startCData();
    void endCData();

    void startDocumentType(const std::string& publicId, const std::string& systemId);
    void endDocumentType();
    void requireNotation(const Notation& notation) const;
    void requireUnparsedEntity(const UnparsedEntity& entity) const;

    void additionalData(const std::string& id, std::string_view octets);
    void characterEncodingScheme(const std::string& scheme);
    void standalone(bool isStandalone);
    void version(const std::string& version);

    /// Whether a value can be written where it comes.
    void requireTypedData(const Encoding& value) const;
    /// Writes a value by its own algorithm, by that with a URI, or what an application's function makes of
    /// text.
    void typedData(Encoding& value);
    void typedData(const std::string& uri, Encoding& value);
    void typedText(const std::string& uri, const std::string& text);
    /// False where the document does not declare the chunk's algorithm.
    bool typedChunk(const TypedChunk& chunk);

private:
    TAMO_ALWAYS_INLINE void endRequiredElement() {
        constructs().dropOwnBindings();
        _elements.end();
        _check.elementEnded();
    }
    void otherCharacters(std::string_view text);
    void startRoot(const std::string& localName, const std::string& qname);
    unsigned int indexOf(const Encoding& value) const;
    unsigned int indexOf(const std::string& uri) const;

    StringWriter& strings() const noexcept { return _elements.strings(); }
    OpenConstructs& constructs() const noexcept { return strings().constructs(); }

    ElementWriter& _elements;
    HeaderWriter& _header;
    const EncodingAlgorithm& _algorithms;
    EventCheck _check;
    HeldProlog _prolog;
    std::optional<AlphabetCodes> _codes; // of the alphabet used last
    unsigned int _codesIndex = 0;
};

} // namespace Tamo::FastInfoset

#endif
