#ifndef TAMO_FINF_SUGGESTION_H
#define TAMO_FINF_SUGGESTION_H

#include <CLI/CLI.hpp>
#include <string>
#include <string_view>

namespace finf {

/// What was probably meant by a command line that is not understood. Stateless; all operations are static.
class Suggestion {
public:
    /// Of a first argument that is no sub-command of app: the sub-commands that take the file of that name,
    /// or the sub-command of a similar name. One line, without an end.
    static std::string forCommand(const CLI::App& app, const std::string& word);

    /// Of an option that the sub-command does not have: "; did you mean --force?", or nothing.
    static std::string forOption(const CLI::App& command, const std::string& option);

    /// How many characters have to be put in, left out, replaced or swapped to make one word of the other.
    static std::size_t distance(std::string_view a, std::string_view b);
};

} // namespace finf

#endif
