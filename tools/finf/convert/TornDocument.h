#ifndef TAMO_FINF_TORNDOCUMENT_H
#define TAMO_FINF_TORNDOCUMENT_H

#include "command/FinfError.h"
#include <string>

namespace finf {

/// A document has not come to its end, and what is whole of it has been written.
class TornDocument : public FinfError {
public:
    /// hasOutput: something of the document was whole.
    TornDocument(const std::string& what, bool hasOutput) : FinfError(what), _hasOutput(hasOutput) {}

    bool hasOutput() const noexcept { return _hasOutput; }

private:
    bool _hasOutput;
};

} // namespace finf

#endif
