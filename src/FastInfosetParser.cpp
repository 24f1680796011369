#include "Tamo/FastInfoset/FastInfosetParser.h"
#include "DocumentParser.h"
#include "Tamo/FastInfoset/BitStreamReader.h"
#include "Tamo/FastInfoset/FISContentHandler.h"
#include "Tamo/FastInfoset/FISException.h"
#include "Tamo/XML/EntityResolverImpl.h"
#include "Tamo/XML/InputSource.h"
#include "Tamo/XML/LexicalHandler.h"
#include "Tamo/XML/SAXException.h"
#include <utility>

namespace Tamo::FastInfoset {

TAMO_CONSTINIT const std::string& FastInfosetParser::EMPTY_STRING = StringParser::EMPTY;

FastInfosetParser::FastInfosetParser(DocumentVocabulary::VocabularyImpl impl, VocabularyLoader* pLoader)
    : FastInfosetParser(impl, Opening{nullptr}) {
    _pEngine->setLoader(pLoader);
}

FastInfosetParser::FastInfosetParser(const DocumentVocabulary& vocabulary, VocabularyLoader* pLoader)
    : FastInfosetParser(vocabulary, Opening{nullptr}) {
    _pEngine->setLoader(pLoader);
}

FastInfosetParser::FastInfosetParser(DocumentVocabulary::VocabularyImpl impl, Opening opening)
    : _pEngine(std::make_unique<DocumentParser>(impl, opening.open)) {}

FastInfosetParser::FastInfosetParser(const DocumentVocabulary& vocabulary, Opening opening)
    : _pEngine(std::make_unique<DocumentParser>(vocabulary, opening.open)) {}

FastInfosetParser::~FastInfosetParser() = default;

void FastInfosetParser::setEntityResolver(XML::EntityResolver* pResolver) {
    _pEntityResolver = pResolver;
}

XML::EntityResolver* FastInfosetParser::getEntityResolver() const {
    return _pEntityResolver;
}

void FastInfosetParser::setDTDHandler(XML::DTDHandler* pDTDHandler) {
    _pEngine->handlers().pDTD = pDTDHandler;
}

XML::DTDHandler* FastInfosetParser::getDTDHandler() const {
    return _pEngine->handlers().pDTD;
}

void FastInfosetParser::setContentHandler(XML::ContentHandler* pContentHandler) {
    _pEngine->handlers().setContent(pContentHandler);
}

XML::ContentHandler* FastInfosetParser::getContentHandler() const {
    return _pEngine->handlers().pContent;
}

void FastInfosetParser::setErrorHandler(XML::ErrorHandler* pErrorHandler) {
    _pErrorHandler = pErrorHandler;
}

XML::ErrorHandler* FastInfosetParser::getErrorHandler() const {
    return _pErrorHandler;
}

void FastInfosetParser::setFeature(const std::string& name, bool value) {
    if (name == FEATURE_NAMESPACES) {
        if (!value) {
            throw XML::SAXNotSupportedException("namespace support cannot be disabled");
        }
    } else if (name == FEATURE_NAMESPACE_PREFIXES) {
        _pEngine->setNamespacePrefixes(value);
    } else {
        throw XML::SAXNotRecognizedException(name);
    }
}

bool FastInfosetParser::getFeature(const std::string& name) const {
    if (name == FEATURE_NAMESPACES) {
        return true;
    }
    if (name == FEATURE_NAMESPACE_PREFIXES) {
        return _pEngine->namespacePrefixes();
    }
    throw XML::SAXNotRecognizedException(name);
}

void FastInfosetParser::setProperty(const std::string& name, const std::string&) {
    if (name == PROPERTY_DECLARATION_HANDLER || name == PROPERTY_LEXICAL_HANDLER) {
        throw XML::SAXNotSupportedException("property does not take a string value: " + name);
    }
    throw XML::SAXNotRecognizedException(name);
}

void FastInfosetParser::setProperty(const std::string& name, void* value) {
    if (name == PROPERTY_DECLARATION_HANDLER) {
        _pDeclarationHandler = value;
    } else if (name == PROPERTY_LEXICAL_HANDLER) {
        _pEngine->handlers().pLexical = static_cast<XML::LexicalHandler*>(value);
    } else {
        throw XML::SAXNotRecognizedException(name);
    }
}

void* FastInfosetParser::getProperty(const std::string& name) const {
    if (name == PROPERTY_DECLARATION_HANDLER) {
        return _pDeclarationHandler;
    }
    if (name == PROPERTY_LEXICAL_HANDLER) {
        return _pEngine->handlers().pLexical;
    }
    throw XML::SAXNotRecognizedException(name);
}

void FastInfosetParser::parse(XML::InputSource* pSource) {
    tamo_check_ptr(pSource);
    if (pSource->getByteStream()) {
        parseStream(*pSource->getByteStream());
    } else if (pSource->getCharacterStream()) {
        parseStream(*pSource->getCharacterStream());
    } else {
        parse(pSource->getSystemId());
    }
}

void FastInfosetParser::parseStream(std::istream& stream) {
    using Waiting = BitStreamReader::Waiting;
    BitStreamReader reader(stream, _isLive ? Waiting::FOR_OCTETS : Waiting::FOR_BLOCKS);
    const BitStreamReader::Consumption consumption(reader);
    _pEngine->locate(reader, [&] { _pEngine->parse(reader); });
}

bool FastInfosetParser::parseNext(std::istream& stream) {
    BitStreamReader reader(stream, BitStreamReader::Waiting::FOR_OCTETS);
    if (!reader.hasOctet()) {
        return false;
    }
    const BitStreamReader::Consumption consumption(reader);
    _pEngine->locate(reader, [&] { _pEngine->parse(reader); });
    return true;
}

void FastInfosetParser::parse(const std::string& systemId) {
    XML::EntityResolverImpl resolver;
    struct Resolved {
        XML::EntityResolverImpl& resolver;
        XML::InputSource* pSource;
        ~Resolved() {
            if (pSource) {
                resolver.releaseInputSource(pSource);
            }
        }
    };
    const Resolved resolved{resolver, resolver.resolveEntity(nullptr, systemId)};
    if (!resolved.pSource) {
        throw FISParseException("Cannot resolve system identifier", systemId);
    }
    parse(resolved.pSource);
}

void FastInfosetParser::parseMemoryNP(const char* data, std::size_t size) {
    BitStreamReader reader(data, size);
    _pEngine->locate(reader, [&] { _pEngine->parse(reader); });
}

void FastInfosetParser::setDocumentHandler(FISDocumentHandler* pDocumentHandler) {
    _pEngine->handlers().setDocument(pDocumentHandler);
}

FISDocumentHandler* FastInfosetParser::getDocumentHandler() const {
    return _pEngine->handlers().pDocument;
}

void FastInfosetParser::useVocabulary(std::shared_ptr<const SharedVocabulary> pVocabulary) {
    _pEngine->useVocabulary(std::move(pVocabulary));
}

void FastInfosetParser::setExternalVocabularyLoader(VocabularyLoader* pLoader) {
    _pEngine->setLoader(pLoader);
}

VocabularyLoader* FastInfosetParser::getExternalVocabularyLoader() const {
    return _pEngine->getLoader();
}

void FastInfosetParser::setLimits(const ParserLimits& limits) {
    _pEngine->strings().setLimits(limits);
}

const ParserLimits& FastInfosetParser::limits() const {
    return _pEngine->strings().limits();
}

void FastInfosetParser::setStrict(bool flag) {
    _pEngine->setStrict(flag);
}

bool FastInfosetParser::isStrict() const noexcept {
    return _pEngine->isStrict();
}

void FastInfosetParser::setLive(bool flag) noexcept {
    _isLive = flag;
}

bool FastInfosetParser::isLive() const noexcept {
    return _isLive;
}

void FastInfosetParser::setCanonicalNumbers(bool flag) {
    _pEngine->setCanonicalNumbers(flag);
}

UInt64 FastInfosetParser::position() const noexcept {
    return _pEngine->position();
}

UInt64 FastInfosetParser::documentSize() const noexcept {
    return _pEngine->documentSize();
}

const DocumentVocabulary& FastInfosetParser::vocabulary() const {
    return std::as_const(*_pEngine).strings().vocabulary();
}

DecodingAlgorithm& FastInfosetParser::decodingAlgorithms() {
    return _pEngine->strings().vocabulary().decodings();
}

} // namespace Tamo::FastInfoset
