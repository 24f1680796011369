#include "compare/DiffCommand.h"
#include "command/CommonOptions.h"
#include "command/FinfError.h"
#include "compare/Difference.h"
#include <algorithm>
#include <iostream>

namespace finf {

DiffCommand::DiffCommand(CLI::App& parent)
    : Command(parent, "diff", "Compare the information of two documents, XML text or Fast Infoset") {
    app()
        .add_option("DOCUMENT", _paths, "The two documents; one may be -, standard input")
        ->type_name("")
        ->expected(2)
        ->required();
    app().add_flag("-q,--quiet", _isQuiet, "Print nothing, the exit status tells");
    addVocabularyOption(app(), _options.vocabularies);
    addLimitOptions(app(), _options.limits);
    app().footer(
        "Compared are elements, attributes, namespaces, text, comments, processing instructions and what\n"
        "the document type declares; not how they are written.\n"
        "Exit status: 0 the documents say the same, 1 they differ, 2 wrong usage or trouble.");
}

ExitStatus DiffCommand::run() {
    if (_paths[0] == "-" && _paths[1] == "-") {
        throw CLI::ValidationError("standard input is one document", CLI::ExitCodes::ValidationError);
    }
    ComparedDocument first(_paths[0], _options);
    ComparedDocument second(_paths[1], _options);
    try {
        return areEqual(first, second) ? DONE : FAILED;
    } catch (const std::exception& e) {
        FinfError::report(first.hasFailed() ? first.name() : second.name(), e);
        return WRONG_USAGE;
    }
}

bool DiffCommand::areEqual(ComparedDocument& first, ComparedDocument& second) const {
    first.open();
    second.open();
    const std::optional<Difference> difference = Difference::between(first, second);
    if (difference && !_isQuiet) {
        std::cout << FinfError::oneLine(difference->path + ": " + difference->first + " in " + first.name() +
                                        ", " + difference->second + " in " + second.name())
                  << '\n';
    }
    return !difference;
}

} // namespace finf
