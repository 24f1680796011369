#ifndef TAMO_FINF_COMMAND_H
#define TAMO_FINF_COMMAND_H

#include <CLI/CLI.hpp>
#include <functional>
#include <string>

namespace finf {

/// What the process tells its caller.
enum ExitStatus { DONE = 0, FAILED = 1, WRONG_USAGE = 2, DEPARTURES = 3, RECOVERED = 4 };

/// A sub-command of the tool: it declares its options when it is made, and does its work when it was asked
/// for.
class Command {
public:
    /// Adds the sub-command name to app, which has to live longer.
    Command(CLI::App& app, const std::string& name, const std::string& description)
        : _app(*app.add_subcommand(name, description)) {}
    virtual ~Command() = default;

    Command(const Command&) = delete;
    Command& operator=(const Command&) = delete;

    /// True when the command line names this sub-command.
    bool parsed() const { return _app.parsed(); }

    /// What the command line calls it.
    std::string name() const { return _app.get_name(); }

    /// Does what the command line asks for and reports failures on standard error. Exceptions that pass
    /// through are reported without the name of an input; CLI::Error is wrong usage.
    virtual ExitStatus run() = 0;

protected:
    /// Where the options belong.
    CLI::App& app() { return _app; }

    /// Does the work on the input at path. What it throws is reported as one line, "finf: PATH: why", and
    /// yields FAILED; that nobody reads standard output any more yields FAILED without a word.
    static ExitStatus attempt(const std::string& path, const std::function<void()>& work);

    /// The same for reading Fast Infoset: conditions of the format that are assertions, which alone tell the
    /// user of the tool little, are reported as a damaged document.
    static ExitStatus attemptToRead(const std::string& path, const std::function<void()>& work);

private:
    CLI::App& _app;
};

} // namespace finf

#endif
