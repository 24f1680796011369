#include "Tamo/FastInfoset/FISFilter.h"

namespace Tamo::FastInfoset {

bool FISFilter::drops(const std::string&, const std::string&, const XML::Attributes&) {
    return false;
}

// ---- elements

void FISFilter::startDocument() {
    _dropped = 0; // a document that has failed may have left it
    forgetMappings();
    _dropsEnds = false;
    _content.startDocument();
}

void FISFilter::startElement(const std::string& uri, const std::string& localName, const std::string& qname,
                             const XML::Attributes& attributes) {
    _dropsEnds = false;
    if (_dropped != 0 || drops(uri, localName, attributes)) {
        ++_dropped;
    } else {
        for (const Mapping& mapping : _mappings) {
            _content.startPrefixMapping(mapping.first, mapping.second);
        }
        _content.startElement(uri, localName, qname, attributes);
    }
    if (!_mappings.empty()) {
        forgetMappings();
    }
}

void FISFilter::endElement(const std::string& uri, const std::string& localName, const std::string& qname) {
    _dropsEnds = _dropped != 0;
    if (_dropped != 0) {
        --_dropped;
    } else {
        _content.endElement(uri, localName, qname);
    }
}

void FISFilter::startPrefixMapping(const std::string& prefix, const std::string& uri) {
    pass([&] { _mappings.emplace_back(*_strings.insert(prefix).first, *_strings.insert(uri).first); });
}

// Mappings end behind their element.
void FISFilter::endPrefixMapping(const std::string& prefix) {
    if (!_dropsEnds) {
        pass([&] { _content.endPrefixMapping(prefix); });
    }
}

// ---- content

void FISFilter::characters(const char ch[], int start, int length) {
    pass([&] { _content.characters(ch, start, length); });
}

void FISFilter::ignorableWhitespace(const char ch[], int start, int length) {
    pass([&] { _content.ignorableWhitespace(ch, start, length); });
}

void FISFilter::processingInstruction(const std::string& target, const std::string& data) {
    pass([&] { _content.processingInstruction(target, data); });
}

void FISFilter::skippedEntity(const std::string& name) {
    pass([&] { _content.skippedEntity(name); });
}

void FISFilter::startEntity(const std::string& name) {
    pass([&] { _lexical.startEntity(name); });
}

void FISFilter::endEntity(const std::string& name) {
    pass([&] { _lexical.endEntity(name); });
}

void FISFilter::startCDATA() {
    pass([&] { _lexical.startCDATA(); });
}

void FISFilter::endCDATA() {
    pass([&] { _lexical.endCDATA(); });
}

void FISFilter::comment(const char ch[], int start, int length) {
    pass([&] { _lexical.comment(ch, start, length); });
}

// ---- typed data

void FISFilter::binaryData(const char* data, std::size_t length) {
    pass([&] { _content.binaryData(data, length); });
}

void FISFilter::encodedData(Int16 value) {
    pass([&] { _content.encodedData(value); });
}

void FISFilter::encodedData(Int32 value) {
    pass([&] { _content.encodedData(value); });
}

void FISFilter::encodedData(Int64 value) {
    pass([&] { _content.encodedData(value); });
}

void FISFilter::encodedData(bool value) {
    pass([&] { _content.encodedData(value); });
}

void FISFilter::encodedData(float value) {
    pass([&] { _content.encodedData(value); });
}

void FISFilter::encodedData(double value) {
    pass([&] { _content.encodedData(value); });
}

void FISFilter::encodedData(const UUID& value) {
    pass([&] { _content.encodedData(value); });
}

void FISFilter::endTypedChunk() {
    pass([&] { _content.endTypedChunk(); });
}

bool FISFilter::startTypedChunk(const TypedChunk& chunk) {
    return _dropped != 0 || _content.startTypedChunk(chunk);
}

// ---- the document

void FISFilter::setDocumentLocator(const XML::Locator* pLocator) {
    _content.setDocumentLocator(pLocator);
}

void FISFilter::endDocument() {
    _content.endDocument();
}

void FISFilter::startDTD(const std::string& name, const std::string& publicId, const std::string& systemId) {
    _lexical.startDTD(name, publicId, systemId);
}

void FISFilter::endDTD() {
    _lexical.endDTD();
}

void FISFilter::notationDecl(const std::string& name, const std::string* publicId,
                             const std::string* systemId) {
    _dtd.notationDecl(name, publicId, systemId);
}

void FISFilter::unparsedEntityDecl(const std::string& name, const std::string* publicId,
                                   const std::string& systemId, const std::string& notationName) {
    _dtd.unparsedEntityDecl(name, publicId, systemId, notationName);
}

void FISFilter::setDocumentVocabulary(const DocumentVocabulary& vocabulary) {
    _document.setDocumentVocabulary(vocabulary);
}

void FISFilter::setWriteXMLDeclaration(bool flag) {
    _document.setWriteXMLDeclaration(flag);
}

void FISFilter::setExternalVocabulary(const std::string& uri, const DocumentVocabulary& vocabulary) {
    _document.setExternalVocabulary(uri, vocabulary);
}

void FISFilter::additionalData(const std::string& id, std::span<const std::byte> data) {
    _document.additionalData(id, data);
}

void FISFilter::characterEncodingScheme(const std::string& scheme) {
    _document.characterEncodingScheme(scheme);
}

void FISFilter::standalone(bool isStandalone) {
    _document.standalone(isStandalone);
}

void FISFilter::version(const std::string& version) {
    _document.version(version);
}

DocumentVocabulary& FISFilter::getDocumentVocabulary() {
    return _document.getDocumentVocabulary();
}

const DocumentVocabulary& FISFilter::getDocumentVocabulary() const {
    return _document.getDocumentVocabulary();
}

} // namespace Tamo::FastInfoset
