#ifndef TAMO_BENCHMARKS_LIBXMLPEER_H
#define TAMO_BENCHMARKS_LIBXMLPEER_H

#include "Recording.h"
#include "Tamo/Types.h"
#include <memory>
#include <string>

namespace Tamo::Benchmarks {

/// libxml2: its SAX2 interface and its xmlTextWriter.
class LibxmlPeer {
public:
    LibxmlPeer();
    ~LibxmlPeer();

    /// Parses a document with SAX2 handlers that only count; returns their count.
    UInt64 parse(const std::string& xml);

    /// Builds the tree of a document, as libxml2's parser does and by the adapter from Fast Infoset, and
    /// drops it; return 1.
    static UInt64 parseTree(const std::string& xml);
    static UInt64 loadTree(const std::string& octets);

    /// Writes the events as XML text into a buffer that is reused; returns its size.
    UInt64 write(const Recording& recording);

    /// What was written last.
    std::string written() const;

private:
    struct Buffer;
    std::unique_ptr<Buffer> _pBuffer;
};

} // namespace Tamo::Benchmarks

#endif
