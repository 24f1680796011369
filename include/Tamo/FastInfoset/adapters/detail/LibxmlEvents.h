#ifndef TAMO_FASTINFOSET_ADAPTERS_DETAIL_LIBXMLEVENTS_H
#define TAMO_FASTINFOSET_ADAPTERS_DETAIL_LIBXMLEVENTS_H

#include "Tamo/FastInfoset/adapters/detail/LibxmlText.h"
#include "Tamo/FastInfoset/adapters/detail/TreeBuilder.h"
#include <algorithm>
#include <libxml/dict.h>
#include <libxml/parser.h>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <vector>

namespace Tamo::FastInfoset::Adapters {

/// Calls an xmlSAXHandler, its SAX2 functions, with what TreeBuilder asks for: as libxml2's own parser would,
/// with names from a dictionary. The functions are C and throw nothing. Used by one thread at a time.
class LibxmlEvents {
public:
    /// A name as the dictionary has it; null for an absent part.
    struct Kept {
        const xmlChar* pLocalName = nullptr;
        const xmlChar* pPrefix = nullptr;
        const xmlChar* pUri = nullptr;
    };

    static constexpr bool HAS_DECLARATIONS = true;
    static constexpr bool HAS_REFERENCES = true;

    using Names = TreeNames<Kept>;
    using Name = Names::Name;

    /// Calls the functions with pContext. The dictionary must last as long as what they keep of names; null
    /// for one that lasts as long as this. Ampersands in values are escaped unless plain: libxml2's parser
    /// does so where it does not replace entities, and functions rely on it.
    LibxmlEvents(const xmlSAXHandler& handler, void* pContext, xmlDict* pDictionary, bool plain)
        : _handler(handler), _pContext(pContext), _pDictionary(pDictionary), _plain(plain) {
        if (handler.initialized != XML_SAX2_MAGIC) {
            throw InvalidArgumentException("The handler has no SAX2 functions");
        }
        if (!pDictionary) {
            _pOwn.reset(required(xmlDictCreate()));
            _pDictionary = _pOwn.get();
        }
    }

    void startDocument() { call(_handler.startDocument); }
    void endDocument() { call(_handler.endDocument); }

    void startElement(const Name& name, const std::vector<TreeDeclaration>& declarations) {
        _attributes.clear();
        _values.clear();
        _declarations.clear();
        for (const TreeDeclaration& declared : declarations) {
            declaration(declared.prefix, declared.uri);
        }
        _open.push_back(keptOf(name));
    }
    void declaration(const std::string& prefix, const std::string& uri) {
        _declarations.push_back(prefix.empty() ? nullptr : kept(prefix));
        _declarations.push_back(kept(uri));
    }
    void attribute(const Name& name, const std::string& value) {
        LibxmlText::lengthOf(value);
        _attributes.push_back(keptOf(name));
        _values.push_back(_plain ? value : escaped(value));
    }
    void elementStarted() {
        _slots.clear();
        for (std::size_t i = 0; i < _attributes.size(); ++i) {
            const xmlChar* const pValue = LibxmlText::octetsOf(_values[i]);
            for (const xmlChar* const pSlot : {_attributes[i].pLocalName, _attributes[i].pPrefix,
                                               _attributes[i].pUri, pValue, pValue + _values[i].size()}) {
                _slots.push_back(pSlot);
            }
        }
        const Kept& name = _open.back();
        call(_handler.startElementNs, name.pLocalName, name.pPrefix, name.pUri,
             static_cast<int>(_declarations.size() / 2), _declarations.data(),
             static_cast<int>(_attributes.size()), 0, _slots.data());
    }
    void endElement() {
        const Kept name = _open.back();
        _open.pop_back();
        call(_handler.endElementNs, name.pLocalName, name.pPrefix, name.pUri);
    }

    void text(std::string_view piece) {
        call(_handler.characters, LibxmlText::octetsOf(piece), LibxmlText::lengthOf(piece));
    }
    void moreText(std::string_view piece) { text(piece); }
    void endText() {}
    void cData(std::string_view section) {
        call(_handler.cdataBlock ? _handler.cdataBlock : _handler.characters, LibxmlText::octetsOf(section),
             LibxmlText::lengthOf(section));
    }
    void comment(const std::string& value) { call(_handler.comment, textOf(value)); }
    void instruction(const std::string& target, const std::string& data, bool inDocumentType) {
        if (!inDocumentType) { // that is reported when it has a name
            call(_handler.processingInstruction, textOf(target), data.empty() ? nullptr : textOf(data));
        }
    }
    void reference(const std::string& name) { call(_handler.reference, textOf(name)); }

    void startDocumentType(const std::string& publicId, const std::string& systemId) {
        _publicId = publicId;
        _systemId = systemId;
    }
    void nameDocumentType(const std::string& name, const std::vector<TreeEntity>& notations,
                          const std::vector<TreeEntity>& entities) {
        call(_handler.internalSubset, textOf(name), presentOrNull(_publicId), presentOrNull(_systemId));
        for (const TreeEntity& notation : notations) {
            call(_handler.notationDecl, textOf(notation.name), presentOrNull(notation.publicId),
                 presentOrNull(notation.systemId));
        }
        for (const TreeEntity& entity : entities) {
            call(_handler.unparsedEntityDecl, textOf(entity.name), presentOrNull(entity.publicId),
                 textOf(entity.systemId), textOf(entity.notation));
        }
    }

private:
    struct FreeDictionary {
        void operator()(xmlDict* pDictionary) const noexcept { xmlDictFree(pDictionary); }
    };

    template<class T>
    static T* required(T* pointer) {
        if (!pointer) {
            throw std::bad_alloc();
        }
        return pointer;
    }
    static const xmlChar* textOf(const std::string& s) noexcept { return LibxmlText::octetsOf(s); }
    static const xmlChar* presentOrNull(const std::string& s) noexcept {
        return s.empty() ? nullptr : textOf(s);
    }

    template<class Function, class... Arguments>
    void call(Function function, Arguments... arguments) {
        if (function) {
            function(_pContext, arguments...);
        }
    }

    const xmlChar* kept(const std::string& s) {
        return required(xmlDictLookup(_pDictionary, textOf(s), LibxmlText::lengthOf(s)));
    }
    const Kept& keptOf(const Name& name) {
        Kept& found = Names::keptOf(name);
        if (!found.pLocalName) {
            found.pPrefix = name.prefix.empty() ? nullptr : kept(name.prefix);
            found.pUri = name.uri.empty() ? nullptr : kept(name.uri);
            found.pLocalName = kept(name.localName.empty() ? name.qname : name.localName);
        }
        return found;
    }

    static std::string escaped(const std::string& value) {
        std::string result;
        for (const char c : value) {
            if (c == '&') {
                result += "&#38;";
            } else {
                result += c;
            }
        }
        return result;
    }

    const xmlSAXHandler& _handler;
    void* const _pContext;
    xmlDict* _pDictionary;
    std::unique_ptr<xmlDict, FreeDictionary> _pOwn;
    const bool _plain;
    std::vector<Kept> _open;
    std::vector<Kept> _attributes;
    std::vector<std::string> _values;
    std::vector<const xmlChar*> _declarations; // prefix and namespace name in turn
    std::vector<const xmlChar*> _slots;        // five for each attribute
    std::string _publicId;
    std::string _systemId;
};

} // namespace Tamo::FastInfoset::Adapters

#endif
