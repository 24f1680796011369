#ifndef TAMO_FASTINFOSET_ADAPTERS_DETAIL_PUGIXMLTREE_H
#define TAMO_FASTINFOSET_ADAPTERS_DETAIL_PUGIXMLTREE_H

#include "Tamo/FastInfoset/adapters/detail/TreeBuilder.h"
#include <cstring>
#include <new>
#include <pugixml.hpp>
#include <string>
#include <string_view>
#include <vector>

namespace Tamo::FastInfoset::Adapters {

/// The nodes of a tree of pugixml, as TreeBuilder asks for them. pugixml tells of memory that it does not get
/// by empty handles and by false: std::bad_alloc. Used by one thread at a time.
class PugixmlTree {
public:
    /// Nothing is kept of a name.
    struct Kept {};

    static constexpr bool HAS_DECLARATIONS = false;
    static constexpr bool HAS_REFERENCES = false;

    using Name = TreeNames<Kept>::Name;

    /// What is built is appended to parent.
    explicit PugixmlTree(pugi::xml_node parent) : _node(parent) {}

    /// Builds the tree of a document that is empty before, and after an exception.
    template<class Build>
    static void fill(pugi::xml_document& document, const Build& build) {
        document.reset();
        PugixmlTree tree(document);
        try {
            build(tree);
        } catch (...) {
            document.reset();
            throw;
        }
    }

    /// Calls visit(prefix, uri) for the declarations of node and of the elements around it, the outermost
    /// first.
    template<class Visit>
    static void visitDeclarations(pugi::xml_node node, const Visit& visit) {
        std::vector<pugi::xml_node> around;
        for (; node; node = node.parent()) {
            around.push_back(node);
        }
        for (auto it = around.rbegin(); it != around.rend(); ++it) {
            for (const pugi::xml_attribute attribute : it->attributes()) {
                if (const char* const pPrefix = declaredPrefix(attribute.name())) {
                    visit(pPrefix, attribute.value());
                }
            }
        }
    }

    /// The prefix that an attribute of this name declares, or null.
    static const char* declaredPrefix(const char* name) noexcept {
        return std::strncmp(name, "xmlns", 5) != 0 ? nullptr
               : name[5] == ':' && name[6] != 0    ? name + 6
               : name[5] == 0                      ? name + 5
                                                   : nullptr;
    }

    void startElement(const Name& name, const std::vector<TreeDeclaration>& declarations) {
        _node = append(pugi::node_element);
        require(_node.set_name(name.qname.c_str()));
        for (const TreeDeclaration& declared : declarations) {
            declaration(declared.prefix, declared.uri);
        }
    }
    void declaration(const std::string& prefix, const std::string& uri) {
        addAttribute(prefix.empty() ? "xmlns" : "xmlns:" + prefix, uri);
    }
    void attribute(const Name& name, const std::string& value) { addAttribute(name.qname, value); }
    void elementStarted() {}
    void endElement() { _node = _node.parent(); }

    void text(std::string_view piece) { setValue(append(pugi::node_pcdata), piece); }
    void moreText(std::string_view piece) {
        if (_text.empty()) {
            _text = _node.last_child().value();
        }
        _text.append(piece);
    }
    void endText() {
        setValue(_node.last_child(), _text);
        _text.clear();
    }
    void cData(std::string_view section) { setValue(append(pugi::node_cdata), section); }
    void comment(const std::string& value) { setValue(append(pugi::node_comment), value); }
    void instruction(const std::string& target, const std::string& data, bool inDocumentType) {
        if (!inDocumentType) { // pugixml has no nodes there
            pugi::xml_node node = append(pugi::node_pi);
            require(node.set_name(target.c_str()));
            setValue(node, data);
        }
    }

    void startDocumentType(const std::string& publicId, const std::string& systemId) {
        _documentType = append(pugi::node_doctype);
        if (!publicId.empty()) {
            _identifiers = " PUBLIC " + quoted(publicId);
        }
        if (!systemId.empty() || !publicId.empty()) {
            _identifiers += (publicId.empty() ? " SYSTEM " : " ") + quoted(systemId);
        }
    }
    void nameDocumentType(const std::string& name, const std::vector<TreeEntity>&,
                          const std::vector<TreeEntity>&) {
        setValue(_documentType, name + _identifiers);
    }

private:
    static void require(bool done) {
        if (!done) {
            throw std::bad_alloc();
        }
    }
    pugi::xml_node append(pugi::xml_node_type type) {
        const pugi::xml_node node = _node.append_child(type);
        require(!node.empty());
        return node;
    }
    static void setValue(pugi::xml_node node, std::string_view value) {
        require(value.empty() || node.set_value(value.data(), value.size()));
    }
    void addAttribute(const std::string& name, std::string_view value) {
        pugi::xml_attribute attribute = _node.append_attribute(name.c_str());
        require(*attribute.name() != 0 && (value.empty() || attribute.set_value(value.data(), value.size())));
    }
    static std::string quoted(const std::string& identifier) {
        const char mark = identifier.find('"') == std::string::npos ? '"' : '\'';
        return mark + identifier + mark;
    }

    pugi::xml_node _node; // the element that is open, or the parent of all
    std::string _text;    // of the last text node, when it has come in several pieces
    pugi::xml_node _documentType;
    std::string _identifiers;
};

} // namespace Tamo::FastInfoset::Adapters

#endif
