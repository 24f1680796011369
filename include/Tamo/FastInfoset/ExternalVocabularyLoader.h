#ifndef TAMO_FASTINFOSET_EXTERNALVOCABULARYLOADER_H
#define TAMO_FASTINFOSET_EXTERNALVOCABULARYLOADER_H

#include "Tamo/Export.h"
#include "Tamo/FastInfoset/DocumentVocabulary.h"
#include "Tamo/FastInfoset/VocabularyLoader.h"
#include <iosfwd>
#include <string>

namespace Tamo::FastInfoset {

/// Opens external vocabularies with the foundation's default URI stream opener, which means that whoever
/// wrote the document chooses what is opened (ITU-T X.891, 7.2.13). Used by one thread at a time.
///
/// This is what parsers use that have been given no loader. An application that reads foreign documents
/// overrides load(), or derives from VocabularyLoader.
class TAMO_API ExternalVocabularyLoader : public VocabularyLoader {
public:
    ~ExternalVocabularyLoader() override;

    /// Whether vocabularies are read by the letter of X.891, see FastInfosetParser::setStrict; false at
    /// first.
    void setStrict(bool flag) noexcept { _strict = flag; }
    bool isStrict() const noexcept { return _strict; }

    /// Opens uri: a resource whose path ends in ".xml" is an XML document, any other one a Fast Infoset
    /// document. What the stream opener and the parsers throw passes through.
    DocumentVocabulary load(const std::string& uri) override;

    /// The vocabulary that writing this XML document would fill, of kind VOC_HASH.
    static DocumentVocabulary loadXML(std::istream& istr) { return loadXML(istr, false); }

    /// The same, written strictly or not; strictly it is of kind VOC_MAP, whose tables have no limits.
    static DocumentVocabulary loadXML(std::istream& istr, bool strict);

    /// The vocabulary that reading this Fast Infoset document fills, of kind VOC_VECTOR. An external
    /// vocabulary that the document names comes from loader.
    static DocumentVocabulary loadFastInfoset(std::istream& istr, VocabularyLoader& loader) {
        return loadFastInfoset(istr, loader, false);
    }

    /// The same, read strictly or not.
    static DocumentVocabulary loadFastInfoset(std::istream& istr, VocabularyLoader& loader, bool strict);

private:
    bool _strict = false;
};

} // namespace Tamo::FastInfoset

#endif
