#ifndef TAMO_FASTINFOSET_FASTINFOSETPUSHPARSER_H
#define TAMO_FASTINFOSET_FASTINFOSETPUSHPARSER_H

#include "Tamo/Export.h"
#include "Tamo/Types.h"
#include <cstddef>
#include <memory>
#include <span>

namespace Tamo::FastInfoset {

class FastInfosetParser;

/// Reads documents (ITU-T X.891) from octets that come in pieces, as an event loop gets them: it never waits.
///
/// It reads by means of a FastInfosetParser, which is borrowed and has the handlers, the limits, the mode and
/// the vocabulary; that must not parse anything else, nor be set otherwise, while a document is unfinished.
/// The events are those of the parser, however the octets are cut, and so is what is thrown. An item, which
/// is the header, an element's start with its attributes, an end, or a whole child of another kind, is
/// reported by the call of feed() that brings its last octet; only the start of a document type declaration
/// comes with the first item of that, or its end. What is unfinished is kept: memory follows the largest
/// item. Work is in proportion to the octets: two looks at each at most to find where items end, and one to
/// read it.
///
/// The limit on amplification (ParserLimits) is held against the octets of the document that have been read
/// so far, as for a stream. A decoding algorithm of the application must read the length and the octets of
/// its value, no fewer and no more.
///
/// Used by one thread at a time. Handlers must not call its operations.
class TAMO_API FastInfosetPushParser {
public:
    /// How the document stands.
    enum class Status {
        NEEDS_MORE, ///< it is unfinished, or has not begun
        FINISHED    ///< its last octet has been read
    };

    /// What feed() has come to.
    struct Fed {
        Status status = Status::NEEDS_MORE;
        std::size_t leftOver =
            0; ///< of the octets that were fed, those at the end that belong to the next document
    };

    /// Over a parser, which is borrowed.
    explicit FastInfosetPushParser(FastInfosetParser& parser);

    FastInfosetPushParser(const FastInfosetPushParser&) = delete;
    FastInfosetPushParser& operator=(const FastInfosetPushParser&) = delete;
    ~FastInfosetPushParser();

    /// Takes octets, which follow those fed before, and reports every item that is whole with them. Stops
    /// behind the document: feed what is left over again, which begins the next one.
    ///
    /// Throws what the parser throws and what handlers throw; FISException "Limit exceeded: item size" as
    /// setMaxItemSize() says; FISException when an algorithm of the application reads fewer or more octets
    /// than its value has. After an exception nothing but reset() makes it usable: else it throws
    /// InvalidAccessException.
    Fed feed(std::span<const std::byte> octets);

    /// Says that there are no more octets: throws for an unfinished document what the parser throws for one
    /// that is cut off there, behind the events that it reports until then. Nothing happens between
    /// documents.
    void finish();

    /// Forgets an unfinished document and a failure; the next octets begin a document.
    void reset();

    /// How many octets an item may have: a larger one is refused as soon as it is known to be larger. 0 for
    /// no limit, as at first; to be set between documents.
    void setMaxItemSize(std::size_t octets) noexcept;
    std::size_t maxItemSize() const noexcept;

    /// Whether a document has begun and not ended.
    bool isInDocument() const noexcept;

    /// The octets of an unfinished item that are kept.
    std::size_t keptOctets() const noexcept;

    /// The steps that finding the ends of items has taken, for all documents: about two for each octet and
    /// each call at most.
    UInt64 steps() const noexcept;

private:
    class Implementation;

    std::unique_ptr<Implementation> _pImplementation;
};

} // namespace Tamo::FastInfoset

#endif
