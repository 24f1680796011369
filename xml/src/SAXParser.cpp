#include "Tamo/XML/SAXParser.h"
#include "ExpatMemory.h"
#include "LegacyEncoding.h"
#include "NameCache.h"
#include "Tamo/Bugcheck.h"
#include "Tamo/MemoryStream.h"
#include "Tamo/URI.h"
#include "Tamo/XML/ContentHandler.h"
#include "Tamo/XML/DTDHandler.h"
#include "Tamo/XML/DeliveryMeter.h"
#include "Tamo/XML/EntityResolverImpl.h"
#include "Tamo/XML/ErrorHandler.h"
#include "Tamo/XML/InputSource.h"
#include "Tamo/XML/LexicalHandler.h"
#include "Tamo/XML/Locator.h"
#include "Tamo/XML/NamespaceSupport.h"
#include "Tamo/XML/SAXException.h"
#include "Tamo/XML/StableAttributes.h"
#include <algorithm>
#include <cstring>
#include <exception>
#include <expat.h>
#include <istream>
#include <map>
#include <memory>
#include <new>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Tamo::XML {

namespace {

TAMO_CONSTINIT const std::string EMPTY;
TAMO_CONSTINIT const std::string CDATA_TYPE{"CDATA"};

/// How many octets Expat gets at a time, unless it waits for the end of a long token: it looks at a token
/// from its beginning each time that it gets more, so that it gets as much again as it has.
constexpr std::size_t PIECE = 64 * 1024;
constexpr std::size_t MAX_PIECE = 1 << 30; // an int counts them

/// An entity of fewer octets goes to Expat in one piece when its size is known. That is a fifth faster:
/// behind every piece but the last Expat counts lines and columns. Expat keeps a copy of the piece, hence the
/// limits.
constexpr std::size_t MAX_WHOLE = 16 * 1024 * 1024;
constexpr std::size_t MAX_WHOLE_IN_MEMORY = 64 * 1024 * 1024; // at most as much again as the caller has
constexpr std::size_t MAX_WHOLE_AGAIN = 1024 * 1024; // of an entity that is here already, and read again

/// The longest run of text that one `characters` call delivers.
constexpr std::size_t MAX_RUN = 64 * 1024;

/// How deep external entities may refer to one another. Each level costs stack and an open stream.
constexpr std::size_t MAX_EXTERNAL_DEPTH = 64;

/// How many internal entities of a document may refer to others. Expat expands a chain of them by recursion,
/// about half a KiB of stack a level, so that a longer chain could end the process.
constexpr std::size_t MAX_REFERRING_ENTITIES = 2000;

/// How many attributes with default values an element may have. Expat looks through all of them for each new
/// one.
constexpr std::size_t MAX_DEFAULT_ATTRIBUTES = 10000;

using ParserPtr = std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)>;

/// Octets from a stream or from memory, which can be read a second time.
class Input {
public:
    explicit Input(std::istream& stream)
        : _pStream(&stream),
          _size(firstSize(available(stream),
                          dynamic_cast<MemoryInputBuf*>(stream.rdbuf()) ? MAX_WHOLE_IN_MEMORY : MAX_WHOLE)) {}
    Input(const char* data, std::size_t size)
        : _pData(data), _left(size), _size(firstSize(size, MAX_WHOLE_IN_MEMORY)) {}

    /// How many octets to ask for, when as many as unfinished wait for what is behind them.
    std::size_t nextSize(std::size_t unfinished) const {
        return std::max(_size, std::min(unfinished, MAX_PIECE));
    }

    /// Reads up to size octets; fewer mean that the input ends.
    std::size_t read(char* pBuffer, std::size_t size) {
        _size = PIECE;
        const std::size_t count = std::min(size, _left);
        if (count > 0) {
            std::memcpy(pBuffer, _pData, count);
            _pData += count;
            _left -= count;
        }
        return count < size && _pStream ? count + readStream(pBuffer + count, size - count) : count;
    }

    /// Begins anew with the octets that have been read so far, which are at pData for as long as the input is
    /// used; there are no more of them when it has ended.
    void readAgain(const char* pData, std::size_t size, bool hasEnded) {
        _pData = pData;
        _left = size;
        _size = PIECE;
        if (hasEnded) {
            _pStream = nullptr;
            _size = firstSize(size, MAX_WHOLE_AGAIN);
        }
    }

private:
    std::size_t readStream(char* pBuffer, std::size_t size) {
        try {
            _pStream->read(pBuffer, static_cast<std::streamsize>(size));
        } catch (const std::ios_base::failure&) {
            // A stream that throws says in its state why.
        }
        if (_pStream->bad() || (_pStream->fail() && !_pStream->eof())) {
            throw IOException("Cannot read from the input stream");
        }
        return static_cast<std::size_t>(_pStream->gcount());
    }

    /// One octet more than there seem to be: the first read is to see the end.
    static std::size_t firstSize(std::size_t available, std::size_t limit) {
        return available < limit ? available + 1 : PIECE;
    }

    /// How many octets the stream says it has, in memory or in a file; for others the size of a piece.
    static std::size_t available(std::istream& stream) {
        try {
            const std::streamsize count = stream.good() ? stream.rdbuf()->in_avail() : 0;
            return count > 0 ? static_cast<std::size_t>(count) : PIECE - 1;
        } catch (...) {
            return PIECE - 1; // only a hint; read() finds out what is wrong
        }
    }

    std::istream* _pStream = nullptr;
    const char* _pData = nullptr;
    std::size_t _left = 0;
    std::size_t _size;
};

/// The attributes of the current element; names live in the name cache, slots keep their strings' capacity.
class ParsedAttributes final : public StableAttributes {
public:
    ParsedAttributes() { _slots.reserve(8); }

