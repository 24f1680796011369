// The operations of FastInfosetParser that know what it can be connected to, so that a program that only
// parses comes without writers.
#include "Tamo/FastInfoset/FISDefaultHandler.h"
#include "Tamo/FastInfoset/FISDocumentHandler.h"
#include "Tamo/FastInfoset/FISFilter.h"
#include "Tamo/FastInfoset/FastInfosetParser.h"
#include "Tamo/FastInfoset/FastInfosetWriter.h"
#include "Tamo/XML/LexicalHandler.h"
#include "Tamo/XML/XMLWriter.h"

namespace Tamo::FastInfoset {

namespace {

// Sets a handler as all of the handlers, if there is one.
template<class Handler>
void connect(FastInfosetParser& parser, Handler* pHandler, FISDocumentHandler* pDocumentHandler) {
    if (pHandler) {
        parser.setContentHandler(pHandler);
        parser.setDocumentHandler(pDocumentHandler);
        parser.setDTDHandler(pHandler);
        parser.setLexicalHandler(pHandler);
    }
}

} // namespace

void FastInfosetParser::initialize(FastInfosetWriter* pWriter) {
    connect(*this, pWriter, pWriter);
}

void FastInfosetParser::initialize(XML::XMLWriter* pWriter) {
    connect(*this, pWriter, dynamic_cast<FISDocumentHandler*>(pWriter));
}

void FastInfosetParser::initialize(FISDefaultHandler* pHandler) {
    connect(*this, pHandler, pHandler);
}

void FastInfosetParser::initialize(FISFilter* pFilter) {
    connect(*this, pFilter, pFilter);
}

} // namespace Tamo::FastInfoset
