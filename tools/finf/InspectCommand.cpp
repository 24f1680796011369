#include "InspectCommand.h"
#include "CommonOptions.h"
#include "DocumentWalker.h"
#include "FinfError.h"
#include "InputFile.h"
#include "JsonPrinter.h"
#include "StandardOutput.h"
#include "TextPrinter.h"
#include "Walk.h"
#include <iostream>
#include <memory>

namespace finf {

InspectCommand::InspectCommand(CLI::App& parent)
    : Command(parent, "inspect", "Show what stands in the octets of a Fast Infoset document") {
    app()
        .add_option("INPUT", _input, "A Fast Infoset document; - or nothing is standard input")
        ->type_name("");
    app().add_flag("--json", _json, "Show it as one JSON document");
    app().add_flag("--tables", _tables, "Show the vocabulary tables at the end");
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
    _options.colour = StandardOutput::takesColours(_colour);
    return attempt(_input, [this] { inspect(); });
}

void InspectCommand::inspect() const {
    InputFile input(_input);
    std::unique_ptr<FieldPrinter> pPrinter;
    if (_json) {
        pPrinter = std::make_unique<JsonPrinter>(std::cout, _options, _input);
    } else {
        pPrinter = std::make_unique<TextPrinter>(std::cout, _options);
    }
    VocabularyFiles vocabularies(_vocabularies, _limits);
    DocumentWalker walker(input.stream(), *pPrinter, vocabularies, _limits);
    const std::string reason = faultOf(walker, [&] { return !pPrinter->isFull() && std::cout; });
    input.check(); // a failed read says better why
    if (!reason.empty()) {
        pPrinter->fault(walker.current(), reason);
    }
    if (_tables) {
        pPrinter->tables(walker);
    }
    pPrinter->finish();
    if (!reason.empty()) {
        StandardOutput::passOn();
        throw FinfError(walker.current().place() + ": " + reason);
    }
}

} // namespace finf
