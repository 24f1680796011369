#ifndef TAMO_FASTINFOSET_ADAPTERS_PUGIXML_H
#define TAMO_FASTINFOSET_ADAPTERS_PUGIXML_H

/// @file
/// Fast Infoset documents as trees of pugixml (docs/trees.md). Header-only: a program that includes this
/// links Tamo::FastInfoset and pugixml, which the CMake target Tamo::FastInfosetPugixml does.

#include "Tamo/Exception.h"
#include "Tamo/FastInfoset/FastInfosetReader.h"
#include "Tamo/FastInfoset/FastInfosetWriter.h"
#include "Tamo/FastInfoset/adapters/LoadOptions.h"
#include "Tamo/FastInfoset/adapters/detail/PugixmlSaver.h"
#include "Tamo/FastInfoset/adapters/detail/PugixmlTree.h"
#include "Tamo/FastInfoset/adapters/detail/TreeBuilder.h"
#include <istream>
#include <ostream>
#include <pugixml.hpp>
#include <string_view>

namespace Tamo::FastInfoset::Adapters {

/// Reads a Fast Infoset document into a tree, whose former content is dropped; after an exception the tree is
/// empty. Throws what FastInfosetParser throws, FISException for what is no tree of XML, and std::bad_alloc.
inline void loadDocument(std::string_view octets, pugi::xml_document& document,
                         const LoadOptions& options = {}) {
    PugixmlTree::fill(document,
                      [&](PugixmlTree& tree) { TreeBuilder<PugixmlTree>::load(octets, tree, options); });
}
inline void loadDocument(std::istream& in, pugi::xml_document& document, const LoadOptions& options = {}) {
    PugixmlTree::fill(document,
                      [&](PugixmlTree& tree) { TreeBuilder<PugixmlTree>::load(in, tree, options); });
}

/// The same of a document that a reader has just opened; mode and limits are the reader's, but for the depth.
inline void loadDocument(FastInfosetReader& reader, pugi::xml_document& document,
                         UInt64 maxDepth = LoadOptions::MAX_DEPTH) {
    PugixmlTree::fill(
        document, [&](PugixmlTree& tree) { TreeBuilder<PugixmlTree>(tree, maxDepth).loadDocument(reader); });
}

/// Reads the element at whose start the reader stands, appends it to parent, an element or a document, and
/// returns it; the reader is left at its end. So the items of a large document become trees one by one.
/// Prefixes that its names need are declared on it. After an exception parent is as it was. Throws
/// InvalidAccessException when the reader does not stand so, InvalidArgumentException for another parent.
inline pugi::xml_node loadElement(FastInfosetReader& reader, pugi::xml_node parent,
                                  UInt64 maxDepth = LoadOptions::MAX_DEPTH) {
    if (parent.type() != pugi::node_element && parent.type() != pugi::node_document) {
        throw InvalidArgumentException("Only an element or a document can have an element in it");
    }
    const pugi::xml_node last = parent.last_child();
    PugixmlTree tree(parent);
    TreeBuilder<PugixmlTree> builder(tree, maxDepth);
    PugixmlTree::visitDeclarations(
        parent, [&](const char* prefix, const char* uri) { builder.declareOuter(prefix, uri); });
    try {
        builder.loadElement(reader);
    } catch (...) {
        if (parent.last_child() != last) {
            parent.remove_child(parent.last_child());
        }
        throw;
    }
    return parent.last_child();
}

/// Writes a tree: a document with its beginning and end, or one node with all that is in it as events at the
/// place where the writer stands. An element brings the namespace declarations that are in force for it.
/// The writer is to be strict if attributes shall keep their prefixes. Throws what the writer throws, and
/// FISException for a prefix that is not declared.
inline void save(const pugi::xml_node& node, FastInfosetWriter& writer) {
    PugixmlSaver(writer).save(node);
}

/// Writes a document, or one whose root element is node, to a stream, by the letter of X.891. Throws also
/// IOException when the stream fails.
inline void save(const pugi::xml_node& node, std::ostream& out) {
    writeDocument(out, [&](FastInfosetWriter& writer) {
        PugixmlSaver saver(writer);
        if (node.type() == pugi::node_document) {
            saver.save(node);
        } else {
            writer.startDocument();
            saver.save(node);
            writer.endDocument();
        }
    });
}

} // namespace Tamo::FastInfoset::Adapters

#endif
