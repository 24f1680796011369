#include "Tamo/FastInfoset/Converter.h"
#include "Tamo/DeferredFlushStream.h"
#include "Tamo/FastInfoset/FastInfosetParser.h"
#include "Tamo/FastInfoset/FastInfosetWriter.h"
#include "Tamo/XML/InputSource.h"
#include "Tamo/XML/SAXParser.h"
#include "Tamo/XML/WhitespaceFilter.h"
#include "Tamo/XML/XMLWriter.h"
#include <ostream>

namespace Tamo::FastInfoset {

namespace {

void parseInto(XML::XMLReader& reader, FastInfosetWriter& writer, XML::InputSource& source) {
    reader.setContentHandler(&writer);
    reader.setDTDHandler(&writer);
    reader.setProperty(XML::XMLReader::PROPERTY_LEXICAL_HANDLER,
                       static_cast<void*>(static_cast<XML::LexicalHandler*>(&writer)));
    reader.parse(&source);
}

} // namespace

void Converter::convertToFIS(std::istream& in, std::ostream& out, int maxIndexedStringLength, int options) {
    Options all;
    all.maxIndexedStringLength = maxIndexedStringLength;
    all.stripWhitespace = (options & STRIP_WHITESPACE) != 0;
    convertToFIS(in, out, all);
}

void Converter::convertToFIS(std::istream& in, std::ostream& out, const Options& options) {
    // The writer flushes at every construct; a file must not see that.
    DeferredFlushOutputStream buffer(out);
    {
        FastInfosetWriter writer(buffer, false, DocumentVocabulary::VOC_MAP);
        writer.setStrict(options.strict);
        writer.setMaxIndexedStringLength(options.maxIndexedStringLength);
        XML::SAXParser parser;
        parser.setFeature(XML::XMLReader::FEATURE_NAMESPACES, true);
        parser.setFeature(XML::XMLReader::FEATURE_NAMESPACE_PREFIXES, true);
        parser.setFeature(XML::SAXParser::FEATURE_DECLARATIONS_FIRST, true);
        parser.setLimits(options.limits.delivery());
        XML::InputSource source(in);
        if (options.stripWhitespace) {
            XML::WhitespaceFilter filter(&parser);
            parseInto(filter, writer, source);
        } else {
            parseInto(parser, writer, source);
        }
    }
    buffer.finish();
    if (!buffer) {
        throw IOException("error while writing Fast Infoset document to stream");
    }
}

void Converter::convertToXML(std::istream& in, std::ostream& out, int options) {
    Options all;
    all.xmlOptions = options;
    all.opensVocabularies = true;
    convertToXML(in, out, all);
}

void Converter::convertToXML(std::istream& in, std::ostream& out, const Options& options) {
    XML::XMLWriter writer(out, options.xmlOptions);
    FastInfosetParser parser = options.opensVocabularies
                                   ? FastInfosetParser(DocumentVocabulary::VOC_VECTOR)
                                   : FastInfosetParser(DocumentVocabulary::VOC_VECTOR, nullptr);
    parser.setExternalVocabularyLoader(options.pVocabularyLoader);
    parser.setLimits(options.limits);
    parser.setStrict(options.strict);
    parser.initialize(&writer);
    XML::InputSource source(in);
    parser.parse(&source);
}

} // namespace Tamo::FastInfoset
