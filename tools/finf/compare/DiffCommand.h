#ifndef TAMO_FINF_DIFFCOMMAND_H
#define TAMO_FINF_DIFFCOMMAND_H

#include "command/Command.h"
#include "command/Options.h"
#include "compare/ComparedDocument.h"
#include <string>
#include <vector>

namespace finf {

/// `finf diff`: compares two documents, XML text or Fast Infoset, by their information.
class DiffCommand : public Command {
public:
    explicit DiffCommand(CLI::App& app);

    /// DONE when the documents say the same, FAILED when they do not, WRONG_USAGE when one cannot be read: as
    /// diff(1) has it.
    ExitStatus run() override;

private:
    bool areEqual(ComparedDocument& first, ComparedDocument& second) const;

    std::vector<std::string> _paths;
    bool _isQuiet = false;
    Options _options; // of what converts XML text
};

} // namespace finf

#endif
