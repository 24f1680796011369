#ifndef TAMO_FASTINFOSET_EXTERNALVOCABULARYLOADER_H
#define TAMO_FASTINFOSET_EXTERNALVOCABULARYLOADER_H

#include "Tamo/Export.h"
#include "Tamo/FastInfoset/DocumentVocabulary.h"
#include <cstddef>
#include <iosfwd>
#include <string>
#include <vector>

namespace Tamo::FastInfoset {

/// Yields the external vocabularies that documents name (ITU-T X.891, 7.2.13).
///
/// This class opens the URI with the foundation's default URI stream opener, which means that whoever wrote
/// the document chooses what is opened. An application that reads foreign documents derives from it,
/// overrides load() to supply the vocabularies it knows and to throw for all others, and hands it to the
/// parser (FastInfosetParser::setExternalVocabularyLoader). Used by one thread at a time.
class TAMO_API ExternalVocabularyLoader {
public:
    /// How many external vocabularies may name one another in a row.
    static constexpr std::size_t MAX_NESTING = 8;

    virtual ~ExternalVocabularyLoader();

    /// The vocabulary that uri names, for a parser: load(uri), unless uri is being loaded already, directly
    /// or through another vocabulary, which throws FISException.
    DocumentVocabulary vocabulary(const std::string& uri);

    /// Opens uri: a resource whose path ends in ".xml" is an XML document, any other one a Fast Infoset
    /// document. What the stream opener and the parsers throw passes through.
    virtual DocumentVocabulary load(const std::string& uri);

    /// The vocabulary that writing this XML document would fill, of kind VOC_HASH.
    static DocumentVocabulary loadXML(std::istream& istr);

    /// The vocabulary that reading this Fast Infoset document fills, of kind VOC_VECTOR. An external
    /// vocabulary that the document names comes from loader.
    static DocumentVocabulary loadFastInfoset(std::istream& istr, ExternalVocabularyLoader& loader);

private:
    std::vector<std::string> _loading;
};

} // namespace Tamo::FastInfoset

#endif
