#ifndef TAMO_FINF_INSPECTCOMMAND_H
#define TAMO_FINF_INSPECTCOMMAND_H

#include "Command.h"
#include "FieldPrinter.h"
#include "Tamo/FastInfoset/ParserLimits.h"
#include "VocabularyFiles.h"
#include <string>

namespace finf {

/// `finf inspect`: shows what stands in the octets of a Fast Infoset document.
class InspectCommand : public Command {
public:
    explicit InspectCommand(CLI::App& parent);
    ExitStatus run() override;

private:
    void inspect() const;

    std::string _input = "-";
    bool _json = false;
    bool _tables = false;
    std::string _colour = "auto";
    FieldPrinter::Options _options;
    VocabularyFiles::List _vocabularies;
    Tamo::FastInfoset::ParserLimits _limits;
};

} // namespace finf

#endif
