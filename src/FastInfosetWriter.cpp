#include "Tamo/FastInfoset/FastInfosetWriter.h"
#include "ConstructWriter.h"
#include "ElementWriter.h"
#include "HeaderWriter.h"
#include "OpenConstructs.h"
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
    template<class Tables>
    Engine(std::ostream& str, bool writeXMLDeclaration, const Tables& tables)
        : elements(str, tables), header(elements.strings(), writeXMLDeclaration) {}

    // Typed data waits for what follows it.
    TAMO_ALWAYS_INLINE void handleEncodedData() {
        if (!encodedData.empty()) [[unlikely]] {
            writeEncodedData();
        }
    }

    TAMO_COLD void writeEncodedData() {
        writer().complete(false);
        for (const AutoPtr<Encoding>& pValue : encodedData) {
            strings().writeTypedChunk(*pValue);
        }
        encodedData.clear();
    }

    StringWriter& strings() noexcept { return elements.strings(); }
    ConstructWriter& writer() noexcept { return strings().writer(); }
    DocumentVocabulary& vocabulary() noexcept { return strings().vocabulary(); }
    OpenConstructs& constructs() noexcept { return strings().constructs(); }

    ElementWriter elements;
    HeaderWriter header;
    std::vector<AutoPtr<Encoding>> encodedData;
    EncodingAlgorithm encodingAlgorithm;
    bool strict = false;
};

FastInfosetWriter::FastInfosetWriter(std::ostream& str)
    : FastInfosetWriter(str, false, DocumentVocabulary::VOC_HASH) {}

FastInfosetWriter::FastInfosetWriter(std::ostream& str, bool writeXMLDeclaration,
                                     DocumentVocabulary::VocabularyImpl impl)
    : _pEngine(std::make_unique<Engine>(str, writeXMLDeclaration, impl)) {}

FastInfosetWriter::FastInfosetWriter(std::ostream& str, bool writeXMLDeclaration,
                                     const DocumentVocabulary& vocabulary)
    : _pEngine(std::make_unique<Engine>(str, writeXMLDeclaration, vocabulary)) {}

FastInfosetWriter::~FastInfosetWriter() = default;

// ---- options

void FastInfosetWriter::setDocumentVocabulary(const DocumentVocabulary& vocabulary) {
    if (vocabulary.impl() == DocumentVocabulary::VOC_VECTOR) {
        throw InvalidArgumentException(
            "A DocumentVocabulary with VOC_VECTOR implementation cannot be used by FastInfosetWriter");
    }
    _pEngine->vocabulary() = vocabulary;
    _pEngine->elements.forgetNames();
}

DocumentVocabulary& FastInfosetWriter::getDocumentVocabulary() {
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
    _pEngine->header.setExternalVocabulary(uri, vocabulary);
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
    DocumentVocabulary& vocabulary = _pEngine->vocabulary();
    if (const DocumentVocabulary* const pExternal = _pEngine->header.externalVocabulary()) {
        vocabulary = *pExternal;
    } else {
        if (vocabulary.restrictedAlphabets().alphabets().size() != DocumentRestrictedAlphabet::BUILT_IN) {
            vocabulary = DocumentVocabulary(vocabulary.impl());
        }
        vocabulary.reset();
    }
    _pEngine->constructs().reset();
    _pEngine->elements.reset();
    _pEngine->encodedData.clear();
    _pEngine->header.reset();
}

void FastInfosetWriter::setDocumentLocator(const XML::Locator*) {}

void FastInfosetWriter::skippedEntity(const std::string&) {}

void FastInfosetWriter::startEntity(const std::string&) {}

void FastInfosetWriter::endEntity(const std::string&) {}

void FastInfosetWriter::startFragment() {
    throw FISException("startFragment() not allowed");
}

void FastInfosetWriter::endFragment() {
    throw FISException("endFragment() not allowed");
}

void FastInfosetWriter::startDocument() {
    _pEngine->elements.forgetNames();
    _pEngine->header.write();
    _pEngine->elements.startDocument();
    _pEngine->constructs().startDocument();
}

void FastInfosetWriter::endDocument() {
    _pEngine->handleEncodedData();
    _pEngine->writer().writeBits(4, true);
    _pEngine->writer().complete();
    _pEngine->constructs().pop();
}

// ---- elements

void FastInfosetWriter::startElement(const std::string& uri, const std::string& localName,
                                     const std::string& qname, const XML::Attributes& attributes) {
    _pEngine->handleEncodedData();
    _pEngine->elements.start(uri, localName, qname, attributes);
}

void FastInfosetWriter::endElement(const std::string&, const std::string&, const std::string&) {
    _pEngine->handleEncodedData();
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
        _pEngine->constructs().settle();
        _pEngine->constructs().namespaces().declarePrefix(prefix, uri);
    }
}

