#include "Recording.h"
#include "Tamo/XML/StableAttributes.h"
#include <algorithm>
#include <string_view>
#include <utility>

namespace Tamo::Benchmarks {

namespace {

const std::string NO_STRING;
const std::string CDATA_TYPE("CDATA");

// Of the qualified name, the part that the names beside it do not tell.
std::string_view prefixOf(const std::string& qname) {
    const std::size_t colon = qname.find(':');
    return colon == std::string::npos ? std::string_view() : std::string_view(qname).substr(0, colon);
}

/// Attributes of one element of a recording, seen where they stand.
class AttributesView final : public XML::StableAttributes {
public:
    AttributesView(const Recording::Attribute* pFirst, unsigned int count)
        : _pFirst(pFirst), _count(static_cast<int>(count)) {}

    int getLength() const override { return _count; }
    const std::string& getURI(int i) const override { return *_pFirst[i].pUri; }
    const std::string& getLocalName(int i) const override { return *_pFirst[i].pLocalName; }
    const std::string& getQName(int i) const override { return *_pFirst[i].pQName; }
    using Attributes::getType;
    using Attributes::getValue;
    const std::string& getType(int) const override { return CDATA_TYPE; }
    const std::string& getValue(int i) const override { return *_pFirst[i].pValue; }

private:
    const Recording::Attribute* _pFirst;
    int _count;
};

} // namespace

template<class ReportElement>
void Recording::report(XML::ContentHandler& content, XML::LexicalHandler& lexical,
                       ReportElement&& reportElement) const {
    for (const Event& event : _events) {
        switch (event.kind) {
        case Kind::START_DOCUMENT:
            content.startDocument();
            break;
        case Kind::END_DOCUMENT:
            content.endDocument();
            break;
        case Kind::START_MAPPING:
            content.startPrefixMapping(*event.pFirst, *event.pSecond);
            break;
        case Kind::START_ELEMENT:
            reportElement(event);
            break;
        case Kind::END_ELEMENT:
            content.endElement(*event.pFirst, *event.pSecond, *event.pThird);
            break;
        case Kind::END_MAPPING:
            content.endPrefixMapping(*event.pFirst);
            break;
        case Kind::CHARACTERS:
            content.characters(event.pFirst->data(), 0, static_cast<int>(event.pFirst->size()));
            break;
        case Kind::PROCESSING_INSTRUCTION:
            content.processingInstruction(*event.pFirst, *event.pSecond);
            break;
        case Kind::COMMENT:
            lexical.comment(event.pFirst->data(), 0, static_cast<int>(event.pFirst->size()));
            break;
        case Kind::START_CDATA:
            lexical.startCDATA();
            break;
        case Kind::END_CDATA:
            lexical.endCDATA();
            break;
        case Kind::START_DTD:
            lexical.startDTD(NO_STRING, *event.pFirst, *event.pSecond);
            break;
        case Kind::END_DTD:
            lexical.endDTD();
            break;
        }
    }
}

void Recording::replay(XML::ContentHandler& content, XML::LexicalHandler& lexical) const {
    report(content, lexical, [&](const Event& event) {
        const AttributesView attributes(_attributes.data() + event.firstAttribute, event.attributeCount);
        content.startElement(*event.pFirst, *event.pSecond, *event.pThird, attributes);
    });
}

void Recording::replayWithCopies(XML::ContentHandler& content, XML::LexicalHandler& lexical) const {
    XML::AttributesImpl attributes;
    report(content, lexical, [&](const Event& event) {
        attributes.clear();
        const Attribute* pAttribute = _attributes.data() + event.firstAttribute;
        for (unsigned int i = 0; i < event.attributeCount; ++i, ++pAttribute) {
            attributes.addAttribute(*pAttribute->pUri, *pAttribute->pLocalName, *pAttribute->pQName,
                                    CDATA_TYPE, *pAttribute->pValue);
        }
        content.startElement(*event.pFirst, *event.pSecond, *event.pThird, attributes);
    });
}

std::string Recording::difference(const Recording& other, Scope scope) const {
    // The declarations of an element are a set; what is not compared is passed over here.
    const auto mappings = [scope](const Recording& recording, std::size_t& i) {
        std::vector<std::pair<std::string, std::string>> found;
        for (; i < recording._events.size(); ++i) {
            const Event& event = recording._events[i];
            if (event.kind == Kind::START_MAPPING) {
                found.emplace_back(*event.pFirst, *event.pSecond);
            } else if (event.kind != Kind::END_MAPPING &&
                       (scope == EVERYTHING ||
                        (event.kind != Kind::START_DTD && event.kind != Kind::END_DTD))) {
                break;
            }
        }
        std::sort(found.begin(), found.end());
        return found;
    };
    std::size_t mine = 0;
    std::size_t others = 0;
    for (;; ++mine, ++others) {
        const std::size_t at = mine;
        if (mappings(*this, mine) != mappings(other, others)) {
            return "event " + std::to_string(at) + ": the prefix mappings";
        }
        if (mine == _events.size() || others == other._events.size()) {
            return mine == _events.size() && others == other._events.size() ? std::string()
                                                                            : "number of events";
        }
        if (!same(_events[mine], other, other._events[others])) {
            return "event " + std::to_string(mine) + ": " + describe(_events[mine]) + " / " +
                   other.describe(other._events[others]);
        }
    }
}

bool Recording::same(const Event& mine, const Recording& other, const Event& others) const {
    const auto equal = [](const std::string* pLeft, const std::string* pRight) {
        return pLeft && pRight ? *pLeft == *pRight : pLeft == pRight;
    };
    if (mine.kind != others.kind || !equal(mine.pFirst, others.pFirst) ||
        !equal(mine.pSecond, others.pSecond) || mine.attributeCount != others.attributeCount) {
        return false;
    }
    if (mine.pThird && prefixOf(*mine.pThird) != prefixOf(*others.pThird)) {
        return false;
    }
    for (unsigned int i = 0; i < mine.attributeCount; ++i) {
        const Attribute& left = _attributes[mine.firstAttribute + i];
        const Attribute& right = other._attributes[others.firstAttribute + i];
        if (!equal(left.pUri, right.pUri) || !equal(left.pLocalName, right.pLocalName) ||
            !equal(left.pValue, right.pValue)) {
            return false;
        }
    }
    return true;
}

std::string Recording::describe(const Event& event) const {
    static const char* const NAMES[] = {
        "startDocument", "endDocument",      "startPrefixMapping", "startElement",
        "endElement",    "endPrefixMapping", "characters",         "processingInstruction",
        "comment",       "startCDATA",       "endCDATA",           "startDTD",
        "endDTD"};
    std::string text = NAMES[static_cast<std::size_t>(event.kind)];
    for (const std::string* pString : {event.pFirst, event.pSecond, event.pThird}) {
        if (pString) {
            text += " '" + pString->substr(0, 60) + "'";
        }
    }
    for (unsigned int i = 0; i < event.attributeCount; ++i) {
        const Attribute& attribute = _attributes[event.firstAttribute + i];
        text += " {" + *attribute.pUri + "}" + *attribute.pLocalName + "='" +
                attribute.pValue->substr(0, 60) + "'";
    }
    return text;
}

Recording::Event& Recording::add(Kind kind) {
    flushText();
    return _events.emplace_back(Event{kind});
}

void Recording::flushText() {
    if (!_text.empty()) {
        _events.emplace_back(Event{Kind::CHARACTERS}).pFirst = keep(_text);
        _text.clear();
    }
}

void Recording::startDocument() {
    add(Kind::START_DOCUMENT);
}

void Recording::endDocument() {
    add(Kind::END_DOCUMENT);
}

void Recording::startElement(const std::string& uri, const std::string& localName, const std::string& qname,
                             const XML::Attributes& attributes) {
    Event& event = add(Kind::START_ELEMENT);
    event.pFirst = keep(uri);
    event.pSecond = keep(localName);
    event.pThird = keep(qname);
    event.firstAttribute = _attributes.size();
    event.attributeCount = static_cast<unsigned int>(attributes.getLength());
    for (int i = 0; i < attributes.getLength(); ++i) {
        _attributes.push_back({keep(attributes.getURI(i)), keep(attributes.getLocalName(i)),
                               keep(attributes.getQName(i)), keep(attributes.getValue(i))});
    }
    ++_elements;
}

void Recording::endElement(const std::string& uri, const std::string& localName, const std::string& qname) {
    Event& event = add(Kind::END_ELEMENT);
    event.pFirst = keep(uri);
    event.pSecond = keep(localName);
    event.pThird = keep(qname);
}

void Recording::characters(const char ch[], int start, int length) {
    _text.append(ch + start, static_cast<std::size_t>(length));
    _textOctets += static_cast<std::size_t>(length);
}

void Recording::ignorableWhitespace(const char ch[], int start, int length) {
    characters(ch, start, length);
}

void Recording::processingInstruction(const std::string& target, const std::string& data) {
    Event& event = add(Kind::PROCESSING_INSTRUCTION);
    event.pFirst = keep(target);
    event.pSecond = keep(data);
}

void Recording::startPrefixMapping(const std::string& prefix, const std::string& uri) {
    Event& event = add(Kind::START_MAPPING);
    event.pFirst = keep(prefix);
    event.pSecond = keep(uri);
    ++_mappings;
}

void Recording::endPrefixMapping(const std::string& prefix) {
    add(Kind::END_MAPPING).pFirst = keep(prefix);
}

void Recording::startDTD(const std::string&, const std::string& publicId, const std::string& systemId) {
    Event& event = add(Kind::START_DTD);
    event.pFirst = keep(publicId);
    event.pSecond = keep(systemId);
}

void Recording::endDTD() {
    add(Kind::END_DTD);
}

void Recording::startCDATA() {
    add(Kind::START_CDATA);
}

void Recording::endCDATA() {
    add(Kind::END_CDATA);
}

void Recording::comment(const char ch[], int start, int length) {
    add(Kind::COMMENT).pFirst = keep(std::string(ch + start, static_cast<std::size_t>(length)));
}

} // namespace Tamo::Benchmarks
