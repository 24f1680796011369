#ifndef TAMO_BENCHMARKS_PUGIXMLPEER_H
#define TAMO_BENCHMARKS_PUGIXMLPEER_H

#include "BufferStream.h"
#include "DocumentSet.h"
#include "Tamo/Types.h"
#include <map>
#include <memory>
#include <string>

namespace Tamo::Benchmarks {

/// pugixml: a tree without namespace processing, white space kept.
class PugixmlPeer {
public:
    PugixmlPeer();
    ~PugixmlPeer();

    /// Builds the tree of a document and drops it; returns 1.
    static UInt64 parse(const std::string& xml);

    /// Builds the tree of a Fast Infoset document by the adapter and drops it; returns 1.
    static UInt64 loadTree(const std::string& octets);

    /// Builds the tree and visits every name and value in it; returns the sum of their lengths.
    static UInt64 parseAndWalk(const std::string& xml);

    /// Writes the tree of a document, built when it is first needed, as XML text; returns its size.
    UInt64 save(const Document& document);

    /// What was written last.
    std::string written() const { return std::string(_out.view()); }

private:
    struct Tree;
    std::map<std::size_t, std::unique_ptr<Tree>> _trees; // by the number of the document
    BufferStream _out;
};

} // namespace Tamo::Benchmarks

#endif
