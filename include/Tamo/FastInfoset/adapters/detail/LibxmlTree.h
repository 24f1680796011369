#ifndef TAMO_FASTINFOSET_ADAPTERS_DETAIL_LIBXMLTREE_H
#define TAMO_FASTINFOSET_ADAPTERS_DETAIL_LIBXMLTREE_H

#include "Tamo/FastInfoset/adapters/detail/LibxmlText.h"
#include "Tamo/FastInfoset/adapters/detail/TreeBuilder.h"
#include <cstddef>
#include <cstring>
#include <functional>
#include <libxml/dict.h>
#include <libxml/tree.h>
#include <libxml/valid.h>
#include <map>
#include <new>
#include <string>
#include <string_view>
#include <vector>

namespace Tamo::FastInfoset::Adapters {

/// The nodes of a tree of libxml2, as TreeBuilder asks for them; names are those of the document's
/// dictionary. Each node belongs to the tree as soon as it is there. Attributes and declarations are put
/// together as libxml2's own parser does, because its functions look through all that an element has. Memory
/// that libxml2 does not get is std::bad_alloc. Used by one thread at a time.
class LibxmlTree {
public:
    /// The local name in the dictionary, and the declaration of the prefix.
    struct Kept {
        const xmlChar* pLocalName = nullptr;
        xmlNs* pNamespace = nullptr;
    };

    static constexpr bool HAS_DECLARATIONS = true;
    static constexpr bool HAS_REFERENCES = true;

    using Names = TreeNames<Kept>;
    using Name = Names::Name;

    /// What is built is appended to pParent, a document or an element of pDocument.
    LibxmlTree(xmlDoc* pDocument, xmlNode* pParent) : _pDocument(pDocument), _pNode(pParent) {
        if (!pDocument->dict) {
            pDocument->dict = required(xmlDictCreate());
        }
    }

    /// A declaration around what is built.
    void declareOuter(const std::string& prefix, xmlNs* pNamespace) {
        _declared[prefix].push_back(pNamespace);
    }

    void startElement(const Name& name, const std::vector<TreeDeclaration>& declarations) {
        const xmlChar* const pLocalName = localNameOf(name);
        xmlNode* const pElement =
            required(xmlNewDocNodeEatName(_pDocument, nullptr, const_cast<xmlChar*>(pLocalName), nullptr));
        append(pElement);
        _pNode = pElement;
        _pLastDeclaration = nullptr;
        _pLastAttribute = nullptr;
        for (const TreeDeclaration& declared : declarations) {
            declaration(declared.prefix, declared.uri);
        }
        pElement->ns = namespaceOf(name);
    }

    void declaration(const std::string& prefix, const std::string& uri) {
        xmlNs* const pNamespace =
            required(xmlNewNs(nullptr, textOf(uri), prefix.empty() ? nullptr : textOf(prefix)));
        (_pLastDeclaration ? _pLastDeclaration->next : _pNode->nsDef) = pNamespace;
        _pLastDeclaration = pNamespace;
        _declared[prefix].push_back(pNamespace);
    }

    void attribute(const Name& name, const std::string& value) {
        static constexpr xmlChar ID[] = {'i', 'd', 0};
        const xmlChar* const pLocalName = localNameOf(name);
        xmlNs* const pNamespace = namespaceOf(name);
        auto* const pAttribute = static_cast<xmlAttr*>(required(xmlMalloc(sizeof(xmlAttr))));
        std::memset(pAttribute, 0, sizeof(xmlAttr));
        pAttribute->type = XML_ATTRIBUTE_NODE;
        pAttribute->name = pLocalName;
        pAttribute->ns = pNamespace;
        pAttribute->doc = _pDocument;
        pAttribute->parent = _pNode;
        pAttribute->prev = _pLastAttribute;
        (_pLastAttribute ? _pLastAttribute->next : _pNode->properties) = pAttribute;
        _pLastAttribute = pAttribute;
        xmlNode* const pText = newText(value);
        pText->parent = reinterpret_cast<xmlNode*>(pAttribute);
        pAttribute->children = pAttribute->last = pText;
        if (name.prefix == XML::NamespaceSupport::XML_NAMESPACE_PREFIX && xmlStrEqual(pLocalName, ID)) {
            xmlAddID(nullptr, _pDocument, textOf(value), pAttribute);
        }
    }
    void elementStarted() {}

    void endElement() {
        for (const xmlNs* pNamespace = _pNode->nsDef; pNamespace; pNamespace = pNamespace->next) {
            const auto it = _declared.find(pNamespace->prefix ? LibxmlText::viewOf(pNamespace->prefix)
                                                              : std::string_view());
            it->second.pop_back();
            if (it->second.empty()) {
                _declared.erase(it);
            }
        }
        _pNode = _pNode->parent;
    }

    void text(std::string_view piece) { append(newText(piece)); }
    void moreText(std::string_view piece) {
        if (_text.empty()) {
            _text = LibxmlText::viewOf(_pNode->last->content);
        }
        _text.append(piece);
    }
    void endText() {
        setContent(_pNode->last, _text);
        _text.clear();
    }
    void cData(std::string_view section) {
        appendWhole(
            xmlNewCDataBlock(_pDocument, LibxmlText::octetsOf(section), LibxmlText::lengthOf(section)),
            _pNode);
    }
    void comment(const std::string& value) {
        LibxmlText::lengthOf(value);
        appendWhole(xmlNewDocComment(_pDocument, textOf(value)), _pNode);
    }
    void instruction(const std::string& target, const std::string& data, bool inDocumentType) {
        LibxmlText::lengthOf(data);
        xmlNode* const pNode =
            required(xmlNewDocPI(_pDocument, textOf(target), data.empty() ? nullptr : textOf(data)));
        xmlNode* const pParent = inDocumentType ? reinterpret_cast<xmlNode*>(_pDocument->intSubset) : _pNode;
        appendTo(pParent, pNode);
        require(pNode->name && (data.empty() || pNode->content));
    }
    void reference(const std::string& name) { append(required(xmlNewReference(_pDocument, textOf(name)))); }

