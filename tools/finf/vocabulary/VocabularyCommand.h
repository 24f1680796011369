#ifndef TAMO_FINF_VOCABULARYCOMMAND_H
#define TAMO_FINF_VOCABULARYCOMMAND_H

#include "command/Command.h"
#include "command/Options.h"
#include "vocabulary/VocabularyUsage.h"
#include <cstdint>
#include <iosfwd>
#include <string>
#include <vector>

namespace finf {

/// `finf vocabulary`: an external vocabulary from sample documents, and what it saves on them.
class VocabularyCommand : public Command {
public:
    explicit VocabularyCommand(CLI::App& app);
    ExitStatus run() override;

private:
    struct Sample {
        std::string path;
        std::string xml; // the document as XML text
        std::size_t plainSize = 0;
        std::size_t size = 0; // with the vocabulary
    };

    void read(const std::string& path, VocabularyUsage& usage);
    void write(std::ostream& out, const std::string& text,
               const Tamo::FastInfoset::DocumentVocabulary& vocabulary) const;
    void measure(const Tamo::FastInfoset::DocumentVocabulary& vocabulary);
    void report(const Tamo::FastInfoset::DocumentVocabulary& vocabulary) const;

    std::vector<std::string> _paths;
    std::string _output;
    bool _force = false;
    std::string _format; // "xml", "finf", or by the name of the output
    Options _decoding;
    Options _encoding;
    std::string _uri;
    std::uint64_t _minCount = 2;
    std::vector<Sample> _samples;
};

} // namespace finf

#endif
