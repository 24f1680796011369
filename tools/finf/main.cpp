#include "bench/BenchCommand.h"
#include "command/Command.h"
#include "command/FinfError.h"
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
#include <unistd.h>

namespace {

const char DESCRIPTION[] =
    "Converts XML text to Fast Infoset (ITU-T X.891) and back, and shows what stands in Fast Infoset.";

const char EPILOGUE[] = "Exit status: 0 done, 1 an input or output failed, 2 wrong usage.";

/// Does what the command line asks for.
finf::ExitStatus run(int argc, char** argv) {
    CLI::App app(DESCRIPTION, "finf");
    app.footer(EPILOGUE);
    app.set_version_flag("--version", "finf " FINF_VERSION);
    app.require_subcommand(1);
    const std::unique_ptr<finf::Command> commands[] = {
        std::make_unique<finf::EncodeCommand>(app),     std::make_unique<finf::DecodeCommand>(app),
        std::make_unique<finf::VocabularyCommand>(app), std::make_unique<finf::InspectCommand>(app),
        std::make_unique<finf::ValidateCommand>(app),   std::make_unique<finf::StatsCommand>(app),
        std::make_unique<finf::BenchCommand>(app),
    };

    try {
        app.parse(argc, argv);
        const auto chosen = std::find_if(std::begin(commands), std::end(commands),
                                         [](const auto& pCommand) { return pCommand->parsed(); });
        return (*chosen)->run();
    } catch (const CLI::CallForVersion& e) {
        std::cout << e.what() << '\n';
        return finf::DONE;
    } catch (const CLI::Success& e) {
        app.exit(e);
        return finf::DONE;
    } catch (const CLI::Error& e) {
        std::cerr << "finf: " << finf::FinfError::oneLine(e.what()) << "; finf --help shows the usage\n";
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
