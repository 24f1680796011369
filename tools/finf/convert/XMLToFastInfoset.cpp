#include "convert/XMLToFastInfoset.h"
#include "Tamo/XML/InputSource.h"
#include "Tamo/XML/SAXParser.h"
#include "Tamo/XML/WhitespaceFilter.h"
#include "convert/DocumentWriter.h"
#include "convert/TypedContentFilter.h"
#include <ostream>

namespace finf {

using Tamo::FastInfoset::DocumentVocabulary;
using Tamo::FastInfoset::SharedVocabulary;
using Tamo::XML::SAXParser;
using Tamo::XML::XMLReader;

void XMLToFastInfoset::setVocabulary(const std::string& uri, const DocumentVocabulary& vocabulary) {
    DocumentVocabulary named(vocabulary);
    named.setURI(uri);
    _pVocabulary = SharedVocabulary::of(named);
}

void XMLToFastInfoset::convert(std::istream& in, std::ostream& out) {
    if (!_pVocabulary && !_options.vocabularies.empty()) {
        _pVocabulary = _vocabularies.first();
    }
    CountingBuf counting(*out.rdbuf());
    std::ostream counted(&counting);
    DocumentWriter writer(counted, _options.xmlDeclaration, DocumentVocabulary::VOC_MAP);
    writer.setStrict(true);
    if (_pVocabulary) {
        writer.useVocabulary(_pVocabulary);
    }
    writer.setLimits(_options.limits, counting);
    writer.setMaxIndexedStringLength(_options.maxIndexedLength);

    TypedContentFilter typedFilter(writer, _options.maxIndexedLength, _options.typed == Typed::CANONICAL);
    Tamo::XML::ContentHandler* pContentHandler = &writer;
    Tamo::XML::LexicalHandler* pLexicalHandler = &writer;
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
    reader.setDTDHandler(&writer);
    reader.setProperty(XMLReader::PROPERTY_LEXICAL_HANDLER, static_cast<void*>(pLexicalHandler));
    Tamo::XML::InputSource source(in);
    reader.parse(&source);
    if (!counted.flush()) {
        out.setstate(std::ios_base::badbit);
    }
}

} // namespace finf
