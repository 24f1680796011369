#ifndef TAMO_FASTINFOSET_ADAPTERS_DETAIL_TREEBUILDER_H
#define TAMO_FASTINFOSET_ADAPTERS_DETAIL_TREEBUILDER_H

#include "Tamo/Exception.h"
#include "Tamo/FastInfoset/FastInfosetParser.h"
#include "Tamo/FastInfoset/FastInfosetReader.h"
#include "Tamo/FastInfoset/adapters/LoadOptions.h"
#include "Tamo/FastInfoset/adapters/detail/TreeNames.h"
#include "Tamo/XML/Attributes.h"
#include "Tamo/XML/DefaultHandler.h"
#include "Tamo/XML/InputSource.h"
#include <algorithm>
#include <cstddef>
#include <istream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Tamo::FastInfoset::Adapters {

/// A namespace declaration of an element in a tree.
struct TreeDeclaration {
    std::string prefix;
    std::string uri;
};

/// A notation, or an unparsed entity with the name of its notation.
struct TreeEntity {
    std::string name;
    std::string publicId;
    std::string systemId;
    std::string notation;
};

/// Turns the events of a document into those that build a tree, whichever library it is of: places, depth,
/// names, and strings are looked at here, so that a tree holds what XML text could have given it.
///
/// Tree has the operations that are called below, Kept, and HAS_DECLARATIONS and HAS_REFERENCES, which say
/// whether it has nodes for these. Text that comes in several pieces is begun with text(), goes on with
/// moreText() and ends with endText(). Used by one thread at a time, for one document or one element.
template<class Tree>
class TreeBuilder : public XML::DefaultHandler {
public:
    using Names = TreeNames<typename Tree::Kept>;

    TreeBuilder(Tree& tree, UInt64 maxDepth) : _tree(tree), _maxDepth(maxDepth) {}

    /// The namespaces in force where the tree is put; the outermost first.
    void declareOuter(const std::string& prefix, const std::string& uri) {
        _names.startElement();
        _names.declare(prefix, uri);
    }

    // ---- the source of the events

    /// Reads a whole document.
    static void load(std::istream& in, Tree& tree, const LoadOptions& options) {
        TreeBuilder builder(tree, options.limits.maxDepth);
        FastInfosetParser parser(DocumentVocabulary::VOC_VECTOR, options.pVocabularyLoader);
        XML::InputSource source(in);
        builder.connect(parser, options);
        parser.parse(&source);
        builder.requireRoot();
    }
    static void load(std::string_view octets, Tree& tree, const LoadOptions& options) {
        TreeBuilder builder(tree, options.limits.maxDepth);
        FastInfosetParser parser(DocumentVocabulary::VOC_VECTOR, options.pVocabularyLoader);
        builder.connect(parser, options);
        parser.parseMemoryNP(octets.data(), octets.size());
        builder.requireRoot();
    }

    /// Reads what is left of a document that has been opened.
    void loadDocument(FastInfosetReader& reader) {
        while (reader.next() != FastInfosetReader::END_DOCUMENT) {
            take(reader);
        }
        requireRoot();
    }

    /// Reads the element at whose start the cursor stands; it is left at its end.
    void loadElement(FastInfosetReader& reader) {
        if (reader.event() != FastInfosetReader::START_ELEMENT) {
            throw InvalidAccessException("The reader is not at the start of an element");
        }
        for (take(reader); _depth != 0; take(reader)) {
            reader.next();
        }
    }

    // ---- handlers

    void startElement(const std::string& uri, const std::string& localName, const std::string& qname,
                      const XML::Attributes& attributes) override {
        open(uri, localName, qname, attributes);
    }
    void endElement(const std::string&, const std::string&, const std::string&) override { close(); }
    void characters(const char ch[], int start, int length) override {
        text({ch + start, static_cast<std::size_t>(length)});
    }
    void ignorableWhitespace(const char ch[], int start, int length) override {
        characters(ch, start, length);
    }
    void processingInstruction(const std::string& target, const std::string& data) override {
        instruction(target, data);
    }
    void startPrefixMapping(const std::string& prefix, const std::string& uri) override {
        _mappings.push_back({prefix, uri});
    }
    void skippedEntity(const std::string& name) override { reference(name); }
    void startCDATA() override {
        _inCData = true;
        _cData.clear();
    }
    void endCDATA() override {
        _inCData = false;
        cData(_cData);
    }
    void comment(const char ch[], int start, int length) override {
        commentText({ch + start, static_cast<std::size_t>(length)});
    }
    void startDTD(const std::string&, const std::string& publicId, const std::string& systemId) override {
        documentType(publicId, systemId);
    }
    void endDTD() override { _inDocumentType = false; }
    void notationDecl(const std::string& name, const std::string* pPublicId,
                      const std::string* pSystemId) override {
        _notations.push_back(
            {name, pPublicId ? *pPublicId : std::string(), pSystemId ? *pSystemId : std::string(), {}});
    }
    void unparsedEntityDecl(const std::string& name, const std::string* pPublicId,
                            const std::string& systemId, const std::string& notation) override {
        _entities.push_back({name, pPublicId ? *pPublicId : std::string(), systemId, notation});
    }

private:
    using AttributeName = std::pair<std::string_view, std::string_view>; // local name and namespace name

