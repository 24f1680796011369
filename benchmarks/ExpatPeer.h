#ifndef TAMO_BENCHMARKS_EXPATPEER_H
#define TAMO_BENCHMARKS_EXPATPEER_H

#include "Tamo/Types.h"
#include <string>

namespace Tamo::XML {
class ContentHandler;
class LexicalHandler;
} // namespace Tamo::XML

namespace Tamo::Benchmarks {

/// Expat used directly: the yardstick, and the reference reading that ours is compared with.
class ExpatPeer {
public:
    /// Parses a document in namespace mode (names as triplets) with C handlers that only count; returns their
    /// count. Throws std::runtime_error for a document that is not well-formed.
    static UInt64 parse(const std::string& xml);

    /// Parses a document and reports it as SAX2 events. Written without regard to our own XML parser.
    static void parse(const std::string& xml, XML::ContentHandler& content, XML::LexicalHandler& lexical);
};

} // namespace Tamo::Benchmarks

#endif
