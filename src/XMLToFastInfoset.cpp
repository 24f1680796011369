#include "Tamo/FastInfoset/XMLToFastInfoset.h"
#include "Tamo/DeferredFlushStream.h"
#include "Tamo/Exception.h"
#include "Tamo/FastInfoset/FastInfosetWriter.h"
#include "Tamo/StringSink.h"
#include "Tamo/XML/SAXParser.h"
#include "Tamo/XML/WhitespaceFilter.h"
#include <optional>

namespace Tamo::FastInfoset {

struct XMLToFastInfoset::Engine {
    explicit Engine(const ConversionOptions& given) : options(given) {
        parser.setFeature(XML::XMLReader::FEATURE_NAMESPACES, true);
        parser.setFeature(XML::XMLReader::FEATURE_NAMESPACE_PREFIXES, true);
        parser.setFeature(XML::SAXParser::FEATURE_DECLARATIONS_FIRST, true);
        parser.setLimits(options.limits.delivery());
        if (options.stripWhitespace) {
            filter.emplace(&parser);
        }
    }

    XML::XMLReader& reader() { return filter ? static_cast<XML::XMLReader&>(*filter) : parser; }

    /// Has a document written to target that parse() reads.
    template<class Target, class Parse>
    void convert(Target& target, const Parse& parse) {
        try {
            begin(target);
            parse();
        } catch (...) {
            writer.reset(); // completes what it has begun, and is made anew
            throw;
        }
    }

    template<class Target>
    void begin(Target& target) {
        if (writer) {
            writer->reset(target);
            return;
        }
        writer.emplace(target, false, DocumentVocabulary::VOC_MAP);
        writer->setStrict(options.strict);
        writer->setMaxIndexedStringLength(options.maxIndexedStringLength);
        writer->setFlush(FastInfosetWriter::Flush::NEVER);
        reader().setContentHandler(&*writer);
        reader().setDTDHandler(&*writer);
        reader().setLexicalHandler(&*writer);
    }

    const ConversionOptions options;
    XML::SAXParser parser;
    std::optional<XML::WhitespaceFilter> filter;
    std::optional<DeferredFlushOutputStream> buffer; // in front of streams; the writer uses it to its end
    std::optional<FastInfosetWriter> writer;
};

XMLToFastInfoset::XMLToFastInfoset(const ConversionOptions& options)
    : _pEngine(std::make_unique<Engine>(options)) {}

XMLToFastInfoset::~XMLToFastInfoset() = default;

void XMLToFastInfoset::convert(std::istream& in, std::ostream& out) {
    std::optional<DeferredFlushOutputStream>& buffer = _pEngine->buffer;
    if (buffer) {
        buffer->reset(out);
    } else {
        buffer.emplace(out);
    }
    try {
        _pEngine->convert(*buffer, [&] { _pEngine->reader().parse(in); });
        buffer->finish();
    } catch (...) {
        buffer.reset(); // passes on what there is: nothing is left for a stream that may be gone
        throw;
    }
    if (!*buffer) {
        throw IOException("error while writing Fast Infoset document to stream");
    }
}

void XMLToFastInfoset::convert(std::string_view xml, Sink& out) {
    _pEngine->convert(out, [&] { _pEngine->reader().parseMemoryNP(xml.data(), xml.size()); });
}

std::string XMLToFastInfoset::convert(std::string_view xml) {
    std::string document;
    StringSink sink(document);
    convert(xml, sink);
    return document;
}

} // namespace Tamo::FastInfoset
