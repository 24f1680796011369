#include "FuzzSupport.h"
#include "Failure.h"
#include "Octets.h"
#include "Tamo/FastInfoset/Converter.h"
#include "Tamo/FastInfoset/DocumentVocabulary.h"
#include "Tamo/FastInfoset/FISException.h"
#include "Tamo/FastInfoset/FastInfosetParser.h"
#include "Tamo/FastInfoset/FastInfosetToXML.h"
#include "Tamo/FastInfoset/XMLToFastInfoset.h"
#include "Tamo/MemoryStream.h"
#include "Tamo/XML/SAXParser.h"
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <sstream>

namespace Tamo::FastInfoset::Fuzz {

using Test::failureOf;

void require(bool holds, const char* property, const std::string& first, const std::string& second) {
    if (holds) {
        return;
    }
    std::fprintf(stderr, "\nProperty violated: %s\n  %s\n  %s\n", property, first.c_str(), second.c_str());
    std::abort();
}

void requireProportion(const Outcome& written, std::size_t document, std::size_t delivered) {
    require(written.events.size() <= 4096 + 8 * (document + delivered), "what is written is in proportion",
            std::to_string(document) + " octets, " + std::to_string(delivered) + " delivered",
            std::to_string(written.events.size()) + " written");
}

ParserLimits limits() {
    ParserLimits result;
    result.maxDepth = 10000;
    result.maxDeliveredOctets = 1 << 20;
    return result;
}

Block::Block(std::string_view octets) : _pOctets(new char[octets.size()]), _size(octets.size()) {
    std::copy(octets.begin(), octets.end(), _pOctets.get());
}

DocumentVocabulary Loader::load(const std::string& uri) {
    static const std::string XML("<p:a xmlns:p='u' b='c' p:d='e'>f<!--g--><?h i?></p:a>");
    static const std::string FIS =
        Test::octets("E00000017838CF00700075F03D8100617C00624063FF91686991E2406EE100740064FF");
    _isUsed = true;
    switch (uri.front()) {
    case 'x': {
        MemoryInputStream stream(XML.data(), XML.size());
        return loadXML(stream);
    }
    case 'v': {
        MemoryInputStream stream(FIS.data(), FIS.size());
        return loadFastInfoset(stream, *this);
    }
    case 's': {
        MemoryInputStream stream(_document.data(), _document.size());
        return loadFastInfoset(stream, *this);
    }
    default:
        throw FISException("no such vocabulary", uri);
    }
}

// A name that is fit to be an element's and yet refused is a recent one, or none at all.
void Information::look(const std::string& name) {
    const bool isASCII = std::all_of(name.begin(), name.end(), [](char c) { return c >= 0; });
    if (!isASCII && !_hasRecentNames) {
        const std::string xml = "<" + name + "/>";
        _hasRecentNames = !failureOf([&] { XML::SAXParser().parseMemoryNP(xml.data(), xml.size()); }).empty();
    }
}

void Information::startElement(const std::string& uri, const std::string& localName, const std::string& qname,
                               const XML::Attributes& attributes) {
    ++_depth;
    count(uri.size() + localName.size() + qname.size());
    look(localName);
    look(qname.substr(0, qname.find(':')));
    for (int i = 0; i < attributes.getLength(); ++i) {
        look(attributes.getLocalName(i));
        count(attributes.getURI(i).size() + attributes.getLocalName(i).size() +
              attributes.getQName(i).size() + attributes.getValue(i).size());
    }
    Trace::startElement(uri, localName, std::string(), attributes);
}

void Information::endElement(const std::string& uri, const std::string& localName, const std::string& qname) {
    --_depth;
    count(uri.size() + localName.size() + qname.size());
    Trace::endElement(uri, localName, std::string());
}

void Information::characters(const char ch[], int start, int length) {
    const std::string_view text(ch + start, static_cast<std::size_t>(length));
    count(text.size());
    if (!text.empty() && (_depth > 0 || text.find_first_not_of(" \t\r\n") != std::string_view::npos)) {
        Trace::characters(ch, start, length);
    }
}

void Information::processingInstruction(const std::string& target, const std::string& data) {
    look(target);
    count(target.size() + data.size());
    Trace::processingInstruction((_inDTD ? "DTD:" : "") + target, data);
}

void Information::startPrefixMapping(const std::string& prefix, const std::string& uri) {
    look(prefix);
    count(prefix.size() + uri.size());
    Trace::startPrefixMapping(prefix, uri);
}

void Information::comment(const char ch[], int start, int length) {
    count(static_cast<std::size_t>(length));
    Trace::comment(ch, start, length);
}

// A public identifier as every parser of XML normalises it.
std::string Information::normalized(const std::string& publicId) {
    std::istringstream words(publicId);
    std::string result;
    for (std::string word; words >> word;) {
        result += (result.empty() ? "" : " ") + word;
    }
    return result;
}

void Information::startDTD(const std::string&, const std::string& publicId, const std::string& systemId) {
    _inDTD = true;
    const std::string publicText = normalized(publicId);
    if (!publicText.empty() || !systemId.empty()) {
        Trace::event("DTD(" + publicText + "," + systemId + ")");
    }
}

void Information::notationDecl(const std::string& name, const std::string* publicId,
                               const std::string* systemId) {
    look(name);
    Trace declaration;
    const std::string publicText = publicId ? normalized(*publicId) : std::string();
    declaration.notationDecl(name, publicId ? &publicText : nullptr, systemId);
    _notations += declaration.text();
}

void Information::unparsedEntityDecl(const std::string& name, const std::string* publicId,
                                     const std::string& systemId, const std::string& notationName) {
    look(name);
    look(notationName);
    Trace declaration;
    const std::string publicText = publicId ? normalized(*publicId) : std::string();
    declaration.unparsedEntityDecl(name, publicId ? &publicText : nullptr, systemId, notationName);
    _entities += declaration.text();
}

Outcome informationOfXML(const std::string& xml) {
    XML::SAXParser parser;
    parser.setFeature(XML::SAXParser::FEATURE_DECLARATIONS_FIRST, true);
    Information information;
    information.connect(parser);
    const std::string failure = failureOf([&] { parser.parseMemoryNP(xml.data(), xml.size()); });
    return {failure, information.information(), false, information.hasRecentNames(), information.delivered()};
}

Outcome informationOfFIS(std::string_view document, bool strict) {
    class Refusing : public ExternalVocabularyLoader {
    public:
        bool isAsked = false;
        DocumentVocabulary load(const std::string& uri) override {
            isAsked = true;
            throw FISException("external vocabulary", uri);
        }
    } loader;
    FastInfosetParser parser;
    parser.setStrict(strict);
    parser.setLimits(limits());
    parser.setExternalVocabularyLoader(&loader);
    Information information;
    information.connect(parser);
    const std::string failure = failureOf([&] { parser.parseMemoryNP(document.data(), document.size()); });
    return {failure, information.information(), loader.isAsked, information.hasRecentNames(),
            information.delivered()};
}

namespace {

// An object that is kept does in memory what Converter has done, behind half of the document and behind it.
template<class Kept>
void requireKept(const std::string& document, const Converter::Options& options, const Outcome& converted) {
    Kept kept(options);
    failureOf([&] { kept.convert(std::string_view(document).substr(0, document.size() / 2)); });
    for (int i = 0; i < 2; ++i) {
        std::string result;
        const std::string failure = failureOf([&] { result = kept.convert(document); });
        require(failure.empty() == !converted.failed(), "a kept object accepts the same", converted.failure,
                failure);
        require(converted.failed() || result == converted.events, "a kept object writes the same",
                converted.events, result);
    }
}

} // namespace

Outcome convertedToFIS(const std::string& xml, int maxIndexedStringLength, bool stripWhitespace,
                       bool strict) {
    std::istringstream in(xml);
    std::ostringstream out;
    Converter::Options options;
    options.maxIndexedStringLength = maxIndexedStringLength;
    options.stripWhitespace = stripWhitespace;
    options.strict = strict;
    const std::string failure = failureOf([&] { Converter::convertToFIS(in, out, options); });
    const Outcome outcome{failure, out.str(), false, false, 0};
    requireKept<XMLToFastInfoset>(xml, options, outcome);
    return outcome;
}

Outcome convertedToXML(const std::string& document, int options, bool strict) {
    std::istringstream in(document);
    std::ostringstream out;
    Converter::Options all;
    all.xmlOptions = options;
    all.strict = strict;
    all.opensVocabularies = true;
    const std::string failure = failureOf([&] { Converter::convertToXML(in, out, all); });
    const Outcome outcome{failure, out.str(), false, false, 0};
    requireKept<FastInfosetToXML>(document, all, outcome);
    return outcome;
}

namespace {

std::string described(const QualifiedNameEntry& name) {
    return std::to_string(name.prefixId()) + "," + std::to_string(name.namespaceId()) + "," +
           std::to_string(name.localNameId()) + ";";
}

} // namespace

std::string describedVocabulary(const DocumentVocabulary& vocabulary) {
    std::string text;
    for (int id = DocumentVocabulary::PREFIX; id < DocumentVocabulary::ELEMENT_NAME; ++id) {
        const auto& table = vocabulary.vocabulary(static_cast<DocumentVocabulary::ID>(id));
        for (std::size_t i = 0; i < table.size(); ++i) {
            text += table.value(static_cast<unsigned int>(i)) + ";";
        }
        text += "|";
    }
    for (const auto* pTable : {&vocabulary.elementVocabulary(), &vocabulary.attributeVocabulary()}) {
        for (std::size_t i = 0; i < pTable->size(); ++i) {
            text += described(pTable->value(static_cast<unsigned int>(i)));
        }
        text += "|";
    }
    return text + std::to_string(vocabulary.restrictedAlphabets().alphabets().size());
}

} // namespace Tamo::FastInfoset::Fuzz
