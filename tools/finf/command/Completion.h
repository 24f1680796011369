#ifndef TAMO_FINF_COMPLETION_H
#define TAMO_FINF_COMPLETION_H

#include <CLI/CLI.hpp>
#include <string>

namespace finf {

/// Completion of the command line for shells, made of what the program knows of its options. Stateless; all
/// operations are static.
class Completion {
public:
    /// The script for "bash", "zsh" or "fish"; throws CLI::ValidationError for another shell.
    static std::string script(const CLI::App& app, const std::string& shell);

private:
    static std::string bash(const CLI::App& app);
    static std::string zsh(const CLI::App& app);
    static std::string fish(const CLI::App& app);
};

} // namespace finf

#endif
