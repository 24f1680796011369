#ifndef TAMO_FASTINFOSET_CONVERSIONOPTIONS_H
#define TAMO_FASTINFOSET_CONVERSIONOPTIONS_H

#include "Tamo/Export.h"
#include "Tamo/FastInfoset/ParserLimits.h"

namespace Tamo::FastInfoset {

class VocabularyLoader;

/// What a conversion does and accepts. As it is, no file is opened.
struct TAMO_API ConversionOptions {
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

} // namespace Tamo::FastInfoset

#endif
