#ifndef TAMO_FASTINFOSET_CONVERTER_H
#define TAMO_FASTINFOSET_CONVERTER_H

#include "Tamo/Export.h"
#include "Tamo/FastInfoset/ParserLimits.h"
#include <iosfwd>

namespace Tamo::FastInfoset {

class VocabularyLoader;

/// Turns XML text into Fast Infoset and back, stream to stream.
///
/// Memory is bounded by the document's tables and depth, not by its size. Exceptions of the XML parser
/// (XML::SAXParseException), of the Fast Infoset parser and of the writers pass through; what was written
/// until then stays in the output. Stateless; all operations are static and thread-safe on streams of their
/// own.
class TAMO_API Converter {
public:
    /// What a conversion does and accepts. As it is, no file is opened.
    struct Options {
        /// Up to how many octets strings are indexed in Fast Infoset; all when negative.
        int maxIndexedStringLength = 16;

        /// Drops white space between elements on the way to Fast Infoset.
        bool stripWhitespace = false;

        /// Whether Fast Infoset is read and written by the letter of ITU-T X.891, see
        /// FastInfosetParser::setStrict and FastInfosetWriter::setStrict.
        bool strict = false;

        /// The options of XML::XMLWriter for XML text.
        int xmlOptions = 0;

        /// What is accepted of the document; of XML text the limits on what is delivered.
        ParserLimits limits;

        /// What yields the external vocabularies that Fast Infoset documents name; borrowed. Without one,
        /// they are refused with FISException, unless they may be opened.
        VocabularyLoader* pVocabularyLoader = nullptr;

        /// Whether, without a loader, what a document names as its external vocabulary is opened.
        bool opensVocabularies = false;
    };

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
