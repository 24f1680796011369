#include "Tamo/FastInfoset/Utility.h"
#include "Tamo/FastInfoset/Converter.h"

namespace Tamo::FastInfoset {

void Utility::convertToFIS(std::istream& in, std::ostream& out, int maxIndexedStringLength) {
    Converter::convertToFIS(in, out, maxIndexedStringLength, 0);
}

void Utility::convertToXML(std::istream& in, std::ostream& out) {
    Converter::convertToXML(in, out, 1);
}

} // namespace Tamo::FastInfoset
