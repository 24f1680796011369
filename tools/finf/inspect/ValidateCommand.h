#ifndef TAMO_FINF_VALIDATECOMMAND_H
#define TAMO_FINF_VALIDATECOMMAND_H

#include "Tamo/FastInfoset/ParserLimits.h"
#include "command/Command.h"
#include "files/VocabularyFiles.h"
#include <string>
#include <vector>

namespace finf {

/// `finf validate`: reports what Fast Infoset documents have against the standard.
class ValidateCommand : public Command {
public:
    explicit ValidateCommand(CLI::App& parent);

    /// FAILED when a document is broken, else DEPARTURES when one departs from the standard.
    ExitStatus run() override;

private:
    /// Returns how many departures the document has.
    std::size_t validate(const std::string& path) const;

    std::vector<std::string> _inputs{"-"};
    bool _isQuiet = false;
    VocabularyFiles::List _vocabularies;
    Tamo::FastInfoset::ParserLimits _limits;
};

} // namespace finf

#endif
