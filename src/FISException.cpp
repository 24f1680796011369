#include "Tamo/FastInfoset/FISException.h"

namespace Tamo::FastInfoset {

TAMO_IMPLEMENT_EXCEPTION(FISException, ::Tamo::RuntimeException,
                         "Tamo::FastInfoset::", "FastInfoset Exception")
TAMO_IMPLEMENT_EXCEPTION(FISParseException, FISException,
                         "Tamo::FastInfoset::", "FastInfoset Parse Exception")
TAMO_IMPLEMENT_EXCEPTION(FISEncodingException, FISException,
                         "Tamo::FastInfoset::", "FastInfoset Encoding Exception")

void FISException::locate(UInt64 octet) noexcept {
    if (!_position) {
        _position = octet;
        forgetText();
    }
}

std::string FISException::fullText() const {
    std::string text = displayText();
    if (_position) {
        const std::string place = " at octet " + std::to_string(*_position);
        if (!text.ends_with(place)) { // some messages say it themselves
            text += place;
        }
    }
    return text;
}

} // namespace Tamo::FastInfoset
