#include "XMLOutput.h"
#include "Tamo/XML/Characters.h"
#include "Tamo/XML/XMLException.h"
#include <algorithm>
#include <array>
#include <cstdint>
#include <string>

namespace Tamo::XML {

namespace {

constexpr std::size_t BUFFER_SIZE = 64 * 1024;

/// What the fast loops must stop at, and what identifiers are made of.
enum CharacterClass : std::uint8_t {
    STOP_TEXT = 0x01,
    STOP_VALUE = 0x02,
    STOP_CDATA = 0x04,
    STOP_CHECKED = 0x08, // comments, processing instructions, identifiers
    PUBLIC_ID = 0x10
};

constexpr std::array<std::uint8_t, 256> makeClasses() {
    std::array<std::uint8_t, 256> classes{};
    const auto add = [&](std::string_view characters, int bits) {
        for (const char c : characters) {
            auto& entry = classes[static_cast<unsigned char>(c)];
            entry = static_cast<std::uint8_t>(entry | bits);
        }
    };
    for (std::size_t c = 0; c < 256; ++c) {
        if (c < 0x20 || c >= 0x80) {
            classes[c] = STOP_TEXT | STOP_VALUE | STOP_CDATA | STOP_CHECKED;
        }
    }
    classes['\t'] = classes['\n'] = STOP_VALUE;
    add("<&>", STOP_TEXT);
    add("<&\"", STOP_VALUE);
    add("]>", STOP_CDATA);
    add("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ_0123456789-.", PUBLIC_ID);
    add(" \r\n'()+,/:=?;!*#@$%", PUBLIC_ID);
    return classes;
}

constexpr std::array<std::uint8_t, 256> CLASSES = makeClasses();

inline unsigned int classOf(char c) {
    return CLASSES[static_cast<unsigned char>(c)];
}

/// The first octet from p on that is of one of the classes, or pEnd.
template<int STOP>
inline const char* nextOf(const char* p, const char* pEnd) {
    while (pEnd - p >= 4 && ((classOf(p[0]) | classOf(p[1]) | classOf(p[2]) | classOf(p[3])) & STOP) == 0) {
        p += 4;
    }
    while (p != pEnd && !(classOf(*p) & STOP)) {
        ++p;
    }
    return p;
}

std::string inHex(std::uint32_t value, std::size_t digits) {
    std::string text;
    for (std::size_t i = digits; i-- > 0;) {
        text += "0123456789ABCDEF"[(value >> (4 * i)) & 0xF];
    }
    return text;
}

/// The length of the character at p; throws when it is none that XML 1.0 allows.
inline std::size_t checkedLength(const char* p, const char* pEnd, const char* what) {
    char32_t c = 0;
    const std::size_t length = Characters::decode(p, pEnd, c);
    if (length == 0) {
        XMLOutput::refuse(what, "octet 0x" + inHex(static_cast<unsigned char>(*p), 2) + " is not UTF-8");
    }
    if (!Characters::isCharacter(c)) {
        XMLOutput::refuse(what, "XML does not allow the character U+" + inHex(c, 4));
    }
    return length;
}

std::string_view reference(char c) {
    switch (c) {
    case '<':
        return "&lt;";
    case '>':
        return "&gt;";
    case '&':
        return "&amp;";
    case '"':
        return "&quot;";
    case '\t':
        return "&#9;";
    case '\n':
        return "&#10;";
    case '\r':
        return "&#13;";
    default:
        return {};
    }
}

} // namespace

XMLOutput::XMLOutput(std::ostream* pStream) : _pStream(pStream) {
    if (_pStream) {
        _pBuffer.reset(new char[BUFFER_SIZE]);
        _capacity = BUFFER_SIZE;
    }
}

// What is escaped in text or in values, by class.
template<int STOP>
TAMO_ALWAYS_INLINE void XMLOutput::putEscaped(std::string_view text, const char* what) {
    const char* p = text.data();
    const char* const pEnd = p + text.size();
    const char* pRun = p;
    while ((p = nextOf<STOP>(p, pEnd)) != pEnd) {
        if (const std::string_view escaped = reference(*p); !escaped.empty()) {
            put({pRun, static_cast<std::size_t>(p - pRun)});
            put(escaped);
            pRun = ++p;
        } else {
            do { // beyond ASCII one follows the other
                p += checkedLength(p, pEnd, what);
            } while (p != pEnd && static_cast<unsigned char>(*p) >= 0x80);
        }
    }
    put({pRun, static_cast<std::size_t>(p - pRun)});
}

void XMLOutput::putText(std::string_view text) {
    putEscaped<STOP_TEXT>(text, "text");
}

void XMLOutput::putAttributeValue(std::string_view value, const char* what) {
    putEscaped<STOP_VALUE>(value, what);
}

void XMLOutput::putCDATA(std::string_view text, std::size_t& brackets) {
    const char* p = text.data();
    const char* const pEnd = p + text.size();
    const char* pRun = p;
    while (p != pEnd) {
        if (!(classOf(*p) & STOP_CDATA)) {
            brackets = 0;
            ++p;
        } else if (*p == ']') {
            ++brackets;
            ++p;
        } else if ((*p == '>' && brackets >= 2) || *p == '\r') {
            put({pRun, static_cast<std::size_t>(p - pRun)});
            // Between two sections a character reference keeps what line-end normalisation would change.
            put(*p == '\r' ? "]]>&#13;<![CDATA[" : "]]><![CDATA[>");
            brackets = 0;
            pRun = ++p;
        } else {
            brackets = 0;
            p += checkedLength(p, pEnd, "text");
        }
    }
    put({pRun, static_cast<std::size_t>(p - pRun)});
}

void XMLOutput::putQName(std::string_view name, const char* what) {
    const std::size_t colon = name.find(':');
    if (colon != std::string_view::npos) {
        putNCName(name.substr(0, colon), what);
        put(':');
        name.remove_prefix(colon + 1);
    }
    putNCName(name, what);
}

void XMLOutput::putComment(std::string_view text) {
    if (text.find("--") != std::string_view::npos) {
        refuse("comment", "it contains \"--\"");
    }
    if (text.ends_with('-')) {
        refuse("comment", "it ends with \"-\"");
    }
    put("<!--");
    putChecked(text, "comment");
    put("-->");
}

void XMLOutput::putProcessingInstruction(std::string_view target, std::string_view data) {
    const char* const what = "processing instruction";
    const auto is = [&](std::size_t i, char lower) { return (target[i] | 0x20) == lower; };
    if (target.size() == 3 && is(0, 'x') && is(1, 'm') && is(2, 'l')) {
        refuse("target of processing instruction", target, "is reserved");
    }
    if (data.find("?>") != std::string_view::npos) {
        refuse(what, "its data contain \"?>\"");
    }
    if (!data.empty() && std::string_view(" \t\r\n").find(data.front()) != std::string_view::npos) {
        refuse(what, "its data begin with white space");
    }
    put("<?");
    putNCName(target, "target of processing instruction");
    if (!data.empty()) {
        put(' ');
        putChecked(data, what);
    }
    put("?>");
}

void XMLOutput::putPublicId(std::string_view publicId) {
    for (const char c : publicId) {
        if (!(classOf(c) & PUBLIC_ID)) {
            refuse("public identifier", publicId, "contains a character that XML does not allow there");
        }
    }
    put('"'); // no public identifier contains it
    put(publicId);
    put('"');
}

void XMLOutput::putSystemId(std::string_view systemId) {
    const char quote = systemId.find('"') == std::string_view::npos ? '"' : '\'';
    if (systemId.find(quote) != std::string_view::npos) {
        refuse("system identifier", systemId, "contains both kinds of quotation marks");
    }
    put(quote);
    putChecked(systemId, "system identifier");
    put(quote);
}

void XMLOutput::pass() {
    if (_pStream && _size > 0) {
        const std::size_t size = std::exchange(_size, 0);
        _pStream->write(_pBuffer.get(), static_cast<std::streamsize>(size));
        if (!_pStream->good()) {
            throw IOException("Cannot write to the output stream");
        }
    }
}

void XMLOutput::checkNCName(std::string_view name, const char* what) {
    if (!Characters::isNCName(name)) {
        refuse(what, name, "is no XML name");
    }
}

void XMLOutput::refuse(const char* what, std::string_view reason) {
    throw XMLException(std::string("Cannot write ").append(what).append(": ").append(reason));
}

void XMLOutput::refuse(const char* what, std::string_view value, std::string_view reason) {
    constexpr std::size_t MAX_SHOWN = 60;
    std::string text("\"");
    for (const char c : value.substr(0, MAX_SHOWN)) {
        text += c >= ' ' && c <= '~' ? c : '?';
    }
    text.append(value.size() > MAX_SHOWN ? "...\" " : "\" ").append(reason);
    refuse(what, text);
}

// So that size octets of markup, or the first ones of more, find a place.
void XMLOutput::passOrGrow(std::size_t size) {
    if (_pStream) {
        pass();
    } else {
        const std::size_t capacity = std::max({_capacity * 2, _size + size, std::size_t{256}});
        std::unique_ptr<char[]> pBuffer(new char[capacity]);
        if (_size > 0) {
            std::memcpy(pBuffer.get(), _pBuffer.get(), _size);
        }
        _pBuffer = std::move(pBuffer);
        _capacity = capacity;
    }
}

void XMLOutput::putLong(std::string_view markup) {
    passOrGrow(markup.size());
    while (markup.size() > _capacity) { // only in front of a stream
        std::memcpy(_pBuffer.get(), markup.data(), _capacity);
        _size = _capacity;
        markup.remove_prefix(_capacity);
        pass();
    }
    std::memcpy(_pBuffer.get() + _size, markup.data(), markup.size());
    _size += markup.size();
}

void XMLOutput::putChecked(std::string_view text, const char* what) {
    const char* p = text.data();
    const char* const pEnd = p + text.size();
    while (p != pEnd) {
        if (!(classOf(*p) & STOP_CHECKED)) {
            ++p;
        } else if (*p == '\r') {
            refuse(what, "it contains a carriage return, which no parser would give back");
        } else {
            p += checkedLength(p, pEnd, what);
        }
    }
    put(text);
}

} // namespace Tamo::XML
