#include "Tamo/FastInfoset/FastInfosetToXML.h"
#include "Tamo/FastInfoset/FastInfosetParser.h"
#include "Tamo/StringSink.h"
#include "Tamo/XML/XMLWriter.h"
#include <optional>
#include <ostream>

namespace Tamo::FastInfoset {

struct FastInfosetToXML::Engine {
    explicit Engine(const ConversionOptions& options)
        : parser(options.opensVocabularies ? FastInfosetParser(DocumentVocabulary::VOC_VECTOR)
                                           : FastInfosetParser(DocumentVocabulary::VOC_VECTOR, nullptr)),
          xmlOptions(options.xmlOptions) {
        parser.setExternalVocabularyLoader(options.pVocabularyLoader);
        parser.setLimits(options.limits);
        parser.setStrict(options.strict);
    }

    /// Has a document written to out that parse() reads.
    template<class Parse>
    void convert(std::ostream& out, const Parse& parse) {
        if (writer) {
            writer->reset(out);
        } else {
            parser.initialize(&writer.emplace(out, xmlOptions));
        }
        try {
            parse();
        } catch (...) {
            writer.reset(); // passes on what there is, and is made anew
            throw;
        }
    }

    std::optional<std::ostream> text; // around sinks
    FastInfosetParser parser;
    const int xmlOptions;
    std::optional<XML::XMLWriter> writer;
};

FastInfosetToXML::FastInfosetToXML(const ConversionOptions& options)
    : _pEngine(std::make_unique<Engine>(options)) {}

FastInfosetToXML::~FastInfosetToXML() = default;

void FastInfosetToXML::convert(std::istream& in, std::ostream& out) {
    _pEngine->convert(out, [&] { _pEngine->parser.parse(in); });
}

void FastInfosetToXML::convert(std::string_view document, Sink& out) {
    std::optional<std::ostream>& text = _pEngine->text;
    if (text) {
        text->exceptions(std::ios_base::goodbit);
        text->rdbuf(&out);
    } else {
        text.emplace(&out);
    }
    text->exceptions(std::ios_base::badbit); // what the sink throws passes
    _pEngine->convert(*text, [&] { _pEngine->parser.parseMemoryNP(document.data(), document.size()); });
    out.deliver();
}

std::string FastInfosetToXML::convert(std::string_view document) {
    std::string text;
    StringSink sink(text);
    convert(document, sink);
    return text;
}

} // namespace Tamo::FastInfoset
