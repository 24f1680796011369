#include "command/Completion.h"
#include <algorithm>
#include <map>
#include <vector>

namespace finf {

namespace {

/// What can stand behind an option or in place of a sub-command's inputs.
enum class Value { NONE, ANYTHING, FILE, DIRECTORY, XML, FAST_INFOSET, WORD };

/// The words that an option takes, by the name of its type.
struct Words {
    const char* type;
    const char* words;
};
constexpr Words WORDS[] = {
    {"FORMAT", "gzip zstd"}, {"WHEN", "auto always never"}, {"NAME", "x3d"}, {"KIND", "xml finf"}};

// What check() adds to the name stands behind a colon.
std::string typeOf(const CLI::Option& option) {
    return option.get_type_name().substr(0, option.get_type_name().find(':'));
}

/// The words that the option takes; empty when it takes others, too.
std::string wordsOf(const CLI::Option& option) {
    for (const Words& each : WORDS) {
        if (typeOf(option) == each.type) {
            return each.words;
        }
    }
    return {};
}

Value valueOf(const CLI::Option& option) {
    const std::string name = typeOf(option);
    return option.get_expected_max() == 0 || option.get_type_size() == 0 ? Value::NONE
           : name == "DIR"                                               ? Value::DIRECTORY
           : !wordsOf(option).empty()                                    ? Value::WORD
           : name == "N" || name == "URI"                                ? Value::ANYTHING
                                                                         : Value::FILE;
}

Value inputOf(const CLI::App& command) {
    const std::string name = command.get_name();
    return name == "encode" ? Value::XML
           : name == "decode" || name == "inspect" || name == "validate" || name == "stats"
               ? Value::FAST_INFOSET
               : Value::FILE;
}

/// The options that begin with a dash.
std::vector<const CLI::Option*> optionsOf(const CLI::App& command) {
    std::vector<const CLI::Option*> options = command.get_options();
    std::erase_if(options, [](const CLI::Option* pOption) {
        return pOption->get_lnames().empty() || pOption->get_group().empty();
    });
    return options;
}

std::string namesOf(const CLI::App& command) {
    std::string names;
    for (const CLI::Option* pOption : optionsOf(command)) {
        for (const std::string& name : pOption->get_snames()) {
            names.append("-").append(name).append(" ");
        }
        for (const std::string& name : pOption->get_lnames()) {
            names.append("--").append(name).append(" ");
        }
    }
    names.pop_back();
    return names;
}

/// In quotes for a shell, with what the shell's own lists want escaped.
std::string quoted(const std::string& text, const char* escaped = "") {
    std::string result;
    for (const char c : text) {
        if (c == '\'') {
            result += "'\\''";
        } else {
            result +=
                std::string(escaped).find(c) != std::string::npos ? std::string("\\") + c : std::string(1, c);
        }
    }
    return "'" + result + "'";
}

std::string header(const char* shell) {
    return std::string("# Completion of finf for ") + shell + ", made by: finf --completion " + shell + "\n";
}

} // namespace

std::string Completion::script(const CLI::App& app, const std::string& shell) {
    if (shell == "bash") {
        return bash(app);
    }
    if (shell == "zsh") {
        return zsh(app);
    }
    if (shell == "fish") {
        return fish(app);
    }
    throw CLI::ValidationError("--completion takes bash, zsh or fish", CLI::ExitCodes::ValidationError);
}

std::string Completion::bash(const CLI::App& app) {
    std::string files;
    std::string options;
    std::string commands;
    std::map<std::string, std::string> words; // by option
    for (const CLI::App* pCommand : app.get_subcommands({})) {
        const std::string name = pCommand->get_name();
        for (const CLI::Option* pOption : optionsOf(*pCommand)) {
            if (valueOf(*pOption) == Value::WORD) {
                words["--" + pOption->get_lnames().front()] = wordsOf(*pOption);
            }
        }
        commands += name + ' ';
        options += "    " + name + ") options='" + namesOf(*pCommand) + "' ;;\n";
        if (inputOf(*pCommand) == Value::XML) {
            files += "    " + name + ") pattern='*.finf@(|.gz|.zst)' ;;\n";
        } else if (inputOf(*pCommand) == Value::FAST_INFOSET) {
            files += "    " + name + ") pattern='!*.finf@(|.gz|.zst)' ;;\n";
        }
    }
    commands.pop_back();
    std::string choices;
    for (const auto& [option, list] : words) {
        choices += "    elif [[ $previous == " + option +
                   " ]]; then\n        mapfile -t COMPREPLY < <(compgen -W '" + list + "' -- \"$current\")\n";
    }
    return header("bash") + R"(
_finf() {
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    local command='' word options='' pattern=''
    for word in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
        if [[ $word != -* ]]; then
            command=$word
            break
        fi
    done
    case $command in
)" + options +
           "    *) options='" + namesOf(app) + "' ;;\n    esac\n    case $command in\n" + files + R"(    esac
    COMPREPLY=()
    if [[ $previous == --output-directory ]]; then
        compopt -o filenames 2>/dev/null
        mapfile -t COMPREPLY < <(compgen -d -- "$current")
)" + choices +
           R"(    elif [[ $current == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$options" -- "$current")
    elif [[ -z $command ]]; then
        mapfile -t COMPREPLY < <(compgen -W ')" +
           commands + R"(' -- "$current")
    elif [[ -n $pattern && $previous != -o && $previous != --output && $previous != --svg &&
        $previous != --external-vocabulary ]]; then
        local extended
        extended=$(shopt -p extglob)
        shopt -s extglob
        compopt -o filenames 2>/dev/null
        mapfile -t COMPREPLY < <(compgen -d -- "$current"; compgen -f -X "$pattern" -- "$current" |
            while read -r word; do [[ -d $word ]] || printf '%s\n' "$word"; done)
        $extended
    fi
}

