#include "Tamo/XML/SAXParser.h"
#include "EntityInput.h"
#include "EntitySource.h"
#include "SAXDriver.h"
#include "Tamo/Bugcheck.h"
#include "Tamo/Export.h"
#include "Tamo/XML/InputSource.h"
#include "Tamo/XML/SAXException.h"
#include <istream>
#include <memory>
#include <string>

namespace Tamo::XML {

namespace {

TAMO_CONSTINIT const std::string EMPTY;

} // namespace

void SAXParser::setFeature(const std::string& name, bool value) {
    if (name == FEATURE_NAMESPACES) {
        _settings.namespaces = value;
    } else if (name == FEATURE_NAMESPACE_PREFIXES) {
        _settings.namespacePrefixes = value;
    } else if (name == FEATURE_EXTERNAL_GENERAL_ENTITIES) {
        _settings.externalGeneralEntities = value;
    } else if (name == FEATURE_EXTERNAL_PARAMETER_ENTITIES) {
        _settings.externalParameterEntities = value;
    } else if (name == FEATURE_DECLARATIONS_FIRST) {
        _settings.declarationsFirst = value;
    } else if (name == FEATURE_VALIDATION || name == FEATURE_STRING_INTERNING) {
        if (value) {
            throw SAXNotSupportedException(name);
        }
    } else {
        throw SAXNotRecognizedException(name);
    }
}

bool SAXParser::getFeature(const std::string& name) const {
    if (name == FEATURE_NAMESPACES) {
        return _settings.namespaces;
    }
    if (name == FEATURE_NAMESPACE_PREFIXES) {
        return _settings.namespacePrefixes;
    }
    if (name == FEATURE_EXTERNAL_GENERAL_ENTITIES) {
        return _settings.externalGeneralEntities;
    }
    if (name == FEATURE_EXTERNAL_PARAMETER_ENTITIES) {
        return _settings.externalParameterEntities;
    }
    if (name == FEATURE_DECLARATIONS_FIRST) {
        return _settings.declarationsFirst;
    }
    if (name == FEATURE_VALIDATION || name == FEATURE_STRING_INTERNING) {
        return false;
    }
    throw SAXNotRecognizedException(name);
}

void SAXParser::setProperty(const std::string& name, const std::string&) {
    if (name == PROPERTY_LEXICAL_HANDLER || name == PROPERTY_DECLARATION_HANDLER) {
        throw SAXNotSupportedException("property does not take a string value", name);
    }
    throw SAXNotRecognizedException(name);
}

void SAXParser::setProperty(const std::string& name, void* value) {
    if (name == PROPERTY_LEXICAL_HANDLER) {
        _settings.pLexicalHandler = static_cast<LexicalHandler*>(value);
    } else if (name == PROPERTY_DECLARATION_HANDLER) {
        _settings.pDeclarationHandler = value;
    } else {
        throw SAXNotRecognizedException(name);
    }
}

void* SAXParser::getProperty(const std::string& name) const {
    if (name == PROPERTY_LEXICAL_HANDLER) {
        return _settings.pLexicalHandler;
    }
    if (name == PROPERTY_DECLARATION_HANDLER) {
        return _settings.pDeclarationHandler;
    }
    throw SAXNotRecognizedException(name);
}

void SAXParser::parse(InputSource* pSource) {
    tamo_check_ptr(pSource);
    std::istream* pStream = EntitySource::streamOf(*pSource);
    const std::string& systemId = pSource->getSystemId();
    std::unique_ptr<EntitySource> pOpened;
    if (!pStream) {
        const std::string& publicId = pSource->getPublicId();
        pOpened = std::make_unique<EntitySource>(nullptr, publicId.empty() ? nullptr : &publicId, systemId);
        if (!pOpened->get()) {
            throw SAXParseException("Cannot resolve system identifier: " + systemId, publicId, systemId, -1,
                                    -1);
        }
        pStream = EntitySource::streamOf(*pOpened->get());
    }
    SAXDriver driver(_settings, pSource->getPublicId(), systemId);
    driver.run(EntityInput(*pStream), EntitySource::encodingOf(*pSource));
}

void SAXParser::parse(const std::string& systemId) {
    InputSource source(systemId);
    parse(&source);
}

void SAXParser::parseMemoryNP(const char* xml, std::size_t size) {
    tamo_assert(xml || size == 0);
    SAXDriver driver(_settings, EMPTY, EMPTY);
    driver.run(EntityInput(xml, size), EMPTY);
}

} // namespace Tamo::XML
