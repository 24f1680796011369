#ifndef TAMO_FASTINFOSET_ENCODINGALGORITHM_H
#define TAMO_FASTINFOSET_ENCODINGALGORITHM_H

#include "Tamo/Export.h"
#include "Tamo/FastInfoset/Encoding.h"
#include <string>
#include <vector>

namespace Tamo::FastInfoset {

/// The writer's table of encoding algorithms (ITU-T X.891, 8.3): 1 to 10 are built in, 11 to 31 reserved, the
/// application's own follow from 32 on. A plain value; parser and writer must register an application's
/// algorithms in the same order.
class TAMO_API EncodingAlgorithm {
public:
    /// The index of the first algorithm that an application adds.
    static constexpr unsigned int USER_DEFINED = 32;

    /// The built-in algorithms.
    EncodingAlgorithm();

    /// Appends an algorithm; the first one gets the index USER_DEFINED.
    void add(Encoding::EncodeMethod encodeMethod, Encoding::CheckMethod checkMethod);

    /// The same for an algorithm with a URI, under which documents written in the strict mode declare it.
    void add(const std::string& uri, Encoding::EncodeMethod encodeMethod, Encoding::CheckMethod checkMethod);

    /// The URIs of the application's algorithms, that at i of the one with the index USER_DEFINED + i; empty
    /// for one that was added without.
    const std::vector<std::string>& uris() const noexcept { return _uris; }

    /// Writes the encoding of text by algorithm index; an index that is not in use throws FISException
    /// "Invalid encoding defined".
    void encode(unsigned int index, BitStreamWriter& writer, const std::string& text) const;

    /// The octets that the encoding of text by algorithm index takes; 0 or less when it cannot be encoded, or
    /// the index is not in use.
    int check(unsigned int index, const std::string& text) const;

    /// The algorithm that encodes text in the fewest octets, the lower index of equals; 0 when none can.
    unsigned int findEncoding(const std::string& text) const;

private:
    std::vector<Encoding::EncodeMethod> _encodings; // the application's, as below
    std::vector<Encoding::CheckMethod> _checks;
    std::vector<std::string> _uris;
};

} // namespace Tamo::FastInfoset

#endif
