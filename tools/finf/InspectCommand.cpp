#include "InspectCommand.h"
#include "CommonOptions.h"
#include "DocumentWalker.h"
#include "FinfError.h"
#include "InputFile.h"
#include "JsonPrinter.h"
#include "StandardOutput.h"
#include "TextPrinter.h"
#include <cstdlib>
#include <iostream>
#include <memory>
#include <string_view>
#include <unistd.h>

namespace finf {

namespace {

/// Colours are for a terminal, unless its user wants none (https://no-color.org).
bool terminalTakesColours() {
    const char* pNoColour = std::getenv("NO_COLOR");
    const char* pTerminal = std::getenv("TERM");
    return ::isatty(STDOUT_FILENO) == 1 && !(pNoColour && *pNoColour != '\0') &&
           !(pTerminal && std::string_view(pTerminal) == "dumb");
}

} // namespace

InspectCommand::InspectCommand(CLI::App& parent)
    : Command(parent, "inspect", "Show what stands in the octets of a Fast Infoset document") {
    app()
        .add_option("INPUT", _input, "A Fast Infoset document; - or nothing is standard input")
        ->type_name("");
    app().add_flag("--json", _json, "Show it as one JSON document");
    app().add_flag("--tables", _tables, "Show the vocabulary tables at the end");
    app().add_flag("--full", _options.full, "Show all octets of long strings and their whole values");
    app().add_option("--offset", _options.offset, "Begin with the construct at this octet")->type_name("N");
    app().add_option("--limit", _options.limit, "Show this many constructs only")->type_name("N");
    app()
        .add_option("--color", _colour, "auto (on a terminal, unless NO_COLOR is set), always or never")
        ->type_name("WHEN")
        ->check(CLI::IsMember({"auto", "always", "never"}));
    addVocabularyOption(app(), _vocabularies);
    addLimitOptions(app(), _limits);
}

ExitStatus InspectCommand::run() {
    _options.colour = _colour == "auto" ? terminalTakesColours() : _colour == "always";
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
    std::string failure;
    try {
        FinfError::explainDamage([&] {
            bool goesOn = true;
            while (goesOn && !pPrinter->isFull() && std::cout) {
                goesOn = walker.step();
            }
            if (!goesOn) {
                walker.trailingOctets();
            }
        });
    } catch (const std::exception& e) {
        input.check(); // a failed read says better why
        const std::string reason = FinfError::reason(e);
        pPrinter->fault(walker.current(), reason);
        failure = walker.place() + ": " + reason;
    }
    input.check();
    if (_tables) {
        pPrinter->tables(walker);
    }
    pPrinter->finish();
    if (!failure.empty()) {
        StandardOutput::passOn();
        throw FinfError(failure);
    }
}

} // namespace finf
