#include "Tamo/XML/XMLReader.h"
#include "Tamo/XML/InputSource.h"

namespace Tamo::XML {

void XMLReader::setLexicalHandler(LexicalHandler* pLexicalHandler) {
    setProperty(PROPERTY_LEXICAL_HANDLER, static_cast<void*>(pLexicalHandler));
}

LexicalHandler* XMLReader::getLexicalHandler() const {
    return static_cast<LexicalHandler*>(getProperty(PROPERTY_LEXICAL_HANDLER));
}

void XMLReader::setDeclHandler(DeclHandler* pDeclHandler) {
    setProperty(PROPERTY_DECLARATION_HANDLER, static_cast<void*>(pDeclHandler));
}

DeclHandler* XMLReader::getDeclHandler() const {
    return static_cast<DeclHandler*>(getProperty(PROPERTY_DECLARATION_HANDLER));
}

void XMLReader::parse(std::istream& stream) {
    InputSource source(stream);
    parse(&source);
}

} // namespace Tamo::XML
