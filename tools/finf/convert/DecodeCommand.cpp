#include "convert/DecodeCommand.h"
#include "command/CommonOptions.h"
#include "convert/Batch.h"
#include "convert/FastInfosetToXML.h"
#include <memory>

namespace finf {

DecodeCommand::DecodeCommand(CLI::App& parent) : Command(parent, "decode", "Fast Infoset -> XML text") {
    addConversionOptions(app(), _options, "A Fast Infoset document");
    app().add_flag("--pretty", _options.pretty, "Indent elements where there is no text, for reading");
}

ExitStatus DecodeCommand::run() {
    return Batch(_options, {".finf", ".xml", DocumentKind::FAST_INFOSET},
                 [&] { return std::make_unique<FastInfosetToXML>(_options); })
        .run();
}

} // namespace finf
