#ifndef TAMO_FASTINFOSET_REFUSAL_H
#define TAMO_FASTINFOSET_REFUSAL_H

#include "Tamo/Export.h"
#include "Tamo/FastInfoset/BitStreamReader.h"
#include "Tamo/Types.h"
#include <string_view>

namespace Tamo::FastInfoset {

/// What strict reading does with a document that ITU-T X.891 does not allow. Stateless; any thread.
struct Refusal {
    Refusal() = delete;

    /// Throws FISEncodingException with what is wrong, the clause and the octet at which the next bit stands:
    /// "index 0 of an identifying string (X.891, C.13), at octet 17".
    [[noreturn]] TAMO_COLD static void at(const BitStreamReader& reader, std::string_view what,
                                          std::string_view clause);

    /// The same at another octet, counted from 0.
    [[noreturn]] TAMO_COLD static void atOctet(UInt64 octet, std::string_view what, std::string_view clause);

    /// Throws so unless it holds.
    static void unless(bool holds, const BitStreamReader& reader, std::string_view what,
                       std::string_view clause) {
        if (!holds) [[unlikely]] {
            at(reader, what, clause);
        }
    }
};

} // namespace Tamo::FastInfoset

#endif
