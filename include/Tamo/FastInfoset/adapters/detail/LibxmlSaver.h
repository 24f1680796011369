#ifndef TAMO_FASTINFOSET_ADAPTERS_DETAIL_LIBXMLSAVER_H
#define TAMO_FASTINFOSET_ADAPTERS_DETAIL_LIBXMLSAVER_H

#include "Tamo/FastInfoset/FISException.h"
#include "Tamo/FastInfoset/FastInfosetWriter.h"
#include "Tamo/FastInfoset/adapters/detail/LibxmlText.h"
#include "Tamo/XML/AttributesImpl.h"
#include <algorithm>
#include <libxml/hash.h>
#include <libxml/tree.h>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <vector>

namespace Tamo::FastInfoset::Adapters {

/// Gives the nodes of libxml2's trees to a writer as events; depth costs no stack. Used by one thread at a
/// time.
class LibxmlSaver {
public:
    explicit LibxmlSaver(FastInfosetWriter& writer) : _writer(writer) {}

    /// Writes a whole document.
    void saveDocument(const xmlDoc* pDocument) {
        if (pDocument->intSubset) {
            declarations(pDocument->intSubset);
        }
        _writer.startDocument();
        for (const xmlNode* pNode = pDocument->children; pNode; pNode = pNode->next) {
            saveTree(pNode);
        }
        _writer.endDocument();
    }

    /// Writes a node with all that is in it, with the declarations in force for an element.
    void saveSubtree(const xmlNode* pTop) {
        if (pTop->type == XML_ELEMENT_NODE) {
            declareOuter(pTop);
        }
        saveTree(pTop);
        for (const std::string& prefix : _outerPrefixes) {
            _writer.endPrefixMapping(prefix);
        }
        _outerPrefixes.clear();
    }

private:
    void saveTree(const xmlNode* pTop) {
        const xmlNode* pNode = pTop;
        for (;;) {
            start(pNode);
            if (pNode->type == XML_ELEMENT_NODE && pNode->children) {
                pNode = pNode->children;
                continue;
            }
            end(pNode);
            while (pNode != pTop && !pNode->next) {
                pNode = pNode->parent;
                end(pNode);
            }
            if (pNode == pTop) {
                return;
            }
            pNode = pNode->next;
        }
    }

    static std::string stringOf(const xmlChar* text) { return std::string(LibxmlText::viewOf(text)); }

    // What the elements around pTop declare and neither it nor one between hides.
    void declareOuter(const xmlNode* pTop) {
        std::vector<std::string_view> seen;
        for (const xmlNode* pNode = pTop; pNode && pNode->type == XML_ELEMENT_NODE; pNode = pNode->parent) {
            for (const xmlNs* pNs = pNode->nsDef; pNs; pNs = pNs->next) {
                const std::string_view prefix = LibxmlText::viewOf(pNs->prefix);
                if (std::find(seen.begin(), seen.end(), prefix) == seen.end()) {
                    seen.push_back(prefix);
                    if (pNode != pTop && !LibxmlText::viewOf(pNs->href).empty()) {
                        _outerPrefixes.emplace_back(prefix);
                        _writer.startPrefixMapping(_outerPrefixes.back(), stringOf(pNs->href));
                    }
                }
            }
        }
    }

    void start(const xmlNode* pNode) {
        switch (pNode->type) {
        case XML_ELEMENT_NODE:
            startElement(pNode);
            break;
        case XML_TEXT_NODE:
            characters(pNode);
            break;
        case XML_CDATA_SECTION_NODE:
            _writer.startCDATA();
            characters(pNode);
            _writer.endCDATA();
            break;
        case XML_ENTITY_REF_NODE:
            _writer.skippedEntity(stringOf(pNode->name));
            break;
        case XML_COMMENT_NODE:
            _writer.comment(LibxmlText::viewOf(pNode->content));
            break;
        case XML_PI_NODE:
            _writer.processingInstruction(stringOf(pNode->name), stringOf(pNode->content));
            break;
        case XML_DTD_NODE:
            documentType(reinterpret_cast<const xmlDtd*>(pNode));
            break;
        default: // what libxml2 puts into trees for itself
            break;
        }
    }

    void characters(const xmlNode* pNode) {
        const std::string_view text = LibxmlText::viewOf(pNode->content);
        if (!text.empty()) {
            _writer.characters(text);
        }
    }

