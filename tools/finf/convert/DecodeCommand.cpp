#include "convert/DecodeCommand.h"
#include "command/CommonOptions.h"
#include "convert/Batch.h"
#include "convert/FastInfosetToXML.h"
#include <memory>

namespace finf {

DecodeCommand::DecodeCommand(CLI::App& parent) : Command(parent, "decode", "Fast Infoset -> XML text") {
    addConversionOptions(app(), _options, "A Fast Infoset document");
    app().add_flag("--pretty", _options.pretty, "Indent elements where there is no text, for reading");
    app().add_flag("--canonical-numbers", _options.canonicalNumbers,
                   "Write arrays of float and double in the canonical form of XML Schema (1.5E0)");
    app().add_flag("--lenient", _options.lenient,
                   "Read what departs from the standard, and older documents of this tool, too");
}

ExitStatus DecodeCommand::run() {
    return Batch(_options, {".finf", ".xml", DocumentKind::FAST_INFOSET},
                 [&] { return std::make_unique<FastInfosetToXML>(_options); })
        .run();
}

} // namespace finf
