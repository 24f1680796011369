#include "inspect/ValidateCommand.h"
#include "command/CommonOptions.h"
#include "command/FinfError.h"
#include "files/InputFile.h"
#include "files/StandardOutput.h"
#include "files/X3D.h"
#include "inspect/Walk.h"
#include "walk/DepartureFinder.h"
#include "walk/DocumentWalker.h"
#include "walk/Text.h"
#include <iostream>
#include <utility>

namespace finf {

ValidateCommand::ValidateCommand(CLI::App& parent)
    : Command(parent, "validate", "Report what Fast Infoset documents have against the standard") {
    app()
        .add_option("INPUT", _inputs, "Fast Infoset documents; - or nothing is standard input")
        ->type_name("");
    app().add_flag("-r,--recursive", _recursive, "Read the .finf files in directories, too");
    app().add_flag("--json", _json, "Print one JSON document");
    app().add_flag("-q,--quiet", _isQuiet, "Print nothing but what is wrong");
    addVocabularyOption(app(), _vocabularies);
    addLimitOptions(app(), _limits);
    app().footer("Exit status: 0 nothing found, 1 a document is broken, 2 wrong usage,\n"
                 "3 a document can be read but departs from the standard.");
}

ExitStatus ValidateCommand::run() {
    if (_json) {
        std::cout << '[';
    }
    for (const std::string& path : DirectoryWalk::expand(_inputs, _recursive, failureReporter())) {
        attempt(path, [&] { validate(path); });
    }
    if (_json) {
        std::cout << (_isFirst ? "]\n" : "\n]\n");
    }
    return _hasFailed ? FAILED : _hasDepartures ? DEPARTURES : DONE;
}

DirectoryWalk::Failure ValidateCommand::failureReporter() {
    return [this](const std::string& path, const FinfError& failure) {
        _hasFailed = true;
        attempt(path, [&] { throw failure; });
    };
}

void ValidateCommand::validate(const std::string& path) {
    const std::string name = path == "-" ? "standard input" : path;
    std::size_t count = 0;
    std::string departures; // as JSON
    DepartureFinder finder([&](const Field& field, const std::string& what, Tamo::UInt64 partBit) {
        ++count;
        if (_json) {
            appendPlace(departures.append(count > 1 ? "," : ""), field, what, partBit);
        } else {
            std::cout << FinfError::oneLine(name + ": " + field.place(partBit) + ": " + what) << '\n';
        }
    });
    std::string fault;
    try {
        InputFile input(path);
        input.requireKind(DocumentKind::FAST_INFOSET);
        input.explain(DocumentKind::FAST_INFOSET, [&] {
            VocabularyFiles vocabularies(_vocabularies, _limits);
            DocumentWalker walker(input.stream(), finder, vocabularies, _limits);
            X3D::addDecodings(walker.decodingAlgorithms());
            walker.setMaxShownArray(0);
            finder.setVocabulary(walker.vocabulary());
            const std::string reason = faultOf(walker);
            if (!reason.empty()) {
                input.check();
                appendPlace(fault, walker.current(), reason, 0);
                throw FinfError(walker.current().place() + ": " + reason);
            }
        });
    } catch (const std::exception& e) {
        _hasFailed = true;
        if (fault.empty()) {
            fault = "\n      { \"what\": ";
            Text::appendJson(fault, FinfError::reason(e));
            fault += " }";
        }
        report(name, "broken", departures, fault);
        StandardOutput::passOn();
        throw;
    }
    _hasDepartures = _hasDepartures || count > 0;
    report(name, count == 0 ? "clean" : "departs", departures, fault);
}

void ValidateCommand::report(const std::string& name, const std::string& verdict,
                             const std::string& departures, const std::string& fault) {
    if (_json) {
        std::string json = std::exchange(_isFirst, false) ? "\n  { \"file\": " : ",\n  { \"file\": ";
        Text::appendJson(json, name);
        json += ", \"verdict\": \"" + verdict + "\"";
        json += departures.empty() ? "" : ",\n    \"departures\": [" + departures + "]";
        json += fault.empty() ? "" : ",\n    \"fault\":" + fault;
        std::cout << json + " }";
    } else if (verdict == "clean" && !_isQuiet) {
        std::cout << FinfError::oneLine(name) << ": clean\n";
    }
}

void ValidateCommand::appendPlace(std::string& json, const Field& field, const std::string& what,
                                  Tamo::UInt64 partBit) {
    const Tamo::UInt64 bit = field.bit + partBit;
    json += "\n      { \"offset\": " + std::to_string(bit / 8) + ", \"bit\": " + std::to_string(bit % 8) +
            ", \"construct\": \"" + nameOf(field.construct) + "\", \"what\": ";
    Text::appendJson(json, what);
    json += " }";
}

} // namespace finf
