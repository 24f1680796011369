#ifndef TAMO_FINF_COMMONOPTIONS_H
#define TAMO_FINF_COMMONOPTIONS_H

#include "Tamo/FastInfoset/ParserLimits.h"
#include "command/Options.h"
#include "files/VocabularyFiles.h"
#include <CLI/CLI.hpp>
#include <string>

namespace finf {

/// Adds --external-vocabulary URI=FILE and --vocabulary NAME, which fill the list; it has to live as long as
/// the command.
void addVocabularyOption(CLI::App& command, VocabularyFiles::List& vocabularies);

/// Adds --max-depth, --max-string-length, --max-table-entries, --max-output and --max-amplification, which
/// change the limits; they have to live as long as the command.
void addLimitOptions(CLI::App& command, Tamo::FastInfoset::ParserLimits& limits);

/// Adds --color WHEN, for StandardOutput::takesColours; it has to live as long as the command.
void addColourOption(CLI::App& command, std::string& when);

/// Adds the options of both conversions: input and output, external vocabularies, limits.
void addConversionOptions(CLI::App& command, Options& options, const char* inputKind);

} // namespace finf

#endif
