#include "EventCheck.h"
#include "LegalStrings.h"
#include "Tamo/FastInfoset/FISException.h"

namespace Tamo::FastInfoset {

void EventCheck::refuse(const char* construct, std::string_view value) const {
    static constexpr const char* PLACES[] = {
        "outside of a document", "before the root element", "in the document type declaration",
        "in an element",         "in a CDATA section",      "behind the root element"};
    throw FISEncodingException(std::string("Cannot write ") + construct +
                               (value.empty() ? std::string() : " " + LegalStrings::shown(value)) + " " +
                               PLACES[static_cast<std::size_t>(_place)]);
}

void EventCheck::startDocument() {
    if (_place != Place::OUTSIDE) {
        refuse("the start of a document", {});
    }
    _place = Place::PROLOG;
}

void EventCheck::requireDocumentEnd() const {
    if (_place != Place::EPILOG) {
        refuse("the end of a document", {});
    }
}

// ---- elements

void EventCheck::requireElement(const char* construct, std::string_view name) const {
    if (_place != Place::CONTENT && _place != Place::PROLOG) {
        refuse(construct, name);
    }
}

void EventCheck::refuseEnd(const std::string& localName, const std::string& qname) const {
    const std::string& name = localName.empty() ? qname : localName;
    if (_place != Place::CONTENT) {
        refuse("the end of an element", name);
    }
    throw FISEncodingException("Cannot write the end of an element " + LegalStrings::shown(name) +
                               ": another one is open");
}

// ---- content

EventCheck::Use EventCheck::useOfOtherText(std::string_view text) const {
    if (_place == Place::OUTSIDE || text.find_first_not_of(" \t\r\n") != std::string_view::npos) {
        refuse("text", text);
    }
    return Use::DROP;
}

void EventCheck::requireTypedData() const {
    if (_place != Place::CONTENT && _place != Place::CDATA) {
        refuse("typed data", {});
    }
}

void EventCheck::requireContent(const char* construct, std::string_view value) const {
    if (_place != Place::CONTENT) {
        refuse(construct, value);
    }
}

EventCheck::Use EventCheck::useOfComment(std::string_view text) const {
    if (_place == Place::OUTSIDE || _place == Place::CDATA) {
        refuse("a comment", text);
    }
    // Declarations have instructions only (X.891, 7.9.1).
    return _place == Place::DOCUMENT_TYPE ? Use::DROP : heldOrWritten();
}

EventCheck::Use EventCheck::useOfInstruction(std::string_view target) const {
    if (_place == Place::OUTSIDE || _place == Place::CDATA) {
        refuse("a processing instruction", target);
    }
    return _place == Place::DOCUMENT_TYPE ? Use::HOLD : heldOrWritten();
}

void EventCheck::startCData() {
    if (_place != Place::CONTENT) {
        refuse("the start of a CDATA section", {});
    }
    _place = Place::CDATA;
}

void EventCheck::endCData() {
    if (_place != Place::CDATA) {
        refuse("the end of a CDATA section", {});
    }
    _place = Place::CONTENT;
}

// ---- declarations

void EventCheck::requireProlog(const char* construct, std::string_view name) const {
    if (_isPrologWritten || _place == Place::CONTENT || _place == Place::CDATA || _place == Place::EPILOG) {
        refuse(construct, name);
    }
}

void EventCheck::startDocumentType(std::string_view systemId) {
    if (_place != Place::PROLOG || _hasDocumentType || _isPrologWritten) {
        refuse(_hasDocumentType ? "another document type declaration" : "a document type declaration",
               systemId);
    }
    _hasDocumentType = true;
    _place = Place::DOCUMENT_TYPE;
}

void EventCheck::endDocumentType() {
    if (_place != Place::DOCUMENT_TYPE) {
        refuse("the end of a document type declaration", {});
    }
    _place = Place::PROLOG;
}

} // namespace Tamo::FastInfoset
