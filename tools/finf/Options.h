#ifndef TAMO_FINF_OPTIONS_H
#define TAMO_FINF_OPTIONS_H

#include "Tamo/FastInfoset/ParserLimits.h"
#include "VocabularyFiles.h"
#include <string>

namespace finf {

/// What the command line asks for.
struct Options {
    std::string input = "-"; ///< a path, or "-" for standard input
    std::string output;      ///< a path, "-" for standard output, empty for the default
    bool force = false;      ///< overwrite an existing output file
    VocabularyFiles::List vocabularies;
    Tamo::FastInfoset::ParserLimits limits; ///< on Fast Infoset that is read

    // Of `encode` only.
    int maxIndexedLength = 16;
    bool stripWhitespace = false;
    bool xmlDeclaration = false;
    bool typed = false;
};

} // namespace finf

#endif
