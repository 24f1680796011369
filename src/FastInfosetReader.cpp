#include "Tamo/FastInfoset/FastInfosetReader.h"
#include "DocumentParser.h"
#include "Tamo/Bugcheck.h"
#include "Tamo/Exception.h"
#include "Tamo/FastInfoset/BitStreamReader.h"
#include "Tamo/FastInfoset/FISDefaultHandler.h"
#include "Tamo/FastInfoset/FISException.h"
#include "Tamo/FastInfoset/TypedAttributes.h"
#include "Tamo/FastInfoset/TypedChunk.h"
#include "Tamo/XML/AttributesImpl.h"
#include <iterator>
#include <stdexcept>
#include <typeinfo>
#include <utility>

namespace Tamo::FastInfoset {

namespace {

[[noreturn]] void throwAt(UInt64 octet, FISException e) {
    e.locate(octet);
    throw e;
}

} // namespace

/// Keeps what the parser reports of one item. The strings that it refers to are the parser's own and stay in
/// place until the parser goes on.
class FastInfosetReader::Cursor : public FISDefaultHandler {
public:
    Event event = NO_DOCUMENT;
    std::string_view uri;
    std::string_view localName;
    std::string_view qname;
    const XML::AttributesImpl noAttributes{};
    const XML::Attributes* pAttributes = &noAttributes;
    std::vector<PrefixMapping> prefixMappings;
    std::string_view target;
    std::string_view publicId;
    std::string_view systemId;

    std::string_view text;
    std::string typedText; // built when it is asked for
    bool cData = false;
    ValueType valueType = PLAIN_TEXT;
    std::span<const std::byte> octets;
    std::vector<Int16> int16s;
    std::vector<Int32> int32s;
    std::vector<Int64> int64s;
    std::vector<bool> bools;
    std::vector<float> floats;
    std::vector<double> doubles;
    std::vector<UUID> uuids;
    std::optional<TypedChunk> taken; // as a whole, in place of values one by one

    std::vector<Notation> notations;
    std::vector<UnparsedEntity> unparsedEntities;
    bool xmlDeclaration = false;
    std::optional<std::string> scheme;
    std::optional<bool> isStandalone;
    std::optional<std::string> xmlVersion;
    std::vector<AdditionalDatum> additional;

    unsigned int algorithm = 0;
    std::string_view algorithmURI;

    /// Forgets the item.
    void clear() {
        event = NO_DOCUMENT;
        uri = localName = qname = target = publicId = systemId = text = {};
        pAttributes = &noAttributes;
        prefixMappings.clear();
        cData = false;
        algorithm = 0;
        algorithmURI = {};
        if (valueType != PLAIN_TEXT) {
            valueType = PLAIN_TEXT;
            typedText.clear();
            taken.reset();
            octets = {};
            int16s.clear();
            int32s.clear();
            int64s.clear();
            bools.clear();
            floats.clear();
            doubles.clear();
            uuids.clear();
        }
    }

    /// Forgets the document.
    void clearDocument() {
        clear();
        notations.clear();
        unparsedEntities.clear();
        xmlDeclaration = false;
        scheme.reset();
        isStandalone.reset();
        xmlVersion.reset();
        additional.clear();
    }

    void startDocument() override { event = START_DOCUMENT; }
    void startElement(const std::string& namespaceURI, const std::string& local, const std::string& qualified,
                      const XML::Attributes& attributes) override {
        setName(START_ELEMENT, namespaceURI, local, qualified);
        pAttributes = &attributes;
    }
    void endElement(const std::string& namespaceURI, const std::string& local,
                    const std::string& qualified) override {
        setName(END_ELEMENT, namespaceURI, local, qualified);
    }
    // Of one chunk there are several calls where an int cannot count its octets; they stand side by side.
    void characters(const char ch[], int start, int length) override {
        const std::size_t size = event == TEXT ? text.size() : 0;
        setText(TEXT, ch, start, length);
        text = std::string_view(text.data() - size, text.size() + size);
    }
    void comment(const char ch[], int start, int length) override { setText(COMMENT, ch, start, length); }
    void startCDATA() override { cData = true; }
    void processingInstruction(const std::string& name, const std::string& data) override {
        event = PROCESSING_INSTRUCTION;
        target = name;
        text = data;
    }
    void startPrefixMapping(const std::string& prefix, const std::string& namespaceURI) override {
        prefixMappings.push_back({prefix, namespaceURI});
    }
    void startDTD(const std::string&, const std::string& publicName, const std::string& systemName) override {
        event = START_DTD;
        publicId = publicName;
        systemId = systemName;
    }
    void endDTD() override { event = END_DTD; }

