#include "EscapingWriter.h"
#include <array>

namespace Tamo::Benchmarks {

namespace {

constexpr unsigned char IN_TEXT = 1;
constexpr unsigned char IN_VALUE = 2;

constexpr std::array<unsigned char, 256> makeKinds() {
    std::array<unsigned char, 256> kinds{};
    for (const char c : {'&', '<', '>', '\r'}) {
        kinds[static_cast<unsigned char>(c)] = IN_TEXT | IN_VALUE;
    }
    for (const char c : {'"', '\t', '\n'}) {
        kinds[static_cast<unsigned char>(c)] = IN_VALUE;
    }
    return kinds;
}

constexpr std::array<unsigned char, 256> KINDS = makeKinds();

const char* reference(char c) {
    switch (c) {
    case '&':
        return "&amp;";
    case '<':
        return "&lt;";
    case '>':
        return "&gt;";
    case '"':
        return "&quot;";
    case '\t':
        return "&#9;";
    case '\n':
        return "&#10;";
    default:
        return "&#13;";
    }
}

} // namespace

void EscapingWriter::closeTag() {
    if (_open) {
        _out.push_back('>');
        _open = false;
    }
}

void EscapingWriter::escaped(const std::string& text, unsigned char kind) {
    const char* p = text.data();
    const char* const end = p + text.size();
    const char* pass = p;
    for (; p != end; ++p) {
        if (KINDS[static_cast<unsigned char>(*p)] & kind) {
            _out.append(pass, p);
            _out.append(reference(*p));
            pass = p + 1;
        }
    }
    _out.append(pass, end);
}

void EscapingWriter::attribute(const std::string& name, const std::string& value) {
    _out.push_back(' ');
    _out.append(name);
    _out.append("=\"");
    escaped(value, IN_VALUE);
    _out.push_back('"');
}

void EscapingWriter::mapping(const std::string& prefix, const std::string& uri) {
    // Collected behind the start tag's name, which is not known yet.
    std::string out;
    out.swap(_out);
    attribute(prefix.empty() ? "xmlns" : "xmlns:" + prefix, uri);
    _mappings.append(_out);
    _out.swap(out);
}

void EscapingWriter::startElement(const std::string& qname, const Recording::Attribute* pAttributes,
                                  unsigned int number) {
    closeTag();
    _out.push_back('<');
    _out.append(qname);
    if (!_mappings.empty()) {
        _out.append(_mappings);
        _mappings.clear();
    }
    for (unsigned int i = 0; i < number; ++i) {
        attribute(*pAttributes[i].pQName, *pAttributes[i].pValue);
    }
    _open = true;
}

void EscapingWriter::endElement(const std::string& qname) {
    if (_open) {
        _out.append("/>");
        _open = false;
        return;
    }
    _out.append("</");
    _out.append(qname);
    _out.push_back('>');
}

void EscapingWriter::characters(const std::string& text) {
    closeTag();
    if (_inCDATA) {
        _out.append(text);
    } else {
        escaped(text, IN_TEXT);
    }
}

void EscapingWriter::processingInstruction(const std::string& target, const std::string& data) {
    closeTag();
    _out.append("<?").append(target).append(" ").append(data).append("?>");
}

void EscapingWriter::comment(const std::string& text) {
    closeTag();
    _out.append("<!--").append(text).append("-->");
}

void EscapingWriter::startCDATA() {
    closeTag();
    _out.append("<![CDATA[");
    _inCDATA = true;
}

void EscapingWriter::endCDATA() {
    _out.append("]]>");
    _inCDATA = false;
}

} // namespace Tamo::Benchmarks
