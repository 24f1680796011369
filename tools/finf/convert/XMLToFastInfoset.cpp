#include "convert/XMLToFastInfoset.h"
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

struct XMLToFastInfoset::Engine {
    Engine(const Options& options, const std::shared_ptr<const SharedVocabulary>& pVocabulary)
        : writer(counted, options.xmlDeclaration, DocumentVocabulary::VOC_MAP),
          typedFilter(writer, options.maxIndexedLength, options.typed == Typed::CANONICAL),
          whitespaceFilter(&parser),
          reader(options.stripWhitespace ? static_cast<XMLReader&>(whitespaceFilter) : parser) {
        writer.setStrict(true);
        if (pVocabulary) {
            writer.useVocabulary(pVocabulary);
        }
        writer.setMaxIndexedStringLength(options.maxIndexedLength);
        writer.setFlush(DocumentWriter::Flush::NEVER);
        parser.setFeature(XMLReader::FEATURE_NAMESPACES, true);
        parser.setFeature(XMLReader::FEATURE_NAMESPACE_PREFIXES, true);
        parser.setFeature(SAXParser::FEATURE_DECLARATIONS_FIRST, true);
        parser.setLimits(options.limits.delivery());
        Tamo::XML::ContentHandler* pContentHandler = &writer;
        Tamo::XML::LexicalHandler* pLexicalHandler = &writer;
        if (options.typed != Typed::NOTHING) {
            pContentHandler = &typedFilter;
            pLexicalHandler = &typedFilter;
        }
        reader.setContentHandler(pContentHandler);
        reader.setDTDHandler(&writer);
        reader.setLexicalHandler(pLexicalHandler);
    }

    CountingBuf counting;
    std::ostream counted{&counting};
    DocumentWriter writer;
    TypedContentFilter typedFilter;
    SAXParser parser;
    Tamo::XML::WhitespaceFilter whitespaceFilter;
    XMLReader& reader;
};

XMLToFastInfoset::XMLToFastInfoset(const Options& options)
    : _options(options), _vocabularies(options.vocabularies, options.limits) {}

XMLToFastInfoset::~XMLToFastInfoset() = default;

void XMLToFastInfoset::setVocabulary(const std::string& uri, const DocumentVocabulary& vocabulary) {
    DocumentVocabulary named(vocabulary);
    named.setURI(uri);
    _pVocabulary = SharedVocabulary::of(named);
    _pEngine.reset();
}

void XMLToFastInfoset::convert(std::istream& in, std::ostream& out) {
    if (!_pVocabulary && !_options.vocabularies.empty()) {
        _pVocabulary = _vocabularies.first();
    }
    if (!_pEngine) {
        _pEngine = std::make_unique<Engine>(_options, _pVocabulary);
    }
    DocumentWriter& writer = _pEngine->writer;
    std::ostream& counted = _pEngine->counted;
    _pEngine->counting.setDestination(*out.rdbuf());
    counted.clear();
    writer.reset(counted);
    writer.setLimits(_options.limits, _pEngine->counting);
    try {
        _pEngine->reader.parse(in);
    } catch (...) {
        counted.flush(); // what there is of the document
        throw;
    }
    if (!counted.flush()) {
        out.setstate(std::ios_base::badbit);
    }
}

} // namespace finf
