#include "EventRecorder.h"
#include "Tamo/FastInfoset/TypedChunkHandler.h"
#include "Tamo/NumberFormatter.h"
#include "Tamo/XML/Attributes.h"

namespace Tamo::FastInfoset::Test {

namespace {

std::string nameOf(const std::string& uri, const std::string& localName, const std::string& qname) {
    const std::string name = (uri.empty() ? "" : "{" + uri + "}") + (qname.empty() ? localName : qname);
    const bool fits = qname.empty() || qname.substr(qname.find(':') + 1) == localName;
    return fits ? name : name + "!" + localName;
}

} // namespace

template<class Base>
void ContentRecorder<Base>::event(const std::string& token) {
    if (_eventsLeft-- == 0) {
        throw RuntimeException("handler");
    }
    _events += (_events.empty() ? "" : "|") + token;
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
void TypedRecorder<Base>::binaryData(const char* data, std::size_t length) {
    this->event("=binary " + hex(std::string_view(data, length)));
}

template<class Base>
void TypedRecorder<Base>::encodedData(float value) {
    this->event("=float " + NumberFormatter::format(value));
}

template<class Base>
void TypedRecorder<Base>::encodedData(double value) {
    this->event("=double " + NumberFormatter::format(value));
}

template class ContentRecorder<XML::ContentHandler>;
template class ContentRecorder<FISContentHandler>;
template class ContentRecorder<TypedChunkHandler>;
template class TypedRecorder<FISContentHandler>;
template class TypedRecorder<TypedChunkHandler>;

} // namespace Tamo::FastInfoset::Test
