#ifndef TAMO_FASTINFOSET_ADAPTERS_DETAIL_PUGIXMLSAVER_H
#define TAMO_FASTINFOSET_ADAPTERS_DETAIL_PUGIXMLSAVER_H

#include "Tamo/FastInfoset/FISException.h"
#include "Tamo/FastInfoset/FastInfosetWriter.h"
#include "Tamo/FastInfoset/adapters/detail/DocumentOnStream.h"
#include "Tamo/FastInfoset/adapters/detail/PugixmlTree.h"
#include "Tamo/XML/AttributesImpl.h"
#include "Tamo/XML/NamespaceSupport.h"
#include <algorithm>
#include <pugixml.hpp>
#include <string>
#include <string_view>
#include <vector>

namespace Tamo::FastInfoset::Adapters {

/// Gives the nodes of pugixml's trees to a writer as events; depth costs no stack. Used by one thread at a
/// time.
class PugixmlSaver {
public:
    explicit PugixmlSaver(FastInfosetWriter& writer) : _writer(writer) {}

    /// Writes a node with all that is in it.
    void save(pugi::xml_node top) {
        if (!top) {
            throw FISException("Cannot save an empty handle of pugixml");
        }
        declareOuter(top);
        pugi::xml_node node = top;
        for (;;) {
            start(node);
            if (pugi::xml_node child = node.first_child()) {
                node = child;
                continue;
            }
            end(node);
            while (node != top && !node.next_sibling()) {
                node = node.parent();
                end(node);
            }
            if (node == top) {
                break;
            }
            node = node.next_sibling();
        }
        for (const std::string& prefix : _outerPrefixes) {
            _writer.endPrefixMapping(prefix);
        }
        _outerPrefixes.clear();
    }

private:
    // What the elements around top declare, those declarations aside that inner ones hide.
    void declareOuter(const pugi::xml_node& top) {
        if (top.type() != pugi::node_element) {
            return;
        }
        _namespaces.pushContext();
        PugixmlTree::visitDeclarations(top.parent(), [&](const char* prefix, const char* uri) {
            _namespaces.declarePrefix(prefix, uri);
        });
        _namespaces.visitDeclared([&](const std::string& prefix, const std::string& uri) {
            if (!prefix.empty() || !uri.empty()) {
                _writer.startPrefixMapping(prefix, uri);
                _outerPrefixes.push_back(prefix);
            }
        });
    }

    void start(const pugi::xml_node& node) {
        switch (node.type()) {
        case pugi::node_document:
            _writer.startDocument();
            break;
        case pugi::node_element:
            startElement(node);
            break;
        case pugi::node_pcdata:
            if (*node.value() != 0) {
                _writer.characters(node.value());
            }
            break;
        case pugi::node_cdata:
            _writer.startCDATA();
            if (*node.value() != 0) {
                _writer.characters(node.value());
            }
            _writer.endCDATA();
            break;
        case pugi::node_comment:
            _writer.comment(std::string_view(node.value()));
            break;
        case pugi::node_pi:
            _writer.processingInstruction(node.name(), node.value());
            break;
        case pugi::node_doctype:
            documentType(node.value());
            break;
        case pugi::node_declaration: // of the text that was read
        case pugi::node_null:
            break;
        }
    }

    void end(const pugi::xml_node& node) {
        if (node.type() == pugi::node_document) {
            _writer.endDocument();
        } else if (node.type() == pugi::node_element) {
            _qname = node.name();
            split(_qname, true, _uri, _localName);
            _writer.endElement(_uri, _localName, _qname);
            _namespaces.visitDeclared(
                [&](const std::string& prefix, const std::string&) { _writer.endPrefixMapping(prefix); });
            _namespaces.popContext();
        }
    }

    void startElement(const pugi::xml_node& node) {
        _namespaces.pushContext();
        bool hasOthers = false;
        for (const pugi::xml_attribute attribute : node.attributes()) {
            if (const char* const pPrefix = PugixmlTree::declaredPrefix(attribute.name())) {
                _namespaces.declarePrefix(pPrefix, attribute.value());
                _writer.startPrefixMapping(pPrefix, attribute.value());
            } else {
                hasOthers = true;
            }
        }
        _attributes.clear();
        if (hasOthers) {
            for (const pugi::xml_attribute attribute : node.attributes()) {
                if (!PugixmlTree::declaredPrefix(attribute.name())) {
                    _qname = attribute.name();
                    split(_qname, false, _uri, _localName);
                    _value = attribute.value();
                    _attributes.addAttribute(_uri, _localName, _qname, _type, _value);
                }
            }
        }
        _qname = node.name();
        split(_qname, true, _uri, _localName);
        _writer.startElement(_uri, _localName, _qname, _attributes);
    }

    // The namespace and the local name of a qualified name.
    void split(const std::string& qname, bool isElement, std::string& uri, std::string& localName) const {
        const std::size_t colon = qname.find(':');
        if (colon == std::string::npos) {
            localName = qname;
            uri = isElement ? _namespaces.getURI({}) : std::string();
            return;
        }
        localName.assign(qname, colon + 1);
        uri = _namespaces.getURI(std::string_view(qname).substr(0, colon));
        if (uri.empty()) {
            throw FISException("Cannot save a name whose prefix is not declared", qname);
        }
    }

    // The identifiers of <!DOCTYPE value>; its name is not carried, and declarations in it are left out.
    void documentType(std::string_view value) {
        static constexpr std::string_view SPACE = " \t\r\n";
        const auto skip = [&](std::size_t count) {
            value.remove_prefix(std::min(count, value.size()));
            value.remove_prefix(std::min(value.find_first_not_of(SPACE), value.size()));
        };
        const auto literal = [&] {
            const std::size_t end =
                value.starts_with('"') || value.starts_with('\'') ? value.find(value.front(), 1) : 0;
            if (end == 0 || end == std::string_view::npos) {
                return std::string();
            }
            std::string result(value.substr(1, end - 1));
            skip(end + 1);
            return result;
        };
        skip(0);
        skip(value.find_first_of(" \t\r\n["));
        std::string publicId;
        std::string systemId;
        if (value.starts_with("PUBLIC")) {
            skip(6);
            publicId = literal();
            systemId = literal();
        } else if (value.starts_with("SYSTEM")) {
            skip(6);
            systemId = literal();
        }
        _writer.startDTD({}, publicId, systemId);
        _writer.endDTD();
    }

    FastInfosetWriter& _writer;
    XML::NamespaceSupport _namespaces;
    std::vector<std::string> _outerPrefixes;
    XML::AttributesImpl _attributes;
    const std::string _type = "CDATA";
    std::string _qname;
    std::string _uri;
    std::string _localName;
    std::string _value;
};

} // namespace Tamo::FastInfoset::Adapters

#endif