    enum class Text { NONE, BEGUN, CONTINUED };

    void connect(FastInfosetParser& parser, const LoadOptions& options) {
        parser.setStrict(options.strict);
        parser.setLimits(options.limits);
        parser.setContentHandler(this);
        parser.setDTDHandler(this);
        parser.setProperty(XML::XMLReader::PROPERTY_LEXICAL_HANDLER,
                           static_cast<void*>(static_cast<XML::LexicalHandler*>(this)));
    }

    void take(const FastInfosetReader& reader) {
        switch (reader.event()) {
        case FastInfosetReader::START_DOCUMENT:
            for (const Notation& notation : reader.notations()) {
                _notations.push_back(
                    {notation.getName(), notation.getPublicId(), notation.getSystemId(), {}});
            }
            for (const UnparsedEntity& entity : reader.unparsedEntities()) {
                _entities.push_back(
                    {entity.getName(), entity.getPublicId(), entity.getSystemId(), entity.getNotationName()});
            }
            break;
        case FastInfosetReader::START_DTD:
            documentType(std::string(reader.publicId()), std::string(reader.systemId()));
            break;
        case FastInfosetReader::END_DTD:
            _inDocumentType = false;
            break;
        case FastInfosetReader::START_ELEMENT:
            for (const FastInfosetReader::PrefixMapping& mapping : reader.prefixMappings()) {
                _mappings.push_back({std::string(mapping.prefix), std::string(mapping.uri)});
            }
            open(reader.uri(), reader.localName(), reader.qname(), reader.attributes());
            break;
        case FastInfosetReader::END_ELEMENT:
            close();
            break;
        case FastInfosetReader::TEXT:
            if (reader.isCData()) {
                cData(reader.text());
            } else {
                text(reader.text());
            }
            break;
        case FastInfosetReader::COMMENT:
            commentText(reader.text());
            break;
        case FastInfosetReader::PROCESSING_INSTRUCTION:
            instruction(std::string(reader.target()), std::string(reader.text()));
            break;
        case FastInfosetReader::ENTITY_REFERENCE:
            reference(std::string(reader.target()));
            break;
        case FastInfosetReader::NO_DOCUMENT:
        case FastInfosetReader::END_DOCUMENT:
            break;
        }
    }

    // ---- elements

    void open(std::string_view uri, std::string_view localName, std::string_view qname,
              const XML::Attributes& attributes) {
        endText();
        if (_depth >= _maxDepth) {
            throw FISException("Limit exceeded: element depth", std::to_string(_maxDepth));
        }
        if (_depth == 0 && _hasRoot) {
            throw FISException("No tree can hold a second element of the document");
        }
        _names.startElement();
        if (!_mappings.empty()) {
            // That of an element without namespace has no say in its default.
            std::erase_if(_mappings, [&](const TreeDeclaration& mapping) {
                return (mapping.prefix.empty() && uri.empty() && !mapping.uri.empty()) ||
                       !_names.declare(mapping.prefix, mapping.uri);
            });
        }
        const auto& name = _names.element(
            uri, localName, qname, [this](const std::string& prefix, const std::string& namespaceName) {
                _mappings.push_back({prefix, namespaceName});
            });
        if (_depth == 0) {
            startRoot(name.qname);
        }
        ++_depth;
        _tree.startElement(name, _mappings);
        _mappings.clear();
        addAttributes(attributes);
        _tree.elementStarted();
    }

    // The list is the parser's or the cursor's, whose strings stay in place.
    void addAttributes(const XML::Attributes& attributes) {
        _attributeNames.clear();
        const int count = attributes.getLength();
        for (int i = 0; i < count; ++i) {
            const std::string& uri = attributes.getURI(i);
            const std::string& localName = attributes.getLocalName(i);
            const std::string& value = attributes.getValue(i);
            TreeText::require("the value of an attribute", value);
            const bool isPlain = uri.empty() && !localName.empty();
            _tree.attribute(
                _names.attribute(uri, localName,
                                 isPlain ? std::string_view() : std::string_view(attributes.getQName(i)),
                                 [this](const std::string& prefix, const std::string& namespaceName) {
                                     _tree.declaration(prefix, namespaceName);
                                 }),
                value);
            _attributeNames.emplace_back(localName, uri);
        }
        if (count > 1) {
            requireDifferentNames();
        }
    }