    void clear() { _count = 0; }

    /// Returns the octets of the value.
    std::size_t add(const NameCache::QName& name, const std::string& type, const char* value) {
        if (_count == _slots.size()) {
            _slots.emplace_back();
        }
        Slot& slot = _slots[_count++];
        slot.pName = &name;
        slot.pType = &type;
        slot.value.assign(value);
        return slot.value.size();
    }

    int getLength() const override { return static_cast<int>(_count); }
    const std::string& getURI(int i) const override { return at(i).pName->uri(); }
    const std::string& getLocalName(int i) const override { return at(i).pName->localName(); }
    const std::string& getQName(int i) const override { return at(i).pName->qname(); }
    const std::string& getType(int i) const override { return *at(i).pType; }
    const std::string& getValue(int i) const override { return at(i).value; }

    int getIndex(const std::string& uri, const std::string& localName) const override {
        for (std::size_t i = 0; i < _count; ++i) {
            if (_slots[i].pName->localName() == localName && _slots[i].pName->uri() == uri) {
                return static_cast<int>(i);
            }
        }
        return -1;
    }

    int getIndex(const std::string& qname) const override {
        for (std::size_t i = 0; i < _count; ++i) {
            if (_slots[i].pName->qname() == qname) {
                return static_cast<int>(i);
            }
        }
        return -1;
    }

    const std::string& getType(const std::string& uri, const std::string& localName) const override {
        const int i = getIndex(uri, localName);
        return i < 0 ? EMPTY : getType(i);
    }

    const std::string& getType(const std::string& qname) const override {
        const int i = getIndex(qname);
        return i < 0 ? EMPTY : getType(i);
    }

    const std::string& getValue(const std::string& uri, const std::string& localName) const override {
        const int i = getIndex(uri, localName);
        return i < 0 ? EMPTY : getValue(i);
    }

    const std::string& getValue(const std::string& qname) const override {
        const int i = getIndex(qname);
        return i < 0 ? EMPTY : getValue(i);
    }

private:
    struct Slot {
        const NameCache::QName* pName = nullptr;
        const std::string* pType = nullptr;
        std::string value;
    };

    const Slot& at(int i) const {
        tamo_assert(i >= 0 && static_cast<std::size_t>(i) < _count);
        return _slots[static_cast<std::size_t>(i)];
    }

    std::vector<Slot> _slots;
    std::size_t _count = 0;
};

/// An entity's source for as long as it is read.
class ResolvedSource {
public:
    /// Asks the resolver, when there is one and it has an answer, else opens the identifier.
    ResolvedSource(EntityResolver* pResolver, const std::string* publicId, const std::string& systemId)
        : _pResolver(pResolver) {
        if (_pResolver) {
            _pSource = _pResolver->resolveEntity(publicId, systemId);
            if (_pSource && stream()) {
                return;
            }
        }
        const std::string opened = _pSource ? _pSource->getSystemId() : systemId;
        release();
        _pResolver = &_default;
        _pSource = _default.resolveEntity(publicId, opened);
    }

    ResolvedSource(const ResolvedSource&) = delete;
    ResolvedSource& operator=(const ResolvedSource&) = delete;
    ~ResolvedSource() { release(); }

    /// The source, or null when the identifier cannot be opened.
    InputSource* get() const { return _pSource; }

    /// The source's stream, or null.
    std::istream* stream() const {
        return _pSource->getByteStream() ? _pSource->getByteStream() : _pSource->getCharacterStream();
    }

private:
    void release() {
        if (_pSource) {
            _pResolver->releaseInputSource(_pSource);
            _pSource = nullptr;
        }
    }

    EntityResolverImpl _default;
    EntityResolver* _pResolver;
    InputSource* _pSource = nullptr;
};

/// The encoding that overrides what the document says; empty when there is none.
std::string encodingOf(const InputSource& source) {
    return source.getByteStream() || !source.getCharacterStream() ? source.getEncoding()
                                                                  : std::string("UTF-8");
}

/// A system identifier as it is to be opened: relative ones start from the entity that declares them.
std::string absolute(const char* base, const std::string& systemId) {
    if (!base || !*base || !URI::schemeOf(systemId).empty()) {
        return systemId;
    }
    if (!URI::schemeOf(base).empty()) {
        return URI(base).resolve(URI(systemId)).toString();
    }
    if (systemId.starts_with('/')) {
        return systemId;
    }
    const std::string_view path(base); // a plain path, taken literally
    const std::size_t slash = path.rfind('/');
    return slash == std::string_view::npos ? systemId : std::string(path.substr(0, slash + 1)) + systemId;
}

/// A system identifier as a document holds it. Expat leaves its line ends as they are, against XML 1.0, 2.11.
std::string systemIdentifier(const char* text) {
    std::string identifier;
    for (; text && *text; ++text) {
        if (*text != '\r') {
            identifier += *text;
        } else if (text[1] != '\n') {
            identifier += '\n';
        }
    }
    return identifier;
}

/// Whether an attribute declares a namespace.
bool isDeclaration(const char* name) {
    return name[0] == 'x' && std::strncmp(name, "xmlns", 5) == 0 && (name[5] == '\0' || name[5] == ':');
}

/// Whether a name that Expat has not split may be none, or another one, with namespaces.
bool isOddName(const char* name) {
    const char* const pColon = std::strchr(name, ':');
    return pColon && (pColon == name || !NameCache::isSurelyNCName(pColon + 1));
}

/// Whether the replacement text refers to another entity. Character references do not count.
bool refersToEntity(std::string_view text) {
    for (std::size_t i = 0; i + 1 < text.size(); ++i) {
        if ((text[i] == '&' || text[i] == '%') && text[i + 1] != '#') {
            return true;
        }
    }
    return false;
}

} // namespace

