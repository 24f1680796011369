#include "convert/DecodeCommand.h"
#include "command/CommonOptions.h"
#include "convert/Batch.h"
#include "convert/FastInfosetToXML.h"
#include <memory>
#include <string_view>

namespace finf {

namespace {

/// The text with its escape sequences as what they stand for; a backslash in front of anything else is one.
std::string unescaped(const std::string& text) {
    constexpr std::string_view LETTERS = "nt0\\";
    constexpr std::string_view MEANINGS("\n\t\0\\", 4);
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const std::size_t found =
            text[i] == '\\' && i + 1 < text.size() ? LETTERS.find(text[i + 1]) : std::string_view::npos;
        const bool isEscaped = found != std::string_view::npos;
        result.push_back(isEscaped ? MEANINGS[found] : text[i]);
        i += isEscaped ? 1 : 0;
    }
    return result;
}

} // namespace

DecodeCommand::DecodeCommand(CLI::App& parent) : Command(parent, "decode", "Fast Infoset -> XML text") {
    addConversionOptions(app(), _options, "Fast Infoset documents");
    app().add_flag("--pretty", _options.pretty, "Indent elements where there is no text, for reading");
    app().add_flag("--canonical-numbers", _options.canonicalNumbers,
                   "Write arrays of float and double in the canonical form of XML Schema (1.5E0)");
    app().add_flag("--lenient", _options.lenient,
                   "Read what departs from the standard, and older documents of this tool, too");
    app().add_flag("--first", _options.firstOnly, "Decode the first document, whatever is behind it");
    app().add_flag(
        "--separator{\\n}", _separator,
        "Write all documents into one output, without XML declarations, each followed by TEXT (a line "
        "end by default); \\n, \\t, \\0 and \\\\ in it stand for what they do in C");
    app().add_flag("--follow", _options.follow,
                   "Wait at the end of INPUT for more, and write to standard output as it comes");
    app().add_flag("--recover", _options.recover,
                   "Write what is whole of documents that do not come to their end, and close what is open");
    app().footer(app().get_footer() + "\nExit status: 0 done, 1 an input or output failed, 2 wrong usage,\n"
                                      "4 what is whole was written of a damaged input (--recover).");
}

ExitStatus DecodeCommand::run() {
    if (app().count("--separator") > 0) {
        _options.separator = unescaped(_separator);
    }
    if (_options.follow) {
        if (_options.inputs.size() > 1 || _options.recursive || _options.inPlace ||
            (!_options.output.empty() && _options.output != "-") || !_options.outputDirectory.empty() ||
            _options.compression != Compression::NONE) {
            throw CLI::ValidationError("--follow takes one INPUT and writes to standard output, as it is",
                                       CLI::ExitCodes::ValidationError);
        }
        _options.output = "-";
    }
    return Batch(_options, {".finf", ".xml", DocumentKind::FAST_INFOSET},
                 [&] { return std::make_unique<FastInfosetToXML>(_options); })
        .run();
}

} // namespace finf