    // No two attributes have one name.
    void requireDifferentNames() {
        const auto end = _attributeNames.end();
        auto found = end;
        if (constexpr std::size_t FEW = 8; _attributeNames.size() > FEW) {
            std::sort(_attributeNames.begin(), end);
            found = std::adjacent_find(_attributeNames.begin(), end);
        } else {
            for (auto it = _attributeNames.begin(); it != end && found == end; ++it) {
                found = std::find(it + 1, end, *it);
            }
        }
        if (found != end) {
            TreeText::refuse("two attributes", found->first, "they have one name");
        }
    }

    void close() {
        if (_depth == 0) {
            throw InvalidAccessException("An element ends that has not begun");
        }
        endText();
        _tree.endElement();
        _names.endElement();
        --_depth;
    }

    void startRoot(const std::string& qname) {
        for (const auto* const pList : {&_notations, &_entities}) {
            for (const TreeEntity& declared : *pList) {
                TreeText::requireName("the name of a notation or entity", declared.name);
                TreeText::requirePublicId(declared.publicId);
                TreeText::requireSystemId(declared.systemId);
                if (pList == &_entities) {
                    TreeText::requireName("the notation of an entity", declared.notation);
                }
            }
        }
        if constexpr (Tree::HAS_DECLARATIONS) {
            if (!_hasDocumentType && (!_notations.empty() || !_entities.empty())) {
                documentType({}, {});
                _inDocumentType = false;
            }
        }
        _hasRoot = true;
        if (_hasDocumentType) {
            _tree.nameDocumentType(qname, _notations, _entities);
        }
    }

    void requireRoot() const {
        if (!_hasRoot || _depth != 0) {
            throw FISException("No tree can hold a document without a whole element");
        }
    }

    // ---- what stands in elements and beside them

    void text(std::string_view piece) {
        if (piece.empty()) {
            return;
        }
        if (_inCData) {
            _cData.append(piece);
            return;
        }
        if (!isInElement(piece)) {
            return;
        }
        TreeText::require("text", piece);
        if (_text == Text::NONE) {
            _tree.text(piece);
            _text = Text::BEGUN;
        } else {
            _tree.moreText(piece);
            _text = Text::CONTINUED;
        }
    }

    // White space beside the root element is of no account.
    bool isInElement(std::string_view piece) const {
        if (_depth == 0 && !TreeText::isWhiteSpace(piece)) {
            TreeText::refuse("text", piece, "it is outside of the document's element");
        }
        return _depth != 0;
    }

    void endText() {
        if (_text == Text::CONTINUED) {
            _tree.endText();
        }
        _text = Text::NONE;
    }

    void cData(std::string_view section) {
        if (!section.empty() && isInElement(section)) {
            TreeText::require("a CDATA section", section);
            endText();
            _tree.cData(section);
        }
    }

    void commentText(std::string_view value) {
        TreeText::requireComment(value);
        endText();
        _tree.comment(std::string(value));
    }

    void instruction(const std::string& target, const std::string& data) {
        TreeText::requireInstruction(target, data);
        endText();
        _tree.instruction(target, data, _inDocumentType);
    }

    void reference(const std::string& name) {
        TreeText::requireName("a reference to the entity", name);
        if constexpr (Tree::HAS_REFERENCES) {
            if (isInElement(name)) {
                endText();
                _tree.reference(name);
            }
        } else {
            text("&" + name + ";");
        }
    }

    void documentType(const std::string& publicId, const std::string& systemId) {
        if (_hasDocumentType || _hasRoot) {
            throw FISException(
                "No tree can hold a document type declaration behind another one or behind an element");
        }
        TreeText::requirePublicId(publicId);
        TreeText::requireSystemId(systemId);
        _hasDocumentType = _inDocumentType = true;
        _tree.startDocumentType(publicId, systemId);
    }

    Tree& _tree;
    const UInt64 _maxDepth;
    Names _names;
    std::vector<TreeDeclaration> _mappings;     // of the element that comes next
    std::vector<AttributeName> _attributeNames; // of the element that starts
    std::vector<TreeEntity> _notations;
    std::vector<TreeEntity> _entities;
    std::size_t _depth = 0;
    bool _hasRoot = false;
    bool _hasDocumentType = false;
    bool _inDocumentType = false;
    bool _inCData = false;
    std::string _cData;
    Text _text = Text::NONE;
};

} // namespace Tamo::FastInfoset::Adapters

#endif
