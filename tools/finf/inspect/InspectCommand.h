#ifndef TAMO_FINF_INSPECTCOMMAND_H
#define TAMO_FINF_INSPECTCOMMAND_H

#include "Tamo/FastInfoset/ParserLimits.h"
#include "command/Command.h"
#include "files/VocabularyFiles.h"
#include "inspect/FieldPrinter.h"
#include <string>

namespace finf {

/// `finf inspect`: shows what stands in the octets of Fast Infoset documents.
class InspectCommand : public Command {
public:
    explicit InspectCommand(CLI::App& parent);
    ExitStatus run() override;

private:
    void inspect() const;

    std::string _input = "-";
    std::string _output;
    bool _force = false;
    bool _html = false;
    bool _json = false;
    bool _tables = false;
    bool _firstOnly = false;
    std::string _colour = "auto";
    FieldPrinter::Options _options;
    VocabularyFiles::List _vocabularies;
    Tamo::FastInfoset::ParserLimits _limits;
};

} // namespace finf

#endif
