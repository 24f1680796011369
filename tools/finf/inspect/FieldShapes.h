#ifndef TAMO_FINF_FIELDSHAPES_H
#define TAMO_FINF_FIELDSHAPES_H

#include "walk/Field.h"
#include <string>
#include <unordered_map>

namespace finf {

/// What many fields of a document have in common, collected so that a page states it once: the construct, the
/// purposes of the bits, the form of the value and its relation to a table. Of a field remain a few numbers.
class FieldShapes {
public:
    /// Where the value of a field is to be taken from.
    enum class Source {
        NONE,    ///< there is none
        OCTETS,  ///< the last part is its text
        TYPED,   ///< the last part is typed values, by the encoding algorithm
        TABLE,   ///< the entry of the table that the field reads or adds
        ELEMENT, ///< the name of the element that ends
        TEXT     ///< given apart
    };

    /// What one field adds to its shape.
    struct Form {
        Source source = Source::NONE;
        bool hasOwnNote = false; ///< the note is given apart
        bool hasIndex = false;   ///< so is the index
        bool isOpen = false;     ///< and the number of octets in the last part
        long deeper = 0;         ///< than the field before
    };

    /// The number of the field's shape, which is new when it has not been seen before.
    std::size_t numberOf(const Field& field, const Form& form);

    /// The shapes as a JSON array of objects.
    const std::string& json() const noexcept { return _json; }

private:
    void describe(const Field& field, const Form& form);

    std::unordered_map<std::string, std::size_t> _numbers; // by all that makes a shape
    std::string _key;
    std::string _json;
};

} // namespace finf

#endif
