#ifndef TAMO_FINF_VALIDATECOMMAND_H
#define TAMO_FINF_VALIDATECOMMAND_H

#include "Tamo/FastInfoset/ParserLimits.h"
#include "command/Command.h"
#include "files/DirectoryWalk.h"
#include "files/VocabularyFiles.h"
#include "walk/Field.h"
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
    void validate(const std::string& path);
    void report(const std::string& name, const std::string& verdict, const std::string& departures,
                const std::string& fault);
    DirectoryWalk::Failure failureReporter();
    static void appendPlace(std::string& json, const Field& field, const std::string& what,
                            Tamo::UInt64 partBit);

    std::vector<std::string> _inputs{"-"};
    bool _recursive = false;
    bool _json = false;
    bool _isQuiet = false;
    VocabularyFiles::List _vocabularies;
    Tamo::FastInfoset::ParserLimits _limits;
    bool _isFirst = true; // of the documents in the JSON document
    bool _hasFailed = false;
    bool _hasDepartures = false;
};

} // namespace finf

#endif
