#ifndef TAMO_FASTINFOSET_TYPEDATTRIBUTEVALUES_H
#define TAMO_FASTINFOSET_TYPEDATTRIBUTEVALUES_H

#include "Tamo/AutoPtr.h"
#include "Tamo/FastInfoset/DocumentAlgorithms.h"
#include "Tamo/FastInfoset/Encoding.h"
#include "Tamo/FastInfoset/TypedAttributes.h"
#include "TypedText.h"
#include <vector>

namespace Tamo::FastInfoset {

/// The typed values of the element that is being read, and the list that its handler gets when there are any.
/// Used by one thread at a time.
class TypedAttributeValues {
public:
    /// Whether the element has none so far.
    bool isEmpty() const noexcept { return _isEmpty; }

    /// Forgets them.
    void clear() noexcept {
        _isEmpty = true;
        _values.clear();
    }

    /// Adds that of attribute i, by the algorithm with an index.
    void add(int i, const AutoPtr<Encoding>& pValue, unsigned int algorithm);

    /// The attributes of the element, texts but for these values, which are then forgotten. The list is valid
    /// until the next one.
    const XML::Attributes& listOf(const XML::Attributes& texts, const DocumentAlgorithms& algorithms,
                                  const TypedText& form);

private:
    struct Value {
        int place;
        AutoPtr<Encoding> pEncoding;
        unsigned int algorithm;
    };

    bool _isEmpty = true;
    std::vector<Value> _values;
    TypedAttributes _list;
};

} // namespace Tamo::FastInfoset

#endif
