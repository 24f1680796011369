#include "inspect/Walk.h"
#include "command/FinfError.h"

namespace finf {

std::string faultOf(DocumentWalker& walker, const std::function<bool()>& goesOn,
                    const std::function<bool()>& endDocument) {
    try {
        FinfError::explainDamage([&] {
            while (goesOn()) {
                if (walker.step()) {
                    continue;
                }
                if (!endDocument()) {
                    return;
                }
                if (!walker.hasNextDocument()) {
                    if (walker.trailingOctets()) {
                        throw FinfError(std::to_string(walker.current().bits / 8) +
                                        " that begin no document (X.891, 12)");
                    }
                    return;
                }
            }
        });
        return {};
    } catch (const std::exception& e) {
        return FinfError::reason(e);
    }
}

} // namespace finf
