#include "bench/BenchCommand.h"
#include "command/Command.h"
#include "command/Completion.h"
#include "command/FinfError.h"
#include "command/Suggestion.h"
#include "compare/DiffCommand.h"
#include "convert/DecodeCommand.h"
#include "convert/EncodeCommand.h"
#include "files/StandardOutput.h"
#include "inspect/InspectCommand.h"
#include "inspect/StatsCommand.h"
#include "inspect/ValidateCommand.h"
#include "vocabulary/VocabularyCommand.h"
#include <algorithm>
#include <csignal>
#include <fcntl.h>
#include <iostream>
#include <iterator>
#include <memory>
#include <string>
#include <unistd.h>

namespace {

const char DESCRIPTION[] =
    "Converts XML text to Fast Infoset (ITU-T X.891) and back, and shows what stands in Fast Infoset.";

const char EPILOGUE[] = "Exit status: 0 done, 1 an input or output failed, 2 wrong usage.";

/// Does what the command line asks for.
finf::ExitStatus run(int argc, char** argv) {
    CLI::App app(DESCRIPTION, "finf");
    app.footer(EPILOGUE);
    app.set_version_flag("-V,--version", "finf " FINF_VERSION);
    std::string shell;
    app.add_option("--completion", shell, "Print the completion for bash, zsh or fish")
        ->type_name("SHELL")
        ->group(""); // for packages, see packaging/
    app.require_subcommand(0, 1);
    const std::unique_ptr<finf::Command> commands[] = {
        std::make_unique<finf::EncodeCommand>(app),     std::make_unique<finf::DecodeCommand>(app),
        std::make_unique<finf::VocabularyCommand>(app), std::make_unique<finf::InspectCommand>(app),
        std::make_unique<finf::ValidateCommand>(app),   std::make_unique<finf::StatsCommand>(app),
        std::make_unique<finf::DiffCommand>(app),       std::make_unique<finf::BenchCommand>(app),
    };

    if (argc < 2) {
        std::cout << app.help();
        return finf::DONE;
    }
    const std::string first = argv[1];
    if (!first.empty() && first[0] != '-' &&
        std::none_of(std::begin(commands), std::end(commands),
                     [&](const auto& pCommand) { return pCommand->name() == first; })) {
        std::cerr << "finf: " << finf::FinfError::oneLine(finf::Suggestion::forCommand(app, first)) << '\n';
        return finf::WRONG_USAGE;
    }

    try {
        app.parse(argc, argv);
        if (!shell.empty()) {
            std::cout << finf::Completion::script(app, shell);
            return finf::DONE;
        }
        const auto chosen = std::find_if(std::begin(commands), std::end(commands),
                                         [](const auto& pCommand) { return pCommand->parsed(); });
        if (chosen == std::end(commands)) {
            throw CLI::RequiredError("A subcommand");
        }
        return (*chosen)->run();
    } catch (const CLI::CallForVersion& e) {
        std::cout << e.what() << '\n';
        return finf::DONE;
    } catch (const CLI::Success& e) {
        app.exit(e);
        return finf::DONE;
    } catch (const CLI::Error& e) {
        // What is left over, an option that does not exist, comes first among the reasons.
        std::string hint;
        for (int i = 2; i < argc && dynamic_cast<const CLI::ExtrasError*>(&e) && hint.empty(); ++i) {
            const std::string argument = argv[i];
            const CLI::App& command = *app.get_subcommand(first);
            if (argument.starts_with("--") && argument.size() > 2 &&
                !command.get_option_no_throw(argument.substr(0, argument.find('=')))) {
                hint = finf::Suggestion::forOption(command, argument);
            }
        }
        std::cerr << "finf: " << finf::FinfError::oneLine(e.what())
                  << (hint.empty()
                          ? "; finf " + (first[0] == '-' ? "" : first + " ") + "--help shows the usage"
                          : hint)
                  << '\n';
        return finf::WRONG_USAGE;
    } catch (const std::exception& e) {
        finf::FinfError::report(app.get_subcommands().front()->get_name(), e);
        return finf::FAILED;
    }
}

/// A standard descriptor that the caller has closed must not become that of a file; its use goes on failing.
void occupyStandardDescriptors() {
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (::fcntl(descriptor, F_GETFD) < 0) {
            ::open("/dev/null", descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY);
        }
    }
}

} // namespace

int main(int argc, char** argv) {
    occupyStandardDescriptors();
    // A reader that goes away is a failed write, after which nothing half-written is left.
    std::signal(SIGPIPE, SIG_IGN);

    finf::StandardOutput output;
    const finf::ExitStatus status = run(argc, argv);
    try {
        output.finish();
        return status;
    } catch (const finf::FinfError& e) {
        finf::FinfError::report("standard output", e);
        return finf::FAILED;
    }
}
