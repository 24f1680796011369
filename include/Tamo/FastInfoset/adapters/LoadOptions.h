#ifndef TAMO_FASTINFOSET_ADAPTERS_LOADOPTIONS_H
#define TAMO_FASTINFOSET_ADAPTERS_LOADOPTIONS_H

#include "Tamo/FastInfoset/ParserLimits.h"

namespace Tamo::FastInfoset {
class VocabularyLoader;
}

namespace Tamo::FastInfoset::Adapters {

/// How a document becomes a tree of another library. A plain value.
struct LoadOptions {
    /// The depth up to which trees are built. Much that works on trees, of theirs and of programs, recurses
    /// for each level: this one is within every usual stack, and what libxml2 reads with XML_PARSE_HUGE.
    static constexpr UInt64 MAX_DEPTH = 2048;

    /// What is accepted of the document. A tree takes some 150 octets for each item of the document beside
    /// the delivered octets, which are what its strings take.
    ParserLimits limits = {.maxDepth = MAX_DEPTH};

    /// Whether the document is read by the letter of X.891 (docs/conformance.md).
    bool strict = true;

    /// What yields the external vocabulary that the document names; borrowed. Null: it is refused with
    /// FISException. Nothing is opened in either case.
    VocabularyLoader* pVocabularyLoader = nullptr;
};

} // namespace Tamo::FastInfoset::Adapters

#endif
