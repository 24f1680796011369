#include "command/Suggestion.h"
#include "files/DocumentKind.h"
#include "files/InputFile.h"
#include <algorithm>
#include <filesystem>
#include <system_error>
#include <vector>

namespace finf {

namespace {

// More would be another word.
constexpr std::size_t LARGEST_DISTANCE = 2;

DocumentKind kindOfFile(const std::string& path) {
    char octets[KIND_OCTETS];
    try {
        InputFile input(path);
        input.stream().read(octets, sizeof octets);
        return kindOf({octets, static_cast<std::size_t>(input.stream().gcount())});
    } catch (const std::exception&) {
        return DocumentKind::UNKNOWN;
    }
}

/// The nearest of the words, empty when none is near.
std::string nearest(const std::string& word, const std::vector<std::string>& words) {
    std::string found;
    std::size_t least = std::min(LARGEST_DISTANCE, word.size() / 2) + 1;
    for (const std::string& each : words) {
        const std::size_t distance = Suggestion::distance(word, each);
        if (distance < least || (found.empty() && word.size() > 2 && each.starts_with(word))) {
            least = std::min(distance, least);
            found = each;
        }
    }
    return found;
}

} // namespace

std::string Suggestion::forCommand(const CLI::App& app, const std::string& word) {
    std::error_code error;
    if (std::filesystem::is_regular_file(word, error)) {
        switch (kindOfFile(word)) {
        case DocumentKind::XML:
            return word + " is XML text; finf encode " + word + " makes Fast Infoset of it";
        case DocumentKind::FAST_INFOSET:
            return word + " is Fast Infoset; finf decode " + word + " makes XML text of it, finf inspect " +
                   word + " shows it";
        default:
            return word + " is a file, but neither XML text nor Fast Infoset; finf --help shows the usage";
        }
    }
    if (std::filesystem::is_directory(word, error)) {
        return word + " is a directory; finf encode -r " + word + " converts the .xml files in it";
    }
    std::vector<std::string> names;
    for (const CLI::App* pCommand : app.get_subcommands({})) {
        names.push_back(pCommand->get_name());
    }
    const std::string near = nearest(word, names);
    return near.empty() ? "there is no command or file " + word + "; finf --help shows the usage"
                        : "there is no command " + word + "; did you mean finf " + near + "?";
}

std::string Suggestion::forOption(const CLI::App& command, const std::string& option) {
    std::vector<std::string> names;
    for (const CLI::Option* pOption : command.get_options()) {
        for (const std::string& name : pOption->get_lnames()) {
            names.push_back("--" + name);
        }
    }
    const std::string near = nearest(option.substr(0, option.find('=')), names);
    return near.empty() ? "" : "; did you mean " + near + "?";
}

std::size_t Suggestion::distance(std::string_view a, std::string_view b) {
    std::vector<std::vector<std::size_t>> table(a.size() + 1, std::vector<std::size_t>(b.size() + 1));
    for (std::size_t i = 0; i <= a.size(); ++i) {
        for (std::size_t j = 0; j <= b.size(); ++j) {
            if (i == 0 || j == 0) {
                table[i][j] = i + j;
                continue;
            }
            const std::size_t replaced = table[i - 1][j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1);
            table[i][j] = std::min({table[i - 1][j] + 1, table[i][j - 1] + 1, replaced});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1]) {
                table[i][j] = std::min(table[i][j], table[i - 2][j - 2] + 1);
            }
        }
    }
    return table[a.size()][b.size()];
}

} // namespace finf
