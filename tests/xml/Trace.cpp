#include "Trace.h"
#include "Tamo/XML/SAXParser.h"
#include <set>

using namespace Tamo::XML;

namespace {

std::string orDash(const std::string* pText) {
    return pText ? "'" + *pText + "'" : "-";
}

} // namespace

void Trace::connect(XMLReader& reader) {
    reader.setContentHandler(this);
    reader.setDTDHandler(this);
    reader.setLexicalHandler(this);
}

void Trace::event(const std::string& text) {
    _trace += _trace.empty() ? text : " " + text;
    _inText = false;
}

std::string Trace::nameOf(const std::string& uri, const std::string& localName,
                          const std::string& qname) const {
    std::string name;
    if (!uri.empty()) {
        name.append("{").append(uri).append("}");
    }
    return name.append(_detail == EVERYTHING || localName.empty() ? qname : localName);
}

void Trace::startElement(const std::string& uri, const std::string& localName, const std::string& qname,
                         const Attributes& attributes) {
    std::set<std::string> texts; // the order of attributes is no information
    for (int i = 0; i < attributes.getLength(); ++i) {
        const bool showType = _detail == EVERYTHING && attributes.getType(i) != "CDATA";
        texts.insert(nameOf(attributes.getURI(i), attributes.getLocalName(i), attributes.getQName(i))
                         .append(showType ? ":" + attributes.getType(i) : "")
                         .append("=")
                         .append(attributes.getValue(i)));
    }
    std::string text("<");
    text.append(nameOf(uri, localName, qname));
    for (const std::string& attribute : texts) {
        text.append(" ").append(attribute);
    }
    event(text.append(">"));
}

void Trace::endElement(const std::string& uri, const std::string& localName, const std::string& qname) {
    event(std::string("</").append(nameOf(uri, localName, qname)).append(">"));
}

void Trace::characters(const char ch[], int start, int length) {
    const std::string text(ch + start, static_cast<std::size_t>(length));
    if (_detail == INFORMATION && _inText) {
        _trace.insert(_trace.size() - 1, text);
    } else {
        event("'" + text + "'");
        _inText = true;
    }
}

void Trace::processingInstruction(const std::string& target, const std::string& data) {
    event("<?" + target + "|" + data + "?>");
}

void Trace::startPrefixMapping(const std::string& prefix, const std::string& uri) {
    if (_detail == EVERYTHING) {
        event("+" + prefix + "=" + uri);
    }
}

void Trace::endPrefixMapping(const std::string& prefix) {
    if (_detail == EVERYTHING) {
        event("-" + prefix);
    }
}

void Trace::notationDecl(const std::string& name, const std::string* publicId, const std::string* systemId) {
    event("N(" + name + "," + orDash(publicId) + "," + orDash(systemId) + ")");
}

void Trace::unparsedEntityDecl(const std::string& name, const std::string* publicId,
                               const std::string& systemId, const std::string& notationName) {
    event("U(" + name + "," + orDash(publicId) + "," + systemId + "," + notationName + ")");
}

void Trace::startDTD(const std::string& name, const std::string& publicId, const std::string& systemId) {
    event("(DTD " + name + "," + publicId + "," + systemId);
}

void Trace::startCDATA() {
    if (_detail == EVERYTHING) {
        event("(C");
    }
}

void Trace::endCDATA() {
    if (_detail == EVERYTHING) {
        event("C)");
    }
}

void Trace::comment(const char ch[], int start, int length) {
    event("<!--" + std::string(ch + start, static_cast<std::size_t>(length)) + "-->");
}

std::string traceOf(const std::string& xml, Trace::Detail detail, bool declarationsFirst) {
    SAXParser parser;
    parser.setFeature(SAXParser::FEATURE_DECLARATIONS_FIRST, declarationsFirst);
    Trace trace(detail);
    trace.connect(parser);
    parser.parseMemoryNP(xml.data(), xml.size());
    return trace.text();
}
