#include "Tamo/XML/WhitespaceFilter.h"
#include "Tamo/Export.h"
#include "Tamo/XML/Attributes.h"
#include "Tamo/XML/NamespaceSupport.h"
#include <algorithm>

namespace Tamo::XML {

namespace {

TAMO_CONSTINIT const std::string SPACE{"space"};
TAMO_CONSTINIT const std::string XML_SPACE{"xml:space"};

} // namespace

void WhitespaceFilter::startDocument() {
    _pending.clear();
    _passing = false;
    _inCDATA = false;
    _depth = 0;
    _spaces.clear();
    XMLFilterImpl::startDocument();
}

void WhitespaceFilter::endDocument() {
    endRun();
    XMLFilterImpl::endDocument();
}

void WhitespaceFilter::startElement(const std::string& uri, const std::string& localName,
                                    const std::string& qname, const Attributes& attributes) {
    endRun();
    ++_depth;
    if (attributes.getLength() > 0) {
        int i = attributes.getIndex(NamespaceSupport::XML_NAMESPACE, SPACE);
        if (i < 0) {
            i = attributes.getIndex(XML_SPACE); // without namespace processing
        }
        if (i >= 0) {
            _spaces.push_back({_depth, attributes.getValue(i) == "preserve"});
        }
    }
    XMLFilterImpl::startElement(uri, localName, qname, attributes);
}

void WhitespaceFilter::endElement(const std::string& uri, const std::string& localName,
                                  const std::string& qname) {
    endRun();
    if (!_spaces.empty() && _spaces.back().depth == _depth) {
        _spaces.pop_back();
    }
    --_depth;
    XMLFilterImpl::endElement(uri, localName, qname);
}

void WhitespaceFilter::characters(const char ch[], int start, int length) {
    if (!_passing && !preserving()) {
        const std::string_view text(ch + start, static_cast<std::size_t>(length));
        if (text.find_first_not_of(" \t\r\n") == std::string_view::npos) {
            _pending.append(text);
            return;
        }
        _passing = true;
        if (!_pending.empty() && passOnPending(text)) {
            return;
        }
    }
    XMLFilterImpl::characters(ch, start, length);
}

void WhitespaceFilter::ignorableWhitespace(const char ch[], int start, int length) {
    if (preserving()) {
        XMLFilterImpl::ignorableWhitespace(ch, start, length);
    }
}

void WhitespaceFilter::processingInstruction(const std::string& target, const std::string& data) {
    endRun();
    XMLFilterImpl::processingInstruction(target, data);
}

void WhitespaceFilter::startPrefixMapping(const std::string& prefix, const std::string& uri) {
    endRun();
    XMLFilterImpl::startPrefixMapping(prefix, uri);
}

void WhitespaceFilter::skippedEntity(const std::string& name) {
    endRun();
    XMLFilterImpl::skippedEntity(name);
}

void WhitespaceFilter::startEntity(const std::string& name) {
    endRun();
    XMLFilterImpl::startEntity(name);
}

void WhitespaceFilter::endEntity(const std::string& name) {
    endRun();
    XMLFilterImpl::endEntity(name);
}

void WhitespaceFilter::startCDATA() {
    endRun();
    _inCDATA = true;
    XMLFilterImpl::startCDATA();
}

void WhitespaceFilter::endCDATA() {
    _inCDATA = false;
    XMLFilterImpl::endCDATA();
}

void WhitespaceFilter::comment(const char ch[], int start, int length) {
    // Without a receiver there is no event, and the text on both sides is one run.
    if (getLexicalHandler()) {
        endRun();
        XMLFilterImpl::comment(ch, start, length);
    }
}

bool WhitespaceFilter::passOnPending(std::string_view text) {
    constexpr std::size_t MAX_RUN = 64 * 1024; // as SAXParser bounds its calls
    const bool joined = _pending.size() + text.size() <= MAX_RUN;
    if (joined) {
        _pending.append(text);
    }
    for (std::size_t i = 0; i < _pending.size(); i += MAX_RUN) {
        const std::size_t length = std::min(MAX_RUN, _pending.size() - i);
        XMLFilterImpl::characters(_pending.data() + i, 0, static_cast<int>(length));
    }
    _pending.clear();
    return joined;
}

void WhitespaceFilter::endRun() {
    _pending.clear();
    _passing = false;
}

} // namespace Tamo::XML