    void startDocumentType(const std::string& publicId, const std::string& systemId) {
        required(xmlCreateIntSubset(_pDocument, nullptr, publicId.empty() ? nullptr : textOf(publicId),
                                    systemId.empty() ? nullptr : textOf(systemId)));
    }
    void nameDocumentType(const std::string& name, const std::vector<TreeEntity>& notations,
                          const std::vector<TreeEntity>& entities) {
        xmlDtd* const pType = _pDocument->intSubset;
        pType->name = required(xmlStrdup(textOf(name)));
        const auto present = [](const std::string& identifier) {
            return identifier.empty() ? nullptr : textOf(identifier);
        };
        // One that comes twice is left out, as XML has it.
        for (const TreeEntity& notation : notations) {
            if (!xmlGetDtdNotationDesc(pType, textOf(notation.name))) {
                required(xmlAddNotationDecl(nullptr, pType, textOf(notation.name), present(notation.publicId),
                                            present(notation.systemId)));
            }
        }
        for (const TreeEntity& entity : entities) {
            if (!xmlGetDocEntity(_pDocument, textOf(entity.name))) {
                required(xmlAddDocEntity(_pDocument, textOf(entity.name),
                                         XML_EXTERNAL_GENERAL_UNPARSED_ENTITY, present(entity.publicId),
                                         textOf(entity.systemId), textOf(entity.notation)));
            }
        }
    }

private:
    template<class T>
    static T* required(T* pointer) {
        require(pointer != nullptr);
        return pointer;
    }
    static void require(bool done) {
        if (!done) {
            throw std::bad_alloc();
        }
    }
    static const xmlChar* textOf(const std::string& s) noexcept { return LibxmlText::octetsOf(s); }

    // A short text stands in the node itself, where libxml2's parser puts it, too.
    static bool isInNode(const xmlNode* pNode) noexcept {
        return pNode->content == reinterpret_cast<const xmlChar*>(&pNode->properties);
    }
    static void setContent(xmlNode* pNode, std::string_view text) {
        xmlChar* const pCopy = required(xmlStrndup(LibxmlText::octetsOf(text), LibxmlText::lengthOf(text)));
        if (isInNode(pNode)) {
            pNode->properties = nullptr;
            pNode->nsDef = nullptr;
        } else if (pNode->content) {
            xmlFree(pNode->content);
        }
        pNode->content = pCopy;
    }
    xmlNode* newText(std::string_view text) {
        xmlNode* const pNode = required(xmlNewDocText(_pDocument, nullptr));
        if (text.size() < sizeof(pNode->properties) + sizeof(pNode->nsDef)) {
            static_assert(offsetof(xmlNode, nsDef) == offsetof(xmlNode, properties) + sizeof(void*));
            auto* const pPlace = reinterpret_cast<xmlChar*>(pNode) + offsetof(xmlNode, properties);
            std::memcpy(pPlace, text.data(), text.size()); // zeros are behind it
            pNode->content = pPlace;
            return pNode;
        }
        try {
            setContent(pNode, text);
        } catch (...) {
            xmlFreeNode(pNode);
            throw;
        }
        return pNode;
    }

    void append(xmlNode* pNode) { appendTo(_pNode, pNode); }

    // Some functions leave out the content for which there is no memory.
    static void appendWhole(xmlNode* pNode, xmlNode* pParent) {
        appendTo(pParent, required(pNode));
        require(pNode->content != nullptr);
    }

    // The parent owns the node then, or the text node before it has taken the text over.
    static void appendTo(xmlNode* pParent, xmlNode* pNode) {
        if (!xmlAddChild(pParent, pNode)) {
            xmlFreeNode(pNode);
            throw std::bad_alloc();
        }
    }

    const xmlChar* localNameOf(const Name& name) {
        Kept& kept = Names::keptOf(name);
        if (!kept.pLocalName) {
            const std::string& localName = name.localName.empty() ? name.qname : name.localName;
            kept.pLocalName =
                required(xmlDictLookup(_pDocument->dict, textOf(localName), LibxmlText::lengthOf(localName)));
        }
        return kept.pLocalName;
    }

    xmlNs* namespaceOf(const Name& name) {
        Kept& kept = Names::keptOf(name);
        if (!name.uri.empty() && !kept.pNamespace) {
            if (name.prefix == XML::NamespaceSupport::XML_NAMESPACE_PREFIX) {
                static constexpr xmlChar XML[] = {'x', 'm', 'l', 0};
                kept.pNamespace = required(xmlSearchNs(_pDocument, _pNode, XML));
            } else {
                kept.pNamespace = _declared.find(name.prefix)->second.back();
            }
        }
        return kept.pNamespace;
    }

    xmlDoc* _pDocument;
    xmlNode* _pNode; // the element that is open, or the parent of all
    xmlNs* _pLastDeclaration = nullptr;
    xmlAttr* _pLastAttribute = nullptr;
    std::map<std::string, std::vector<xmlNs*>, std::less<>> _declared; // by prefix, the innermost last
    std::string _text; // of the last text node, when it has come in several pieces
};

} // namespace Tamo::FastInfoset::Adapters

#endif
