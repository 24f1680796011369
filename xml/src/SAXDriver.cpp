#include "SAXDriver.h"
#include "EntitySource.h"
#include "LegacyEncoding.h"
#include "SystemIdentifier.h"
#include "Tamo/Export.h"
#include "Tamo/XML/ContentHandler.h"
#include "Tamo/XML/ErrorHandler.h"
#include "Tamo/XML/LexicalHandler.h"
#include "Tamo/XML/SAXException.h"
#include <algorithm>
#include <cstring>
#include <new>
#include <utility>

namespace Tamo::XML {

namespace {

TAMO_CONSTINIT const std::string EMPTY;

/// How deep external entities may refer to one another. Each level costs stack and an open stream.
constexpr std::size_t MAX_EXTERNAL_DEPTH = 64;

/// Whether a name that Expat has not split may be none, or another one, with namespaces.
bool isOddName(const char* name) {
    const char* const pColon = std::strchr(name, ':');
    return pColon && (pColon == name || !NameCache::isSurelyNCName(pColon + 1));
}

} // namespace

SAXDriver::SAXDriver(const SAXSettings& settings, const std::string& publicId, const std::string& systemId)
    : _settings(settings),
      _namespaces(settings.namespaces),
      _reading(settings.namespaces && !settings.externalParameterEntities ? Reading::First::RAW
                                                                          : Reading::First::RESOLVED),
      _names(settings.namespaces ? NameCache::Keys::WITH_NAMESPACES : NameCache::Keys::QUALIFIED_NAMES),
      _prolog({settings.pContentHandler, settings.pLexicalHandler, settings.pDTDHandler},
              settings.declarationsFirst ? Prolog::Order::DECLARATIONS_FIRST : Prolog::Order::AS_WRITTEN) {
    _meter.start(settings.limits);
    _entities.push_back({nullptr, publicId, systemId});
    if (_reading.isRaw()) {
        _names.resolveWith(&_rawBindings.inForce());
    }
}

int SAXDriver::getLineNumber() const {
    const XML_Parser pExpat = _entities.back().pExpat;
    return pExpat ? static_cast<int>(XML_GetCurrentLineNumber(pExpat)) : -1;
}

int SAXDriver::getColumnNumber() const {
    const XML_Parser pExpat = _entities.back().pExpat;
    return pExpat ? static_cast<int>(XML_GetCurrentColumnNumber(pExpat)) + 1 : -1;
}

void SAXDriver::run(EntityInput input, const std::string& encoding) {
    const ExpatPtr pExpat = createExpat(encoding);
    if (ContentHandler* pHandler = _settings.pContentHandler) {
        pHandler->setDocumentLocator(this);
        if (!_prolog.isHeld()) {
            pHandler->startDocument();
        }
    }
    if (!_reading.isRaw()) {
        feed(pExpat.get(), input);
    } else if (!feedFirst(pExpat.get(), input)) {
        feed(createExpat(encoding).get(), input); // out of the buffer of pExpat
    }
    if (ContentHandler* pHandler = _settings.pContentHandler) {
        pHandler->endDocument();
    }
}

SAXDriver::ExpatPtr SAXDriver::createExpat(const std::string& encoding) {
    const char* pEncoding = encoding.empty() ? nullptr : encoding.c_str();
    constexpr char SEPARATOR[] = {NameCache::SEPARATOR, '\0'};
    const char* pSeparator = _namespaces && !_reading.isRaw() ? SEPARATOR : nullptr;
    ExpatPtr pExpat(XML_ParserCreate_MM(pEncoding, &ExpatMemory::suite(), pSeparator), &XML_ParserFree);
    if (!pExpat) {
        throw std::bad_alloc();
    }
    installCallbacks(pExpat.get());
    if (!_entities.back().systemId.empty() &&
        XML_SetBase(pExpat.get(), _entities.back().systemId.c_str()) != XML_STATUS_OK) {
        throw std::bad_alloc();
    }
    _entities.back().pExpat = pExpat.get();
    return pExpat;
}

void SAXDriver::installCallbacks(XML_Parser pExpat) {
    XML_SetUserData(pExpat, this);
    XML_SetReturnNSTriplet(pExpat, 1);
    XML_SetUnknownEncodingHandler(pExpat, unknownEncoding, nullptr);
    installContentCallbacks(pExpat);
    installDeclarationCallbacks(pExpat);
    // Without this callback Expat would drop references to external entities silently.
    XML_SetExternalEntityRefHandler(pExpat, [](XML_Parser pParent, const char* context, const char* base,
                                               const char* systemId, const char* publicId) {
        return static_cast<SAXDriver*>(XML_GetUserData(pParent))
            ->externalEntity(pParent, context, base, systemId, publicId);
    });
    if (_settings.externalParameterEntities) {
        XML_SetParamEntityParsing(pExpat, XML_PARAM_ENTITY_PARSING_ALWAYS);
    }
}

void SAXDriver::installContentCallbacks(XML_Parser pExpat) {
    XML_SetElementHandler(
        pExpat,
        [](void* pUser, const char* name, const char** attributes) {
            guarded(pUser, [&](SAXDriver& driver) {
                driver._reading.isRaw() ? driver.startRawElement(name, attributes)
                                        : driver.startElement(name, attributes);
            });
        },
        [](void* pUser, const char* name) {
            guarded(pUser, [&](SAXDriver& driver) { driver.endElement(name); });
        });
    XML_SetCharacterDataHandler(pExpat, [](void* pUser, const char* text, int length) {
        static_cast<SAXDriver*>(pUser)->guardedText({text, static_cast<std::size_t>(length)});
    });
    XML_SetProcessingInstructionHandler(pExpat, [](void* pUser, const char* target, const char* data) {
        guarded(pUser, [&](SAXDriver& driver) {
            if (driver._reading.isRaw() && std::strchr(target, ':')) {
                driver.readAgain();
            } else {
                driver.processingInstruction(target, data);
            }
        });
    });
    XML_SetCommentHandler(pExpat, [](void* pUser, const char* text) {
        guarded(pUser, [&](SAXDriver& driver) { driver.comment(text); });
    });
    XML_SetCdataSectionHandler(
        pExpat,
        [](void* pUser) {
            guarded(pUser, [](SAXDriver& driver) {
                if (LexicalHandler* pHandler = driver._settings.pLexicalHandler) {
                    driver.flushText();
                    pHandler->startCDATA();
                }
            });
        },
        [](void* pUser) {
            guarded(pUser, [](SAXDriver& driver) {
                if (LexicalHandler* pHandler = driver._settings.pLexicalHandler) {
                    driver.flushText();
                    pHandler->endCDATA();
                }
            });
        });
    XML_SetNamespaceDeclHandler(
        pExpat,
        [](void* pUser, const char* prefix, const char* uri) {
            guarded(pUser, Callback::NAMESPACE_START, [&](SAXDriver& driver) {
                driver.flushText();
                driver._prolog.release();
                driver.startPrefixMapping(prefix ? prefix : EMPTY, uri ? uri : EMPTY);
            });
        },
        [](void* pUser, const char* prefix) {
            guarded(pUser, Callback::NAMESPACE_END, [&](SAXDriver& driver) {
                if (ContentHandler* pHandler = driver._settings.pContentHandler) {
                    pHandler->endPrefixMapping(prefix ? prefix : EMPTY);
                }
            });
        });
    XML_SetSkippedEntityHandler(pExpat, [](void* pUser, const char* name, int isParameter) {
        guarded(pUser, [&](SAXDriver& driver) {
            if (driver._reading.isRaw() && std::strchr(name, ':')) {
                driver.readAgain();
            } else {
                driver.skippedEntity(isParameter ? std::string("%").append(name) : std::string(name));
            }
        });
    });
}

void SAXDriver::installDeclarationCallbacks(XML_Parser pExpat) {
    XML_SetDoctypeDeclHandler(
        pExpat,
        [](void* pUser, const char* name, const char* systemId, const char* publicId, int hasSubset) {
            guarded(pUser, [&](SAXDriver& driver) {
                if (driver._reading.isRaw() && (hasSubset || isOddName(name))) {
                    driver.readAgain();
                } else {
                    driver._prolog.startDTD(name, systemId, publicId);
                }
            });
        },
        [](void* pUser) { guarded(pUser, [](SAXDriver& driver) { driver._prolog.endDTD(); }); });
    XML_SetNotationDeclHandler(
        pExpat, [](void* pUser, const char* name, const char*, const char* systemId, const char* publicId) {
            guarded(pUser, [&](SAXDriver& driver) { driver._prolog.notation(name, systemId, publicId); });
        });
    XML_SetEntityDeclHandler(pExpat, [](void* pUser, const char* name, int isParameter, const char* value,
                                        int length, const char*, const char* systemId, const char* publicId,
                                        const char* notation) {
        guarded(pUser, [&](SAXDriver& driver) {
            if (value) {
                driver.internalEntityDecl({value, static_cast<std::size_t>(length)});
            } else if (notation) {
                driver._prolog.unparsedEntity(name, systemId, publicId, notation);
            } else if (!isParameter) {
                driver._declarations.addExternalEntity(name);
            }
        });
    });
    XML_SetAttlistDeclHandler(pExpat, [](void* pUser, const char* element, const char* attribute,
                                         const char* type, const char* value, int) {
        guarded(pUser, [&](SAXDriver& driver) { driver.attributeDecl(element, attribute, type, value); });
    });
}

// Reads the first piece. True when that was the document and it has been parsed; else the input has been put
// back to its beginning, for an Expat that knows namespaces.
bool SAXDriver::feedFirst(XML_Parser pExpat, EntityInput& input) {
    const std::size_t size = input.nextSize(0);
    void* const pPiece = buffer(pExpat, size);
    const char* const pOctets = static_cast<const char*>(pPiece);
    const std::size_t count = input.read(static_cast<char*>(pPiece), size);
    _fed = count;
    if (count < size) {
        const XML_Status status = XML_ParseBuffer(pExpat, static_cast<int>(count), true);
        _reading.rethrow();
        if (!_reading.isRejected()) {
            if (status == XML_STATUS_OK) {
                return true;
            }
            if (XML_GetErrorCode(pExpat) == XML_ERROR_NO_MEMORY) {
                failMemory();
            }
        }
        _reading.passOver();
        input.readWholeAgain(pOctets, count);
    } else {
        _reading.skipFirst();
        input.readAgain(pOctets, count);
    }
    _names.resolveWith(nullptr);
    return false;
}

void SAXDriver::feed(XML_Parser pExpat, EntityInput& input) {
    XML_Index fed = 0; // of this entity
    std::size_t unfinished = 0;
    bool isFinal = false;
    while (!isFinal) {
        const std::size_t size = input.nextSize(unfinished);
        void* const pBuffer = buffer(pExpat, size);
        const std::size_t count = input.read(static_cast<char*>(pBuffer), size);
        _fed += count;
        isFinal = count < size;
        if (XML_ParseBuffer(pExpat, static_cast<int>(count), isFinal) != XML_STATUS_OK &&
            !_reading.hasFailed()) {
            const XML_Error error = XML_GetErrorCode(pExpat);
            if (error == XML_ERROR_NO_MEMORY) {
                failMemory();
            }
            fail(XML_ErrorString(error));
        }
        _reading.rethrow(); // perhaps of a callback behind the last one that Expat can be stopped in
        fed += static_cast<XML_Index>(count);
        const XML_Index token = XML_GetCurrentByteIndex(pExpat);
        unfinished = token >= 0 && token < fed ? static_cast<std::size_t>(fed - token) : 0;
    }
}

// Where the next octets of the document go.
void* SAXDriver::buffer(XML_Parser pExpat, std::size_t size) {
    _memory.allowFor(_fed + size);
    void* const pBuffer = XML_GetBuffer(pExpat, static_cast<int>(size));
    if (!pBuffer) {
        failMemory();
    }
    return pBuffer;
}

// The callback that is being executed does nothing; Expat with namespaces is to decide about it.
void SAXDriver::readAgain() {
    _reading.reject();
    XML_StopParser(_entities.back().pExpat, XML_FALSE);
}

// With the exception that is being handled.
void SAXDriver::stop() noexcept {
    _reading.fail();
    XML_StopParser(_entities.back().pExpat, XML_FALSE);
}

void SAXDriver::fail(const std::string& message) {
    const SAXParseException exception(message, *this);
    if (_settings.pErrorHandler) {
        _settings.pErrorHandler->fatalError(exception);
    }
    throw exception;
}

void SAXDriver::failMemory() {
    if (_memory.isExceeded()) {
        fail("Limit exceeded: memory for names, namespaces and declarations");
    }
    throw std::bad_alloc();
}

template<class Event>
void SAXDriver::guarded(void* pUser, Callback callback, Event&& event) {
    SAXDriver& driver = *static_cast<SAXDriver*>(pUser);
    if (!driver._reading.takes(callback)) [[unlikely]] {
        return;
    }
    try {
        event(driver);
    } catch (...) {
        driver.stop();
    }
}

template<class Event>
void SAXDriver::guarded(void* pUser, Event&& event) {
    guarded(pUser, Callback::COMMON, std::forward<Event>(event));
}

void SAXDriver::guardedText(std::string_view text) {
    if (!_reading.takes(text)) [[unlikely]] {
        return;
    }
    try {
        this->text(text);
    } catch (...) {
        stop();
    }
}

void SAXDriver::checkDelivered() {
    const std::string limit = _meter.exceeds(_fed);
    if (!limit.empty()) {
        fail("Limit exceeded: " + limit);
    }
}

void SAXDriver::startElement(const char* name, const char** attributes) {
    flushText();
    _prolog.release();
    const NameCache::QName& element = _names.startElement(name);
    ContentHandler* pHandler = _settings.pContentHandler;
    if (!pHandler) {
        return;
    }
    _attributes.clear();
    if (_namespaces && _declarations.haveNoTypes()) [[likely]] {
        for (; *attributes; attributes += 2) {
            addAttribute(_names.attribute(attributes[0]), Declarations::CDATA, attributes[1]);
        }
    } else {
        addAttributes(element, attributes);
    }
    deliver(2 * element.octets());
    pHandler->startElement(element.uri(), element.localName(), element.qname(), _attributes);
}

void SAXDriver::startRawElement(const char* name, const char** attributes) {
    const bool declares = RawBindings::haveDeclaration(attributes);
    if (declares) {
        if (!_rawBindings.declare(attributes, _names.depth() + 1)) {
            readAgain();
            return;
        }
        _names.resolveWith(&_rawBindings.inForce());
    }
    const NameCache::QName& element = _names.startElement(name);
    _attributes.clear();
    for (; *attributes; attributes += 2) {
        if (!declares || !RawBindings::isDeclaration(*attributes)) {
            addAttribute(_names.attribute(attributes[0]), Declarations::CDATA, attributes[1]);
        }
    }
    if (_names.hasOdd()) [[unlikely]] {
        _names.undoStart();
        readAgain();
        return;
    }
    flushText();
    _prolog.release();
    ContentHandler* pHandler = _settings.pContentHandler;
    if (!pHandler) {
        return;
    }
    if (declares) {
        _rawBindings.inForce().visitDeclared(
            [&](const std::string& prefix, const std::string& uri) { startPrefixMapping(prefix, uri); });
    }
    deliver(2 * element.octets());
    pHandler->startElement(element.uri(), element.localName(), element.qname(), _attributes);
}

void SAXDriver::endElement(const char* name) {
    flushText();
    const NameCache::QName& element = _names.endElement(name);
    if (ContentHandler* pHandler = _settings.pContentHandler) {
        pHandler->endElement(element.uri(), element.localName(), element.qname());
    }
    if (_reading.isRaw() && _rawBindings.areOf(_names.depth() + 1)) {
        endDeclarations();
    }
}

void SAXDriver::endDeclarations() {
    for (const std::string* pPrefix : _rawBindings.declaredBackwards()) {
        if (ContentHandler* pHandler = _settings.pContentHandler) {
            pHandler->endPrefixMapping(*pPrefix);
        }
    }
    _rawBindings.end();
    _names.resolveWith(&_rawBindings.inForce());
}

void SAXDriver::addAttributes(const NameCache::QName& element, const char** attributes) {
    for (; *attributes; attributes += 2) {
        const NameCache::QName& attribute = _names.attribute(*attributes);
        if (!_namespaces && (attribute.qname() == "xmlns" || attribute.qname().starts_with("xmlns:"))) {
            continue;
        }
        const std::string& type = _declarations.haveNoTypes()
                                      ? Declarations::CDATA
                                      : _declarations.typeOf(element.qname(), attribute.qname());
        addAttribute(attribute, type, attributes[1]);
    }
}

void SAXDriver::addAttribute(const NameCache::QName& name, const std::string& type, const char* value) {
    deliver(name.octets() + _attributes.add(name, type, value));
}

void SAXDriver::startPrefixMapping(const std::string& prefix, const std::string& uri) {
    if (ContentHandler* pHandler = _settings.pContentHandler) {
        deliver(2 * DeliveryLimits::CALLBACK + prefix.size() + uri.size());
        pHandler->startPrefixMapping(prefix, uri);
    }
}

void SAXDriver::text(std::string_view text) {
    while (!_run.append(text))
        [[unlikely]] {
            flushText();
        }
}

void SAXDriver::flushText() {
    if (!_run.empty()) {
        const std::string_view run = _run.take();
        if (ContentHandler* pHandler = _settings.pContentHandler) {
            deliver(DeliveryLimits::CALLBACK + run.size());
            pHandler->characters(run.data(), 0, static_cast<int>(run.size()));
        }
    }
}

void SAXDriver::comment(std::string_view text) {
    if (_prolog.isInDTD() || !_settings.pLexicalHandler) {
        return;
    }
    flushText();
    deliver(DeliveryLimits::CALLBACK + text.size());
    _prolog.comment(text);
}

void SAXDriver::processingInstruction(std::string&& target, std::string&& data) {
    flushText();
    deliver(DeliveryLimits::CALLBACK + target.size() + data.size());
    _prolog.processingInstruction(std::move(target), std::move(data));
}

void SAXDriver::skippedEntity(const std::string& name) {
    flushText();
    if (_prolog.isHeld()) {
        return; // a parameter entity; nothing that the handlers could do with it
    }
    if (ContentHandler* pHandler = _settings.pContentHandler) {
        pHandler->skippedEntity(name);
    }
}

void SAXDriver::internalEntityDecl(std::string_view value) {
    if (!_declarations.addInternalEntity(value)) {
        fail("too many entities that refer to other entities");
    }
}

void SAXDriver::attributeDecl(const char* element, const char* attribute, const char* type,
                              const char* value) {
    if (!_declarations.addAttribute(element, attribute, type, value)) {
        fail("too many attributes with default values");
    }
}

int SAXDriver::externalEntity(XML_Parser pExpat, const char* context, const char* base, const char* systemId,
                              const char* publicId) {
    guarded(this, [&](SAXDriver&) {
        if (context && !_settings.externalGeneralEntities) {
            skippedEntity(_declarations.externalEntityIn(context));
        } else {
            parseExternal(pExpat, context, base, systemId, publicId);
        }
    });
    return _reading.hasFailed() ? XML_STATUS_ERROR : XML_STATUS_OK;
}

void SAXDriver::parseExternal(XML_Parser pExpat, const char* context, const char* base, const char* systemId,
                              const char* publicId) {
    if (_entities.size() > MAX_EXTERNAL_DEPTH) {
        fail("external entities are nested too deeply");
    }
    const std::string publicText(publicId ? publicId : "");
    const std::string systemText = SystemIdentifier::absolute(base, SystemIdentifier::normalized(systemId));
    const EntitySource source(_settings.pEntityResolver, publicId ? &publicText : nullptr, systemText);
    if (!source.get()) {
        fail("Cannot resolve system identifier: " + systemText);
    }
    const std::string encoding = EntitySource::encodingOf(*source.get());
    const ExpatPtr pChild(
        XML_ExternalEntityParserCreate(pExpat, context, encoding.empty() ? nullptr : encoding.c_str()),
        &XML_ParserFree);
    if (!pChild || XML_SetBase(pChild.get(), systemText.c_str()) != XML_STATUS_OK) {
        failMemory();
    }
    _entities.push_back({pChild.get(), publicText, systemText});
    try {
        EntityInput input(*EntitySource::streamOf(*source.get()));
        feed(pChild.get(), input);
    } catch (...) {
        _entities.pop_back();
        throw;
    }
    _entities.pop_back();
}

int XMLCALL SAXDriver::unknownEncoding(void*, const char* name, XML_Encoding* pInfo) {
    try {
        std::unique_ptr<LegacyEncoding> pEncoding = LegacyEncoding::create(name);
        if (!pEncoding) {
            return XML_STATUS_ERROR;
        }
        std::copy(pEncoding->map().begin(), pEncoding->map().end(), pInfo->map);
        pInfo->convert = [](void* pData, const char* sequence) {
            return static_cast<const LegacyEncoding*>(pData)->convert(sequence);
        };
        pInfo->release = [](void* pData) { delete static_cast<LegacyEncoding*>(pData); };
        pInfo->data = pEncoding.release();
        return XML_STATUS_OK;
    } catch (...) {
        return XML_STATUS_ERROR;
    }
}

} // namespace Tamo::XML
