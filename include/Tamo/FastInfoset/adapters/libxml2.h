#ifndef TAMO_FASTINFOSET_ADAPTERS_LIBXML2_H
#define TAMO_FASTINFOSET_ADAPTERS_LIBXML2_H

/// @file
/// Fast Infoset documents as trees of libxml2 (docs/trees.md). Header-only: a program that includes this
/// links Tamo::FastInfoset and libxml2, which the CMake target Tamo::FastInfosetLibxml2 does.

#include "Tamo/FastInfoset/FastInfosetReader.h"
#include "Tamo/FastInfoset/FastInfosetWriter.h"
#include "Tamo/FastInfoset/adapters/LoadOptions.h"
#include "Tamo/FastInfoset/adapters/detail/DocumentOnStream.h"
#include "Tamo/FastInfoset/adapters/detail/LibxmlSaver.h"
#include "Tamo/FastInfoset/adapters/detail/LibxmlTree.h"
#include "Tamo/FastInfoset/adapters/detail/TreeBuilder.h"
#include <istream>
#include <libxml/tree.h>
#include <memory>
#include <new>
#include <ostream>
#include <string_view>
#include <vector>

namespace Tamo::FastInfoset::Adapters {

/// Frees a document of libxml2.
struct LibxmlFree {
    void operator()(xmlDoc* pDocument) const noexcept { xmlFreeDoc(pDocument); }
};

/// A document of libxml2 with its owner.
using LibxmlDocument = std::unique_ptr<xmlDoc, LibxmlFree>;

namespace Detail {

template<class Build>
LibxmlDocument buildDocument(const Build& build) {
    LibxmlDocument pDocument(xmlNewDoc(LibxmlText::octetsOf("1.0")));
    if (!pDocument || !(pDocument->encoding = xmlStrdup(LibxmlText::octetsOf("UTF-8")))) {
        throw std::bad_alloc();
    }
    LibxmlTree tree(pDocument.get(), reinterpret_cast<xmlNode*>(pDocument.get()));
    build(tree);
    return pDocument;
}

} // namespace Detail

/// Reads a Fast Infoset document into a tree. Throws what FastInfosetParser throws, FISException for what is
/// no tree of XML or has a string that libxml2 cannot hold, and std::bad_alloc.
inline LibxmlDocument loadDocument(std::string_view octets, const LoadOptions& options = {}) {
    return Detail::buildDocument(
        [&](LibxmlTree& tree) { TreeBuilder<LibxmlTree>::load(octets, tree, options); });
}
inline LibxmlDocument loadDocument(std::istream& in, const LoadOptions& options = {}) {
    return Detail::buildDocument([&](LibxmlTree& tree) { TreeBuilder<LibxmlTree>::load(in, tree, options); });
}

/// The same of a document that a reader has just opened; mode and limits are the reader's, but for the depth.
inline LibxmlDocument loadDocument(FastInfosetReader& reader, UInt64 maxDepth = LoadOptions::MAX_DEPTH) {
    return Detail::buildDocument(
        [&](LibxmlTree& tree) { TreeBuilder<LibxmlTree>(tree, maxDepth).loadDocument(reader); });
}

/// Reads the element at whose start the reader stands, appends it to parent, an element of a document or the
/// document itself, and returns it; the reader is left at its end. So the items of a large document become
/// trees one by one. Prefixes that its names need are declared on it. After an exception parent is as it was.
/// Throws InvalidAccessException when the reader does not stand so.
inline xmlNode* loadElement(FastInfosetReader& reader, xmlNode* pParent,
                            UInt64 maxDepth = LoadOptions::MAX_DEPTH) {
    LibxmlTree tree(pParent->doc, pParent);
    TreeBuilder<LibxmlTree> builder(tree, maxDepth);
    std::vector<xmlNode*> around;
    for (xmlNode* pNode = pParent; pNode && pNode->type == XML_ELEMENT_NODE; pNode = pNode->parent) {
        around.push_back(pNode);
    }
    for (auto it = around.rbegin(); it != around.rend(); ++it) {
        for (xmlNs* pNs = (*it)->nsDef; pNs; pNs = pNs->next) {
            const std::string prefix(LibxmlText::viewOf(pNs->prefix));
            builder.declareOuter(prefix, std::string(LibxmlText::viewOf(pNs->href)));
            tree.declareOuter(prefix, pNs);
        }
    }
    xmlNode* const pLast = pParent->last;
    try {
        builder.loadElement(reader);
    } catch (...) {
        if (pParent->last != pLast) {
            xmlNode* const pPart = pParent->last;
            xmlUnlinkNode(pPart);
            xmlFreeNode(pPart);
        }
        throw;
    }
    return pParent->last;
}

/// Writes a document with its beginning and end. The writer is to be strict if attributes shall keep their
/// prefixes and references to entities shall be written. Throws what the writer throws, and std::bad_alloc.
inline void save(const xmlDoc* pDocument, FastInfosetWriter& writer) {
    LibxmlSaver(writer).saveDocument(pDocument);
}

/// Writes one node with all that is in it as events at the place where the writer stands. An element brings
/// the namespace declarations that are in force for it.
inline void save(const xmlNode* pNode, FastInfosetWriter& writer) {
    LibxmlSaver(writer).saveSubtree(pNode);
}

/// Writes a document, or one whose root element is pNode, to a stream, by the letter of X.891. Throws also
/// IOException when the stream fails.
inline void save(const xmlDoc* pDocument, std::ostream& out) {
    writeDocument(out, [&](FastInfosetWriter& writer) { save(pDocument, writer); });
}
inline void save(const xmlNode* pNode, std::ostream& out) {
    writeDocument(out, [&](FastInfosetWriter& writer) {
        writer.startDocument();
        save(pNode, writer);
        writer.endDocument();
    });
}

} // namespace Tamo::FastInfoset::Adapters

#endif
