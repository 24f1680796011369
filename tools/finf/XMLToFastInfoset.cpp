#include "XMLToFastInfoset.h"
#include "DocumentWriter.h"
#include "Tamo/XML/InputSource.h"
#include "Tamo/XML/SAXParser.h"
#include "Tamo/XML/WhitespaceFilter.h"
#include "TypedContentFilter.h"
#include <memory>

namespace finf {

using Tamo::FastInfoset::DocumentVocabulary;
using Tamo::XML::SAXParser;
using Tamo::XML::XMLReader;

void XMLToFastInfoset::convert(std::istream& in, std::ostream& out) {
    std::unique_ptr<DocumentWriter> pWriter;
    if (_options.vocabularies.empty()) {
        pWriter = std::make_unique<DocumentWriter>(out, _options.xmlDeclaration,
                                                   DocumentVocabulary(DocumentVocabulary::VOC_MAP));
    } else {
        const std::string& uri = _options.vocabularies.front().uri;
        if (!_vocabulary) {
            _vocabulary = _vocabularies.loadForWriting(uri);
        }
        pWriter = std::make_unique<DocumentWriter>(out, _options.xmlDeclaration, *_vocabulary);
        pWriter->setExternalVocabulary(uri, *_vocabulary);
    }
    pWriter->setMaxIndexedStringLength(_options.maxIndexedLength);

    TypedContentFilter typedFilter(*pWriter, _options.maxIndexedLength);
    Tamo::XML::ContentHandler* pContentHandler = pWriter.get();
    Tamo::XML::LexicalHandler* pLexicalHandler = pWriter.get();
    if (_options.typed) {
        pContentHandler = &typedFilter;
        pLexicalHandler = &typedFilter;
    }

    SAXParser parser;
    parser.setFeature(XMLReader::FEATURE_NAMESPACES, true);
    parser.setFeature(XMLReader::FEATURE_NAMESPACE_PREFIXES, true);
    parser.setFeature(SAXParser::FEATURE_DECLARATIONS_FIRST, true);
    Tamo::XML::WhitespaceFilter whitespaceFilter(&parser);
    XMLReader& reader = _options.stripWhitespace ? static_cast<XMLReader&>(whitespaceFilter) : parser;
    reader.setContentHandler(pContentHandler);
    reader.setDTDHandler(pWriter.get());
    reader.setProperty(XMLReader::PROPERTY_LEXICAL_HANDLER, static_cast<void*>(pLexicalHandler));
    Tamo::XML::InputSource source(in);
    reader.parse(&source);
}

} // namespace finf
