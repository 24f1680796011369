#include "bench/ExpatParser.h"
#include "command/FinfError.h"
#include <algorithm>
#include <climits>
#include <expat.h>
#include <new>
#include <string>

namespace finf {

namespace {

// No name contains it.
constexpr char SEPARATOR = '\f';

struct Name {
    std::string_view uri;
    std::string_view localName;

    /// Of "URI, local name, prefix", "URI, local name" or "local name".
    explicit Name(std::string_view triplet) : localName(triplet) {
        const std::size_t first = triplet.find(SEPARATOR);
        if (first != std::string_view::npos) {
            uri = triplet.substr(0, first);
            localName = triplet.substr(first + 1);
            localName = localName.substr(0, localName.find(SEPARATOR));
        }
    }
};

DocumentTally& tally(void* pUserData) {
    return *static_cast<DocumentTally*>(pUserData);
}

void tallyStart(void* pUserData, const XML_Char* name, const XML_Char** attributes) {
    const Name element(name);
    tally(pUserData).startElement(element.uri, element.localName);
    for (; *attributes; attributes += 2) {
        const Name attribute(attributes[0]);
        tally(pUserData).attribute(attribute.uri, attribute.localName, attributes[1]);
    }
}

void tallyEnd(void* pUserData, const XML_Char*) {
    tally(pUserData).endElement();
}

void tallyText(void* pUserData, const XML_Char* text, int length) {
    tally(pUserData).text({text, static_cast<std::size_t>(length)});
}

void count(void* pUserData) {
    ++*static_cast<Tamo::UInt64*>(pUserData);
}

} // namespace

ExpatParser::ExpatParser() : _pParser(XML_ParserCreateNS(nullptr, SEPARATOR)) {
    if (!_pParser) {
        throw std::bad_alloc();
    }
}

ExpatParser::~ExpatParser() = default;

void ExpatParser::Free::operator()(XML_ParserStruct* pParser) const {
    XML_ParserFree(pParser);
}

std::string ExpatParser::version() {
    const XML_Expat_Version version = XML_ExpatVersionInfo();
    return std::to_string(version.major) + '.' + std::to_string(version.minor) + '.' +
           std::to_string(version.micro);
}

Tamo::UInt64 ExpatParser::count(std::string_view xml) {
    XML_Parser parser = _pParser.get();
    XML_ParserReset(parser, nullptr);
    Tamo::UInt64 events = 0;
    XML_SetUserData(parser, &events);
    XML_SetElementHandler(
        parser, [](void* p, const XML_Char*, const XML_Char**) { finf::count(p); },
        [](void* p, const XML_Char*) { finf::count(p); });
    XML_SetCharacterDataHandler(parser, [](void* p, const XML_Char*, int) { finf::count(p); });
    XML_SetNamespaceDeclHandler(
        parser, [](void* p, const XML_Char*, const XML_Char*) { finf::count(p); },
        [](void* p, const XML_Char*) { finf::count(p); });
    XML_SetProcessingInstructionHandler(parser,
                                        [](void* p, const XML_Char*, const XML_Char*) { finf::count(p); });
    XML_SetCommentHandler(parser, [](void* p, const XML_Char*) { finf::count(p); });
    XML_SetCdataSectionHandler(parser, finf::count, finf::count);
    parse(xml);
    return events;
}

Tamo::UInt64 ExpatParser::sum(std::string_view xml) {
    XML_Parser parser = _pParser.get();
    XML_ParserReset(parser, nullptr);
    DocumentTally document;
    XML_SetUserData(parser, &document);
    XML_SetElementHandler(parser, tallyStart, tallyEnd);
    XML_SetCharacterDataHandler(parser, tallyText);
    parse(xml);
    return document.sum();
}

void ExpatParser::parse(std::string_view xml) {
    XML_Parser parser = _pParser.get();
    XML_SetReturnNSTriplet(parser, 1);
    do {
        const std::string_view part = xml.substr(0, INT_MAX);
        xml.remove_prefix(part.size());
        if (XML_Parse(parser, part.data(), static_cast<int>(part.size()), xml.empty()) != XML_STATUS_OK) {
            throw FinfError("Expat: line " + std::to_string(XML_GetCurrentLineNumber(parser)) + ": " +
                            XML_ErrorString(XML_GetErrorCode(parser)));
        }
    } while (!xml.empty());
}

} // namespace finf