# Nothing of these: file names.
complete -o default -F _finf finf
)";
}

std::string Completion::zsh(const CLI::App& app) {
    const auto action = [](Value value, const std::string& words = {}) -> std::string {
        switch (value) {
        case Value::DIRECTORY:
            return "directory:_files -/";
        case Value::WORD:
            return "word:(" + words + ")";
        case Value::XML:
            return "document:_files -g \"^*.finf(|.gz|.zst)\"";
        case Value::FAST_INFOSET:
            return "document:_files -g \"*.finf(|.gz|.zst)\"";
        case Value::ANYTHING:
            return "value:";
        default:
            return "file:_files";
        }
    };
    std::string commands;
    std::string cases;
    for (const CLI::App* pCommand : app.get_subcommands({})) {
        commands += "        " + quoted(pCommand->get_name() + ":" + pCommand->get_description()) + "\n";
        cases += "    " + pCommand->get_name() + ")\n        _arguments -s \\\n";
        for (const CLI::Option* pOption : optionsOf(*pCommand)) {
            const std::string rest =
                "[" + pOption->get_description() + "]" +
                (valueOf(*pOption) == Value::NONE ? "" : ":" + action(valueOf(*pOption), wordsOf(*pOption)));
            for (const std::string& name : pOption->get_snames()) {
                cases += "            " + quoted("*-" + name + rest) + " \\\n";
            }
            for (const std::string& name : pOption->get_lnames()) {
                cases += "            " + quoted("*--" + name + rest) + " \\\n";
            }
        }
        cases += "            " + quoted("*:" + action(inputOf(*pCommand))) + "\n        ;;\n";
    }
    return "#compdef finf\n" + header("zsh") + R"(
_finf() {
    setopt local_options extended_glob
    local -a commands
    commands=(
)" + commands +
           R"(    )
    if ((CURRENT == 2)); then
        if [[ $words[2] == -* ]]; then
            compadd -- )" +
           namesOf(app) + R"(
        else
            _describe command commands
        fi
        return
    fi
    local command=$words[2]
    shift words
    ((CURRENT--))
    case $command in
)" + cases +
           "    esac\n}\n\n_finf \"$@\"\n";
}

std::string Completion::fish(const CLI::App& app) {
    std::string text = header("fish") + "\ncomplete -c finf -f\n";
    const auto add = [&](const std::string& condition, const CLI::Option& option) {
        text += "complete -c finf -n '" + condition + "'";
        for (const std::string& name : option.get_snames()) {
            text += " -s " + name;
        }
        for (const std::string& name : option.get_lnames()) {
            text += " -l " + name;
        }
        switch (valueOf(option)) {
        case Value::NONE:
            break;
        case Value::DIRECTORY:
            text += " -x -a '(__fish_complete_directories)'";
            break;
        case Value::WORD:
            text += " -x -a '" + wordsOf(option) + "'";
            break;
        case Value::ANYTHING:
            text += " -x";
            break;
        default:
            text += " -r -F";
        }
        text += " -d " + quoted(option.get_description()) + '\n';
    };
    for (const CLI::Option* pOption : optionsOf(app)) {
        add("__fish_use_subcommand", *pOption);
    }
    for (const CLI::App* pCommand : app.get_subcommands({})) {
        const std::string name = pCommand->get_name();
        const std::string condition = "__fish_seen_subcommand_from " + name;
        text += "\ncomplete -c finf -n __fish_use_subcommand -a " + name + " -d " +
                quoted(pCommand->get_description()) + '\n';
        switch (inputOf(*pCommand)) {
        case Value::XML:
            text += "complete -c finf -n '" + condition + "' -k -a '(__fish_complete_suffix .xml)'\n";
            break;
        case Value::FAST_INFOSET:
            text += "complete -c finf -n '" + condition +
                    "' -k -a '(__fish_complete_suffix .finf .finf.gz .finf.zst)'\n";
            break;
        default:
            text += "complete -c finf -n '" + condition + "' -F\n";
        }
        for (const CLI::Option* pOption : optionsOf(*pCommand)) {
            add(condition, *pOption);
        }
    }
    return text;
}

} // namespace finf
