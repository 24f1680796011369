#include "TreeTexts.h"
#include "Tamo/FastInfoset/Converter.h"
#include "Tamo/FastInfoset/adapters/detail/LibxmlText.h"
#include "Tamo/MemoryStream.h"
#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <libxml/parser.h>
#include <sstream>

namespace Tamo::FastInfoset::Adapters::Test {

namespace {

std::string viewed(const xmlChar* text) {
    return std::string(LibxmlText::viewOf(text));
}

std::string named(const xmlNs* pNs, const xmlChar* localName) {
    return (pNs ? "{" + viewed(pNs->href) + "}" + viewed(pNs->prefix) + ":" : "") + viewed(localName);
}

std::string sorted(std::vector<std::string> items) {
    std::sort(items.begin(), items.end());
    std::string all;
    for (const std::string& item : items) {
        all += item;
    }
    return all;
}

void write(const xmlNode* pNode, std::size_t depth, std::string& text) {
    if (pNode->type == XML_CDATA_SECTION_NODE) {
        // libxml2's parser joins neighbours.
        const bool isFirst = !pNode->prev || pNode->prev->type != XML_CDATA_SECTION_NODE;
        const bool isLast = !pNode->next || pNode->next->type != XML_CDATA_SECTION_NODE;
        if (pNode->content && *pNode->content) {
            text += (isFirst ? std::string(depth, ' ') + "4  " : "") + viewed(pNode->content) +
                    (isLast ? "\n" : "");
        }
        return;
    }
    text.append(depth, ' ');
    switch (pNode->type) {
    case XML_ELEMENT_NODE: {
        text += "<" + named(pNode->ns, pNode->name);
        std::vector<std::string> declarations;
        for (const xmlNs* pNs = pNode->nsDef; pNs; pNs = pNs->next) {
            declarations.push_back(" xmlns:" + viewed(pNs->prefix) + "=" + viewed(pNs->href));
        }
        text += sorted(declarations);
        for (const xmlAttr* pAttribute = pNode->properties; pAttribute; pAttribute = pAttribute->next) {
            xmlChar* const pValue = xmlNodeListGetString(pAttribute->doc, pAttribute->children, 1);
            text += " " + named(pAttribute->ns, pAttribute->name) + "='" + viewed(pValue) + "'";
            text += pAttribute->atype == XML_ATTRIBUTE_ID ? " ID" : "";
            xmlFree(pValue);
        }
        text += ">\n";
        for (const xmlNode* pChild = pNode->children; pChild; pChild = pChild->next) {
            write(pChild, depth + 1, text);
        }
        return;
    }
    case XML_DTD_NODE: {
        const auto* const pType = reinterpret_cast<const xmlDtd*>(pNode);
        text += "!" + viewed(pType->name) + " " + viewed(pType->ExternalID) + " " + viewed(pType->SystemID);
        std::vector<std::string> items;
        for (const xmlNode* pChild = pType->children; pChild; pChild = pChild->next) {
            const auto* const pEntity = reinterpret_cast<const xmlEntity*>(pChild);
            if (pChild->type == XML_PI_NODE) {
                items.push_back(" ?" + viewed(pChild->name) + " " + viewed(pChild->content));
            } else if (pChild->type == XML_ENTITY_DECL &&
                       pEntity->etype == XML_EXTERNAL_GENERAL_UNPARSED_ENTITY) {
                items.push_back(" entity " + viewed(pEntity->name) + " " + viewed(pEntity->ExternalID) + " " +
                                viewed(pEntity->SystemID) + " " + viewed(pEntity->content));
            }
        }
        text += sorted(items) + "\n";
        return;
    }
    default:
        text += std::to_string(pNode->type) + " " +
                (pNode->type == XML_TEXT_NODE ? "" : viewed(pNode->name)) + " " + viewed(pNode->content) +
                "\n";
    }
}

void write(const pugi::xml_node& node, std::size_t depth, std::string& text) {
    if (node.type() == pugi::node_doctype || (node.type() == pugi::node_cdata && !*node.value())) {
        return; // libxml2's are compared; no document has the other
    }
    text.append(depth, ' ').append(std::to_string(node.type())).append(" ").append(node.name());
    std::vector<std::string> declarations;
    std::string attributes;
    for (const pugi::xml_attribute attribute : node.attributes()) {
        const std::string name = attribute.name();
        const std::string described = " " + name + "='" + attribute.value() + "'";
        if (name.starts_with("xmlns")) {
            declarations.push_back(described);
        } else {
            attributes += described;
        }
    }
    text += sorted(declarations) + attributes + " " + node.value() + "\n";
    for (const pugi::xml_node child : node.children()) {
        write(child, depth + 1, text);
    }
}

} // namespace

std::string textOf(const pugi::xml_node& top) {
    std::string text;
    write(top, 0, text);
    return text;
}

std::string textOf(const xmlDoc* pDocument) {
    std::string text;
    for (const xmlNode* pNode = pDocument->children; pNode; pNode = pNode->next) {
        write(pNode, 0, text);
    }
    return text;
}

std::string textOf(const xmlNode* pNode) {
    std::string text;
    write(pNode, 0, text);
    return text;
}

LibxmlDocument parsed(const std::string& xml) {
    return LibxmlDocument(xmlReadMemory(xml.data(), static_cast<int>(xml.size()), "document.xml", nullptr,
                                        XML_PARSE_NONET | XML_PARSE_NOENT | XML_PARSE_DTDATTR |
                                            XML_PARSE_HUGE | XML_PARSE_NOERROR | XML_PARSE_NOWARNING));
}

void parse(const std::string& xml, pugi::xml_document& document) {
    document.load_buffer(xml.data(), xml.size(),
                         (pugi::parse_full & ~pugi::parse_declaration) | pugi::parse_ws_pcdata,
                         pugi::encoding_utf8);
}

std::string encoded(const std::string& xml, bool strict) {
    MemoryInputStream in(xml.data(), xml.size());
    std::ostringstream out;
    Converter::Options options;
    options.strict = strict;
    Converter::convertToFIS(in, out, options);
    return out.str();
}

std::string contentOf(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

std::vector<std::filesystem::path> sampleFiles() {
    std::vector<std::filesystem::path> files;
    for (const char* const directory : {TAMO_SAMPLES, TAMO_TEST_DATA "/roundtrip"}) {
        for (const auto& entry : std::filesystem::directory_iterator(directory)) {
            if (entry.path().extension() == ".xml" || entry.path().extension() == ".svg") {
                files.push_back(entry.path());
            }
        }
    }
    if (const char* const pMore = std::getenv("TAMO_DOCUMENTS")) {
        for (const auto& entry : std::filesystem::recursive_directory_iterator(pMore)) {
            if (entry.is_regular_file() && entry.path().has_extension()) {
                files.push_back(entry.path());
            }
        }
    }
    std::sort(files.begin(), files.end());
    return files;
}

} // namespace Tamo::FastInfoset::Adapters::Test