void FastInfosetWriter::endPrefixMapping(const std::string& prefix) {
    if (prefix != NamespaceSupport::XML_NAMESPACE_PREFIX) {
        _pEngine->constructs().settle();
        _pEngine->constructs().namespaces().undeclarePrefix(prefix);
    }
}

// ---- content

void FastInfosetWriter::characters(const char ch[], int start, int length) {
    tamo_assert(start >= 0 && length >= 0);
    _pEngine->handleEncodedData();
    _pEngine->strings().writeCharacters(ch, start, length);
}

void FastInfosetWriter::ignorableWhitespace(const char ch[], int start, int length) {
    characters(ch, start, length);
}

void FastInfosetWriter::characters(const std::string& text) {
    characters(std::string_view(text));
}

void FastInfosetWriter::characters(std::string_view text) {
    _pEngine->handleEncodedData();
    _pEngine->strings().writeText(text);
}

void FastInfosetWriter::comment(const char ch[], int start, int length) {
    tamo_assert(start >= 0 && length >= 0);
    comment(std::string_view(ch + start, static_cast<std::size_t>(length)));
}

void FastInfosetWriter::comment(std::string_view text) {
    StringWriter::requireValue(text.size());
    _pEngine->handleEncodedData();
    _pEngine->writer().complete(false);
    OctetComposer octets(_pEngine->writer());
    octets.octet(Forms::COMMENT);
    _pEngine->strings().write(octets, text, DocumentVocabulary::OTHER_STRING);
    octets.flush();
}

void FastInfosetWriter::processingInstruction(const std::string& target, const std::string& data) {
    StringWriter& strings = _pEngine->strings();
    strings.requireIdentifying(target, DocumentVocabulary::OTHER_NCNAME);
    StringWriter::requireValue(data.size());
    _pEngine->handleEncodedData();
    _pEngine->writer().complete(false);
    OctetComposer octets(_pEngine->writer());
    octets.octet(Forms::PROCESSING_INSTRUCTION);
    strings.writeIdentifying(octets, target, DocumentVocabulary::OTHER_NCNAME);
    strings.write(octets, data, DocumentVocabulary::OTHER_STRING);
    octets.flush();
}

void FastInfosetWriter::startCDATA() {
    if (_pEngine->constructs().isInCData()) {
        throw FISException("Cannot nest CDATA sections");
    }
    _pEngine->constructs().push(OpenConstructs::CDATA);
}

void FastInfosetWriter::endCDATA() {
    _pEngine->handleEncodedData();
    _pEngine->constructs().pop();
}

// ---- the strict mode

void FastInfosetWriter::setStrict(bool flag) {
    _pEngine->strict = flag;
}

bool FastInfosetWriter::isStrict() const noexcept {
    return _pEngine->strict;
}

bool FastInfosetWriter::startTypedChunk(const TypedChunk&) {
    return false;
}

void FastInfosetWriter::endTypedChunk() {}

void FastInfosetWriter::additionalData(const std::string&, std::span<const std::byte>) {}

void FastInfosetWriter::characterEncodingScheme(const std::string&) {}

void FastInfosetWriter::standalone(bool) {}

void FastInfosetWriter::version(const std::string&) {}

// ---- document type declaration

void FastInfosetWriter::startDTD(const std::string&, const std::string& publicId,
                                 const std::string& systemId) {
    _pEngine->strings().requireIdentifying(systemId, DocumentVocabulary::OTHER_URI);
    _pEngine->strings().requireIdentifying(publicId, DocumentVocabulary::OTHER_URI);
    _pEngine->constructs().push(OpenConstructs::DTD);
    _pEngine->header.startDocumentType(publicId, systemId);
}

void FastInfosetWriter::endDTD() {
    _pEngine->header.endDocumentType();
    _pEngine->constructs().pop();
}

void FastInfosetWriter::notationDecl(const std::string& name, const std::string* publicId,
                                     const std::string* systemId) {
    _pEngine->constructs().requireUninitialized();
    _pEngine->header.add(Notation(name, valueOrEmpty(publicId), valueOrEmpty(systemId)));
}

void FastInfosetWriter::unparsedEntityDecl(const std::string& name, const std::string* publicId,
                                           const std::string& systemId, const std::string& notationName) {
    _pEngine->constructs().requireUninitialized();
    _pEngine->header.add(UnparsedEntity(name, valueOrEmpty(publicId), systemId, notationName));
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
    insertEncoding(AutoPtr<Encoding>(new DWordEncoding(data, size)));
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
    std::vector<AutoPtr<Encoding>>& waiting = _pEngine->encodedData;
    if (waiting.empty() || !waiting.back()->merge(*encoding)) {
        waiting.push_back(encoding);
    }
}

} // namespace Tamo::FastInfoset
