#include "bench/EventRecording.h"
#include "Tamo/XML/AttributesImpl.h"
#include <optional>

namespace finf {

using Writer = Tamo::FastInfoset::FastInfosetWriter;

namespace {

std::optional<std::string> copied(const std::string* pText) {
    return pText ? std::optional<std::string>(*pText) : std::nullopt;
}

const std::string* pointer(const std::optional<std::string>& text) {
    return text ? &*text : nullptr;
}

} // namespace

void EventRecording::replay(Writer& writer) const {
    for (const Event& event : _events) {
        event(writer);
    }
}

void EventRecording::startDocument() {
    _events.emplace_back([](Writer& writer) { writer.startDocument(); });
}

void EventRecording::endDocument() {
    _events.emplace_back([](Writer& writer) { writer.endDocument(); });
}

void EventRecording::startElement(const std::string& uri, const std::string& localName,
                                  const std::string& qname, const Tamo::XML::Attributes& attrs) {
    Tamo::XML::AttributesImpl attributes;
    for (int i = 0; i < attrs.getLength(); ++i) {
        attributes.addAttribute(attrs.getURI(i), attrs.getLocalName(i), attrs.getQName(i), attrs.getType(i),
                                attrs.getValue(i));
    }
    _events.emplace_back([=](Writer& writer) { writer.startElement(uri, localName, qname, attributes); });
}

void EventRecording::endElement(const std::string& uri, const std::string& localName,
                                const std::string& qname) {
    _events.emplace_back([=](Writer& writer) { writer.endElement(uri, localName, qname); });
}

void EventRecording::characters(const char ch[], int start, int length) {
    const std::string text(ch + start, static_cast<std::size_t>(length));
    _events.emplace_back(
        [=](Writer& writer) { writer.characters(text.data(), 0, static_cast<int>(text.size())); });
}

void EventRecording::processingInstruction(const std::string& target, const std::string& data) {
    _events.emplace_back([=](Writer& writer) { writer.processingInstruction(target, data); });
}

void EventRecording::startPrefixMapping(const std::string& prefix, const std::string& uri) {
    _events.emplace_back([=](Writer& writer) { writer.startPrefixMapping(prefix, uri); });
}

void EventRecording::endPrefixMapping(const std::string& prefix) {
    _events.emplace_back([=](Writer& writer) { writer.endPrefixMapping(prefix); });
}

void EventRecording::startDTD(const std::string& name, const std::string& publicId,
                              const std::string& systemId) {
    _events.emplace_back([=](Writer& writer) { writer.startDTD(name, publicId, systemId); });
}

void EventRecording::endDTD() {
    _events.emplace_back([](Writer& writer) { writer.endDTD(); });
}

void EventRecording::startCDATA() {
    _events.emplace_back([](Writer& writer) { writer.startCDATA(); });
}

void EventRecording::endCDATA() {
    _events.emplace_back([](Writer& writer) { writer.endCDATA(); });
}

void EventRecording::comment(const char ch[], int start, int length) {
    const std::string text(ch + start, static_cast<std::size_t>(length));
    _events.emplace_back(
        [=](Writer& writer) { writer.comment(text.data(), 0, static_cast<int>(text.size())); });
}

void EventRecording::notationDecl(const std::string& name, const std::string* publicId,
                                  const std::string* systemId) {
    _events.emplace_back([=, pub = copied(publicId), sys = copied(systemId)](Writer& writer) {
        writer.notationDecl(name, pointer(pub), pointer(sys));
    });
}

void EventRecording::unparsedEntityDecl(const std::string& name, const std::string* publicId,
                                        const std::string& systemId, const std::string& notationName) {
    _events.emplace_back([=, pub = copied(publicId)](Writer& writer) {
        writer.unparsedEntityDecl(name, pointer(pub), systemId, notationName);
    });
}

} // namespace finf
