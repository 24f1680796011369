#include "PeerJobs.h"
#include "EscapingWriter.h"
#include "ExpatPeer.h"
#include "LibxmlPeer.h"
#include "PugixmlPeer.h"
#include "XercesPeer.h"
#include <stdexcept>

namespace Tamo::Benchmarks {

namespace {

/// A job that does the same to each document and adds up the numbers that it yields.
template<class Process>
Job each(const char* name, const char* description, Process process) {
    return {name, description, [process](const DocumentSet& set) {
                UInt64 sum = 0;
                for (const auto& pDocument : set.documents()) {
                    sum += process(*pDocument);
                }
                return sum;
            }};
}

void expectSame(const Document& document, const std::string& written, const char* writer) {
    Recording again;
    ExpatPeer::parse(written, again, again);
    const std::string difference =
        document.recording.difference(again, Recording::WITHOUT_DOCUMENT_TYPE_DECLARATION);
    if (!difference.empty()) {
        throw std::runtime_error(document.name + ": " + writer + " writes another document at " + difference);
    }
}

} // namespace

std::vector<Job> PeerJobs::all() {
    auto pLibxml = std::make_shared<LibxmlPeer>();
    auto pXerces = std::make_shared<XercesPeer>();
    auto pPugixml = std::make_shared<PugixmlPeer>();
    auto pEscaping = std::make_shared<EscapingWriter>();
    return {
        each("libxml2", "libxml2's SAX2 on XML text in memory, handlers that count",
             [pLibxml](const Document& document) { return pLibxml->parse(document.xml); }),
        each("libxml2-tree", "libxml2's tree of XML text in memory",
             [](const Document& document) { return LibxmlPeer::parseTree(document.xml); }),
        each("libxml2-load", "libxml2's tree of Fast Infoset in memory, by the adapter",
             [](const Document& document) { return LibxmlPeer::loadTree(document.fastInfoset); }),
        each("xerces", "Xerces-C's SAX2 reader on XML text in memory, handlers that count",
             [pXerces](const Document& document) { return pXerces->parse(document.xml); }),
        each("pugixml", "pugixml's tree of XML text in memory, no namespaces",
             [](const Document& document) { return PugixmlPeer::parse(document.xml); }),
        each("pugixml-load", "pugixml's tree of Fast Infoset in memory, by the adapter",
             [](const Document& document) { return PugixmlPeer::loadTree(document.fastInfoset); }),
        each("pugixml-walk", "the same and a walk over the tree",
             [](const Document& document) { return PugixmlPeer::parseAndWalk(document.xml); }),
        each("pugixml-save", "a tree that is there, written by pugixml",
             [pPugixml](const Document& document) { return pPugixml->save(document); }),
        each("xmltextwriter", "recorded events through libxml2's xmlTextWriter",
             [pLibxml](const Document& document) { return pLibxml->write(document.recording); }),
        each("escaping", "recorded events as XML text by a plain serializer that only escapes",
             [pEscaping](const Document& document) {
                 return static_cast<UInt64>(pEscaping->write(document.recording).size());
             }),
    };
}

void PeerJobs::prove(const DocumentSet& set) {
    LibxmlPeer libxml;
    PugixmlPeer pugixml;
    EscapingWriter escaping;
    for (const auto& pDocument : set.documents()) {
        libxml.write(pDocument->recording);
        expectSame(*pDocument, libxml.written(), "xmlTextWriter");
        // pugixml leaves references to the document's own entities as they are.
        if (pDocument->xml.find("<!ENTITY") == std::string::npos) {
            pugixml.save(*pDocument);
            expectSame(*pDocument, pugixml.written(), "pugixml");
        }
        expectSame(*pDocument, escaping.write(pDocument->recording), "the plain serializer");
    }
}

} // namespace Tamo::Benchmarks
