#ifndef TAMO_FASTINFOSET_MAPVOCABULARY_H
#define TAMO_FASTINFOSET_MAPVOCABULARY_H

#include "Tamo/Export.h"
#include "Tamo/FastInfoset/detail/IndexedVocabulary.h"
#include <cstddef>
#include <limits>
#include <memory>

namespace Tamo::FastInfoset {

/// A table that finds its values and grows without limit.
template<class T>
class TAMO_API MapVocabulary : public IndexedVocabulary<T> {
public:
    /// Tag of the constructor that stores no placeholder.
    struct DontInitialize {};

    /// A table with its placeholder; the size hint is not used.
    explicit MapVocabulary(unsigned long = 0) : MapVocabulary(DontInitialize()) {
        this->_index.emplace_back(T());
    }

    /// A table without placeholder.
    explicit MapVocabulary(DontInitialize) : IndexedVocabulary<T>(std::numeric_limits<std::size_t>::max()) {}

    Vocabulary<T>* subtract(const Vocabulary<T>& other) const override {
        auto pResult = std::make_unique<MapVocabulary>(DontInitialize());
        this->subtractInto(*pResult, other);
        return pResult.release();
    }

    Vocabulary<T>* clone() const override { return new MapVocabulary(*this); }
};

} // namespace Tamo::FastInfoset

#endif
