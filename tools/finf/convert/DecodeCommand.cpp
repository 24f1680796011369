#include "convert/DecodeCommand.h"
#include "command/CommonOptions.h"
#include "convert/Batch.h"
#include "convert/FastInfosetToXML.h"
#include <memory>

namespace finf {

DecodeCommand::DecodeCommand(CLI::App& parent) : Command(parent, "decode", "Fast Infoset -> XML text") {
    addConversionOptions(app(), _options, "A Fast Infoset document");
}

ExitStatus DecodeCommand::run() {
    return Batch(_options, {".finf", ".xml"}, [&] { return std::make_unique<FastInfosetToXML>(_options); })
        .run();
}

} // namespace finf
