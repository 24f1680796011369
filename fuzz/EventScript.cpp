#include "EventScript.h"
#include <span>
#include <string_view>

namespace Tamo::FastInfoset::Fuzz {

namespace {

constexpr const char* PREFIXES[] = {"", "p", "q", "ns1", "ns2", "xml", "xmlns", "1", "p:q"};
constexpr const char* URIS[] = {"",
                                "u",
                                "v",
                                "w",
                                "http://www.w3.org/XML/1998/namespace",
                                "http://www.w3.org/2000/xmlns/",
                                "a<&\"'\r\n\t"};
constexpr const char* NAMES[] = {"a", "b", "c", "space", "xmlns", "", "p:a", "\xC3\xA9", "1", "a>"};
constexpr const char* TEXTS[] = {
    "",       " ",    "text",     "]]>",          "--",   "?>",
    "<&>\"'", "\r\n", "preserve", "\xE2\x82\xAC", "\xFF", "a text of more than sixteen octets"};

} // namespace

// An octet below the list's size is an entry, another one a length of octets that follow.
template<std::size_t N>
std::string EventScript::string(const char* const (&list)[N]) {
    const unsigned int choice = octet();
    if (choice < 0xF0) {
        return list[choice % N];
    }
    std::string result;
    for (unsigned int i = choice & 0x0F; i > 0; --i) {
        result += static_cast<char>(octet());
    }
    return result;
}

std::string EventScript::prefix() {
    return string(PREFIXES);
}

std::string EventScript::uri() {
    return string(URIS);
}

std::string EventScript::text() {
    return string(TEXTS);
}

// What a parser reports, unless the octets say otherwise: a qualified name that fits, or none.
EventScript::Name EventScript::name(bool isAttribute) {
    const unsigned int form = octet();
    Name result;
    result.localName = string(NAMES);
    if ((form & 1) != 0) {
        result.uri = uri();
    }
    const std::string ownPrefix = (form & 2) != 0 ? prefix() : std::string();
    result.qname = ownPrefix.empty() ? result.localName : ownPrefix + ":" + result.localName;
    if ((form & 4) != 0) {
        result.qname.clear();
    }
    if ((form & 0x38) == 0x38) { // namespace processing is off
        result.uri.clear();
        result.localName.clear();
    }
    if (isAttribute && (form & 0xC0) == 0xC0) {
        result.qname = string(NAMES);
    }
    return result;
}

// An attribute with a value that is typed, or text among those.
void EventScript::addTyped(TypedAttributes& list, const Name& name) {
    const auto add = [&](const auto& value) {
        list.addAttribute(name.uri, name.localName, name.qname, value);
    };
    const unsigned int type = octet() % 8;
    const std::size_t count = type > 1 ? octet() : 0;
    switch (type) {
    case 0:
        add(std::string_view(text()));
        break;
    case 1: {
        const std::string octets = text();
        add(std::as_bytes(std::span(octets.data(), octets.size())));
        break;
    }
    case 2:
        add(std::span<const Int16>(std::vector<Int16>(count, static_cast<Int16>(octet() << 8))));
        break;
    case 3:
        add(std::span<const Int32>(std::vector<Int32>(count, static_cast<Int32>(octet() << 20))));
        break;
    case 4:
        add(std::span<const Int64>(std::vector<Int64>(count, -static_cast<Int64>(octet()))));
        break;
    case 5:
        add(std::vector<bool>(count, (octet() & 1) != 0));
        break;
    case 6:
        add(std::span<const float>(std::vector<float>(count, static_cast<float>(octet()) / 3)));
        break;
    default:
        add(std::span<const double>(std::vector<double>(count, 1 / static_cast<double>(octet()))));
        break;
    }
}

void EventScript::start(const Handlers& handlers) {
    XML::AttributesImpl texts;
    TypedAttributes typed;
    const Name element = name(false);
    const unsigned int form = octet();
    const bool isTyped = (form & 0x80) != 0;
    for (unsigned int i = form % 4; i > 0; --i) {
        const Name attribute = name(true);
        if (isTyped) {
            addTyped(typed, attribute);
        } else {
            texts.addAttribute(attribute.uri, attribute.localName, attribute.qname, "CDATA", text());
        }
    }
    const XML::Attributes& attributes = isTyped ? static_cast<const XML::Attributes&>(typed) : texts;
    _open.push_back(element);
    _place = CONTENT;
    handlers.content.startElement(element.uri, element.localName, element.qname, attributes);
}

void EventScript::end(const Handlers& handlers) {
    Name element;
    if (!_open.empty()) {
        element = _open.back();
        _open.pop_back();
        if (_open.empty()) {
            _place = EPILOG;
        }
    }
    handlers.content.endElement(element.uri, element.localName, element.qname);
}

void EventScript::typedEvent(FISContentHandler& handler, unsigned int kind) {
    switch (kind % 7) {
    case 0: {
        const std::string octets = text();
        handler.binaryData(octets.data(), octets.size());
        break;
    }
    case 1:
        handler.encodedData(static_cast<Int16>(octet() << 8));
        break;
    case 2:
        handler.encodedData(static_cast<Int32>(octet() << 20));
        break;
    case 3:
        handler.encodedData(-static_cast<Int64>(octet()));
        break;
    case 4:
        handler.encodedData((octet() & 1) != 0);
        break;
    case 5:
        handler.encodedData(static_cast<float>(octet()) / 3);
        break;
    default:
        handler.encodedData(1 / static_cast<double>(octet()));
        break;
    }
}

// Of two declarations of one name XML takes the first.
std::string EventScript::declaredName() {
    const std::string declared = string(NAMES);
    return isTidy() && !declared.empty() ? declared + std::to_string(++_declarations) : declared;
}

// Events around the root element.
void EventScript::documentEvent(const Handlers& handlers, unsigned int kind) {
    const bool isProlog = _place == PROLOG || !isTidy();
    const std::string publicId = text();
    const std::string systemId = text();
    const std::string* const pPublicId = publicId.empty() ? nullptr : &publicId;
    switch (kind % 4) {
    case 0:
        if (isProlog && (!_hasDTD || !isTidy())) {
            handlers.lexical.startDTD(string(NAMES), publicId, systemId);
            _hasDTD = true;
            _place = DTD;
        }
        break;
    case 1:
        if (_place == DTD || !isTidy()) {
            handlers.lexical.endDTD();
            _place = PROLOG;
        }
        break;
    case 2:
        handlers.dtd.notationDecl(declaredName(), pPublicId, &systemId);
        break;
    default: {
        const std::string entity = declaredName();
        handlers.dtd.unparsedEntityDecl(entity, pPublicId, systemId, string(NAMES));
        break;
    }
    }
}

void EventScript::event(const Handlers& handlers, unsigned int kind) {
    switch (kind % 16) {
    case 0:
    case 1:
        if (!isTidy() || _place == CONTENT || _place == PROLOG) {
            start(handlers);
        }
        break;
    case 2:
    case 3:
        if (!isTidy() || _place == CONTENT) {
            end(handlers);
        }
        break;
    case 4:
    case 5: {
        const std::string declared = prefix();
        const std::string namespaceName = uri();
        if (!isTidy() || _place == CONTENT || _place == PROLOG) {
            handlers.content.startPrefixMapping(declared, namespaceName);
        }
        break;
    }
    case 6: {
        const std::string declared = prefix();
        if (!isTidy() || _place == CONTENT) {
            handlers.content.endPrefixMapping(declared);
        }
        break;
    }
    case 7:
    case 8: {
        const std::string characters = text();
        if (isContent()) {
            handlers.content.characters(characters.data(), 0, static_cast<int>(characters.size()));
        }
        break;
    }
    case 9: {
        const std::string comment = text();
        // The format has none in the document type declaration, and a parser of XML reports none there.
        if (!isTidy() || (_place != CDATA && _place != DTD)) {
            handlers.lexical.comment(comment.data(), 0, static_cast<int>(comment.size()));
        }
        break;
    }
    case 10: {
        const std::string target = string(NAMES);
        const std::string data = text();
        if (!isTidy() || _place != CDATA) {
            handlers.content.processingInstruction(target, data);
        }
        break;
    }
    case 11:
        if (!isTidy() || _place == CONTENT) {
            handlers.lexical.startCDATA();
            _place = CDATA;
        }
        break;
    case 12:
        if (!isTidy() || _place == CDATA) {
            handlers.lexical.endCDATA();
            _place = CONTENT;
        }
        break;
    case 13:
        documentEvent(handlers, octet());
        break;
    case 14:
        if (!isTidy()) {
            if ((octet() & 1) != 0) {
                handlers.content.startDocument();
            } else {
                handlers.content.endDocument();
            }
        } else if (_place == CONTENT) {
            handlers.content.skippedEntity(string(NAMES));
        }
        break;
    default: {
        const unsigned int type = octet();
        if (handlers.pTyped && (!isTidy() || _place == CONTENT)) {
            typedEvent(*handlers.pTyped, type);
        }
        break;
    }
    }
}

void EventScript::play(const Handlers& handlers) {
    _position = 1;
    _place = PROLOG;
    _hasDTD = false;
    _declarations = 0;
    _open.clear();
    if (isTidy()) {
        // Declarations go before the document, because there every writer takes them, and in the format's
        // order.
        for (const unsigned int kind : {2U, 3U}) {
            for (unsigned int count = octet() % 3; count > 0; --count) {
                documentEvent(handlers, kind);
            }
        }
        handlers.content.startDocument();
    }
    while (_position < _size && _open.size() < 200) {
        event(handlers, octet());
    }
    if (!isTidy()) {
        return;
    }
    if (_place == DTD) {
        handlers.lexical.endDTD();
        _place = PROLOG;
    }
    if (_place == PROLOG) {
        start(handlers);
    }
    if (_place == CDATA) {
        handlers.lexical.endCDATA();
    }
    while (!_open.empty()) {
        end(handlers);
    }
    handlers.content.endDocument();
}

} // namespace Tamo::FastInfoset::Fuzz
