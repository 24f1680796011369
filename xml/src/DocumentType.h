#ifndef TAMO_XML_DOCUMENTTYPE_H
#define TAMO_XML_DOCUMENTTYPE_H

#include "XMLOutput.h"
#include <string>
#include <string_view>

namespace Tamo::XML {

/// The document type declaration that XMLWriter writes: kept until its internal subset is complete and its
/// name, which may be that of the root element, is known.
///
/// Names and identifiers that XML does not allow are XMLException. Owned by one writer.
class DocumentType {
public:
    /// Whether the document has one: it has been started, and perhaps ended and written.
    bool isStarted() const noexcept { return _isStarted; }

    /// Whether it has ended and waits for the name of the root element.
    bool isHeld() const noexcept { return _isHeld; }

    /// Whether it has been written, with a subset outside of the document.
    bool hasExternalSubset() const noexcept { return _hasExternalSubset; }

    /// Whether there is something to write with the name of the root element: this, or declarations that
    /// nobody has started one for.
    bool waitsForRoot() const { return _isHeld || !_subset.collected().empty(); }

    /// What stands in the internal subset.
    XMLOutput& subset() noexcept { return _subset; }

    /// What follows the declaration while that is held.
    XMLOutput& after() noexcept { return _after; }

    /// The declaration begins; an empty name is that of the root element.
    void start(const std::string& name, const std::string& publicId, const std::string& systemId);

    /// It ends: writes it, or holds it when it has no name.
    void end(XMLOutput& output);

    /// Declares a notation. Missing identifiers are null.
    void addNotation(const std::string& name, const std::string* publicId, const std::string* systemId);

    /// Declares an unparsed entity. A missing public identifier is null.
    void addUnparsedEntity(const std::string& name, const std::string* publicId, const std::string& systemId,
                           const std::string& notationName);

    /// Writes the declaration under this name, and what follows it.
    void write(XMLOutput& output, std::string_view name);

    /// Begins with another document.
    void reset();

private:
    bool _isStarted = false;
    bool _isHeld = false;
    bool _hasExternalSubset = false;
    std::string _name;
    std::string _publicId;
    std::string _systemId;
    XMLOutput _subset{nullptr};
    XMLOutput _after{nullptr};
};

} // namespace Tamo::XML

#endif
