#include "inspect/ValidateCommand.h"
#include "command/CommonOptions.h"
#include "command/FinfError.h"
#include "files/InputFile.h"
#include "files/StandardOutput.h"
#include "inspect/Walk.h"
#include "walk/DepartureFinder.h"
#include "walk/DocumentWalker.h"
#include <iostream>

namespace finf {

ValidateCommand::ValidateCommand(CLI::App& parent)
    : Command(parent, "validate", "Report what Fast Infoset documents have against the standard") {
    app()
        .add_option("INPUT", _inputs, "Fast Infoset documents; - or nothing is standard input")
        ->type_name("");
    app().add_flag("-q,--quiet", _isQuiet, "Print nothing but what is wrong");
    addVocabularyOption(app(), _vocabularies);
    addLimitOptions(app(), _limits);
    app().footer("Exit status: 0 nothing found, 1 a document is broken, 2 wrong usage,\n"
                 "3 a document can be read but departs from the standard.");
}

ExitStatus ValidateCommand::run() {
    bool hasFailed = false;
    bool hasDepartures = false;
    for (const std::string& path : _inputs) {
        const ExitStatus status =
            attempt(path, [&] { hasDepartures = validate(path) != 0 || hasDepartures; });
        hasFailed = hasFailed || status != DONE;
    }
    return hasFailed ? FAILED : hasDepartures ? DEPARTURES : DONE;
}

std::size_t ValidateCommand::validate(const std::string& path) const {
    const std::string name = path == "-" ? "standard input" : path;
    std::size_t count = 0;
    DepartureFinder finder([&](const std::string& place, const std::string& what) {
        ++count;
        std::cout << FinfError::oneLine(name + ": " + place + ": " + what) << '\n';
    });
    InputFile input(path);
    VocabularyFiles vocabularies(_vocabularies, _limits);
    DocumentWalker walker(input.stream(), finder, vocabularies, _limits);
    finder.setVocabulary(walker.vocabulary());
    const std::string reason = faultOf(walker);
    input.check();
    if (!reason.empty()) {
        StandardOutput::passOn();
        throw FinfError(walker.current().place() + ": " + reason);
    }
    if (count == 0 && !_isQuiet) {
        std::cout << FinfError::oneLine(name) << ": clean\n";
    }
    return count;
}

} // namespace finf
