#include "vocabulary/VocabularyCommand.h"
#include "Tamo/FastInfoset/ExternalVocabularyLoader.h"
#include "Tamo/FastInfoset/FastInfosetParser.h"
#include "Tamo/FastInfoset/FastInfosetWriter.h"
#include "Tamo/FastInfoset/SharedVocabulary.h"
#include "Tamo/MemoryStream.h"
#include "command/CommonOptions.h"
#include "command/FinfError.h"
#include "convert/FastInfosetToXML.h"
#include "convert/XMLToFastInfoset.h"
#include "files/DocumentKind.h"
#include "files/InputFile.h"
#include "files/OutputFile.h"
#include "vocabulary/VocabularyDocument.h"
#include <algorithm>
#include <iomanip>
#include <iostream>
#include <sstream>
#include <utility>

namespace finf {

using Tamo::FastInfoset::DocumentVocabulary;
using Tamo::FastInfoset::ExternalVocabularyLoader;
using Tamo::FastInfoset::FastInfosetParser;
using Tamo::FastInfoset::FastInfosetWriter;
using Tamo::FastInfoset::SharedVocabulary;

namespace {

/// What is saved of whole, in percent to one place.
std::string saved(std::size_t whole, std::size_t rest) {
    std::ostringstream text;
    text << std::fixed << std::setprecision(1)
         << 100 * (1 - static_cast<double>(rest) / static_cast<double>(whole)) << " %";
    return text.str();
}

} // namespace

VocabularyCommand::VocabularyCommand(CLI::App& parent)
    : Command(parent, "vocabulary", "Sample documents -> an external vocabulary for documents like them") {
    app().add_option("SAMPLE", _paths, "Documents, XML text or Fast Infoset")->type_name("")->required();
    app()
        .add_option("-o,--output", _output,
                    "Where to write the vocabulary to, a document; - is standard output")
        ->type_name("FILE")
        ->required();
    app().add_flag("-f,--force", _force, "Overwrite an existing FILE");
    app()
        .add_option("--format", _format, "xml or finf; xml by default, unless FILE ends in .finf")
        ->type_name("KIND")
        ->check(CLI::IsMember({"xml", "finf"}).description(""));
    app()
        .add_option("--uri", _uri,
                    "What documents are going to call the vocabulary; by default that of its content")
        ->type_name("URI");
    app()
        .add_option("--min-count", _minCount, "How often a value or text has to occur in the samples")
        ->type_name("N")
        ->capture_default_str();
    app().add_flag("--strip-whitespace", _encoding.stripWhitespace,
                   "Drop text that is nothing but white space, as encode does");
    addVocabularyOption(app(), _decoding.vocabularies);
    addLimitOptions(app(), _decoding.limits);
}

ExitStatus VocabularyCommand::run() {
    OutputFile::removeTemporariesOnSignals();
    VocabularyUsage usage;
    ExitStatus status = DONE;
    for (const std::string& path : _paths) {
        status = std::max(status, attempt(path, [&] { read(path, usage); }));
    }
    if (status != DONE) {
        return status;
    }
    return attempt(_output == "-" ? "standard output" : _output, [&] {
        const VocabularyDocument document(usage, _minCount);
        const std::string text = document.text();
        Tamo::MemoryInputStream stream(text.data(), text.size());
        const DocumentVocabulary vocabulary = ExternalVocabularyLoader::loadXML(stream, true);
        document.check(vocabulary);
        if (_uri.empty()) {
            _uri = SharedVocabulary::contentURI(vocabulary);
        }
        OutputFile output(_output, _force);
        write(output.stream(), text, vocabulary);
        measure(vocabulary);
        output.commit();
        if (_output != "-") {
            report(vocabulary);
        }
    });
}

void VocabularyCommand::read(const std::string& path, VocabularyUsage& usage) {
    Sample sample{path, InputFile::readAll(path)};
    // Documents are counted as they are written here, whoever has written the sample.
    if (kindOf(sample.xml) == DocumentKind::FAST_INFOSET) {
        FastInfosetToXML toXML(_decoding);
        sample.xml = toXML.converted(sample.xml);
    }
    XMLToFastInfoset toFastInfoset(_encoding);
    const std::string octets = toFastInfoset.converted(sample.xml);
    sample.plainSize = octets.size();
    FastInfosetParser parser;
    parser.setStrict(true);
    parser.setContentHandler(&usage);
    parser.setDTDHandler(&usage);
    parser.setLexicalHandler(&usage);
    parser.parseMemoryNP(octets.data(), octets.size());
    _samples.push_back(std::move(sample));
}

// Fast Infoset has the tables in its header, and an element that adds nothing to them.
void VocabularyCommand::write(std::ostream& out, const std::string& text,
                              const DocumentVocabulary& vocabulary) const {
    if (_format != "finf" && (!_format.empty() || !_output.ends_with(".finf"))) {
        out << text;
        return;
    }
    const auto& name = vocabulary.elementVocabulary().value(1);
    const std::string& prefix = vocabulary.value(DocumentVocabulary::PREFIX, name.prefixId());
    const std::string& uri = vocabulary.value(DocumentVocabulary::NAMESPACE_NAME, name.namespaceId());
    const std::string& localName = vocabulary.value(DocumentVocabulary::LOCAL_NAME, name.localNameId());
    const std::string qualifiedName = prefix.empty() ? localName : prefix + ':' + localName;
    FastInfosetWriter writer(out, false, DocumentVocabulary::VOC_MAP);
    writer.setStrict(true);
    writer.setDocumentVocabulary(vocabulary);
    writer.startDocument();
    if (!uri.empty()) {
        writer.startPrefixMapping(prefix, uri);
    }
    writer.startElement(uri, localName, qualifiedName);
    writer.endElement(uri, localName, qualifiedName);
    writer.endDocument();
}

void VocabularyCommand::measure(const DocumentVocabulary& vocabulary) {
    XMLToFastInfoset conversion(_encoding);
    conversion.setVocabulary(_uri, vocabulary);
    for (Sample& sample : _samples) {
        sample.size = conversion.converted(sample.xml).size();
    }
}

void VocabularyCommand::report(const DocumentVocabulary& vocabulary) const {
    const auto count = [&](const auto& table) { return table.size() - 1; }; // the placeholder
    const auto strings = [&](DocumentVocabulary::ID id) { return count(vocabulary.vocabulary(id)); };
    const std::pair<std::size_t, const char*> tables[] = {
        {count(vocabulary.elementVocabulary()), "element name"},
        {count(vocabulary.attributeVocabulary()), "attribute name"},
        {strings(DocumentVocabulary::NAMESPACE_NAME), "namespace"},
        {strings(DocumentVocabulary::ATTRIBUTE_VALUE), "attribute value"},
        {strings(DocumentVocabulary::CONTENT_CHARACTER_CHUNK), "text"},
        {strings(DocumentVocabulary::OTHER_STRING), "other string"},
        {strings(DocumentVocabulary::OTHER_NCNAME), "other name"},
        {strings(DocumentVocabulary::OTHER_URI), "identifier"},
    };
    const char* separator = ": ";
    std::cout << _output;
    for (const auto& [size, what] : tables) {
        if (size > 0) {
            std::cout << separator << size << ' ' << what << (size == 1 ? "" : "s");
            separator = ", ";
        }
    }
    std::cout << '\n' << _uri << '\n';

    Sample sum{"together", {}};
    std::size_t sumOfXML = 0;
    const auto row = [](const Sample& sample, std::size_t xmlSize) {
        std::cout << std::setw(12) << xmlSize << std::setw(14) << sample.plainSize << std::setw(17)
                  << sample.size << std::setw(10) << saved(sample.plainSize, sample.size) << "  "
                  << sample.path << '\n';
    };
    std::cout << "         XML  Fast Infoset  with vocabulary     saved\n";
    for (const Sample& sample : _samples) {
        row(sample, sample.xml.size());
        sumOfXML += sample.xml.size();
        sum.plainSize += sample.plainSize;
        sum.size += sample.size;
    }
    if (_samples.size() > 1) {
        row(sum, sumOfXML);
    }
}

} // namespace finf
