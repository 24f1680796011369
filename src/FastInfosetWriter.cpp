#include "Tamo/FastInfoset/FastInfosetWriter.h"
#include "ConstructWriter.h"
#include "ElementWriter.h"
#include "HeaderWriter.h"
#include "OpenConstructs.h"
#include "StrictEvents.h"
#include "StringWriter.h"
#include "Tamo/Exception.h"
#include "Tamo/Export.h"
#include "Tamo/FastInfoset/BoolEncoding.h"
#include "Tamo/FastInfoset/DWordEncoding.h"
#include "Tamo/FastInfoset/DoubleEncoding.h"
#include "Tamo/FastInfoset/FISException.h"
#include "Tamo/FastInfoset/FloatEncoding.h"
#include "Tamo/FastInfoset/IntEncoding.h"
#include "Tamo/FastInfoset/LongEncoding.h"
#include "Tamo/FastInfoset/ShortEncoding.h"
#include "Tamo/FastInfoset/UUIDEncoding.h"
#include "Tamo/XML/AttributesImpl.h"
#include <string_view>
#include <typeinfo>
#include <utility>
#include <vector>

namespace Tamo::FastInfoset {

namespace {

using XML::NamespaceSupport;

TAMO_CONSTINIT const std::string EMPTY;

const XML::Attributes& emptyAttributes() {
    static const XML::AttributesImpl NONE;
    return NONE;
}

std::string valueOrEmpty(const std::string* pIdentifier) {
    return pIdentifier ? *pIdentifier : std::string();
}

} // namespace

/// What writes a document. The parts are told in ElementWriter.h and below it.
struct FastInfosetWriter::Engine {
    template<class Target, class Tables>
    Engine(Target& target, bool writeXMLDeclaration, const Tables& tables)
        : elements(target, tables), header(elements.strings(), writeXMLDeclaration) {}

    /// Writes the typed data that waits for what follows it. Returns what takes the events of the strict
    /// mode; null in the default.
    TAMO_ALWAYS_INLINE StrictEvents* attend() {
        if (heed == 0) [[likely]] {
            return nullptr;
        }
        if ((heed & WAITING) != 0) {
            writeEncodedData();
        }
        return pStrict.get();
    }

    TAMO_COLD void writeEncodedData() {
        heed &= ~WAITING;
        if (pStrict) {
            // What is refused does not come again.
            for (const AutoPtr<Encoding>& pValue : std::exchange(encodedData, {})) {
                pStrict->typedData(*pValue);
            }
            return;
        }
        writer().complete(false);
        for (const AutoPtr<Encoding>& pValue : encodedData) {
            strings().writeTypedChunk(*pValue);
        }
        encodedData.clear();
    }

    /// The same in the strict mode alone.
    StrictEvents* attendIfStrict() { return pStrict ? attend() : nullptr; }

    /// Begins anew behind a document that has ended, in the strict mode alone as well.
    StrictEvents* goOn() {
        if (pStrict && hasEnded) {
            clear();
        }
        return pStrict.get();
    }

    /// Forgets the document.
    void clear();

    /// Refuses what is for the time between documents.
    void requireBetween(const char* what) {
        if (!constructs().isNothingOpen()) {
            throw InvalidAccessException(std::string(what) + " within a document");
        }
    }

    StringWriter& strings() noexcept { return elements.strings(); }
    ConstructWriter& writer() noexcept { return strings().writer(); }
    DocumentVocabulary& vocabulary() noexcept { return strings().vocabulary(); }
    OpenConstructs& constructs() noexcept { return strings().constructs(); }
    const OpenConstructs& constructs() const noexcept { return elements.strings().constructs(); }

    // What an event has to heed; nothing as a rule.
    static constexpr unsigned int WAITING = 1; // typed data
    static constexpr unsigned int STRICT = 2;

