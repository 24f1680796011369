#ifndef TAMO_FASTINFOSET_MAPVOCABULARY_H
#define TAMO_FASTINFOSET_MAPVOCABULARY_H

#include "Tamo/Bugcheck.h"
#include "Tamo/Export.h"
#include "Tamo/FastInfoset/Vocabulary.h"
#include <map>

namespace Tamo::FastInfoset {

/// A table that finds its values through an ordered map and grows without limit.
template<class T>
class TAMO_API MapVocabulary : public Vocabulary<T> {
public:
    /// Tag of the constructor that stores no placeholder.
    struct DontInitialize {};

    /// A table with its placeholder; the size hint is not used.
    explicit MapVocabulary(unsigned long = 0) { append(T()); }

    /// A table without placeholder.
    explicit MapVocabulary(DontInitialize) {}

    MapVocabulary(const MapVocabulary& other) : Vocabulary<T>(other) { mapAll(); }

    MapVocabulary& operator=(const MapVocabulary& other) {
        if (this != &other) {
            _map.clear();
            Vocabulary<T>::operator=(other);
            mapAll();
        }
        return *this;
    }

    unsigned int index(const T& value, bool& found) override {
        const auto it = _map.lower_bound(&value);
        found = it != _map.end() && *it->first == value;
        if (found) {
            return it->second;
        }
        const auto idx = static_cast<unsigned int>(this->_index.size());
        this->_index.push_back(value);
        _map.emplace_hint(it, &this->_index[idx], idx);
        return idx;
    }

    unsigned int exists(const T& value, bool& found) const override {
        const auto it = _map.find(&value);
        found = it != _map.end();
        return found ? it->second : Vocabulary<T>::NOT_FOUND;
    }

    const T& value(unsigned int idx) const override {
        tamo_assert(this->_index.size() > idx);
        return this->_index[idx];
    }

    std::size_t size() const override { return _map.size(); }

    bool empty() const override { return _map.empty(); }

    Vocabulary<T>* subtract(const Vocabulary<T>& other) const override {
        auto pResult = std::make_unique<MapVocabulary>(DontInitialize());
        this->subtractInto(*pResult, other);
        return pResult.release();
    }

    Vocabulary<T>* clone() const override { return new MapVocabulary(*this); }

    void reset() override {
        _map.clear();
        this->_index.truncate(0);
        append(T());
    }

private:
    // The keys point at the stored values, which never move: no value is held twice.
    struct Less {
        bool operator()(const T* a, const T* b) const { return *a < *b; }
    };

    void append(const T& value) {
        bool found = false;
        index(value, found);
    }

    void mapAll() {
        for (std::size_t i = 0; i < this->_index.size(); ++i) {
            _map.emplace(&this->_index[i], static_cast<unsigned int>(i));
        }
    }

    std::map<const T*, unsigned int, Less> _map;
};

} // namespace Tamo::FastInfoset

#endif
