#ifndef TAMO_FINF_ENCODECOMMAND_H
#define TAMO_FINF_ENCODECOMMAND_H

#include "command/Command.h"
#include "command/Options.h"
#include <string>

namespace finf {

/// `finf encode`: XML text -> Fast Infoset.
class EncodeCommand : public Command {
public:
    explicit EncodeCommand(CLI::App& app);
    ExitStatus run() override;

private:
    Options _options;
    std::string _typed; // what --typed is given, "true" for nothing
};

} // namespace finf

#endif
