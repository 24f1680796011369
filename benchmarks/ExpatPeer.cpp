#include "ExpatPeer.h"
#include "Tamo/XML/AttributesImpl.h"
#include "Tamo/XML/ContentHandler.h"
#include "Tamo/XML/LexicalHandler.h"
#include <cstring>
#include <expat.h>
#include <memory>
#include <stdexcept>

namespace Tamo::Benchmarks {

namespace {

constexpr char SEPARATOR = '\f';

struct FreeParser {
    void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
};

using Parser = std::unique_ptr<XML_ParserStruct, FreeParser>;

Parser makeParser() {
    Parser pParser(XML_ParserCreateNS(nullptr, SEPARATOR));
    if (!pParser) {
        throw std::bad_alloc();
    }
    XML_SetReturnNSTriplet(pParser.get(), 1);
    return pParser;
}

void run(XML_Parser parser, const std::string& xml) {
    if (XML_Parse(parser, xml.data(), static_cast<int>(xml.size()), XML_TRUE) != XML_STATUS_OK) {
        throw std::runtime_error(std::string("Expat: ") + XML_ErrorString(XML_GetErrorCode(parser)) +
                                 ", line " + std::to_string(XML_GetCurrentLineNumber(parser)));
    }
}

// Handlers that count.

void count(void* pCount) {
    ++*static_cast<UInt64*>(pCount);
}

void countStart(void* pCount, const XML_Char*, const XML_Char**) {
    count(pCount);
}

void countEnd(void* pCount, const XML_Char*) {
    count(pCount);
}

void countText(void* pCount, const XML_Char*, int) {
    count(pCount);
}

void countTwo(void* pCount, const XML_Char*, const XML_Char*) {
    count(pCount);
}

void countDoctype(void* pCount, const XML_Char*, const XML_Char*, const XML_Char*, int) {
    count(pCount);
}

// Handlers that report SAX2 events.

struct Sax2 {
    struct Name {
        std::string uri;
        std::string localName;
        std::string qname;

        // uri SEPARATOR local [SEPARATOR prefix], or the local name alone.
        void split(const char* pTriplet) {
            const char* pLocal = std::strchr(pTriplet, SEPARATOR);
            if (!pLocal) {
                uri.clear();
                localName.assign(pTriplet);
                qname.assign(localName);
                return;
            }
            uri.assign(pTriplet, pLocal);
            ++pLocal;
            const char* pPrefix = std::strchr(pLocal, SEPARATOR);
            if (!pPrefix) {
                localName.assign(pLocal);
                qname.assign(localName);
                return;
            }
            localName.assign(pLocal, pPrefix);
            qname.assign(pPrefix + 1);
            qname.push_back(':');
            qname.append(localName);
        }
    };

    XML::ContentHandler& content;
    XML::LexicalHandler& lexical;
    XML_Parser parser;
    Name element{};
    Name attribute{};
    XML::AttributesImpl attributes{};
    std::string first{};
    std::string second{};
    bool inDoctype = false;

    static Sax2& self(void* pUser) { return *static_cast<Sax2*>(pUser); }

    static std::string& orEmpty(std::string& to, const XML_Char* pText) {
        to.assign(pText ? pText : "");
        return to;
    }

    static void start(void* pUser, const XML_Char* pName, const XML_Char** pAttributes) {
        static const std::string TYPE("CDATA");
        Sax2& s = self(pUser);
        s.element.split(pName);
        s.attributes.clear();
        for (; *pAttributes; pAttributes += 2) {
            s.attribute.split(pAttributes[0]);
            s.second.assign(pAttributes[1]);
            s.attributes.addAttribute(s.attribute.uri, s.attribute.localName, s.attribute.qname, TYPE,
                                      s.second);
        }
        s.content.startElement(s.element.uri, s.element.localName, s.element.qname, s.attributes);
    }

    static void end(void* pUser, const XML_Char* pName) {
        Sax2& s = self(pUser);
        s.element.split(pName);
        s.content.endElement(s.element.uri, s.element.localName, s.element.qname);
    }

    static void text(void* pUser, const XML_Char* pText, int length) {
        self(pUser).content.characters(pText, 0, length);
    }

    static void instruction(void* pUser, const XML_Char* pTarget, const XML_Char* pData) {
        Sax2& s = self(pUser);
        s.content.processingInstruction(orEmpty(s.first, pTarget), orEmpty(s.second, pData));
    }

    static void comment(void* pUser, const XML_Char* pText) {
        Sax2& s = self(pUser);
        if (!s.inDoctype) {
            s.lexical.comment(pText, 0, static_cast<int>(std::strlen(pText)));
        }
    }

    static void startCDATA(void* pUser) { self(pUser).lexical.startCDATA(); }

    static void endCDATA(void* pUser) { self(pUser).lexical.endCDATA(); }

    static void startMapping(void* pUser, const XML_Char* pPrefix, const XML_Char* pUri) {
        Sax2& s = self(pUser);
        s.content.startPrefixMapping(orEmpty(s.first, pPrefix), orEmpty(s.second, pUri));
    }

    static void endMapping(void* pUser, const XML_Char* pPrefix) {
        Sax2& s = self(pUser);
        s.content.endPrefixMapping(orEmpty(s.first, pPrefix));
    }

    static void startDoctype(void* pUser, const XML_Char* pName, const XML_Char* pSystemId,
                             const XML_Char* pPublicId, int) {
        Sax2& s = self(pUser);
        s.inDoctype = true;
        std::string name(pName);
        s.lexical.startDTD(name, orEmpty(s.first, pPublicId), orEmpty(s.second, pSystemId));
    }

    static void endDoctype(void* pUser) {
        Sax2& s = self(pUser);
        s.inDoctype = false;
        s.lexical.endDTD();
    }
};

} // namespace

UInt64 ExpatPeer::parse(const std::string& xml) {
    const Parser pParser = makeParser();
    UInt64 events = 0;
    XML_SetUserData(pParser.get(), &events);
    XML_SetElementHandler(pParser.get(), countStart, countEnd);
    XML_SetCharacterDataHandler(pParser.get(), countText);
    XML_SetProcessingInstructionHandler(pParser.get(), countTwo);
    XML_SetCommentHandler(pParser.get(), countEnd);
    XML_SetCdataSectionHandler(pParser.get(), count, count);
    XML_SetNamespaceDeclHandler(pParser.get(), countTwo, countEnd);
    XML_SetDoctypeDeclHandler(pParser.get(), countDoctype, count);
    run(pParser.get(), xml);
    return events;
}

void ExpatPeer::parse(const std::string& xml, XML::ContentHandler& content, XML::LexicalHandler& lexical) {
    const Parser pParser = makeParser();
    Sax2 sax2{content, lexical, pParser.get()};
    XML_SetUserData(pParser.get(), &sax2);
    XML_SetElementHandler(pParser.get(), Sax2::start, Sax2::end);
    XML_SetCharacterDataHandler(pParser.get(), Sax2::text);
    XML_SetProcessingInstructionHandler(pParser.get(), Sax2::instruction);
    XML_SetCommentHandler(pParser.get(), Sax2::comment);
    XML_SetCdataSectionHandler(pParser.get(), Sax2::startCDATA, Sax2::endCDATA);
    XML_SetNamespaceDeclHandler(pParser.get(), Sax2::startMapping, Sax2::endMapping);
    XML_SetDoctypeDeclHandler(pParser.get(), Sax2::startDoctype, Sax2::endDoctype);
    content.startDocument();
    run(pParser.get(), xml);
    content.endDocument();
}

} // namespace Tamo::Benchmarks