/// One parse: stands between Expat's callbacks and the handlers.
///
/// A document that is here as a whole is first given to an Expat that knows nothing of namespaces, which are
/// resolved here: that is faster. Whatever is then unusual (an error, a name or a declaration that could be
/// wrong, an internal subset) leaves the verdict to an Expat with namespaces, which reads the document again
/// from its beginning; the callbacks up to that point are passed over.
///
/// No exception may pass through Expat, which is C: a callback catches it, stops Expat, and run() throws it
/// on.
class SAXParser::Driver : public Locator {
public:
    Driver(SAXParser& parser, const std::string& publicId, const std::string& systemId)
        : _parser(parser),
          _namespaces(parser._namespaces),
          _names(parser._namespaces),
          _isRaw(parser._namespaces && !parser._externalParameterEntities),
          _holding(parser._declarationsFirst) {
        _meter.start(parser._limits);
        _entities.push_back({nullptr, publicId, systemId});
        if (_isRaw) {
            _names.resolveWith(&_bindings);
        }
    }

    void run(Input input, const std::string& encoding);

    std::string getPublicId() const override { return _entities.back().publicId; }
    std::string getSystemId() const override { return _entities.back().systemId; }
    int getLineNumber() const override {
        const XML_Parser pExpat = _entities.back().pExpat;
        return pExpat ? static_cast<int>(XML_GetCurrentLineNumber(pExpat)) : -1;
    }
    int getColumnNumber() const override {
        const XML_Parser pExpat = _entities.back().pExpat;
        return pExpat ? static_cast<int>(XML_GetCurrentColumnNumber(pExpat)) + 1 : -1;
    }

private:
    struct Entity {
        XML_Parser pExpat;
        std::string publicId;
        std::string systemId;
    };

    /// An event of the prolog that waits for the declarations to be complete.
    struct Held {
        enum Kind { COMMENT, PROCESSING_INSTRUCTION, START_DTD, END_DTD } kind;
        std::string first, second, third;
    };

    ParserPtr createExpat(const std::string& encoding);
    void installCallbacks(XML_Parser pExpat);
    bool feedRaw(XML_Parser pExpat, Input& input);
    void feed(XML_Parser pExpat, Input& input);
    void readAgain();
    void stop() noexcept;
    [[noreturn]] void fail(const std::string& message);

    enum Callback { COMMON, NAMESPACE_START, NAMESPACE_END };

    template<class Event>
    static void guarded(void* pUser, Callback callback, Event&& event);
    template<class Event>
    static void guarded(void* pUser, Event&& event) {
        guarded(pUser, COMMON, std::forward<Event>(event));
    }
    bool takes(Callback callback) noexcept;
    bool takes(std::string_view& text) noexcept;
    void guardedText(std::string_view text);

    void startElement(const char* name, const char** attributes);
    void startRawElement(const char* name, const char** attributes);
    bool declare(const char** attributes);
    void endDeclarations();
    void addAttributes(const NameCache::QName& element, const char** attributes);
    void addAttribute(const NameCache::QName& name, const std::string& type, const char* value);
    void startPrefixMapping(const std::string& prefix, const std::string& uri);
    void endElement(const char* name);
    void text(std::string_view text);
    void makeRoom(std::string_view& text);
    void flushText();
    void comment(std::string_view text);
    void processingInstruction(std::string&& target, std::string&& data);
    void startDTD(const char* name, const char* systemId, const char* publicId);
    void endDTD();
    void entityDecl(const char* name, bool isParameter, const char* value, int length, const char* systemId,
                    const char* publicId, const char* notation);
    void attributeDecl(const char* element, const char* attribute, const char* type, const char* value);
    void skippedEntity(const std::string& name);
    int externalEntity(XML_Parser pExpat, const char* context, const char* base, const char* systemId,
                       const char* publicId);
    void parseExternal(XML_Parser pExpat, const char* context, const char* base, const char* systemId,
                       const char* publicId);
    std::string nameFromContext(std::string_view context) const;
    const std::string& declaredType(const std::string& element, const std::string& attribute);
    void releaseHeld();

    void deliver(UInt64 octets) {
        if (!_meter.add(octets)) [[unlikely]] {
            checkDelivered();
        }
    }
    void checkDelivered();
    void* buffer(XML_Parser pExpat, std::size_t size);
    [[noreturn]] void failMemory();

    static int XMLCALL unknownEncoding(void*, const char* name, XML_Encoding* pInfo);

    ExpatMemory _memory; // of all parsers below
    DeliveryMeter _meter;
    UInt64 _fed = 0; // octets that Expat has been given, of all entities
    SAXParser& _parser;
    const bool _namespaces; // the feature, which a handler may set for the next parse
    NameCache _names;
    ParsedAttributes _attributes;
    std::string _text = std::string(1000, '\0'); // room for text that has yet to be delivered
    std::size_t _textSize = 0;
    NamespaceSupport _bindings;             // of raw names
    std::vector<std::size_t> _declaring;    // the depths of the open elements that declare something
    std::vector<const std::string*> _ended; // the prefixes of one of them
    bool _isRaw;                            // whether Expat knows nothing of namespaces
    bool _isReadAgain = false;              // whether it is to stop because of that
    bool _isUnusual = false;                // whether callbacks may have to be left out
    bool _isPassingEnds = false;
    UInt64 _reported = 0;          // octets of text, and callbacks but those of text and namespaces
    UInt64 _passOver = 0;          // how many of these have been here before
    std::vector<Entity> _entities; // the document entity and the external entities open inside it
    std::exception_ptr _exception;
    bool _inDTD = false;
    bool _holding;
    std::vector<Held> _held;
    std::size_t _referringEntities = 0;
    // Ordered, because documents can choose names of equal hashes.
    std::set<std::string> _externalEntities;      // names of the general ones
    std::map<std::string, std::string> _types;    // by element and attribute name
    std::map<std::string, std::size_t> _defaults; // by element name, the number of default values
    std::string _typeKey;
};

