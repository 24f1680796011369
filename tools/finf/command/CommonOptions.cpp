#include "command/CommonOptions.h"
#include "files/X3D.h"
#include <charconv>
#include <cstdint>
#include <limits>
#include <string>
#include <system_error>
#include <vector>

namespace finf {

namespace {

CLI::ValidationError wrong(const std::string& message) {
    return {message, CLI::ExitCodes::ValidationError};
}

void addEntry(const std::string& uri, const std::string& file, VocabularyFiles::List& vocabularies) {
    for (const auto& vocabulary : vocabularies) {
        if (!uri.empty() && vocabulary.uri == uri) {
            throw wrong("--external-vocabulary names " + uri + " twice");
        }
    }
    vocabularies.push_back({uri, file});
}

/// Splits URI=FILE at the last equals sign, since URIs hold one more often than file names. FILE alone has
/// the URI of its content.
void addVocabulary(const std::string& argument, VocabularyFiles::List& vocabularies) {
    const std::size_t equals = argument.rfind('=');
    if (argument.empty() || equals == 0 || equals == argument.size() - 1) {
        throw wrong("--external-vocabulary takes URI=FILE or FILE, not " + argument);
    }
    const bool hasURI = equals != std::string::npos;
    addEntry(hasURI ? argument.substr(0, equals) : std::string(), argument.substr(hasURI ? equals + 1 : 0),
             vocabularies);
}

template<class Number>
void addLimit(CLI::App& command, const char* name, Number& limit, const char* description) {
    command
        .add_option_function<std::string>(
            name,
            [&limit, name](const std::string& text) {
                // Signs and spaces, which the option's own conversion lets pass, would be other numbers.
                const auto* const last = text.data() + text.size();
                Number number = 0;
                const auto [end, error] = std::from_chars(text.data(), last, number);
                if (error != std::errc() || end != last) {
                    throw CLI::ValidationError(std::string(name) + " takes a number from 0 to " +
                                                   std::to_string(std::numeric_limits<Number>::max()) +
                                                   ", not " + text,
                                               CLI::ExitCodes::ValidationError);
                }
                limit = number;
            },
            description)
        ->type_name("N")
        ->default_str(std::to_string(limit))
        ->group("Limits on Fast Infoset that is read");
}

} // namespace

void addVocabularyOption(CLI::App& command, VocabularyFiles::List& vocabularies) {
    command
        .add_option_function<std::vector<std::string>>(
            "--external-vocabulary",
            [&vocabularies](const std::vector<std::string>& arguments) {
                for (const std::string& argument : arguments) {
                    addVocabulary(argument, vocabularies);
                }
            },
            "Build the external vocabulary URI, or that of its content, from FILE (XML or Fast Infoset); may "
            "be "
            "repeated")
        ->type_name("[URI=]FILE")
        ->type_size(1)
        ->expected(1)
        ->allow_extra_args(false)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    command
        .add_option_function<std::string>(
            "--vocabulary",
            [&vocabularies](const std::string&) {
                for (const std::string& uri : X3D::uris()) {
                    addEntry(uri, {}, vocabularies);
                }
            },
            "Use an external vocabulary that finf knows: x3d")
        ->type_name("NAME")
        ->check(CLI::IsMember({X3D::NAME}).description(""));
}

void addLimitOptions(CLI::App& command, Tamo::FastInfoset::ParserLimits& limits) {
    addLimit(command, "--max-depth", limits.maxDepth, "Elements that may be open at a time");
    addLimit(command, "--max-string-length", limits.maxStringLength, "Octets of one string or array");
    addLimit(command, "--max-table-entries", limits.maxTableEntries, "Entries of one vocabulary table");
    addLimit(command, "--max-output", limits.maxDeliveredOctets,
             "Octets of all names, values and texts that come out of one document");
    addLimit(command, "--max-amplification", limits.maxAmplification,
             "The same for each octet read, beyond the first 64 MiB");
}

void addColourOption(CLI::App& command, std::string& when) {
    command.add_option("--color", when, "auto (on a terminal, unless NO_COLOR is set), always or never")
        ->type_name("WHEN")
        ->check(CLI::IsMember({"auto", "always", "never"}));
}

void addConversionOptions(CLI::App& command, Options& options, const char* inputKind) {
    command.footer("No INPUT or - is standard input; -o - is standard output, also without INPUT and -o.\n"
                   "Without -o, a.xml is encoded to a.finf and a.finf decoded to a.xml, beside the input;\n"
                   "other names are extended: a.svg, a.svg.finf, a.svg. Inputs may be in gzip or zstd.\n" +
                   command.get_footer());
    command.add_option("INPUT", options.inputs, std::string(inputKind) + "; - or nothing is standard input")
        ->type_name("");
    command.add_option("-o,--output", options.output, "Where to write to; - is standard output")
        ->type_name("OUTPUT");
    command
        .add_option("--output-directory", options.outputDirectory,
                    "Write below DIR, which is made when missing, not beside the inputs")
        ->type_name("DIR");
    command.add_flag_callback(
        "-c,--stdout", [&options] { options.output = "-"; }, "The same as -o -");
    command.add_flag("-f,--force", options.force,
                     "Overwrite existing output files; write binary to a terminal");
    command.add_flag(
        "-k,--keep", [](std::int64_t) {}, "Keep the inputs, which is the case anyway");
    command.add_flag("--in-place", options.inPlace, "Replace the inputs by their conversions");
    command.add_flag("-u,--update", options.update,
                     "Leave outputs alone that are no older than their inputs, overwrite the others");
    command
        .add_option_function<std::string>(
            "--compress",
            [&options](const std::string& format) {
                options.compression = format == "gzip" ? Compression::GZIP : Compression::ZSTD;
            },
            "Write outputs in gzip or zstd")
        ->type_name("FORMAT")
        ->check(CLI::IsMember({"gzip", "zstd"}));
    command.add_flag("-r,--recursive", options.recursive, "Convert the documents in directories, too");
    command.add_option("-j,--jobs", options.jobs, "Documents converted at a time; 0: one for each processor")
        ->type_name("N")
        ->check(CLI::Range(0, 256).description(""))
        ->capture_default_str();
    command.add_flag("-q,--quiet", options.quiet, "Show no progress, which a terminal does");
    command.add_flag("-v,--verbose", options.verbose, "Tell the sizes of each document");
    addVocabularyOption(command, options.vocabularies);
    addLimitOptions(command, options.limits);
}

} // namespace finf
