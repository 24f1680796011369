#ifndef TAMO_FINF_BENCHCOMMAND_H
#define TAMO_FINF_BENCHCOMMAND_H

#include "command/Command.h"
#include "command/Options.h"
#include <functional>
#include <string>
#include <vector>

namespace finf {

/// `finf bench`: how long parsing and writing take, beside Expat on the same information.
class BenchCommand : public Command {
public:
    explicit BenchCommand(CLI::App& app);
    ExitStatus run() override;

private:
    /// What was measured of a document; times in seconds.
    struct Result {
        std::string path;
        std::size_t xmlSize = 0;
        std::size_t fastInfosetSize = 0;
        double expat = 0;
        double parsing = 0;
        double writing = 0;
    };

    void measure(const std::string& path);
    std::vector<double> medians(const std::vector<std::function<void()>>& candidates) const;
    void printTable() const;
    void printJson() const;

    Options _options;
    int _rounds = 21;
    bool _json = false;
    std::vector<Result> _results;
};

} // namespace finf

#endif