    void binaryData(const char* data, std::size_t length) override {
        setType(OCTETS);
        octets = std::as_bytes(std::span(data, length));
    }
    void encodedData(Int16 value) override { add(INT16, int16s, value); }
    void encodedData(Int32 value) override { add(INT32, int32s, value); }
    void encodedData(Int64 value) override { add(INT64, int64s, value); }
    void encodedData(bool value) override { add(BOOLEAN, bools, value); }
    void encodedData(float value) override { add(FLOAT, floats, value); }
    void encodedData(double value) override { add(DOUBLE, doubles, value); }
    void encodedData(const UUID& value) override { add(UNIQUE_ID, uuids, value); }

    void notationDecl(const std::string& name, const std::string* pPublicId,
                      const std::string* pSystemId) override {
        notations.emplace_back(name, pPublicId ? *pPublicId : std::string(),
                               pSystemId ? *pSystemId : std::string());
    }
    void unparsedEntityDecl(const std::string& name, const std::string* pPublicId,
                            const std::string& systemName, const std::string& notationName) override {
        unparsedEntities.emplace_back(name, pPublicId ? *pPublicId : std::string(), systemName, notationName);
    }
    void skippedEntity(const std::string& name) override {
        event = ENTITY_REFERENCE;
        target = name;
    }
    bool startTypedChunk(const TypedChunk& chunk) override {
        algorithm = chunk.algorithm();
        algorithmURI = chunk.uri();
        const ValueType type = typeOf(chunk);
        if (type == PLAIN_TEXT) {
            return false;
        }
        setType(type);
        octets = chunk.octets();
        taken.emplace(chunk);
        return true;
    }

    void setWriteXMLDeclaration(bool flag) override { xmlDeclaration = flag; }
    void additionalData(const std::string& id, std::span<const std::byte> data) override {
        additional.push_back({id, {data.begin(), data.end()}});
    }
    void characterEncodingScheme(const std::string& name) override { scheme = name; }
    void standalone(bool flag) override { isStandalone = flag; }
    void version(const std::string& value) override { xmlVersion = value; }

private:
    void setName(Event kind, const std::string& namespaceURI, const std::string& local,
                 const std::string& qualified) {
        event = kind;
        uri = namespaceURI;
        localName = local;
        qname = qualified;
    }

    void setText(Event kind, const char ch[], int start, int length) {
        event = kind;
        text = std::string_view(ch + start, static_cast<std::size_t>(length));
    }

    // PLAIN_TEXT of a value of an application's class, which may deliver what it likes.
    static ValueType typeOf(const TypedChunk& chunk) noexcept {
        return !chunk.doubleValues().empty()  ? DOUBLE
               : !chunk.floatValues().empty() ? FLOAT
               : !chunk.int32Values().empty() ? INT32
               : !chunk.octets().empty()      ? OCTETS
               : !chunk.int16Values().empty() ? INT16
               : !chunk.int64Values().empty() ? INT64
               : !chunk.boolValues().empty()  ? BOOLEAN
               : !chunk.uuidValues().empty()  ? UNIQUE_ID
                                              : PLAIN_TEXT;
    }

    void setType(ValueType type) {
        event = TEXT;
        if (valueType == PLAIN_TEXT) {
            valueType = type;
        }
    }

