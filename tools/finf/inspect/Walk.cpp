#include "inspect/Walk.h"
#include "command/FinfError.h"

namespace finf {

std::string faultOf(DocumentWalker& walker, const std::function<bool()>& goesOn) {
    try {
        FinfError::explainDamage([&] {
            while (goesOn()) {
                if (!walker.step()) {
                    walker.trailingOctets();
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
