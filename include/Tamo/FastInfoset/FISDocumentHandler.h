#ifndef TAMO_FASTINFOSET_FISDOCUMENTHANDLER_H
#define TAMO_FASTINFOSET_FISDOCUMENTHANDLER_H

#include "Tamo/Export.h"
#include <string>

namespace Tamo::FastInfoset {

class DocumentVocabulary;

/// Receives what a Fast Infoset document says of itself beyond SAX2; FastInfosetWriter implements it.
///
/// Called on the thread that parses, before startDocument. What is passed is copied by whoever wants to keep
/// it.
class TAMO_API FISDocumentHandler {
public:
    /// The vocabulary after the header was read.
    virtual void setDocumentVocabulary(const DocumentVocabulary& vocabulary) = 0;

    /// The vocabulary of the handler's own document.
    virtual DocumentVocabulary& getDocumentVocabulary() = 0;
    virtual const DocumentVocabulary& getDocumentVocabulary() const = 0;

    /// Whether the document began with an XML declaration.
    virtual void setWriteXMLDeclaration(bool flag) = 0;

    /// The external vocabulary that the document names and that was loaded for it.
    virtual void setExternalVocabulary(const std::string& uri, const DocumentVocabulary& vocabulary) = 0;

    virtual ~FISDocumentHandler() = default;
};

} // namespace Tamo::FastInfoset

#endif
