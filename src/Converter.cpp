#include "Tamo/FastInfoset/Converter.h"
#include "Tamo/FastInfoset/FastInfosetToXML.h"
#include "Tamo/FastInfoset/XMLToFastInfoset.h"

namespace Tamo::FastInfoset {

void Converter::convertToFIS(std::istream& in, std::ostream& out, int maxIndexedStringLength, int options) {
    Options all;
    all.maxIndexedStringLength = maxIndexedStringLength;
    all.stripWhitespace = (options & STRIP_WHITESPACE) != 0;
    convertToFIS(in, out, all);
}

void Converter::convertToFIS(std::istream& in, std::ostream& out, const Options& options) {
    XMLToFastInfoset(options).convert(in, out);
}

void Converter::convertToXML(std::istream& in, std::ostream& out, int options) {
    Options all;
    all.xmlOptions = options;
    all.opensVocabularies = true;
    convertToXML(in, out, all);
}

void Converter::convertToXML(std::istream& in, std::ostream& out, const Options& options) {
    FastInfosetToXML(options).convert(in, out);
}

} // namespace Tamo::FastInfoset
