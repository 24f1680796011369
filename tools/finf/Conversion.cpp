#include "Conversion.h"
#include "DocumentWriter.h"
#include "InputFile.h"
#include "OutputFile.h"
#include "Tamo/FastInfoset/FastInfosetParser.h"
#include "Tamo/XML/InputSource.h"
#include "Tamo/XML/SAXParser.h"
#include "Tamo/XML/WhitespaceFilter.h"
#include "Tamo/XML/XMLWriter.h"
#include "TypedContentFilter.h"
#include <filesystem>
#include <memory>

namespace finf {

namespace {

using Tamo::FastInfoset::DocumentVocabulary;
using Tamo::FastInfoset::FastInfosetParser;
using Tamo::XML::ContentHandler;
using Tamo::XML::InputSource;
using Tamo::XML::LexicalHandler;
using Tamo::XML::SAXParser;
using Tamo::XML::WhitespaceFilter;
using Tamo::XML::XMLReader;
using Tamo::XML::XMLWriter;

/// The output that the options name, or the one that belongs to the input: its name with the extension
/// replaced, or extended when it is not the one of its kind.
std::string outputPath(const Options& options, const char* inputExtension, const char* outputExtension) {
    if (!options.output.empty()) {
        return options.output;
    }
    if (options.input == "-") {
        return "-";
    }
    std::filesystem::path path(options.input);
    if (path.extension() == inputExtension) {
        path.replace_extension();
    }
    return path.string() + outputExtension;
}

/// Runs convert from the input to the output.
template<class Convert>
void run(const std::string& inputPath, const std::string& outputPath, bool force, Convert&& convert) {
    InputFile input(inputPath);
    OutputFile output(outputPath, force);
    try {
        convert(input.stream(), output.stream());
    } catch (const std::exception&) {
        // A failed read or write has made the conversion fail, and says better why.
        input.check();
        output.check();
        throw;
    }
    input.check();
    output.commit();
}

void encode(std::istream& in, std::ostream& out, const Options& options) {
    VocabularyFiles vocabularies(options.vocabularies, options.limits);
    std::unique_ptr<DocumentWriter> pWriter;
    if (options.vocabularies.empty()) {
        pWriter = std::make_unique<DocumentWriter>(out, options.xmlDeclaration,
                                                   DocumentVocabulary(DocumentVocabulary::VOC_MAP));
    } else {
        const std::string& uri = options.vocabularies.front().uri;
        const DocumentVocabulary vocabulary = vocabularies.loadForWriting(uri);
        pWriter = std::make_unique<DocumentWriter>(out, options.xmlDeclaration, vocabulary);
        pWriter->setExternalVocabulary(uri, vocabulary);
    }
    pWriter->setMaxIndexedStringLength(options.maxIndexedLength);

    TypedContentFilter typedFilter(*pWriter, options.maxIndexedLength);
    ContentHandler* pContentHandler = pWriter.get();
    LexicalHandler* pLexicalHandler = pWriter.get();
    if (options.typed) {
        pContentHandler = &typedFilter;
        pLexicalHandler = &typedFilter;
    }

    SAXParser parser;
    parser.setFeature(XMLReader::FEATURE_NAMESPACES, true);
    parser.setFeature(XMLReader::FEATURE_NAMESPACE_PREFIXES, true);
    parser.setFeature(SAXParser::FEATURE_DECLARATIONS_FIRST, true);
    WhitespaceFilter whitespaceFilter(&parser);
    XMLReader& reader = options.stripWhitespace ? static_cast<XMLReader&>(whitespaceFilter) : parser;
    reader.setContentHandler(pContentHandler);
    reader.setDTDHandler(pWriter.get());
    reader.setProperty(XMLReader::PROPERTY_LEXICAL_HANDLER, static_cast<void*>(pLexicalHandler));
    InputSource source(in);
    reader.parse(&source);
}

void decode(std::istream& in, std::ostream& out, const Options& options) {
    VocabularyFiles vocabularies(options.vocabularies, options.limits);
    XMLWriter writer(out, XMLWriter::WRITE_XML_DECLARATION);
    FastInfosetParser parser(DocumentVocabulary::VOC_VECTOR);
    parser.setExternalVocabularyLoader(&vocabularies);
    parser.setLimits(options.limits);
    parser.initialize(&writer);
    InputSource source(in);
    parser.parse(&source);
}

} // namespace

void encode(const Options& options) {
    run(options.input, outputPath(options, ".xml", ".finf"), options.force,
        [&](std::istream& in, std::ostream& out) { encode(in, out, options); });
}

void decode(const Options& options) {
    run(options.input, outputPath(options, ".finf", ".xml"), options.force,
        [&](std::istream& in, std::ostream& out) { decode(in, out, options); });
}

} // namespace finf
