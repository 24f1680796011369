#ifndef TAMO_FASTINFOSET_CONVERTER_H
#define TAMO_FASTINFOSET_CONVERTER_H

#include "Tamo/Export.h"
#include "Tamo/FastInfoset/ConversionOptions.h"
#include <iosfwd>

namespace Tamo::FastInfoset {

/// Turns XML text into Fast Infoset and back, stream to stream.
///
/// Memory is bounded by the document's tables and depth, not by its size. Exceptions of the XML parser
/// (XML::SAXParseException), of the Fast Infoset parser and of the writers pass through; what was written
/// until then stays in the output. Stateless; all operations are static and thread-safe on streams of their
/// own. Whoever converts many documents keeps an XMLToFastInfoset or a FastInfosetToXML.
class TAMO_API Converter {
public:
    using Options = ConversionOptions;

    /// Option bits of convertToFIS that drop white space between elements; both have the same effect.
    static constexpr int STRIP_WHITESPACE = 0x81;

    /// Reads XML text from in and writes it to out as Fast Infoset. Strings of up to maxIndexedStringLength
    /// octets are indexed (all when negative).
    static void convertToFIS(std::istream& in, std::ostream& out, int maxIndexedStringLength, int options);

    /// The same with options.
    static void convertToFIS(std::istream& in, std::ostream& out, const Options& options);

    /// Reads Fast Infoset from in and writes it to out as XML text, with the options of XML::XMLWriter. An
    /// external vocabulary that the document names is opened.
    static void convertToXML(std::istream& in, std::ostream& out, int options);

    /// The same with options; no external vocabulary is opened unless they say so.
    static void convertToXML(std::istream& in, std::ostream& out, const Options& options);
};

} // namespace Tamo::FastInfoset

#endif
