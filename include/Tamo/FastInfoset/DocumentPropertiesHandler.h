#ifndef TAMO_FASTINFOSET_DOCUMENTPROPERTIESHANDLER_H
#define TAMO_FASTINFOSET_DOCUMENTPROPERTIESHANDLER_H

#include "Tamo/Export.h"
#include "Tamo/FastInfoset/FISDocumentHandler.h"
#include <cstddef>
#include <span>
#include <string>

namespace Tamo::FastInfoset {

/// A document handler that also receives the document's properties and additional data (ITU-T X.891, 7.2),
/// which a parser hands out in the strict mode. FastInfosetWriter implements it.
///
/// Called on the thread that parses, before startDocument; arguments are valid during the call only.
class TAMO_API DocumentPropertiesHandler : public FISDocumentHandler {
public:
    /// A piece of additional data: the URI that says what it is, and its octets (X.891, 7.2.7).
    virtual void additionalData(const std::string& id, std::span<const std::byte> data) = 0;

    /// The [character encoding scheme] of the XML document that this one stands for (X.891, 7.2.19).
    virtual void characterEncodingScheme(const std::string& scheme) = 0;

    /// The [standalone] property (X.891, 7.2.20).
    virtual void standalone(bool isStandalone) = 0;

    /// The [version] property, the version of XML (X.891, 7.2.21).
    virtual void version(const std::string& version) = 0;
};

} // namespace Tamo::FastInfoset

#endif
