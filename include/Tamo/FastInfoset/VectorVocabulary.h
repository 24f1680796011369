#ifndef TAMO_FASTINFOSET_VECTORVOCABULARY_H
#define TAMO_FASTINFOSET_VECTORVOCABULARY_H

#include "Tamo/Export.h"
#include "Tamo/FastInfoset/Vocabulary.h"
#include "Tamo/FastInfoset/detail/IndexedVocabulary.h"
#include <memory>

namespace Tamo::FastInfoset {

/// A table that appends and reads by index only: the parser's kind. Look-ups by value are linear scans, and a
/// value that is there already is appended again.
template<class T>
class TAMO_API VectorVocabulary : public Vocabulary<T> {
public:
    /// Tag of the constructor that stores no placeholder.
    struct DontInitialize {};

    /// A table with its placeholder; the size hint is not used.
    explicit VectorVocabulary(unsigned long = 0) { this->_index.emplace_back(T()); }

    /// A table without placeholder.
    explicit VectorVocabulary(DontInitialize) {}

    VectorVocabulary(const VectorVocabulary&) = default;
    VectorVocabulary& operator=(const VectorVocabulary&) = default;

    unsigned int index(const T& value, bool& found) override {
        found = false;
        this->_index.push_back(value);
        return static_cast<unsigned int>(this->_index.size() - 1);
    }

    /// Appends a value that is made of another type's, and returns it.
    template<class U>
    TAMO_ALWAYS_INLINE const T& append(const U& value) {
        return this->_index.emplace_back(value);
    }

    unsigned int exists(const T& value, bool& found) const override {
        for (std::size_t i = 0; i < this->_index.size(); ++i) {
            if (this->_index[i] == value) {
                found = true;
                return static_cast<unsigned int>(i);
            }
        }
        found = false;
        return Vocabulary<T>::NOT_FOUND;
    }

    const T& value(unsigned int idx) const override { return this->_index[idx]; }

    std::size_t size() const override { return this->_index.size(); }

    bool empty() const override { return this->_index.empty(); }

    Vocabulary<T>* subtract(const Vocabulary<T>& other) const override {
        auto pResult = std::make_unique<VectorVocabulary>(DontInitialize());
        this->subtractInto(*pResult, other);
        return pResult.release();
    }

    Vocabulary<T>* clone() const override { return new VectorVocabulary(*this); }

    /// Drops all values but the placeholder.
    void reset() {
        if (!this->holdsPlaceholder()) {
            this->resetValues();
        }
    }

    /// Drops all values and begins with those of a table that never changes again and belongs to pOwner, of
    /// which a share is kept.
    void reset(const IndexedVocabulary<T>& base, const std::shared_ptr<const void>& pOwner) {
        this->layOn(base.values(), pOwner);
    }

    /// The values by index, for those who check the range themselves or take std::out_of_range.
    const VerbTable<T>& values() const noexcept { return this->_index; }
};

} // namespace Tamo::FastInfoset

#endif
