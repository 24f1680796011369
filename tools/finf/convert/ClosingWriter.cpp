#include "convert/ClosingWriter.h"

namespace finf {

void ClosingWriter::startElement(const std::string& uri, const std::string& localName,
                                 const std::string& qname, const Tamo::XML::Attributes& attributes) {
    XMLWriter::startElement(uri, localName, qname, attributes);
    ++_depth;
    if (!_hasRoot) {
        _hasRoot = true;
        _out << _held.view();
        _held.str({});
        _text.rdbuf(_out.rdbuf());
    }
}

void ClosingWriter::endElement(const std::string& uri, const std::string& localName,
                               const std::string& qname) {
    XMLWriter::endElement(uri, localName, qname);
    --_depth;
}

void ClosingWriter::startCDATA() {
    XMLWriter::startCDATA();
    _inCDATA = true;
}

void ClosingWriter::endCDATA() {
    _inCDATA = false;
    XMLWriter::endCDATA();
}

bool ClosingWriter::close() {
    if (!_hasRoot) {
        return false;
    }
    if (_inCDATA) {
        endCDATA();
    }
    const std::string none;
    while (_depth > 0) {
        endElement(none, none, none);
    }
    endDocument();
    return true;
}

} // namespace finf
