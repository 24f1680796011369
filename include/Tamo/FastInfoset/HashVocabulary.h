#ifndef TAMO_FASTINFOSET_HASHVOCABULARY_H
#define TAMO_FASTINFOSET_HASHVOCABULARY_H

#include "Tamo/Bugcheck.h"
#include "Tamo/Export.h"
#include "Tamo/FastInfoset/detail/IndexedVocabulary.h"
#include <memory>

namespace Tamo::FastInfoset {

/// A table that finds its values and holds a fixed number of them.
///
/// The size hint of the constructor is the number of entries, placeholder included, that the table accepts;
/// one more distinct value throws PoolOverflowException "Vocabulary hash table full" and changes nothing.
template<class T>
class TAMO_API HashVocabulary : public IndexedVocabulary<T> {
public:
    /// Tag of the constructor that stores no placeholder.
    struct DontInitialize {};

    /// The number of entries accepted when the constructor is not told one.
    static constexpr unsigned long DEFAULT_SIZE = 65521;

    /// A table with its placeholder that accepts size entries (at least 1).
    explicit HashVocabulary(unsigned long size = DEFAULT_SIZE) : IndexedVocabulary<T>(size) {
        tamo_assert(size > 0);
        this->_index.emplace_back(T());
    }

    /// A table without placeholder that accepts size entries.
    explicit HashVocabulary(DontInitialize, unsigned long size = DEFAULT_SIZE) : IndexedVocabulary<T>(size) {}

    Vocabulary<T>* subtract(const Vocabulary<T>& other) const override {
        auto pResult = std::make_unique<HashVocabulary>(DontInitialize(), this->limit());
        this->subtractInto(*pResult, other);
        return pResult.release();
    }

    Vocabulary<T>* clone() const override { return new HashVocabulary(*this); }
};

} // namespace Tamo::FastInfoset

#endif
