#ifndef TAMO_BENCHMARKS_XERCESPEER_H
#define TAMO_BENCHMARKS_XERCESPEER_H

#include "Tamo/Types.h"
#include <memory>
#include <string>

namespace Tamo::Benchmarks {

/// Xerces-C: its SAX2 reader, without validation, used for any number of documents.
class XercesPeer {
public:
    XercesPeer();
    ~XercesPeer();

    /// Parses a document with handlers that only count; returns their count.
    UInt64 parse(const std::string& xml);

private:
    class Reader;
    std::unique_ptr<Reader> _pReader;
};

} // namespace Tamo::Benchmarks

#endif
