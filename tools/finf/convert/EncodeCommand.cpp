#include "convert/EncodeCommand.h"
#include "command/CommonOptions.h"
#include "convert/Batch.h"
#include "convert/XMLToFastInfoset.h"
#include <memory>

namespace finf {

namespace {

constexpr const char* CANONICAL = "canonical";

} // namespace

EncodeCommand::EncodeCommand(CLI::App& parent) : Command(parent, "encode", "XML text -> Fast Infoset") {
    addConversionOptions(app(), _options, "XML text");
    app()
        .add_option("--max-indexed-length", _options.maxIndexedLength,
                    "Longest string, in octets, that is indexed; -1 indexes all")
        ->type_name("N")
        ->capture_default_str();
    app().add_flag("--strip-whitespace", _options.stripWhitespace,
                   "Drop text that is nothing but white space");
    app().add_flag("--xml-declaration", _options.xmlDeclaration, "Begin with an XML declaration");
    app()
        .add_flag(
            "--typed", _typed,
            "Write numbers, booleans, UUIDs and octets in texts and attributes in binary; with =canonical, "
            "numbers in canonical spelling only")
        ->check(CLI::IsMember({"true", "false", CANONICAL}).description(""));
}

ExitStatus EncodeCommand::run() {
    _options.typed = _typed == CANONICAL ? Typed::CANONICAL : _typed == "true" ? Typed::ALL : Typed::NOTHING;
    return Batch(_options, {".xml", ".finf", DocumentKind::XML},
                 [&] { return std::make_unique<XMLToFastInfoset>(_options); })
        .run();
}

} // namespace finf
