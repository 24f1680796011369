#ifndef TAMO_FINF_STATSCOMMAND_H
#define TAMO_FINF_STATSCOMMAND_H

#include "command/Command.h"
#include "command/Options.h"
#include "inspect/DocumentStatistics.h"
#include <string>
#include <vector>

namespace finf {

/// `finf stats`: what the octets of Fast Infoset documents are spent on, and how large the documents are in
/// other forms.
class StatsCommand : public Command {
public:
    explicit StatsCommand(CLI::App& parent);
    ExitStatus run() override;

private:
    DocumentStatistics statisticsOf(const std::string& path) const;

    std::vector<std::string> _inputs{"-"};
    bool _recursive = false;
    bool _json = false;
    std::string _picture;
    bool _force = false;
    std::string _colour = "auto";
    Options _decoding; // vocabularies and limits
};

} // namespace finf

#endif
