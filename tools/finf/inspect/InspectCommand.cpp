#include "inspect/InspectCommand.h"
#include "command/CommonOptions.h"
#include "command/FinfError.h"
#include "files/InputFile.h"
#include "files/OutputFile.h"
#include "files/StandardOutput.h"
#include "files/X3D.h"
#include "inspect/JsonPrinter.h"
#include "inspect/PagePrinter.h"
#include "inspect/TextPrinter.h"
#include "inspect/Walk.h"
#include "walk/DocumentWalker.h"
#include <filesystem>
#include <iostream>
#include <memory>
#include <optional>
#include <system_error>

namespace finf {

namespace {

// Octets; of larger arrays a line shows no more than of this one.
constexpr std::size_t SHOWN_ARRAY = 65520;

} // namespace

InspectCommand::InspectCommand(CLI::App& parent)
    : Command(parent, "inspect", "Show what stands in the octets of Fast Infoset documents") {
    app()
        .add_option("INPUT", _input, "Fast Infoset documents; - or nothing is standard input")
        ->type_name("");
    CLI::Option* const pHtml = app().add_flag("--html", _html, "Show it as one HTML page, for a browser");
    app().add_flag("--json", _json, "Show it as one JSON document")->excludes(pHtml);
    app()
        .add_option("-o,--output", _output, "Where to write to; - is standard output, the default")
        ->type_name("OUTPUT");
    app().add_flag("-f,--force", _force, "Overwrite an existing OUTPUT");
    app().add_flag("--first", _firstOnly, "Show the first document, whatever is behind it");
    app().add_flag("--tables", _tables, "Show the vocabulary tables at the end of each document");
    app().add_flag("--full", _options.full, "Show all octets of long strings and their whole values");
    app()
        .add_option("--offset", _options.offset, "Begin with the construct at this octet")
        ->type_name("N")
        ->check(CLI::NonNegativeNumber);
    app()
        .add_option("--limit", _options.limit, "Show this many constructs only")
        ->type_name("N")
        ->check(CLI::NonNegativeNumber);
    addColourOption(app(), _colour);
    addVocabularyOption(app(), _vocabularies);
    addLimitOptions(app(), _limits);
}

ExitStatus InspectCommand::run() {
    if (!_output.empty()) {
        OutputFile::removeTemporariesOnSignals();
    }
    _options.colour = _output.empty() ? StandardOutput::takesColours(_colour) : _colour == "always";
    return attempt(_input, [this] { inspect(); });
}

void InspectCommand::inspect() const {
    InputFile input(_input);
    input.requireKind(DocumentKind::FAST_INFOSET);
    std::error_code unknown;
    if (_input != "-" && _output != "-" && std::filesystem::equivalent(_input, _output, unknown)) {
        throw FinfError(_output + " is the document itself");
    }
    std::optional<OutputFile> file;
    if (!_output.empty()) {
        file.emplace(_output, _force);
    }
    std::ostream& out = file ? file->stream() : std::cout;
    std::istream* pSource = &input.stream();
    std::unique_ptr<FieldPrinter> pPrinter;
    if (_html) {
        auto pPage = std::make_unique<PagePrinter>(out, _options, _input, *pSource);
        pSource = &pPage->source();
        pPrinter = std::move(pPage);
    } else if (_json) {
        pPrinter = std::make_unique<JsonPrinter>(out, _options, _input);
    } else {
        pPrinter = std::make_unique<TextPrinter>(out, _options);
    }
    VocabularyFiles vocabularies(_vocabularies, _limits);
    DocumentWalker walker(*pSource, *pPrinter, vocabularies, _limits);
    X3D::addDecodings(walker.decodingAlgorithms());
    if (!_options.full && !_html) {
        walker.setMaxShownArray(SHOWN_ARRAY);
    }
    pPrinter->start(walker);
    bool isInDocument = true;
    bool hasMore = false; // than the document of a page
    const auto goesOn = [&] {
        const bool continues = !pPrinter->isFull() && out;
        isInDocument = isInDocument || continues;
        return continues;
    };
    const auto endDocument = [&] {
        isInDocument = false;
        if (_tables && !_html) {
            pPrinter->tables(walker);
        }
        pPrinter->endDocument();
        hasMore = _html && !_firstOnly && walker.hasNextDocument();
        return !_firstOnly && !hasMore;
    };
    const std::string reason = faultOf(walker, goesOn, endDocument);
    input.check(); // a failed read says better why
    const Field& last = walker.current();
    if (!reason.empty()) {
        pPrinter->fault(last, reason);
    }
    if ((_tables && isInDocument) || _html) {
        pPrinter->tables(walker);
    }
    pPrinter->finish();
    // Where the first field is broken, it is no Fast Infoset, and nothing of it is worth a file.
    if (file && (reason.empty() || last.bit > 0)) {
        file->commit();
    }
    if (!reason.empty()) {
        StandardOutput::passOn();
        throw FinfError(last.place() + ": " + reason);
    }
    if (hasMore) {
        StandardOutput::passOn();
        throw FinfError("more documents stand behind the one that the page shows; --first takes it alone");
    }
}

} // namespace finf
