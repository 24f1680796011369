#include "convert/XMLToFastInfoset.h"
#include "Tamo/XML/InputSource.h"
#include "Tamo/XML/SAXParser.h"
#include "Tamo/XML/WhitespaceFilter.h"
#include "convert/DocumentWriter.h"
#include "convert/TypedContentFilter.h"
#include <memory>
#include <ostream>

namespace finf {

using Tamo::FastInfoset::DocumentVocabulary;
using Tamo::XML::SAXParser;
using Tamo::XML::XMLReader;

void XMLToFastInfoset::setVocabulary(const std::string& uri, const DocumentVocabulary& vocabulary) {
    _uri = uri;
    _vocabulary.emplace(vocabulary, DocumentVocabulary::VOC_MAP);
}

void XMLToFastInfoset::convert(std::istream& in, std::ostream& out) {
    if (!_vocabulary && !_options.vocabularies.empty()) {
        _uri = _options.vocabularies.front().uri;
        _vocabulary = _vocabularies.loadForWriting(_uri);
    }
    CountingBuf counting(*out.rdbuf());
    std::ostream counted(&counting);
    std::unique_ptr<DocumentWriter> pWriter;
    if (_vocabulary) {
        pWriter = std::make_unique<DocumentWriter>(counted, _options.xmlDeclaration, *_vocabulary);
        pWriter->setExternalVocabulary(_uri, *_vocabulary);
    } else {
        pWriter = std::make_unique<DocumentWriter>(counted, _options.xmlDeclaration,
                                                   DocumentVocabulary(DocumentVocabulary::VOC_MAP));
    }
    pWriter->setStrict(true);
    pWriter->setLimits(_options.limits, counting);
    pWriter->setMaxIndexedStringLength(_options.maxIndexedLength);

    TypedContentFilter typedFilter(*pWriter, _options.maxIndexedLength, _options.typed == Typed::CANONICAL);
    Tamo::XML::ContentHandler* pContentHandler = pWriter.get();
    Tamo::XML::LexicalHandler* pLexicalHandler = pWriter.get();
    if (_options.typed != Typed::NOTHING) {
        pContentHandler = &typedFilter;
        pLexicalHandler = &typedFilter;
    }

    SAXParser parser;
    parser.setFeature(XMLReader::FEATURE_NAMESPACES, true);
    parser.setFeature(XMLReader::FEATURE_NAMESPACE_PREFIXES, true);
    parser.setFeature(SAXParser::FEATURE_DECLARATIONS_FIRST, true);
    parser.setLimits(_options.limits.delivery());
    Tamo::XML::WhitespaceFilter whitespaceFilter(&parser);
    XMLReader& reader = _options.stripWhitespace ? static_cast<XMLReader&>(whitespaceFilter) : parser;
    reader.setContentHandler(pContentHandler);
    reader.setDTDHandler(pWriter.get());
    reader.setProperty(XMLReader::PROPERTY_LEXICAL_HANDLER, static_cast<void*>(pLexicalHandler));
    Tamo::XML::InputSource source(in);
    reader.parse(&source);
    if (!counted.flush()) {
        out.setstate(std::ios_base::badbit);
    }
}

} // namespace finf
