#include "DocumentType.h"
#include "Tamo/Export.h"

namespace Tamo::XML {

namespace {

TAMO_CONSTINIT const std::string EMPTY;

void putExternalId(XMLOutput& output, const std::string& publicId, const std::string& systemId) {
    output.put(publicId.empty() ? " SYSTEM " : " PUBLIC ");
    if (!publicId.empty()) {
        output.putPublicId(publicId);
        output.put(' ');
    }
    output.putSystemId(systemId);
}

} // namespace

void DocumentType::start(const std::string& name, const std::string& publicId, const std::string& systemId) {
    _isStarted = true;
    _name = name;
    _publicId = publicId;
    _systemId = systemId;
}

void DocumentType::end(XMLOutput& output) {
    if (_name.empty()) {
        _isHeld = true;
    } else {
        write(output, _name);
    }
}

void DocumentType::addNotation(const std::string& name, const std::string* publicId,
                               const std::string* systemId) {
    _subset.put("<!NOTATION ");
    _subset.putNCName(name, "notation");
    _subset.put(publicId ? " PUBLIC " : " SYSTEM ");
    if (publicId) {
        _subset.putPublicId(*publicId);
    }
    if (systemId || !publicId) { // XML has no notation without an identifier, but empty ones
        if (publicId) {
            _subset.put(' ');
        }
        _subset.putSystemId(systemId ? *systemId : EMPTY);
    }
    _subset.put(">\n");
}

void DocumentType::addUnparsedEntity(const std::string& name, const std::string* publicId,
                                     const std::string& systemId, const std::string& notationName) {
    _subset.put("<!ENTITY ");
    _subset.putNCName(name, "unparsed entity");
    putExternalId(_subset, publicId ? *publicId : EMPTY, systemId);
    _subset.put(" NDATA ");
    _subset.putNCName(notationName, "notation of unparsed entity");
    _subset.put(">\n");
}

void DocumentType::write(XMLOutput& output, std::string_view name) {
    output.put("<!DOCTYPE ");
    output.putQName(name, "name of document type");
    _hasExternalSubset = !_publicId.empty() || !_systemId.empty();
    if (_hasExternalSubset) {
        putExternalId(output, _publicId, _systemId);
    }
    if (!_subset.collected().empty()) {
        output.put(" [\n");
        output.put(_subset.collected());
        output.put(']');
    }
    output.put(">\n");
    output.put(_after.collected());
    _subset.clear();
    _after.clear();
    _isHeld = false;
}

void DocumentType::reset() {
    _isStarted = false;
    _isHeld = false;
    _hasExternalSubset = false;
    _name.clear();
    _publicId.clear();
    _systemId.clear();
    _subset.clear();
    _after.clear();
}

} // namespace Tamo::XML
