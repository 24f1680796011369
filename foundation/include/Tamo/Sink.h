#ifndef TAMO_SINK_H
#define TAMO_SINK_H

#include "Tamo/Export.h"
#include <streambuf>

namespace Tamo {

/// A stream buffer that puts octets into an object of the caller, without a stream around it.
///
/// It may keep octets to itself until deliver() is called. Used by one thread at a time; the caller's object
/// is borrowed and must outlive the sink.
class TAMO_API Sink : public std::streambuf {
public:
    Sink(const Sink&) = delete;
    Sink& operator=(const Sink&) = delete;
    ~Sink() override;

    /// Makes what has been written so far a part of the caller's object; throws what that throws.
    virtual void deliver() = 0;

protected:
    Sink() = default;
};

} // namespace Tamo

#endif
