#ifndef TAMO_FINF_DOCUMENTWRITER_H
#define TAMO_FINF_DOCUMENTWRITER_H

#include "Tamo/FastInfoset/FastInfosetWriter.h"

namespace finf {

/// A Fast Infoset writer that refuses what would be lost: a reference to an entity that was not read.
class DocumentWriter : public Tamo::FastInfoset::FastInfosetWriter {
public:
    using FastInfosetWriter::FastInfosetWriter;

    void setDocumentLocator(const Tamo::XML::Locator* loc) override;

    /// Throws SAXParseException with the place of the reference.
    void skippedEntity(const std::string& name) override;

private:
    const Tamo::XML::Locator* _pLocator = nullptr;
};

} // namespace finf

#endif