    void startElement(const xmlNode* pNode) {
        for (const xmlNs* pNs = pNode->nsDef; pNs; pNs = pNs->next) {
            _writer.startPrefixMapping(stringOf(pNs->prefix), stringOf(pNs->href));
        }
        _attributes.clear();
        for (const xmlAttr* pAttribute = pNode->properties; pAttribute; pAttribute = pAttribute->next) {
            setName(pAttribute->ns, pAttribute->name);
            setValue(pAttribute);
            _attributes.addAttribute(_uri, _localName, _qname, _type, _value);
        }
        setName(pNode->ns, pNode->name);
        _writer.startElement(_uri, _localName, _qname, _attributes);
    }

    void end(const xmlNode* pNode) {
        if (pNode->type == XML_ELEMENT_NODE) {
            setName(pNode->ns, pNode->name);
            _writer.endElement(_uri, _localName, _qname);
            for (const xmlNs* pNs = pNode->nsDef; pNs; pNs = pNs->next) {
                _writer.endPrefixMapping(stringOf(pNs->prefix));
            }
        }
    }

    void setName(const xmlNs* pNs, const xmlChar* localName) {
        _uri = pNs ? LibxmlText::viewOf(pNs->href) : std::string_view();
        _localName = LibxmlText::viewOf(localName);
        _qname.clear();
        if (pNs && pNs->prefix) {
            _qname.append(LibxmlText::viewOf(pNs->prefix)).append(1, ':');
        }
        _qname.append(_localName);
    }

    // Text as a rule; references that libxml2 has kept are replaced.
    void setValue(const xmlAttr* pAttribute) {
        const xmlNode* const pFirst = pAttribute->children;
        if (!pFirst) {
            _value.clear();
        } else if (!pFirst->next && pFirst->type == XML_TEXT_NODE) {
            _value = LibxmlText::viewOf(pFirst->content);
        } else {
            struct Free {
                void operator()(xmlChar* text) const noexcept { xmlFree(text); }
            };
            const std::unique_ptr<xmlChar, Free> pText(
                xmlNodeListGetString(pAttribute->doc, const_cast<xmlNode*>(pFirst), 1));
            _value = LibxmlText::viewOf(pText.get());
        }
    }

    void documentType(const xmlDtd* pType) {
        _writer.startDTD(stringOf(pType->name), stringOf(pType->ExternalID), stringOf(pType->SystemID));
        for (const xmlNode* pNode = pType->children; pNode; pNode = pNode->next) {
            if (pNode->type == XML_PI_NODE) {
                start(pNode);
            }
        }
        _writer.endDTD();
    }

    // Notations, which libxml2 has in a table, in the order of their names, and unparsed entities.
    void declarations(const xmlDtd* pType) {
        struct Found {
            std::vector<const xmlNotation*> notations;
            bool isWhole = true;
        } found;
        if (pType->notations) {
            const auto collect = [](void* pNotation, void* pData, const xmlChar*) noexcept {
                auto& result = *static_cast<Found*>(pData);
                try {
                    result.notations.push_back(static_cast<const xmlNotation*>(pNotation));
                } catch (const std::bad_alloc&) {
                    result.isWhole = false; // nothing passes through libxml2
                }
            };
            xmlHashScan(static_cast<xmlHashTable*>(pType->notations), collect, &found);
        }
        if (!found.isWhole) {
            throw std::bad_alloc();
        }
        std::sort(found.notations.begin(), found.notations.end(),
                  [](const xmlNotation* pA, const xmlNotation* pB) {
                      return LibxmlText::viewOf(pA->name) < LibxmlText::viewOf(pB->name);
                  });
        for (const xmlNotation* pNotation : found.notations) {
            const std::string publicId = stringOf(pNotation->PublicID);
            const std::string systemId = stringOf(pNotation->SystemID);
            _writer.notationDecl(stringOf(pNotation->name), pNotation->PublicID ? &publicId : nullptr,
                                 pNotation->SystemID ? &systemId : nullptr);
        }
        for (const xmlNode* pNode = pType->children; pNode; pNode = pNode->next) {
            const auto* const pEntity = reinterpret_cast<const xmlEntity*>(pNode);
            if (pNode->type == XML_ENTITY_DECL && pEntity->etype == XML_EXTERNAL_GENERAL_UNPARSED_ENTITY) {
                const std::string publicId = stringOf(pEntity->ExternalID);
                _writer.unparsedEntityDecl(stringOf(pEntity->name), pEntity->ExternalID ? &publicId : nullptr,
                                           stringOf(pEntity->SystemID), stringOf(pEntity->content));
            }
        }
    }

    FastInfosetWriter& _writer;
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
