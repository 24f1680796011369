#ifndef TAMO_FINF_X3D_H
#define TAMO_FINF_X3D_H

#include "Tamo/FastInfoset/DecodingAlgorithm.h"
#include "Tamo/FastInfoset/DocumentVocabulary.h"
#include <string>
#include <vector>

namespace finf {

/// What the tool knows of binary X3D (ISO/IEC 19776-3): the vocabulary, from the lists of samples/x3d, which
/// are compiled in, and an algorithm. Stateless; all operations are static.
class X3D {
public:
    /// What the command line calls the vocabulary.
    static constexpr const char* NAME = "x3d";

    /// The URIs by which documents name the vocabulary, that of new documents first.
    static std::vector<std::string> uris();

    /// The vocabulary, of kind VOC_MAP.
    static Tamo::FastInfoset::DocumentVocabulary vocabulary();

    /// Adds the algorithm for arrays of quantized floats.
    static void addDecodings(Tamo::FastInfoset::DecodingAlgorithm& algorithms);

private:
    // The lists, a name a line.
    static const char ELEMENTS[];
    static const char ATTRIBUTES[];
    static const char VALUES[];
    static const char ALGORITHMS[];
};

} // namespace finf

#endif
