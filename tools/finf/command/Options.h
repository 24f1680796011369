#ifndef TAMO_FINF_OPTIONS_H
#define TAMO_FINF_OPTIONS_H

#include "Tamo/FastInfoset/ParserLimits.h"
#include "files/Compression.h"
#include "files/VocabularyFiles.h"
#include <optional>
#include <string>
#include <vector>

namespace finf {

/// What `encode` writes as typed data.
enum class Typed {
    NOTHING,
    ALL,      ///< numbers in the spelling that reading gives back, and everything else that fits
    CANONICAL ///< numbers with a fraction in the canonical form of XML Schema only
};

/// What the command line asks of a conversion.
struct Options {
    std::vector<std::string> inputs; ///< paths, "-" for standard input; none for that alone
    std::string output;              ///< a path, "-" for standard output, empty for the default
    std::string outputDirectory;     ///< where the outputs belong, empty for beside the inputs
    bool recursive = false;          ///< convert the documents in directories
    bool inPlace = false;            ///< replace the inputs themselves
    bool update = false;             ///< convert what is newer than its output, and nothing else
    bool force = false;              ///< overwrite existing output files, and write binary to a terminal
    bool quiet = false;              ///< no progress
    bool verbose = false;            ///< a line for each document
    Compression compression = Compression::NONE; ///< of the outputs
    unsigned int jobs = 1; ///< conversions at the same time, 0 for one for each processor
    VocabularyFiles::List vocabularies;
    Tamo::FastInfoset::ParserLimits limits; ///< on Fast Infoset that is read

    // Of `encode` only.
    int maxIndexedLength = 16;
    bool stripWhitespace = false;
    bool xmlDeclaration = false;
    Typed typed = Typed::NOTHING;

    // Of `decode` only.
    bool pretty = false;
    bool lenient = false;
    bool canonicalNumbers = false;
    bool firstOnly = false;               ///< no document but the first of an input
    bool follow = false;                  ///< wait at the end for more
    bool recover = false;                 ///< write what is whole of a damaged document
    std::optional<std::string> separator; ///< what each document ends with, in one output for all
};

} // namespace finf

#endif
