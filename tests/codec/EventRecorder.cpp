#include "EventRecorder.h"
#include "Octets.h"
#include "Tamo/Exception.h"
#include "Tamo/NumberFormatter.h"
#include "Tamo/XML/Attributes.h"

namespace Tamo::FastInfoset::Test {

namespace {

std::string nameOf(const std::string& uri, const std::string& localName, const std::string& qname) {
    const std::string name = (uri.empty() ? "" : "{" + uri + "}") + (qname.empty() ? localName : qname);
    const bool fits = qname.empty() || qname.substr(qname.find(':') + 1) == localName;
    return fits ? name : name + "!" + localName;
}

std::string orDash(const std::string* pIdentifier) {
    return pIdentifier ? *pIdentifier : "-";
}

} // namespace

template<class Base>
void ContentRecorder<Base>::connect(XML::XMLReader& reader) {
    reader.setContentHandler(this);
    reader.setDTDHandler(this);
    reader.setProperty(XML::XMLReader::PROPERTY_LEXICAL_HANDLER,
                       static_cast<void*>(static_cast<XML::LexicalHandler*>(this)));
}

template<class Base>
void ContentRecorder<Base>::clear() {
    _events.clear();
    _open.clear();
    _eventsLeft = static_cast<std::size_t>(-1);
}

template<class Base>
void ContentRecorder<Base>::event(const std::string& token) {
    if (_eventsLeft-- == 0) {
        throw RuntimeException("handler");
    }
    _events += (_events.empty() ? "" : "|") + token;
}

template<class Base>
std::string ContentRecorder<Base>::text(const char ch[], int start, int length) {
    return std::string(ch + start, static_cast<std::size_t>(length));
}

template<class Base>
void ContentRecorder<Base>::startElement(const std::string& uri, const std::string& localName,
                                         const std::string& qname, const XML::Attributes& attributes) {
    _open.push_back(nameOf(uri, localName, qname));
    std::string token = "<" + _open.back();
    for (int i = 0; i < attributes.getLength(); ++i) {
        const std::string attributeName = _detail == INFORMATION ? "" : attributes.getQName(i);
        token += " " + nameOf(attributes.getURI(i), attributes.getLocalName(i), attributeName) + "=\"" +
                 attributes.getValue(i) + "\"";
    }
    event(token);
}

template<class Base>
void ContentRecorder<Base>::endElement(const std::string& uri, const std::string& localName,
                                       const std::string& qname) {
    const std::string name = nameOf(uri, localName, qname);
    const bool fits = !_open.empty() && _open.back() == name;
    if (!_open.empty()) {
        _open.pop_back();
    }
    event(fits ? ">" : ">" + name);
}

template<class Base>
void ContentRecorder<Base>::processingInstruction(const std::string& target, const std::string& data) {
    event("?" + target + (data.empty() ? "" : " " + data));
}

template<class Base>
void ContentRecorder<Base>::startPrefixMapping(const std::string& prefix, const std::string& uri) {
    if (_detail == EVERYTHING) {
        event("+" + prefix + "=" + uri);
    }
}

template<class Base>
void ContentRecorder<Base>::endPrefixMapping(const std::string& prefix) {
    if (_detail == EVERYTHING) {
        event("-" + prefix);
    }
}

template<class Base>
void ContentRecorder<Base>::startDTD(const std::string& name, const std::string& publicId,
                                     const std::string& systemId) {
    event("!" + (_detail == INFORMATION ? "" : name) + "," + publicId + "," + systemId);
}

template<class Base>
void ContentRecorder<Base>::notationDecl(const std::string& name, const std::string* publicId,
                                         const std::string* systemId) {
    event("N" + name + "," + orDash(publicId) + "," + orDash(systemId));
}

template<class Base>
void ContentRecorder<Base>::unparsedEntityDecl(const std::string& name, const std::string* publicId,
                                               const std::string& systemId, const std::string& notationName) {
    event("U" + name + "," + orDash(publicId) + "," + systemId + "," + notationName);
}

template class ContentRecorder<XML::ContentHandler>;
template class ContentRecorder<FISContentHandler>;

void TypedEventRecorder::binaryData(const char* data, std::size_t length) {
    event("=binary " + hex(std::string_view(data, length)));
}

void TypedEventRecorder::encodedData(float value) {
    event("=float " + NumberFormatter::format(value));
}

void TypedEventRecorder::encodedData(double value) {
    event("=double " + NumberFormatter::format(value));
}

DocumentVocabulary& DocumentRecorder::getDocumentVocabulary() {
    throw NotImplementedException("getDocumentVocabulary");
}

const DocumentVocabulary& DocumentRecorder::getDocumentVocabulary() const {
    throw NotImplementedException("getDocumentVocabulary");
}

} // namespace Tamo::FastInfoset::Test
