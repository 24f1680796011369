#ifndef TAMO_TESTS_ATTACKS_H
#define TAMO_TESTS_ATTACKS_H

#include <cstddef>
#include <span>
#include <string>

namespace Tamo::FastInfoset::Test {

/// A family of documents made to cost more than their size.
struct Attack {
    enum Outcome {
        BOUNDED, ///< read in full, with work that follows the size
        REFUSED, ///< beyond the limits on delivery
        REPEATED ///< read in full; FastInfosetWriter repeats the declarations for each element
    };

    const char* name;
    bool isXML;                         ///< XML text, or a Fast Infoset document
    std::string (*make)(std::size_t n); ///< its member of size n
    std::size_t n;                      ///< the size at which it hurts; half of it is compared
    std::size_t seed;                   ///< the size of a small member, for the fuzzer; 0 for none
    Outcome outcome;                    ///< of the member of size n
    std::size_t memory = 16;            ///< octets held for each of the document, at most
};

/// All of them.
std::span<const Attack> attacks();

} // namespace Tamo::FastInfoset::Test

#endif
