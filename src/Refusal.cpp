#include "Refusal.h"
#include "Tamo/FastInfoset/FISException.h"
#include <string>

namespace Tamo::FastInfoset {

void Refusal::at(const BitStreamReader& reader, std::string_view what, std::string_view clause) {
    atOctet(reader.position() / 8, what, clause);
}

void Refusal::atOctet(UInt64 octet, std::string_view what, std::string_view clause) {
    FISEncodingException refused(std::string(what) + " (X.891, " + std::string(clause) + "), at octet " +
                                 std::to_string(octet));
    refused.locate(octet);
    throw refused;
}

} // namespace Tamo::FastInfoset
