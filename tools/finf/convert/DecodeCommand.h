#ifndef TAMO_FINF_DECODECOMMAND_H
#define TAMO_FINF_DECODECOMMAND_H

#include "command/Command.h"
#include "command/Options.h"
#include <string>

namespace finf {

/// `finf decode`: Fast Infoset -> XML text.
class DecodeCommand : public Command {
public:
    explicit DecodeCommand(CLI::App& app);
    ExitStatus run() override;

private:
    Options _options;
    std::string _separator; // as it was given
};

} // namespace finf

#endif
