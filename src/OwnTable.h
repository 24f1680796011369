#ifndef TAMO_FASTINFOSET_OWNTABLE_H
#define TAMO_FASTINFOSET_OWNTABLE_H

#include "Tamo/FastInfoset/HashVocabulary.h"
#include "Tamo/FastInfoset/MapVocabulary.h"
#include "Tamo/FastInfoset/VectorVocabulary.h"
#include "Tamo/FastInfoset/VerbTable.h"
#include <typeinfo>

namespace Tamo::FastInfoset {

/// Tells this library's tables from those of an application, classes derived from this library's included:
/// theirs may keep their values anywhere, and yield them by value() and index() alone.
class OwnTable {
public:
    OwnTable() = delete;

    /// A table that only appends, when it is this library's; null for any other table.
    template<class T>
    static VectorVocabulary<T>* vector(Vocabulary<T>& table) noexcept {
        return typeid(table) == typeid(VectorVocabulary<T>) ? static_cast<VectorVocabulary<T>*>(&table)
                                                            : nullptr;
    }

    /// Appends a value whether it is there or not, and returns its index; an application's table decides by
    /// itself.
    template<class T>
    static unsigned int append(Vocabulary<T>& table, const T& value) {
        const std::type_info& type = typeid(table);
        if (type == typeid(VectorVocabulary<T>)) {
            static_cast<VectorVocabulary<T>&>(table).append(value);
        } else if (type == typeid(MapVocabulary<T>) || type == typeid(HashVocabulary<T>)) {
            static_cast<IndexedVocabulary<T>&>(table).appendAlways(value);
        } else {
            bool found = false;
            return table.index(value, found);
        }
        return static_cast<unsigned int>(table.size() - 1);
    }

    /// Where a table of this library has its values, which never move; null for any other table.
    template<class T>
    static const VerbTable<T>* valuesOf(const Vocabulary<T>& table) noexcept {
        const std::type_info& type = typeid(table);
        if (type == typeid(VectorVocabulary<T>)) {
            return &static_cast<const VectorVocabulary<T>&>(table).values();
        }
        if (type == typeid(MapVocabulary<T>) || type == typeid(HashVocabulary<T>)) {
            return &static_cast<const IndexedVocabulary<T>&>(table).values();
        }
        return nullptr;
    }
};

} // namespace Tamo::FastInfoset

#endif
