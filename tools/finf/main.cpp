#include "Conversion.h"
#include "FinfError.h"
#include <CLI/CLI.hpp>
#include <algorithm>
#include <csignal>
#include <iostream>

namespace {

enum ExitStatus { DONE = 0, NOT_CONVERTED = 1, WRONG_USAGE = 2 };

const char DESCRIPTION[] = "Converts XML text to Fast Infoset (ITU-T X.891) and back.";

const char EPILOGUE[] =
    "No INPUT or - is standard input; -o - is standard output, also without INPUT and -o.\n"
    "Without -o, a.xml is encoded to a.finf and a.finf decoded to a.xml, beside the input.\n"
    "Exit status: 0 done, 1 the input could not be converted, 2 wrong usage.";

/// The message on one line of printable characters, whatever a document has put into it.
std::string oneLine(std::string message) {
    std::replace_if(
        message.begin(), message.end(),
        [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; }, '?');
    return message;
}

/// Splits URI=FILE at the last equals sign, since URIs hold one more often than file names.
std::string addVocabulary(const std::string& argument, finf::Options& options) {
    const std::size_t equals = argument.rfind('=');
    if (equals == std::string::npos || equals == 0 || equals + 1 == argument.size()) {
        return "--external-vocabulary takes URI=FILE, not " + argument;
    }
    const std::string uri = argument.substr(0, equals);
    for (const auto& vocabulary : options.vocabularies) {
        if (vocabulary.uri == uri) {
            return "--external-vocabulary names " + uri + " twice";
        }
    }
    options.vocabularies.push_back({uri, argument.substr(equals + 1)});
    return {};
}

void addCommonOptions(CLI::App& command, finf::Options& options, const char* inputKind) {
    command.add_option("INPUT", options.input, std::string(inputKind) + "; - or nothing is standard input")
        ->type_name("");
    command.add_option("-o,--output", options.output, "Where to write to; - is standard output")
        ->type_name("OUTPUT");
    command.add_flag("-f,--force", options.force, "Overwrite an existing output file");
    command
        .add_option_function<std::vector<std::string>>(
            "--external-vocabulary",
            [&options](const std::vector<std::string>& arguments) {
                for (const std::string& argument : arguments) {
                    const std::string error = addVocabulary(argument, options);
                    if (!error.empty()) {
                        throw CLI::ValidationError(error, CLI::ExitCodes::ValidationError);
                    }
                }
            },
            "Build the external vocabulary URI from FILE (XML or Fast Infoset); may be repeated")
        ->type_name("URI=FILE")
        ->type_size(1)
        ->expected(1)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
}

} // namespace

int main(int argc, char** argv) {
    // A reader that goes away is a failed write with a message and an exit status.
    std::signal(SIGPIPE, SIG_IGN);

    finf::Options options;
    CLI::App app(DESCRIPTION, "finf");
    app.footer(EPILOGUE);
    app.set_version_flag("--version", "finf " FINF_VERSION);
    app.require_subcommand(1);

    CLI::App& encode = *app.add_subcommand("encode", "XML text -> Fast Infoset");
    addCommonOptions(encode, options, "XML text");
    encode
        .add_option("--max-indexed-length", options.maxIndexedLength,
                    "Longest string, in octets, that is indexed; -1 indexes all")
        ->type_name("N")
        ->capture_default_str();
    encode.add_flag("--strip-whitespace", options.stripWhitespace,
                    "Drop text that is nothing but white space");
    encode.add_flag("--xml-declaration", options.xmlDeclaration, "Begin with an XML declaration");
    encode.add_flag("--typed", options.typed,
                    "Write numbers, booleans, UUIDs and octets in element text in binary");

    CLI::App& decode = *app.add_subcommand("decode", "Fast Infoset -> XML text");
    addCommonOptions(decode, options, "A Fast Infoset document");

    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForVersion& e) {
        std::cout << e.what() << '\n';
        return DONE;
    } catch (const CLI::Success& e) {
        return app.exit(e);
    } catch (const CLI::Error& e) {
        std::cerr << "finf: " << oneLine(e.what()) << "; finf --help shows the usage\n";
        return WRONG_USAGE;
    }

    try {
        if (encode.parsed()) {
            finf::encode(options);
        } else {
            finf::decode(options);
        }
        return DONE;
    } catch (const std::exception& e) {
        const std::string input = options.input == "-" ? "standard input" : options.input;
        std::cerr << oneLine("finf: " + input + ": " + finf::FinfError::reason(e)) << '\n';
        return NOT_CONVERTED;
    }
}
