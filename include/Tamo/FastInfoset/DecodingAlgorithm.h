#ifndef TAMO_FASTINFOSET_DECODINGALGORITHM_H
#define TAMO_FASTINFOSET_DECODINGALGORITHM_H

#include "Tamo/Export.h"
#include "Tamo/FastInfoset/Encoding.h"
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Tamo::FastInfoset {

class DocumentAlgorithms;

/// The parser's table of encoding algorithms, numbered as EncodingAlgorithm numbers them; in the strict mode
/// the application's own are known by their URIs instead (ITU-T X.891, 8.3). A plain value.
class TAMO_API DecodingAlgorithm {
public:
    /// Makes a value of the octets of an algorithm that is not known: its URI, empty when the document
    /// declares none for the index, its index, and the octets. Null: they are refused.
    using Fallback =
        std::function<AutoPtr<Encoding>(const std::string& uri, unsigned int index, std::string_view octets)>;

    /// The built-in algorithms.
    DecodingAlgorithm();

    /// Appends an algorithm; the first one gets the index EncodingAlgorithm::USER_DEFINED.
    void add(Encoding::DecodeMethod decodeMethod);

    /// Appends an algorithm with a URI, by which the strict mode knows it; of two with the same URI the last.
    void add(const std::string& uri, Encoding::DecodeMethod decodeMethod);

    /// What the strict mode hands the values of algorithms to that nobody has added; null: they are refused.
    void setFallback(Fallback fallback) { _fallback = std::move(fallback); }

    /// The same by the URI that the document declares for the index; one that is not known goes to the
    /// fallback, or throws FISEncodingException with URI, index and place.
    AutoPtr<Encoding> read(unsigned int index, BitStreamReader& reader,
                           const DocumentAlgorithms& algorithms) const;

    /// Reads a value of algorithm index as a new object; an index that is not in use throws FISException
    /// "Invalid decoding defined".
    AutoPtr<Encoding> read(int index, BitStreamReader& reader) const;

private:
    AutoPtr<Encoding> read(Encoding::DecodeMethod decodeMethod, BitStreamReader& reader) const;

    std::vector<Encoding::DecodeMethod> _decodings; // the application's
    std::vector<std::string> _uris;                 // of them, empty where there is none
    Fallback _fallback;
};

} // namespace Tamo::FastInfoset

#endif
