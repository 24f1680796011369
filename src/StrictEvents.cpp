#include "StrictEvents.h"
#include "AlgorithmIndex.h"
#include "LegalStrings.h"
#include "Tamo/FastInfoset/FISException.h"
#include <algorithm>

namespace Tamo::FastInfoset {

namespace {

void requireIdentifier(const char* what, const std::string& identifier) {
    LegalStrings::requireText(what, identifier);
    LegalStrings::requireSize(what, identifier.size());
}

void requireSomeIdentifier(const char* what, const std::string& identifier) {
    LegalStrings::requireSomeText(what, identifier);
    LegalStrings::requireSize(what, identifier.size());
}

void requireName(const char* what, const std::string& name) {
    LegalStrings::requireName(what, name);
    LegalStrings::requireSize(what, name.size());
}

} // namespace

// ---- the document

void StrictEvents::startDocument() {
    if (_check.isOpen()) {
        _check.startDocument(); // refuses it
    }
    _header.prepareStrict(_algorithms.uris());
    _check.startDocument();
    constructs().startDocument();
}

// The first element, or one that has no place.
TAMO_COLD void StrictEvents::startRoot(const std::string& localName, const std::string& qname) {
    try {
        _check.requireElement("an element", localName.empty() ? qname : localName);
    } catch (...) {
        constructs().dropOwnBindings();
        throw;
    }
    if (!_check.holdsProlog()) {
        return; // the root element before was refused
    }
    _header.writeStrict();
    _check.prologWritten();
    _elements.startDocument();
    for (const HeldProlog::Event& event : _prolog.events()) {
        switch (event.kind) {
        case HeldProlog::Kind::COMMENT:
            strings().writeComment(event.first);
            break;
        case HeldProlog::Kind::INSTRUCTION:
            strings().writeInstruction(event.first, event.second);
            break;
        case HeldProlog::Kind::START_DOCUMENT_TYPE:
            _header.startDocumentType(event.first, event.second);
            break;
        case HeldProlog::Kind::END_DOCUMENT_TYPE:
            _header.endDocumentType();
            break;
        }
    }
    _prolog.clear();
}

void StrictEvents::requireDocumentEnd() {
    _check.requireDocumentEnd();
    constructs().dropOwnBindings();
    reset();
}

void StrictEvents::startPrefixMapping(const std::string& prefix, const std::string& uri) {
    _check.requireElement("a declaration of the prefix", prefix);
    _elements.declare(prefix, uri);
}

// ---- content

// Nothing, or text that has a place of its own or none.
void StrictEvents::otherCharacters(std::string_view text) {
    if (!text.empty() && _check.useOfText(text) == EventCheck::Use::WRITE) {
        strings().writeCDataText(text);
    }
}

void StrictEvents::characters(std::string_view text, unsigned int alphabet) {
    _check.requireContent("text in a restricted alphabet", text);
    const auto& alphabets = strings().vocabulary().restrictedAlphabets().alphabets();
    if (alphabet == 0 || alphabet > alphabets.size() || alphabets[alphabet - 1].characters().empty()) {
        throw FISEncodingException(
            "Cannot write text in a restricted alphabet: there is none with the index " +
            std::to_string(alphabet));
    }
    LegalStrings::requireText("text", text);
    if (!_codes || _codesIndex != alphabet) {
        _codes.emplace(alphabets[alphabet - 1]);
        _codesIndex = alphabet;
    }
    strings().writeFormedChunk(DocumentVocabulary::RESTRICTEDALPHABET, alphabet, _codes->encode(text));
}

void StrictEvents::skippedEntity(const std::string& name) {
    if (name.starts_with('%') || name == "[dtd]") {
        return; // SAX2 names so what is no general entity
    }
    _check.requireContent("a reference to the entity", name);
    requireName("a reference to an entity", name);
    OctetComposer octets(strings().writer(), strings().writer().startConstruct());
    octets.octet(Forms::ENTITY_REFERENCE);
    strings().writeIdentifying(octets, name, DocumentVocabulary::OTHER_NCNAME);
    octets.flush();
}

void StrictEvents::comment(std::string_view text) {
    const EventCheck::Use use = _check.useOfComment(text);
    LegalStrings::requireText("a comment", text);
    if (use == EventCheck::Use::HOLD) {
        _prolog.add(HeldProlog::Kind::COMMENT, text);
    } else if (use == EventCheck::Use::WRITE) {
        strings().writeComment(text);
    }
}

void StrictEvents::processingInstruction(const std::string& target, const std::string& data) {
    const EventCheck::Use use = _check.useOfInstruction(target);
    requireName("the target of a processing instruction", target);
    LegalStrings::requireText("the data of a processing instruction", data);
    if (use == EventCheck::Use::HOLD) {
        _prolog.add(HeldProlog::Kind::INSTRUCTION, target, data);
    } else {
        strings().writeInstruction(target, data);
    }
}

void StrictEvents::startCData() {
    _check.startCData();
}

void StrictEvents::endCData() {
    _check.endCData();
}

// ---- declarations

void StrictEvents::startDocumentType(const std::string& publicId, const std::string& systemId) {
    requireIdentifier("the public identifier of a document type", publicId);
    requireIdentifier("the system identifier of a document type", systemId);
    _check.startDocumentType(systemId);
    _prolog.add(HeldProlog::Kind::START_DOCUMENT_TYPE, publicId, systemId);
}

void StrictEvents::endDocumentType() {
    _check.endDocumentType();
    _prolog.add(HeldProlog::Kind::END_DOCUMENT_TYPE);
}

void StrictEvents::requireNotation(const Notation& notation) const {
    _check.requireProlog("a notation", notation.getName());
    requireName("the name of a notation", notation.getName());
    requireIdentifier("the public identifier of a notation", notation.getPublicId());
    requireIdentifier("the system identifier of a notation", notation.getSystemId());
}

void StrictEvents::requireUnparsedEntity(const UnparsedEntity& entity) const {
    _check.requireProlog("an unparsed entity", entity.getName());
    requireName("the name of an unparsed entity", entity.getName());
    requireIdentifier("the public identifier of an unparsed entity", entity.getPublicId());
    requireSomeIdentifier("the system identifier of an unparsed entity", entity.getSystemId());
    requireName("the notation of an unparsed entity", entity.getNotationName());
}

// ---- properties

void StrictEvents::additionalData(const std::string& id, std::string_view octets) {
    _check.requireProlog("additional data", id);
    requireSomeIdentifier("the identifier of additional data", id);
    LegalStrings::requireSize("additional data", octets.size());
    if (octets.empty() || _header.properties().additionalData.size() == Forms::MOST_INTEGER) {
        throw FISEncodingException("Cannot write additional data " + LegalStrings::shown(id) +
                                   (octets.empty() ? ": it is empty" : ": there are 2^20 already"));
    }
    _header.properties().additionalData.emplace_back(id, octets);
}

void StrictEvents::characterEncodingScheme(const std::string& scheme) {
    _check.requireProlog("a character encoding scheme", scheme);
    requireSomeIdentifier("a character encoding scheme", scheme);
    _header.properties().encodingScheme = scheme;
}

void StrictEvents::standalone(bool isStandalone) {
    _check.requireProlog("the property standalone", {});
    _header.properties().isStandalone = isStandalone;
}

void StrictEvents::version(const std::string& version) {
    _check.requireProlog("a version", version);
    requireSomeIdentifier("a version", version);
    _header.properties().version = version;
}

// ---- typed data

unsigned int StrictEvents::indexOf(const std::string& uri) const {
    return AlgorithmIndex::of(strings().vocabulary().algorithms(), uri);
}

unsigned int StrictEvents::indexOf(const Encoding& value) const {
    return AlgorithmIndex::of(strings().vocabulary().algorithms(), _algorithms, value);
}

void StrictEvents::requireTypedData(const Encoding& value) const {
    _check.requireTypedData();
    indexOf(value);
}

void StrictEvents::typedData(Encoding& value) {
    strings().writeTypedChunk(value, indexOf(value));
}

void StrictEvents::typedData(const std::string& uri, Encoding& value) {
    _check.requireTypedData();
    strings().writeTypedChunk(value, indexOf(uri));
}

void StrictEvents::typedText(const std::string& uri, const std::string& text) {
    _check.requireTypedData();
    const unsigned int index = indexOf(uri);
    const auto it = std::find(_algorithms.uris().begin(), _algorithms.uris().end(), uri);
    const auto number =
        static_cast<unsigned int>(EncodingAlgorithm::USER_DEFINED + (it - _algorithms.uris().begin()));
    if (it == _algorithms.uris().end() || _algorithms.check(number, text) <= 0) {
        throw FISEncodingException(
            "Cannot write " + LegalStrings::shown(text) + " by the encoding algorithm " +
            LegalStrings::shown(uri) +
            (it == _algorithms.uris().end() ? ": it is not registered" : ": it has no such text"));
    }
    strings().writeApplicationChunk(
        index, [&](BitStreamWriter& writer) { _algorithms.encode(number, writer, text); });
}

bool StrictEvents::typedChunk(const TypedChunk& chunk) {
    _check.requireTypedData();
    const unsigned int index = chunk.uri().empty() ? indexOf(*chunk.encoding())
                                                   : strings().vocabulary().algorithms().indexOf(chunk.uri());
    if (index == 0) {
        return false;
    }
    strings().writeTypedChunk(*AutoPtr<Encoding>(chunk.encoding()), index);
    return true;
}

} // namespace Tamo::FastInfoset