    template<class T>
    void add(ValueType type, std::vector<T>& values, const T& value) {
        setType(type);
        values.push_back(value);
    }
};

FastInfosetReader::FastInfosetReader(VocabularyLoader* pLoader) : FastInfosetReader(Opening{nullptr}) {
    _pParser->setLoader(pLoader);
}

FastInfosetReader::FastInfosetReader(const DocumentVocabulary& vocabulary, VocabularyLoader* pLoader)
    : FastInfosetReader(vocabulary, Opening{nullptr}) {
    _pParser->setLoader(pLoader);
}

FastInfosetReader::FastInfosetReader(Opening opening)
    : FastInfosetReader(DocumentVocabulary(DocumentVocabulary::VOC_VECTOR), opening) {}

FastInfosetReader::FastInfosetReader(const DocumentVocabulary& vocabulary, Opening opening)
    : _pParser(std::make_unique<DocumentParser>(vocabulary, opening.open)),
      _pCursor(std::make_unique<Cursor>()) {
    Cursor* const pCursor = _pCursor.get();
    _pParser->handlers() = {pCursor, pCursor, pCursor, pCursor, pCursor, pCursor, pCursor};
    _pParser->setStrict(true);
}

FastInfosetReader::~FastInfosetReader() = default;

void FastInfosetReader::open(std::istream& stream) {
    using Waiting = BitStreamReader::Waiting;
    start(std::make_unique<BitStreamReader>(stream, _isLive ? Waiting::FOR_OCTETS : Waiting::FOR_BLOCKS));
}

bool FastInfosetReader::openNext(std::istream& stream) {
    start(nullptr);
    auto pInput = std::make_unique<BitStreamReader>(stream, BitStreamReader::Waiting::FOR_OCTETS);
    if (!pInput->hasOctet()) {
        return false;
    }
    _pInput = std::move(pInput);
    return true;
}

void FastInfosetReader::open(std::span<const std::byte> octets) {
    start(std::make_unique<BitStreamReader>(reinterpret_cast<const char*>(octets.data()), octets.size()));
}

void FastInfosetReader::open(std::string_view octets) {
    start(std::make_unique<BitStreamReader>(octets.data(), octets.size()));
}

void FastInfosetReader::start(std::unique_ptr<BitStreamReader> pInput) {
    _pCursor->clearDocument();
    _failedAt = 0;
    _pInput = std::move(pInput);
    _pParser->abandon();
}

FastInfosetReader::Event FastInfosetReader::next() {
    if (!_pInput) {
        throw InvalidAccessException("No document is open");
    }
    const Event before = _pCursor->event;
    if (before == END_DOCUMENT) {
        return before;
    }
    _pCursor->clear();
    // What throws leaves no document open.
    std::unique_ptr<BitStreamReader> pInput = std::move(_pInput);
    const BitStreamReader::Consumption consumption(*pInput);
    try {
        read(*pInput, before == NO_DOCUMENT);
    } catch (...) {
        _failedAt = pInput->constructOctet();
        rethrowAsOne();
    }
    _pInput = std::move(pInput);
    return _pCursor->event;
}

void FastInfosetReader::read(BitStreamReader& input, bool isBeginning) {
    if (isBeginning) {
        _pParser->begin(input);
    }
    while (_pCursor->event == NO_DOCUMENT) { // some items are not reported
        if (!_pParser->parseItem(input)) {
            _pCursor->event = END_DOCUMENT;
        }
    }
}

// What is being handled: whatever a document can cause becomes a FISException, which says where.
void FastInfosetReader::rethrowAsOne() const {
    try {
        throw;
    } catch (FISException& e) {
        e.locate(_failedAt);
        throw;
    } catch (const AssertionViolationException& e) {
        throwAt(_failedAt, FISException(e.message(), e));
    } catch (const PoolOverflowException& e) {
        throwAt(_failedAt, FISException(e.message(), e));
    } catch (const std::out_of_range& e) {
        throwAt(_failedAt, FISException(e.what()));
    }
}

UInt64 FastInfosetReader::position() const noexcept {
    return _pInput ? _pInput->constructOctet() : _failedAt;
}

FastInfosetReader::Event FastInfosetReader::event() const noexcept {
    return _pCursor->event;
}

std::size_t FastInfosetReader::depth() const noexcept {
    return _pParser->depth();
}

void FastInfosetReader::requireElement() const {
    if (event() != START_ELEMENT) {
        throw InvalidAccessException("The reader is not at the start of an element");
    }
}

void FastInfosetReader::skipElement() {
    requireElement();
    const std::size_t end = depth() - 1;
    while (next() != END_ELEMENT || depth() != end) {
    }
}

std::string FastInfosetReader::elementText() {
    requireElement();
    const std::size_t end = depth() - 1;
    std::string result;
    while (next() != END_ELEMENT || depth() != end) {
        if (event() == TEXT) {
            result.append(text());
        }
    }
    return result;
}

std::string_view FastInfosetReader::uri() const noexcept {
    return _pCursor->uri;
}

std::string_view FastInfosetReader::localName() const noexcept {
    return _pCursor->localName;
}

std::string_view FastInfosetReader::qname() const noexcept {
    return _pCursor->qname;
}

const XML::Attributes& FastInfosetReader::attributes() const noexcept {
    return *_pCursor->pAttributes;
}

std::optional<std::string_view> FastInfosetReader::attribute(std::string_view localName,
                                                             std::string_view uri) const {
    return attributes().find(localName, uri);
}

const TypedAttributes* FastInfosetReader::typedAttributes() const noexcept {
    const XML::Attributes& all = attributes();
    return typeid(all) == typeid(TypedAttributes) ? static_cast<const TypedAttributes*>(&all) : nullptr;
}

// The list to ask about attribute i, which has to be there; null where all are text.
const TypedAttributes* FastInfosetReader::typedAttribute(int i) const {
    tamo_assert(i >= 0 && i < attributes().getLength());
    return typedAttributes();
}

FastInfosetReader::ValueType FastInfosetReader::attributeValueType(int i) const {
    static constexpr ValueType TYPES[] = {PLAIN_TEXT, OCTETS,  OCTETS, INT16,  INT32,
                                          INT64,      BOOLEAN, FLOAT,  DOUBLE, UNIQUE_ID};
    const TypedAttributes* const pTyped = typedAttribute(i);
    const unsigned int type = pTyped && pTyped->isTyped(i) ? pTyped->encoding(i)->type() : 0;
    return type < std::size(TYPES) ? TYPES[type] : PLAIN_TEXT;
}

std::span<const std::byte> FastInfosetReader::attributeOctets(int i) const {
    const TypedAttributes* const pTyped = typedAttribute(i);
    return pTyped ? pTyped->octets(i) : std::span<const std::byte>();
}

std::span<const Int16> FastInfosetReader::attributeInt16Values(int i) const {
    const TypedAttributes* const pTyped = typedAttribute(i);
    return pTyped ? pTyped->int16Values(i) : std::span<const Int16>();
}

std::span<const Int32> FastInfosetReader::attributeInt32Values(int i) const {
    const TypedAttributes* const pTyped = typedAttribute(i);
    return pTyped ? pTyped->int32Values(i) : std::span<const Int32>();
}

std::span<const Int64> FastInfosetReader::attributeInt64Values(int i) const {
    const TypedAttributes* const pTyped = typedAttribute(i);
    return pTyped ? pTyped->int64Values(i) : std::span<const Int64>();
}

std::span<const float> FastInfosetReader::attributeFloatValues(int i) const {
    const TypedAttributes* const pTyped = typedAttribute(i);
    return pTyped ? pTyped->floatValues(i) : std::span<const float>();
}

std::span<const double> FastInfosetReader::attributeDoubleValues(int i) const {
    const TypedAttributes* const pTyped = typedAttribute(i);
    return pTyped ? pTyped->doubleValues(i) : std::span<const double>();
}

std::span<const UUID> FastInfosetReader::attributeUUIDValues(int i) const {
    const TypedAttributes* const pTyped = typedAttribute(i);
    return pTyped ? pTyped->uuidValues(i) : std::span<const UUID>();
}

const std::vector<bool>& FastInfosetReader::attributeBoolValues(int i) const {
    static const std::vector<bool> NONE;
    const TypedAttributes* const pTyped = typedAttribute(i);
    return pTyped ? pTyped->boolValues(i) : NONE;
}

std::span<const FastInfosetReader::PrefixMapping> FastInfosetReader::prefixMappings() const noexcept {
    return _pCursor->prefixMappings;
}

std::string_view FastInfosetReader::text() const {
    if (valueType() == PLAIN_TEXT) {
        return _pCursor->text;
    }
    if (_pCursor->typedText.empty()) {
        _pCursor->typedText = _pParser->strings().typedText().of(*_pParser->strings().typed());
    }
    return _pCursor->typedText;
}

bool FastInfosetReader::isCData() const noexcept {
    return _pCursor->cData;
}

std::string_view FastInfosetReader::target() const noexcept {
    return _pCursor->target;
}

std::string_view FastInfosetReader::publicId() const noexcept {
    return _pCursor->publicId;
}

std::string_view FastInfosetReader::systemId() const noexcept {
    return _pCursor->systemId;
}

FastInfosetReader::ValueType FastInfosetReader::valueType() const noexcept {
    return _pCursor->valueType;
}

std::span<const std::byte> FastInfosetReader::octets() const noexcept {
    return _pCursor->octets;
}

std::span<const Int16> FastInfosetReader::int16Values() const noexcept {
    return _pCursor->taken ? _pCursor->taken->int16Values() : _pCursor->int16s;
}

std::span<const Int32> FastInfosetReader::int32Values() const noexcept {
    return _pCursor->taken ? _pCursor->taken->int32Values() : _pCursor->int32s;
}

std::span<const Int64> FastInfosetReader::int64Values() const noexcept {
    return _pCursor->taken ? _pCursor->taken->int64Values() : _pCursor->int64s;
}

std::span<const float> FastInfosetReader::floatValues() const noexcept {
    return _pCursor->taken ? _pCursor->taken->floatValues() : _pCursor->floats;
}

std::span<const double> FastInfosetReader::doubleValues() const noexcept {
    return _pCursor->taken ? _pCursor->taken->doubleValues() : _pCursor->doubles;
}

std::span<const UUID> FastInfosetReader::uuidValues() const noexcept {
    return _pCursor->taken ? _pCursor->taken->uuidValues() : _pCursor->uuids;
}

const std::vector<bool>& FastInfosetReader::boolValues() const noexcept {
    return _pCursor->taken ? _pCursor->taken->boolValues() : _pCursor->bools;
}

const std::vector<Notation>& FastInfosetReader::notations() const noexcept {
    return _pCursor->notations;
}

const std::vector<UnparsedEntity>& FastInfosetReader::unparsedEntities() const noexcept {
    return _pCursor->unparsedEntities;
}

bool FastInfosetReader::hasXMLDeclaration() const noexcept {
    return _pCursor->xmlDeclaration;
}

const std::optional<std::string>& FastInfosetReader::characterEncodingScheme() const noexcept {
    return _pCursor->scheme;
}

std::optional<bool> FastInfosetReader::standalone() const noexcept {
    return _pCursor->isStandalone;
}

const std::optional<std::string>& FastInfosetReader::version() const noexcept {
    return _pCursor->xmlVersion;
}

const std::vector<FastInfosetReader::AdditionalDatum>& FastInfosetReader::additionalData() const noexcept {
    return _pCursor->additional;
}

unsigned int FastInfosetReader::algorithm() const noexcept {
    return _pCursor->algorithm;
}

std::string_view FastInfosetReader::algorithmURI() const noexcept {
    return _pCursor->algorithmURI;
}

UInt64 FastInfosetReader::documentSize() const noexcept {
    return _pParser->documentSize();
}

void FastInfosetReader::setStrict(bool flag) noexcept {
    _pParser->setStrict(flag);
}

bool FastInfosetReader::isStrict() const noexcept {
    return _pParser->isStrict();
}

void FastInfosetReader::setLive(bool flag) noexcept {
    _isLive = flag;
}

bool FastInfosetReader::isLive() const noexcept {
    return _isLive;
}

const DocumentVocabulary& FastInfosetReader::vocabulary() const noexcept {
    return _pParser->strings().vocabulary();
}

void FastInfosetReader::useVocabulary(std::shared_ptr<const SharedVocabulary> pVocabulary) {
    _pParser->useVocabulary(std::move(pVocabulary));
}

void FastInfosetReader::setExternalVocabularyLoader(VocabularyLoader* pLoader) {
    _pParser->setLoader(pLoader);
}

void FastInfosetReader::setLimits(const ParserLimits& limits) {
    _pParser->strings().setLimits(limits);
}

DecodingAlgorithm& FastInfosetReader::decodingAlgorithms() {
    return _pParser->strings().vocabulary().decodings();
}

} // namespace Tamo::FastInfoset