void SAXParser::Driver::run(Input input, const std::string& encoding) {
    const ParserPtr pExpat = createExpat(encoding);
    if (ContentHandler* pHandler = _parser._pContentHandler) {
        pHandler->setDocumentLocator(this);
        if (!_holding) {
            pHandler->startDocument();
        }
    }
    if (!_isRaw) {
        feed(pExpat.get(), input);
    } else if (!feedRaw(pExpat.get(), input)) {
        feed(createExpat(encoding).get(), input); // out of the buffer of pExpat
    }
    if (ContentHandler* pHandler = _parser._pContentHandler) {
        pHandler->endDocument();
    }
}

ParserPtr SAXParser::Driver::createExpat(const std::string& encoding) {
    const char* pEncoding = encoding.empty() ? nullptr : encoding.c_str();
    constexpr char SEPARATOR[] = {NameCache::SEPARATOR, '\0'};
    ParserPtr pExpat(
        XML_ParserCreate_MM(pEncoding, &ExpatMemory::suite(), _namespaces && !_isRaw ? SEPARATOR : nullptr),
        &XML_ParserFree);
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

void SAXParser::Driver::installCallbacks(XML_Parser pExpat) {
    XML_SetUserData(pExpat, this);
    XML_SetReturnNSTriplet(pExpat, 1);
    XML_SetUnknownEncodingHandler(pExpat, unknownEncoding, nullptr);
    XML_SetElementHandler(
        pExpat,
        [](void* pUser, const char* name, const char** attributes) {
            guarded(pUser, [&](Driver& driver) {
                driver._isRaw ? driver.startRawElement(name, attributes)
                              : driver.startElement(name, attributes);
            });
        },
        [](void* pUser, const char* name) {
            guarded(pUser, [&](Driver& driver) { driver.endElement(name); });
        });
    XML_SetCharacterDataHandler(pExpat, [](void* pUser, const char* text, int length) {
        static_cast<Driver*>(pUser)->guardedText({text, static_cast<std::size_t>(length)});
    });
    XML_SetProcessingInstructionHandler(pExpat, [](void* pUser, const char* target, const char* data) {
        guarded(pUser, [&](Driver& driver) {
            if (driver._isRaw && std::strchr(target, ':')) {
                driver.readAgain();
            } else {
                driver.processingInstruction(target, data);
            }
        });
    });
    XML_SetCommentHandler(pExpat, [](void* pUser, const char* text) {
        guarded(pUser, [&](Driver& driver) { driver.comment(text); });
    });
    XML_SetCdataSectionHandler(
        pExpat,
        [](void* pUser) {
            guarded(pUser, [](Driver& driver) {
                if (LexicalHandler* pHandler = driver._parser._pLexicalHandler) {
                    driver.flushText();
                    pHandler->startCDATA();
                }
            });
        },
        [](void* pUser) {
            guarded(pUser, [](Driver& driver) {
                if (LexicalHandler* pHandler = driver._parser._pLexicalHandler) {
                    driver.flushText();
                    pHandler->endCDATA();
                }
            });
        });
    XML_SetNamespaceDeclHandler(
        pExpat,
        [](void* pUser, const char* prefix, const char* uri) {
            guarded(pUser, NAMESPACE_START, [&](Driver& driver) {
                driver.flushText();
                driver.releaseHeld();
                driver.startPrefixMapping(prefix ? prefix : EMPTY, uri ? uri : EMPTY);
            });
        },
        [](void* pUser, const char* prefix) {
            guarded(pUser, NAMESPACE_END, [&](Driver& driver) {
                if (ContentHandler* pHandler = driver._parser._pContentHandler) {
                    pHandler->endPrefixMapping(prefix ? prefix : EMPTY);
                }
            });
        });
    XML_SetDoctypeDeclHandler(
        pExpat,
        [](void* pUser, const char* name, const char* systemId, const char* publicId, int hasSubset) {
            guarded(pUser, [&](Driver& driver) {
                if (driver._isRaw && (hasSubset || isOddName(name))) {
                    driver.readAgain();
                } else {
                    driver.startDTD(name, systemId, publicId);
                }
            });
        },
        [](void* pUser) { guarded(pUser, [](Driver& driver) { driver.endDTD(); }); });
    XML_SetNotationDeclHandler(
        pExpat, [](void* pUser, const char* name, const char*, const char* systemId, const char* publicId) {
            guarded(pUser, [&](Driver& driver) {
                if (DTDHandler* pHandler = driver._parser._pDTDHandler) {
                    const std::string systemText = systemIdentifier(systemId);
                    const std::string publicText(publicId ? publicId : "");
                    pHandler->notationDecl(name, publicId ? &publicText : nullptr,
                                           systemId ? &systemText : nullptr);
                }
            });
        });
    XML_SetEntityDeclHandler(pExpat, [](void* pUser, const char* name, int isParameter, const char* value,
                                        int length, const char*, const char* systemId, const char* publicId,
                                        const char* notation) {
        guarded(pUser, [&](Driver& driver) {
            driver.entityDecl(name, isParameter != 0, value, length, systemId, publicId, notation);
        });
    });
    XML_SetAttlistDeclHandler(pExpat, [](void* pUser, const char* element, const char* attribute,
                                         const char* type, const char* value, int) {
        guarded(pUser, [&](Driver& driver) { driver.attributeDecl(element, attribute, type, value); });
    });
    XML_SetSkippedEntityHandler(pExpat, [](void* pUser, const char* name, int isParameter) {
        guarded(pUser, [&](Driver& driver) {
            if (driver._isRaw && std::strchr(name, ':')) {
                driver.readAgain();
            } else {
                driver.skippedEntity(isParameter ? std::string("%").append(name) : std::string(name));
            }
        });
    });
    // Without this callback Expat would drop references to external entities silently.
    XML_SetExternalEntityRefHandler(pExpat, [](XML_Parser pParent, const char* context, const char* base,
                                               const char* systemId, const char* publicId) {
        return static_cast<Driver*>(XML_GetUserData(pParent))
            ->externalEntity(pParent, context, base, systemId, publicId);
    });
    if (_parser._externalParameterEntities) {
        XML_SetParamEntityParsing(pExpat, XML_PARAM_ENTITY_PARSING_ALWAYS);
    }
}

// Reads the first piece. True when that was the document and it has been parsed; else the input has been put
// back to its beginning, for an Expat that knows namespaces.
bool SAXParser::Driver::feedRaw(XML_Parser pExpat, Input& input) {
    const std::size_t size = input.nextSize(0);
    void* const pPiece = buffer(pExpat, size);
    const std::size_t count = input.read(static_cast<char*>(pPiece), size);
    _fed = count;
    const bool isWhole = count < size;
    if (isWhole) {
        const XML_Status status = XML_ParseBuffer(pExpat, static_cast<int>(count), true);
        if (_exception) {
            std::rethrow_exception(_exception);
        }
        if (status == XML_STATUS_OK && !_isReadAgain) {
            return true;
        }
        if (!_isReadAgain && XML_GetErrorCode(pExpat) == XML_ERROR_NO_MEMORY) {
            failMemory();
        }
        _passOver = _reported;
        _isPassingEnds = true;
        _isUnusual = true;
    }
    _isRaw = false;
    _isReadAgain = false;
    _names.resolveWith(nullptr);
    input.readAgain(static_cast<const char*>(pPiece), count, isWhole);
    return false;
}

void SAXParser::Driver::feed(XML_Parser pExpat, Input& input) {
    XML_Index fed = 0; // of this entity
    std::size_t unfinished = 0;
    bool isFinal = false;
    while (!isFinal) {
        const std::size_t size = input.nextSize(unfinished);
        void* const pBuffer = buffer(pExpat, size);
        const std::size_t count = input.read(static_cast<char*>(pBuffer), size);
        _fed += count;
        isFinal = count < size;
        if (XML_ParseBuffer(pExpat, static_cast<int>(count), isFinal) != XML_STATUS_OK && !_exception) {
            const XML_Error error = XML_GetErrorCode(pExpat);
            if (error == XML_ERROR_NO_MEMORY) {
                failMemory();
            }
            fail(XML_ErrorString(error));
        }
        if (_exception) { // perhaps of a callback behind the last one that Expat can be stopped in
            std::rethrow_exception(_exception);
        }
        fed += static_cast<XML_Index>(count);
        const XML_Index token = XML_GetCurrentByteIndex(pExpat);
        unfinished = token >= 0 && token < fed ? static_cast<std::size_t>(fed - token) : 0;
    }
}

// Room for the next octets of the document.
void* SAXParser::Driver::buffer(XML_Parser pExpat, std::size_t size) {
    _memory.allowFor(_fed + size);
    void* const pBuffer = XML_GetBuffer(pExpat, static_cast<int>(size));
    if (!pBuffer) {
        failMemory();
    }
    return pBuffer;
}

void SAXParser::Driver::failMemory() {
    if (_memory.isExceeded()) {
        fail("Limit exceeded: memory for names, namespaces and declarations");
    }
    throw std::bad_alloc();
}

void SAXParser::Driver::checkDelivered() {
    const std::string limit = _meter.exceeds(_fed);
    if (!limit.empty()) {
        fail("Limit exceeded: " + limit);
    }
}

// The callback that is being executed does nothing; Expat with namespaces is to decide about it.
void SAXParser::Driver::readAgain() {
    --_reported;
    _isReadAgain = true;
    _isUnusual = true;
    XML_StopParser(_entities.back().pExpat, XML_FALSE);
}

void SAXParser::Driver::fail(const std::string& message) {
    const SAXParseException exception(message, *this);
    if (_parser._pErrorHandler) {
        _parser._pErrorHandler->fatalError(exception);
    }
    throw exception;
}

// Whether a callback is to be executed where that is not certain.
bool SAXParser::Driver::takes(Callback callback) noexcept {
    if (_exception || _isReadAgain) {
        return false; // Expat may deliver a few more events before it stops
    }
    if (_passOver != 0) {
        _passOver -= callback == COMMON ? 1 : 0;
        return false;
    }
    // The ends of the last element's declarations have been reported with its end.
    if (callback == NAMESPACE_END) {
        return !_isPassingEnds;
    }
    _isPassingEnds = false;
    _isUnusual = false;
    return true;
}

// The part of a text that has not been here before, which text becomes.
bool SAXParser::Driver::takes(std::string_view& text) noexcept {
    if (_passOver != 0 && !_exception && !_isReadAgain) {
        const auto known = static_cast<std::size_t>(std::min<UInt64>(_passOver, text.size()));
        _passOver -= known;
        text.remove_prefix(known);
        if (text.empty()) {
            return false;
        }
    }
    return takes(COMMON);
}

template<class Event>
void SAXParser::Driver::guarded(void* pUser, Callback callback, Event&& event) {
    Driver& driver = *static_cast<Driver*>(pUser);
    if (driver._isUnusual && !driver.takes(callback)) [[unlikely]] {
        return;
    }
    ++driver._reported;
    try {
        event(driver);
    } catch (...) {
        driver.stop();
    }
}

// Expat cuts text where its pieces end, too, so that it is counted by its octets.
void SAXParser::Driver::guardedText(std::string_view text) {
    if (_isUnusual && !takes(text)) [[unlikely]] {
        return;
    }
    _reported += text.size();
    try {
        this->text(text);
    } catch (...) {
        stop();
    }
}

// With the exception that is being handled.
void SAXParser::Driver::stop() noexcept {
    _exception = std::current_exception();
    _isUnusual = true;
    XML_StopParser(_entities.back().pExpat, XML_FALSE);
}

void SAXParser::Driver::startElement(const char* name, const char** attributes) {
    flushText();
    releaseHeld();
    const NameCache::QName& element = _names.startElement(name);
    ContentHandler* pHandler = _parser._pContentHandler;
    if (!pHandler) {
        return;
    }
    _attributes.clear();
    if (_namespaces && _types.empty()) [[likely]] {
        for (; *attributes; attributes += 2) {
            addAttribute(_names.attribute(attributes[0]), CDATA_TYPE, attributes[1]);
        }
    } else {
        addAttributes(element, attributes);
    }
    deliver(2 * element.octets());
    pHandler->startElement(element.uri(), element.localName(), element.qname(), _attributes);
}

void SAXParser::Driver::startRawElement(const char* name, const char** attributes) {
    bool declares = false;
    for (const char** p = attributes; *p; p += 2) {
        declares = declares || isDeclaration(*p);
    }
    if (declares && !declare(attributes)) {
        readAgain();
        return;
    }
    const NameCache::QName& element = _names.startElement(name);
    _attributes.clear();
    for (; *attributes; attributes += 2) {
        if (!declares || !isDeclaration(*attributes)) {
            addAttribute(_names.attribute(attributes[0]), CDATA_TYPE, attributes[1]);
        }
    }
    if (_names.hasOdd()) [[unlikely]] {
        _names.undoStart();
        readAgain();
        return;
    }
    flushText();
    releaseHeld();
    ContentHandler* pHandler = _parser._pContentHandler;
    if (!pHandler) {
        return;
    }
    if (declares) {
        _bindings.visitDeclared(
            [&](const std::string& prefix, const std::string& uri) { startPrefixMapping(prefix, uri); });
    }
    deliver(2 * element.octets());
    pHandler->startElement(element.uri(), element.localName(), element.qname(), _attributes);
}

// Binds the prefixes of an element that begins; false when one of its declarations may be an error, or binds
// a second prefix to a name, so that attributes with different prefixes could be the same.
bool SAXParser::Driver::declare(const char** attributes) {
    _bindings.pushContext();
    _declaring.push_back(_names.depth() + 1);
    for (; *attributes; attributes += 2) {
        if (!isDeclaration(attributes[0])) {
            continue;
        }
        const std::string prefix(attributes[0][5] ? attributes[0] + 6 : "");
        const std::string uri(attributes[1]);
        const bool isPrefix = NameCache::isSurelyNCName(prefix) && !uri.empty() && !prefix.starts_with("xml");
        const std::string& bound = _bindings.getAttributePrefix(uri);
        if ((attributes[0][5] && !(isPrefix && (bound.empty() || bound == prefix))) ||
            uri == NamespaceSupport::XML_NAMESPACE || uri == NamespaceSupport::XMLNS_NAMESPACE) {
            return false;
        }
        _bindings.declarePrefix(prefix, uri);
    }
    _names.resolveWith(&_bindings);
    return true;
}

void SAXParser::Driver::endDeclarations() {
    _ended.clear();
    _bindings.visitDeclared(
        [this](const std::string& prefix, const std::string&) { _ended.push_back(&prefix); });
    for (; !_ended.empty(); _ended.pop_back()) {
        if (ContentHandler* pHandler = _parser._pContentHandler) {
            pHandler->endPrefixMapping(*_ended.back());
        }
    }
    _declaring.pop_back();
    _bindings.popContext();
    _names.resolveWith(&_bindings);
}

void SAXParser::Driver::addAttributes(const NameCache::QName& element, const char** attributes) {
    for (; *attributes; attributes += 2) {
        const NameCache::QName& attribute = _names.attribute(*attributes);
        if (!_namespaces && (attribute.qname() == "xmlns" || attribute.qname().starts_with("xmlns:"))) {
            continue;
        }
        const std::string& type =
            _types.empty() ? CDATA_TYPE : declaredType(element.qname(), attribute.qname());
        addAttribute(attribute, type, attributes[1]);
    }
}

void SAXParser::Driver::addAttribute(const NameCache::QName& name, const std::string& type,
                                     const char* value) {
    deliver(name.octets() + _attributes.add(name, type, value));
}

void SAXParser::Driver::startPrefixMapping(const std::string& prefix, const std::string& uri) {
    if (ContentHandler* pHandler = _parser._pContentHandler) {
        deliver(2 * DeliveryLimits::CALLBACK + prefix.size() + uri.size());
        pHandler->startPrefixMapping(prefix, uri);
    }
}

void SAXParser::Driver::endElement(const char* name) {
    flushText();
    const NameCache::QName& element = _names.endElement(name);
    if (ContentHandler* pHandler = _parser._pContentHandler) {
        pHandler->endElement(element.uri(), element.localName(), element.qname());
    }
    if (_isRaw && !_declaring.empty() && _declaring.back() == _names.depth() + 1) {
        endDeclarations();
    }
}

// Expat delivers every line end by itself.
void SAXParser::Driver::text(std::string_view text) {
    if (text.size() > _text.size() - _textSize) [[unlikely]] {
        makeRoom(text);
    }
    char* const pNext = _text.data() + _textSize;
    if (text.size() == 1) {
        *pNext = text[0];
    } else if (!text.empty()) {
        std::memcpy(pNext, text.data(), text.size());
    }
    _textSize += text.size();
}

// Delivers what makes whole runs; for the rest, which text becomes, there is room.
void SAXParser::Driver::makeRoom(std::string_view& text) {
    while (_textSize + text.size() > MAX_RUN) {
        std::size_t room = MAX_RUN - _textSize;
        while (room > 0 && (static_cast<unsigned char>(text[room]) & 0xC0) == 0x80) {
            --room; // not inside a character
        }
        _text.resize(MAX_RUN);
        text.copy(_text.data() + _textSize, room);
        _textSize += room;
        text.remove_prefix(room);
        flushText();
    }
    if (text.size() > _text.size() - _textSize) {
        _text.resize(std::min(MAX_RUN, std::max(2 * _text.size(), _textSize + text.size())));
    }
}

void SAXParser::Driver::flushText() {
    if (_textSize != 0) {
        const int size = static_cast<int>(std::exchange(_textSize, 0));
        if (ContentHandler* pHandler = _parser._pContentHandler) {
            deliver(DeliveryLimits::CALLBACK + static_cast<UInt64>(size));
            pHandler->characters(_text.data(), 0, size);
        }
    }
}

void SAXParser::Driver::comment(std::string_view text) {
    LexicalHandler* pHandler = _parser._pLexicalHandler;
    if (_inDTD || !pHandler) {
        return;
    }
    flushText();
    deliver(DeliveryLimits::CALLBACK + text.size());
    if (_holding) {
        _held.push_back({Held::COMMENT, std::string(text), {}, {}});
    } else {
        pHandler->comment(text.data(), 0, static_cast<int>(text.size()));
    }
}

void SAXParser::Driver::processingInstruction(std::string&& target, std::string&& data) {
    flushText();
    deliver(DeliveryLimits::CALLBACK + target.size() + data.size());
    if (_holding) {
        _held.push_back({Held::PROCESSING_INSTRUCTION, std::move(target), std::move(data), {}});
    } else if (ContentHandler* pHandler = _parser._pContentHandler) {
        pHandler->processingInstruction(target, data);
    }
}

void SAXParser::Driver::startDTD(const char* name, const char* systemId, const char* publicId) {
    _inDTD = true;
    const std::string publicText(publicId ? publicId : "");
    const std::string systemText = systemIdentifier(systemId);
    if (_holding) {
        _held.push_back({Held::START_DTD, name, publicText, systemText});
    } else if (LexicalHandler* pHandler = _parser._pLexicalHandler) {
        pHandler->startDTD(name, publicText, systemText);
    }
}

void SAXParser::Driver::endDTD() {
    _inDTD = false;
    if (_holding) {
        _held.push_back({Held::END_DTD, {}, {}, {}});
        releaseHeld();
    } else if (LexicalHandler* pHandler = _parser._pLexicalHandler) {
        pHandler->endDTD();
    }
}

void SAXParser::Driver::releaseHeld() {
    if (!_holding) {
        return;
    }
    _holding = false;
    if (ContentHandler* pHandler = _parser._pContentHandler) {
        pHandler->startDocument();
    }
    for (const Held& held : _held) {
        ContentHandler* pContentHandler = _parser._pContentHandler;
        LexicalHandler* pLexicalHandler = _parser._pLexicalHandler;
        if (held.kind == Held::PROCESSING_INSTRUCTION) {
            if (pContentHandler) {
                pContentHandler->processingInstruction(held.first, held.second);
            }
        } else if (!pLexicalHandler) {
            continue;
        } else if (held.kind == Held::COMMENT) {
            pLexicalHandler->comment(held.first.data(), 0, static_cast<int>(held.first.size()));
        } else if (held.kind == Held::START_DTD) {
            pLexicalHandler->startDTD(held.first, held.second, held.third);
        } else {
            pLexicalHandler->endDTD();
        }
    }
    _held = {};
}

void SAXParser::Driver::entityDecl(const char* name, bool isParameter, const char* value, int length,
                                   const char* systemId, const char* publicId, const char* notation) {
    if (value) {
        if (refersToEntity({value, static_cast<std::size_t>(length)}) &&
            ++_referringEntities > MAX_REFERRING_ENTITIES) {
            fail("too many entities that refer to other entities");
        }
    } else if (notation) {
        if (DTDHandler* pHandler = _parser._pDTDHandler) {
            const std::string publicText(publicId ? publicId : "");
            pHandler->unparsedEntityDecl(name, publicId ? &publicText : nullptr, systemIdentifier(systemId),
                                         notation);
        }
    } else if (!isParameter) {
        _externalEntities.emplace(name);
    }
}

void SAXParser::Driver::attributeDecl(const char* element, const char* attribute, const char* type,
                                      const char* value) {
    if ((value || std::string_view(type) == "ID") && ++_defaults[element] > MAX_DEFAULT_ATTRIBUTES) {
        fail("too many attributes with default values");
    }
    // SAX knows neither enumerations nor the names that a notation attribute allows.
    std::string_view saxType(type);
    if (saxType.starts_with('(')) {
        saxType = "NMTOKEN";
    } else if (saxType.starts_with("NOTATION")) {
        saxType = "NOTATION";
    }
    if (saxType != CDATA_TYPE) {
        // The first declaration of an attribute is the one that holds.
        _types.emplace(std::string(element).append(1, ' ').append(attribute), saxType);
    }
}

const std::string& SAXParser::Driver::declaredType(const std::string& element, const std::string& attribute) {
    _typeKey.assign(element).append(1, ' ').append(attribute);
    const auto it = _types.find(_typeKey);
    return it == _types.end() ? CDATA_TYPE : it->second;
}

void SAXParser::Driver::skippedEntity(const std::string& name) {
    flushText();
    if (_holding) {
        return; // a parameter entity; nothing that the handlers could do with it
    }
    if (ContentHandler* pHandler = _parser._pContentHandler) {
        pHandler->skippedEntity(name);
    }
}

int SAXParser::Driver::externalEntity(XML_Parser pExpat, const char* context, const char* base,
                                      const char* systemId, const char* publicId) {
    guarded(this, [&](Driver&) {
        if (context && !_parser._externalGeneralEntities) {
            skippedEntity(nameFromContext(context));
        } else {
            parseExternal(pExpat, context, base, systemId, publicId);
        }
    });
    return _exception ? XML_STATUS_ERROR : XML_STATUS_OK;
}

void SAXParser::Driver::parseExternal(XML_Parser pExpat, const char* context, const char* base,
                                      const char* systemId, const char* publicId) {
    if (_entities.size() > MAX_EXTERNAL_DEPTH) {
        fail("external entities are nested too deeply");
    }
    const std::string publicText(publicId ? publicId : "");
    const std::string systemText = absolute(base, systemIdentifier(systemId));
    const ResolvedSource source(_parser._pEntityResolver, publicId ? &publicText : nullptr, systemText);
    if (!source.get()) {
        fail("Cannot resolve system identifier: " + systemText);
    }
    const std::string encoding = encodingOf(*source.get());
    const ParserPtr pChild(
        XML_ExternalEntityParserCreate(pExpat, context, encoding.empty() ? nullptr : encoding.c_str()),
        &XML_ParserFree);
    if (!pChild || XML_SetBase(pChild.get(), systemText.c_str()) != XML_STATUS_OK) {
        failMemory();
    }
    _entities.push_back({pChild.get(), publicText, systemText});
    try {
        Input input(*source.stream());
        feed(pChild.get(), input);
    } catch (...) {
        _entities.pop_back();
        throw;
    }
    _entities.pop_back();
}

std::string SAXParser::Driver::nameFromContext(std::string_view context) const {
    // The context lists bindings ("prefix=name") and the entities that are open, in no particular order.
    // Outside of external entities only one of these is external: the one that is being referred to.
    constexpr char CONTEXT_SEPARATOR = '\f';
    while (!context.empty()) {
        const std::string name(context.substr(0, context.find(CONTEXT_SEPARATOR)));
        if (_externalEntities.contains(name)) {
            return name;
        }
        context.remove_prefix(std::min(context.size(), name.size() + 1));
    }
    return std::string();
}

int XMLCALL SAXParser::Driver::unknownEncoding(void*, const char* name, XML_Encoding* pInfo) {
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

void SAXParser::setFeature(const std::string& name, bool value) {
    if (name == FEATURE_NAMESPACES) {
        _namespaces = value;
    } else if (name == FEATURE_NAMESPACE_PREFIXES) {
        _namespacePrefixes = value;
    } else if (name == FEATURE_EXTERNAL_GENERAL_ENTITIES) {
        _externalGeneralEntities = value;
    } else if (name == FEATURE_EXTERNAL_PARAMETER_ENTITIES) {
        _externalParameterEntities = value;
    } else if (name == FEATURE_DECLARATIONS_FIRST) {
        _declarationsFirst = value;
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
        return _namespaces;
    }
    if (name == FEATURE_NAMESPACE_PREFIXES) {
        return _namespacePrefixes;
    }
    if (name == FEATURE_EXTERNAL_GENERAL_ENTITIES) {
        return _externalGeneralEntities;
    }
    if (name == FEATURE_EXTERNAL_PARAMETER_ENTITIES) {
        return _externalParameterEntities;
    }
    if (name == FEATURE_DECLARATIONS_FIRST) {
        return _declarationsFirst;
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
        _pLexicalHandler = static_cast<LexicalHandler*>(value);
    } else if (name == PROPERTY_DECLARATION_HANDLER) {
        _pDeclarationHandler = value;
    } else {
        throw SAXNotRecognizedException(name);
    }
}

void* SAXParser::getProperty(const std::string& name) const {
    if (name == PROPERTY_LEXICAL_HANDLER) {
        return _pLexicalHandler;
    }
    if (name == PROPERTY_DECLARATION_HANDLER) {
        return _pDeclarationHandler;
    }
    throw SAXNotRecognizedException(name);
}

void SAXParser::parse(InputSource* pSource) {
    tamo_check_ptr(pSource);
    std::istream* pStream =
        pSource->getByteStream() ? pSource->getByteStream() : pSource->getCharacterStream();
    const std::string& systemId = pSource->getSystemId();
    std::unique_ptr<ResolvedSource> pOpened;
    if (!pStream) {
        const std::string& publicId = pSource->getPublicId();
        pOpened = std::make_unique<ResolvedSource>(nullptr, publicId.empty() ? nullptr : &publicId, systemId);
        if (!pOpened->get()) {
            throw SAXParseException("Cannot resolve system identifier: " + systemId, publicId, systemId, -1,
                                    -1);
        }
        pStream = pOpened->stream();
    }
    Driver driver(*this, pSource->getPublicId(), systemId);
    driver.run(Input(*pStream), encodingOf(*pSource));
}

void SAXParser::parse(const std::string& systemId) {
    InputSource source(systemId);
    parse(&source);
}

void SAXParser::parseMemoryNP(const char* xml, std::size_t size) {
    tamo_assert(xml || size == 0);
    Driver driver(*this, EMPTY, EMPTY);
    driver.run(Input(xml, size), EMPTY);
}

} // namespace Tamo::XML
