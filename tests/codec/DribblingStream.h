#ifndef TAMO_TESTS_DRIBBLINGSTREAM_H
#define TAMO_TESTS_DRIBBLINGSTREAM_H

#include "LiveStream.h"

namespace Tamo::FastInfoset::Test {

/// An input stream whose buffer hands out one octet at a time, and throws when it is asked for one behind
/// octet number failAfter.
class DribblingStream : public LiveStream {
public:
    explicit DribblingStream(const std::string& octets) : DribblingStream(octets, octets.size()) {
        endAtEnd();
    }
    DribblingStream(const std::string& octets, std::size_t failAfter) : LiveStream(octets, failAfter, 1) {}
};

} // namespace Tamo::FastInfoset::Test

#endif
