#include "PutArea.h"

namespace Tamo::FastInfoset {

namespace {

struct Plain : std::streambuf {};

int synchroniseNothing(std::streambuf*) {
    return 0;
}

} // namespace

PutArea::Sync PutArea::defaultSync() noexcept {
    static const Sync SYNC = [] {
        Plain buf;
        const Sync sync = syncOf(buf);
        return sync ? sync : &synchroniseNothing;
    }();
    return SYNC;
}

} // namespace Tamo::FastInfoset