    ElementWriter elements;
    HeaderWriter header;
    std::vector<AutoPtr<Encoding>> encodedData;
    EncodingAlgorithm encodingAlgorithm;
    XML::AttributesImpl givenAttributes;   // kept for its capacity from element to element
    std::unique_ptr<StrictEvents> pStrict; // null in the default
    unsigned int heed = 0;
    Flush flush = Flush::EACH_CONSTRUCT;
    bool hasEnded = false; // the tables are those of a document that has been written
};

void FastInfosetWriter::Engine::clear() {
    if (header.hasExternalVocabulary()) {
        header.beginWithExternal();
    } else {
        if (vocabulary().restrictedAlphabets().alphabets().size() != DocumentRestrictedAlphabet::BUILT_IN) {
            vocabulary() = DocumentVocabulary(vocabulary().impl());
        }
        vocabulary().reset();
        vocabulary().algorithms() = DocumentAlgorithms();
    }
    constructs().reset();
    elements.reset();
    encodedData.clear();
    header.reset();
    heed &= ~WAITING;
    hasEnded = false;
    if (pStrict) {
        pStrict->reset();
    }
}

FastInfosetWriter::FastInfosetWriter(std::ostream& str)
    : FastInfosetWriter(str, false, DocumentVocabulary::VOC_HASH) {}

FastInfosetWriter::FastInfosetWriter(Sink& sink)
    : FastInfosetWriter(sink, false, DocumentVocabulary::VOC_HASH) {}

FastInfosetWriter::FastInfosetWriter(std::ostream& str, bool writeXMLDeclaration,
                                     DocumentVocabulary::VocabularyImpl impl)
    : _pEngine(std::make_unique<Engine>(str, writeXMLDeclaration, impl)) {}

FastInfosetWriter::FastInfosetWriter(Sink& sink, bool writeXMLDeclaration,
                                     DocumentVocabulary::VocabularyImpl impl)
    : _pEngine(std::make_unique<Engine>(sink, writeXMLDeclaration, impl)) {}

FastInfosetWriter::FastInfosetWriter(std::ostream& str, bool writeXMLDeclaration,
                                     const DocumentVocabulary& vocabulary)
    : _pEngine(std::make_unique<Engine>(str, writeXMLDeclaration, vocabulary)) {}

FastInfosetWriter::FastInfosetWriter(Sink& sink, bool writeXMLDeclaration,
                                     const DocumentVocabulary& vocabulary)
    : _pEngine(std::make_unique<Engine>(sink, writeXMLDeclaration, vocabulary)) {}

FastInfosetWriter::~FastInfosetWriter() = default;

// ---- options

void FastInfosetWriter::setDocumentVocabulary(const DocumentVocabulary& vocabulary) {
    if (_pEngine->pStrict) {
        _pEngine->goOn();
        _pEngine->requireBetween("setDocumentVocabulary() in the strict mode");
        _pEngine->vocabulary() = vocabulary.searchable();
        return;
    }
    if (vocabulary.impl() == DocumentVocabulary::VOC_VECTOR) {
        throw InvalidArgumentException(
            "A DocumentVocabulary with VOC_VECTOR implementation cannot be used by FastInfosetWriter");
    }
    _pEngine->vocabulary() = vocabulary;
    _pEngine->elements.forgetNames();
}

DocumentVocabulary& FastInfosetWriter::getDocumentVocabulary() {
    _pEngine->goOn();
    _pEngine->elements.forgetNames(); // the caller may change the tables
    return _pEngine->vocabulary();
}

const DocumentVocabulary& FastInfosetWriter::getDocumentVocabulary() const {
    return _pEngine->vocabulary();
}

void FastInfosetWriter::setWriteXMLDeclaration(bool flag) {
    _pEngine->header.setWriteXMLDeclaration(flag);
}

void FastInfosetWriter::setExternalVocabulary(const std::string& uri, const DocumentVocabulary& vocabulary) {
    _pEngine->goOn();
    if (_pEngine->pStrict && _pEngine->vocabulary().isPredefined() &&
        _pEngine->constructs().isNothingOpen()) {
        _pEngine->vocabulary() = vocabulary.searchable();
    }
    _pEngine->header.setExternalVocabulary(uri, vocabulary);
}

void FastInfosetWriter::useVocabulary(const DocumentVocabulary& vocabulary) {
    _pEngine->requireBetween("useVocabulary()");
    setDocumentVocabulary(vocabulary);
    _pEngine->header.setExternalVocabulary(vocabulary.getURI(), _pEngine->vocabulary());
}

void FastInfosetWriter::useVocabulary(const std::shared_ptr<const SharedVocabulary>& pVocabulary) {
    tamo_check_ptr(pVocabulary);
    _pEngine->requireBetween("useVocabulary()");
    _pEngine->goOn();
    _pEngine->header.setExternalVocabulary(pVocabulary);
    _pEngine->header.beginWithExternal();
    _pEngine->elements.forgetNames();
}

void FastInfosetWriter::setMaxIndexedStringLength(int length) {
    _pEngine->strings().setMaxIndexedLength(length);
}

EncodingAlgorithm& FastInfosetWriter::encodingAlgorithms() {
    return _pEngine->encodingAlgorithm;
}

// ---- document

void FastInfosetWriter::reset(std::ostream& str) {
    _pEngine->writer().reset(str);
    _pEngine->clear();
}

void FastInfosetWriter::reset(Sink& sink) {
    _pEngine->writer().reset(sink);
    _pEngine->clear();
}

void FastInfosetWriter::setFlush(Flush flush) noexcept {
    _pEngine->flush = flush;
    _pEngine->writer().setFlushing(flush == Flush::EACH_CONSTRUCT);
}

void FastInfosetWriter::flush() {
    _pEngine->attend();
    _pEngine->writer().flush();
}

void FastInfosetWriter::setDocumentLocator(const XML::Locator*) {}

void FastInfosetWriter::skippedEntity(const std::string& name) {
    if (StrictEvents* const pStrict = _pEngine->attendIfStrict()) {
        pStrict->skippedEntity(name);
    }
}

void FastInfosetWriter::startEntity(const std::string&) {}

void FastInfosetWriter::endEntity(const std::string&) {}

void FastInfosetWriter::startFragment() {
    throw FISException("startFragment() not allowed");
}

void FastInfosetWriter::endFragment() {
    throw FISException("endFragment() not allowed");
}

void FastInfosetWriter::startDocument() {
    _pEngine->goOn();
    _pEngine->elements.forgetDocument();
    if (_pEngine->pStrict) {
        _pEngine->pStrict->startDocument();
        return;
    }
    _pEngine->header.write();
    _pEngine->elements.startDocument();
    _pEngine->constructs().startDocument();
}

void FastInfosetWriter::endDocument() {
    if (StrictEvents* const pStrict = _pEngine->attend()) {
        pStrict->requireDocumentEnd();
    }
    _pEngine->writer().writeBits(4, true);
    _pEngine->writer().complete();
    if (_pEngine->flush == Flush::DOCUMENT_END || _pEngine->writer().hasSink()) {
        _pEngine->writer().flush();
    }
    _pEngine->constructs().pop();
    _pEngine->hasEnded = true;
}

// ---- elements

void FastInfosetWriter::startElement(const std::string& uri, const std::string& localName,
                                     const std::string& qname, const XML::Attributes& attributes) {
    if (StrictEvents* const pStrict = _pEngine->attend()) [[unlikely]] {
        pStrict->startElement(uri, localName, qname, attributes);
        return;
    }
    _pEngine->elements.start(uri, localName, qname, attributes);
}

void FastInfosetWriter::endElement(const std::string& uri, const std::string& localName,
                                   const std::string& qname) {
    if (StrictEvents* const pStrict = _pEngine->attend()) [[unlikely]] {
        pStrict->endElement(uri, localName, qname);
        return;
    }
    _pEngine->elements.end();
}

void FastInfosetWriter::endElement() {
    if (StrictEvents* const pStrict = _pEngine->attend()) {
        pStrict->endElement();
        return;
    }
    _pEngine->elements.end();
}

void FastInfosetWriter::startElement(const std::string& uri, const std::string& localName,
                                     const std::string& qname) {
    startElement(uri, localName, qname, emptyAttributes());
}

void FastInfosetWriter::emptyElement(const std::string& uri, const std::string& localName,
                                     const std::string& qname) {
    emptyElement(uri, localName, qname, emptyAttributes());
}

void FastInfosetWriter::emptyElement(const std::string& uri, const std::string& localName,
                                     const std::string& qname, const XML::Attributes& attributes) {
    startElement(uri, localName, qname, attributes);
    endElement(uri, localName, qname);
}

void FastInfosetWriter::dataElement(const std::string& uri, const std::string& localName,
                                    const std::string& qname, const std::string& data,
                                    const std::string& attr1, const std::string& value1,
                                    const std::string& attr2, const std::string& value2,
                                    const std::string& attr3, const std::string& value3) {
    static const std::string TYPE("CDATA");
    XML::AttributesImpl attributes;
    const std::string* const pairs[][2] = {{&attr1, &value1}, {&attr2, &value2}, {&attr3, &value3}};
    for (const auto& pair : pairs) {
        if (!pair[0]->empty()) {
            attributes.addAttribute(EMPTY, EMPTY, *pair[0], TYPE, *pair[1]);
        }
    }
    if (data.empty()) {
        emptyElement(uri, localName, qname, attributes);
    } else {
        startElement(uri, localName, qname, attributes);
        characters(data);
        endElement(uri, localName, qname);
    }
}

void FastInfosetWriter::startPrefixMapping(const std::string& prefix, const std::string& uri) {
    if (prefix != NamespaceSupport::XML_NAMESPACE_PREFIX) {
        if (_pEngine->pStrict) {
            _pEngine->pStrict->startPrefixMapping(prefix, uri);
            return;
        }
        _pEngine->constructs().settle();
        _pEngine->constructs().namespaces().declarePrefix(prefix, uri);
    }
}

void FastInfosetWriter::endPrefixMapping(const std::string& prefix) {
    if (prefix != NamespaceSupport::XML_NAMESPACE_PREFIX) {
        if (_pEngine->pStrict) {
            _pEngine->constructs().undeclareOwn(prefix);
            return;
        }
        _pEngine->constructs().settle();
        _pEngine->constructs().namespaces().undeclarePrefix(prefix);
    }
}

// ---- content

void FastInfosetWriter::characters(const char ch[], int start, int length) {
    tamo_assert(start >= 0 && length >= 0);
    if (StrictEvents* const pStrict = _pEngine->attend()) [[unlikely]] {
        pStrict->characters({ch + start, static_cast<std::size_t>(length)});
        return;
    }
    _pEngine->strings().writeCharacters(ch, start, length);
}

void FastInfosetWriter::ignorableWhitespace(const char ch[], int start, int length) {
    characters(ch, start, length);
}

void FastInfosetWriter::characters(const std::string& text) {
    characters(std::string_view(text));
}

void FastInfosetWriter::characters(std::string_view text) {
    if (StrictEvents* const pStrict = _pEngine->attend()) [[unlikely]] {
        pStrict->characters(text);
        return;
    }
    _pEngine->strings().writeText(text);
}

void FastInfosetWriter::characters(std::string_view text, unsigned int alphabet) {
    strictEvents("characters() with an alphabet").characters(text, alphabet);
}

void FastInfosetWriter::comment(const char ch[], int start, int length) {
    tamo_assert(start >= 0 && length >= 0);
    comment(std::string_view(ch + start, static_cast<std::size_t>(length)));
}

void FastInfosetWriter::comment(std::string_view text) {
    StringWriter::requireValue(text.size());
    if (StrictEvents* const pStrict = _pEngine->attend()) {
        pStrict->comment(text);
    } else {
        _pEngine->strings().writeComment(text);
    }
}

void FastInfosetWriter::processingInstruction(const std::string& target, const std::string& data) {
    StringWriter& strings = _pEngine->strings();
    strings.requireIdentifying(target, DocumentVocabulary::OTHER_NCNAME);
    StringWriter::requireValue(data.size());
    if (StrictEvents* const pStrict = _pEngine->attend()) {
        pStrict->processingInstruction(target, data);
    } else {
        strings.writeInstruction(target, data);
    }
}

void FastInfosetWriter::startCDATA() {
    if (StrictEvents* const pStrict = _pEngine->attendIfStrict()) {
        pStrict->startCData();
        return;
    }
    if (_pEngine->constructs().isInCData()) {
        throw FISException("Cannot nest CDATA sections");
    }
    _pEngine->constructs().push(OpenConstructs::CDATA);
}

void FastInfosetWriter::endCDATA() {
    if (StrictEvents* const pStrict = _pEngine->attend()) {
        pStrict->endCData();
        return;
    }
    _pEngine->constructs().pop();
}

// ---- the strict mode

void FastInfosetWriter::setStrict(bool flag) {
    _pEngine->requireBetween("setStrict()");
    if (flag != isStrict()) {
        _pEngine->pStrict = flag ? std::make_unique<StrictEvents>(_pEngine->elements, _pEngine->header,
                                                                  std::as_const(_pEngine->encodingAlgorithm))
                                 : nullptr;
        _pEngine->elements.setStrict(flag ? &_pEngine->encodingAlgorithm : nullptr);
        _pEngine->heed ^= Engine::STRICT;
    }
}

bool FastInfosetWriter::isStrict() const noexcept {
    return _pEngine->pStrict != nullptr;
}

// What takes the events of the strict mode, which it has to be for that.
XML::AttributesImpl& FastInfosetWriter::givenAttributes() noexcept {
    return _pEngine->givenAttributes;
}

const std::string& FastInfosetWriter::namespaceBoundTo(std::string_view prefix) const {
    return std::as_const(*_pEngine).constructs().namespaces().getURI(prefix);
}

StrictEvents& FastInfosetWriter::strictEvents(const char* what) {
    if (!isStrict()) {
        throw InvalidAccessException(std::string(what) + " needs the strict mode");
    }
    return *_pEngine->attend();
}

bool FastInfosetWriter::startTypedChunk(const TypedChunk& chunk) {
    StrictEvents* const pStrict = _pEngine->attendIfStrict();
    return pStrict && pStrict->typedChunk(chunk);
}

void FastInfosetWriter::endTypedChunk() {
    _pEngine->attendIfStrict(); // the next chunk is another one
}

void FastInfosetWriter::insertEncoding(const std::string& uri, const AutoPtr<Encoding>& encoding) {
    strictEvents("insertEncoding() with a URI").typedData(uri, *encoding);
}

void FastInfosetWriter::encodedText(const std::string& uri, const std::string& text) {
    strictEvents("encodedText()").typedText(uri, text);
}

void FastInfosetWriter::additionalData(const std::string& id, std::span<const std::byte> data) {
    if (StrictEvents* const pStrict = _pEngine->goOn()) {
        pStrict->additionalData(id, {reinterpret_cast<const char*>(data.data()), data.size()});
    }
}

void FastInfosetWriter::characterEncodingScheme(const std::string& scheme) {
    if (StrictEvents* const pStrict = _pEngine->goOn()) {
        pStrict->characterEncodingScheme(scheme);
    }
}

void FastInfosetWriter::standalone(bool isStandalone) {
    if (StrictEvents* const pStrict = _pEngine->goOn()) {
        pStrict->standalone(isStandalone);
    }
}

void FastInfosetWriter::version(const std::string& version) {
    if (StrictEvents* const pStrict = _pEngine->goOn()) {
        pStrict->version(version);
    }
}

// ---- document type declaration

void FastInfosetWriter::startDTD(const std::string&, const std::string& publicId,
                                 const std::string& systemId) {
    if (StrictEvents* const pStrict = _pEngine->goOn()) {
        pStrict->startDocumentType(publicId, systemId);
        return;
    }
    _pEngine->strings().requireIdentifying(systemId, DocumentVocabulary::OTHER_URI);
    _pEngine->strings().requireIdentifying(publicId, DocumentVocabulary::OTHER_URI);
    _pEngine->constructs().push(OpenConstructs::DTD);
    _pEngine->header.startDocumentType(publicId, systemId);
}

void FastInfosetWriter::endDTD() {
    if (_pEngine->pStrict) {
        _pEngine->pStrict->endDocumentType();
        return;
    }
    _pEngine->header.endDocumentType();
    _pEngine->constructs().pop();
}

void FastInfosetWriter::notationDecl(const std::string& name, const std::string* publicId,
                                     const std::string* systemId) {
    Notation notation(name, valueOrEmpty(publicId), valueOrEmpty(systemId));
    if (StrictEvents* const pStrict = _pEngine->goOn()) {
        pStrict->requireNotation(notation);
    } else {
        _pEngine->constructs().requireUninitialized();
    }
    _pEngine->header.add(std::move(notation));
}

void FastInfosetWriter::unparsedEntityDecl(const std::string& name, const std::string* publicId,
                                           const std::string& systemId, const std::string& notationName) {
    UnparsedEntity entity(name, valueOrEmpty(publicId), systemId, notationName);
    if (StrictEvents* const pStrict = _pEngine->goOn()) {
        pStrict->requireUnparsedEntity(entity);
    } else {
        _pEngine->constructs().requireUninitialized();
    }
    _pEngine->header.add(std::move(entity));
}

// ---- typed data

template<class E, class T>
void FastInfosetWriter::insertValue(const T& value) {
    // A run of single values grows the last array in place; only a class of the application's own needs
    // merge().
    if (!_pEngine->encodedData.empty()) {
        Encoding& last = *_pEngine->encodedData.back();
        if (typeid(last) == typeid(E)) {
            static_cast<E&>(last).append(value);
            return;
        }
    }
    insertEncoding(AutoPtr<Encoding>(new E(value)));
}

void FastInfosetWriter::binaryData(const char* data, std::size_t size) {
    if (size != 0 || !isStrict()) { // else there is nothing to write
        insertEncoding(AutoPtr<Encoding>(new DWordEncoding(data, size)));
    }
}

void FastInfosetWriter::binaryData(std::span<const std::byte> octets) {
    if (!octets.empty()) {
        binaryData(reinterpret_cast<const char*>(octets.data()), octets.size());
    }
}

void FastInfosetWriter::encodedData(Int16 value) {
    insertValue<ShortEncoding>(value);
}

void FastInfosetWriter::encodedData(Int32 value) {
    insertValue<IntEncoding>(value);
}

void FastInfosetWriter::encodedData(Int64 value) {
    insertValue<LongEncoding>(value);
}

void FastInfosetWriter::encodedData(bool value) {
    insertValue<BoolEncoding>(value);
}

void FastInfosetWriter::encodedData(float value) {
    insertValue<FloatEncoding>(value);
}

void FastInfosetWriter::encodedData(double value) {
    insertValue<DoubleEncoding>(value);
}

void FastInfosetWriter::encodedData(const UUID& value) {
    insertValue<UUIDEncoding>(value);
}

void FastInfosetWriter::insertEncoding(const AutoPtr<Encoding>& encoding) {
    if (_pEngine->pStrict) {
        _pEngine->pStrict->requireTypedData(*encoding);
    }
    std::vector<AutoPtr<Encoding>>& waiting = _pEngine->encodedData;
    if (waiting.empty() || !waiting.back()->merge(*encoding)) {
        waiting.push_back(encoding);
        _pEngine->heed |= Engine::WAITING;
    }
}

} // namespace Tamo::FastInfoset
