#ifndef TAMO_FASTINFOSET_ADAPTERS_LIBXML2_SAX_H
#define TAMO_FASTINFOSET_ADAPTERS_LIBXML2_SAX_H

/// @file
/// Between Fast Infoset documents and the SAX2 interface of libxml2 (docs/trees.md): its own parser writes
/// Fast Infoset, and what takes the events of its parser, such as the validation by an XML Schema, takes a
/// Fast Infoset document. Header-only: the CMake target is Tamo::FastInfosetLibxml2.

#include "Tamo/FastInfoset/adapters/LibxmlToWriter.h"
#include "Tamo/FastInfoset/adapters/LoadOptions.h"
#include "Tamo/FastInfoset/adapters/detail/LibxmlEvents.h"
#include "Tamo/FastInfoset/adapters/detail/TreeBuilder.h"
#include <istream>
#include <libxml/parser.h>
#include <libxml/parserInternals.h>
#include <memory>
#include <new>
#include <string_view>

namespace Tamo::FastInfoset::Adapters {

/// Reports a Fast Infoset document to the SAX2 functions of a handler, which are called with pContext as
/// libxml2's parser calls them when it does not replace entities: ampersands in attribute values are "&#38;".
/// The document type, whose name is that of the root element, is reported directly in front of that. Names
/// last until the end of the call. Source is octets (std::string_view) or a std::istream. Throws what
/// FastInfosetParser throws, FISException for what XML text cannot say or libxml2 cannot hold,
/// std::bad_alloc, and InvalidArgumentException for a handler without SAX2 functions. After an exception
/// endDocument has not been called.
template<class Source>
void report(Source&& source, const xmlSAXHandler& handler, void* pContext, const LoadOptions& options = {}) {
    LibxmlEvents events(handler, pContext, nullptr, false);
    events.startDocument();
    TreeBuilder<LibxmlEvents>::load(source, events, options);
    events.endDocument();
}

/// The same to the handler of a parser context, with its user data and its dictionary, so that functions
/// which keep names can: those of libxml2 itself build pContext->myDoc.
template<class Source>
void report(Source&& source, xmlParserCtxt* pContext, const LoadOptions& options = {}) {
    // What libxml2's functions compare names with, by address; its parser sets it when it begins.
    const auto kept = [&](std::string_view text) {
        return xmlDictLookup(pContext->dict, LibxmlText::octetsOf(text), LibxmlText::lengthOf(text));
    };
    pContext->str_xml = kept("xml");
    pContext->str_xmlns = kept("xmlns");
    pContext->str_xml_ns = kept("http://www.w3.org/XML/1998/namespace");
    if (!pContext->str_xml || !pContext->str_xmlns || !pContext->str_xml_ns) {
        throw std::bad_alloc();
    }
    LibxmlEvents events(*pContext->sax, pContext->userData, pContext->dict, pContext->replaceEntities != 0);
    events.startDocument();
    TreeBuilder<LibxmlEvents>::load(source, events, options);
    events.endDocument();
}

/// Reads XML text with libxml2 and writes it as a Fast Infoset document. Options are those of xmlParserOption
/// beside the ones that LibxmlToWriter sets. Throws FISException for text that is not well-formed, what the
/// writer throws, and std::bad_alloc.
inline void parseXML(std::string_view xml, FastInfosetWriter& writer, int options = 0) {
    struct Free {
        void operator()(xmlParserCtxt* pContext) const noexcept { xmlFreeParserCtxt(pContext); }
    };
    const std::unique_ptr<xmlParserCtxt, Free> pContext(
        xmlCreateMemoryParserCtxt(xml.data(), LibxmlText::lengthOf(xml)));
    if (!pContext) {
        if (xml.empty()) {
            throw FISException("libxml2 cannot read the XML text", "it is empty");
        }
        throw std::bad_alloc();
    }
    pContext->sax->serror = [](void*, auto) {}; // what is wrong comes out as an exception
    xmlCtxtUseOptions(pContext.get(), options | XML_PARSE_NOERROR | XML_PARSE_NOWARNING);
    LibxmlToWriter bridge(writer);
    bridge.attach(pContext.get());
    xmlParseDocument(pContext.get());
    bridge.finish(pContext.get());
}

} // namespace Tamo::FastInfoset::Adapters

#endif
