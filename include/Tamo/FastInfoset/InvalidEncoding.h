#ifndef TAMO_FASTINFOSET_INVALIDENCODING_H
#define TAMO_FASTINFOSET_INVALIDENCODING_H

#include "Tamo/Export.h"
#include <string>

namespace Tamo::FastInfoset {

class BitStreamWriter;

/// Stands at the positions of the writer's algorithm table that are not in use.
class TAMO_API InvalidEncoding {
public:
    /// Throws FISException "Invalid encoding defined".
    static void encode(BitStreamWriter& writer, const std::string& text);

    /// 0 for every text.
    static int check(const std::string& text);
};

} // namespace Tamo::FastInfoset

#endif
