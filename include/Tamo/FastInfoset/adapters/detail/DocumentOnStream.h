#ifndef TAMO_FASTINFOSET_ADAPTERS_DETAIL_DOCUMENTONSTREAM_H
#define TAMO_FASTINFOSET_ADAPTERS_DETAIL_DOCUMENTONSTREAM_H

#include "Tamo/DeferredFlushStream.h"
#include "Tamo/Exception.h"
#include "Tamo/FastInfoset/FastInfosetWriter.h"
#include <ostream>

namespace Tamo::FastInfoset::Adapters {

/// Writes a document by the letter of X.891 to a stream: write(writer) gives its events. Throws IOException
/// when the stream fails.
template<class Write>
void writeDocument(std::ostream& out, const Write& write) {
    DeferredFlushOutputStream deferred(out);
    FastInfosetWriter writer(deferred, false, DocumentVocabulary::VOC_MAP);
    writer.setStrict(true);
    write(writer);
    deferred.finish();
    if (!deferred) {
        throw IOException("Cannot write the document");
    }
}

} // namespace Tamo::FastInfoset::Adapters

#endif
