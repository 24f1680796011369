#ifndef TAMO_FASTINFOSET_SHAREDNAMES_H
#define TAMO_FASTINFOSET_SHAREDNAMES_H

#include "ResolvedNames.h"
#include "Tamo/FastInfoset/DocumentVocabulary.h"
#include <deque>
#include <string>
#include <vector>

namespace Tamo::FastInfoset {

/// The names of a shared vocabulary with their parts looked up, by index: what ResolvedNames is laid on. A
/// name that refers to parts which are not there has no entry. Views of the vocabulary; never changed.
struct SharedNames {
    explicit SharedNames(const DocumentVocabulary& vocabulary);

    /// As a parser wants them: elements, with their qualified names, and attributes, whose prefixes count.
    struct Mode {
        std::vector<ResolvedNames::Name> elements;
        std::vector<ResolvedNames::Name> attributes;
    };

    const Mode& mode(bool isStrict) const noexcept { return isStrict ? strict : usual; }

    Mode usual;
    Mode strict;
    std::deque<std::string> qnames;

private:
    std::vector<ResolvedNames::Name> resolve(const DocumentVocabulary& vocabulary,
                                             DocumentVocabulary::NameKind kind, bool isPrefixCounted);
    void addQualifiedNames();
};

} // namespace Tamo::FastInfoset

#endif
