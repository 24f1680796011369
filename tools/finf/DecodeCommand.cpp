#include "DecodeCommand.h"
#include "CommonOptions.h"
#include "Conversion.h"

namespace finf {

DecodeCommand::DecodeCommand(CLI::App& parent) : Command(parent, "decode", "Fast Infoset -> XML text") {
    addConversionOptions(app(), _options, "A Fast Infoset document");
}

ExitStatus DecodeCommand::run() {
    return attemptToRead(_options.input, [&] { decode(_options); });
}

} // namespace finf
