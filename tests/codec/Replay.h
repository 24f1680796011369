#ifndef TAMO_TESTS_REPLAY_H
#define TAMO_TESTS_REPLAY_H

#include "EventRecorder.h"
#include "Tamo/FastInfoset/FastInfosetReader.h"

namespace Tamo::FastInfoset::Test {

/// Reports the reader's document, event by event, as a parser does.
void replay(FastInfosetReader& reader, TypedEventRecorder& recorder);

} // namespace Tamo::FastInfoset::Test

#endif
