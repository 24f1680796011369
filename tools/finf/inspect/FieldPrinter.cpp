#include "inspect/FieldPrinter.h"

namespace finf {

void FieldPrinter::field(const Field& field) {
    if (field.bit + field.bits <= 8 * _options.offset && field.bit < 8 * _options.offset) {
        return;
    }
    if (_shown == _options.limit) {
        _isFull = true;
        return;
    }
    ++_shown;
    show(field);
}

} // namespace finf
