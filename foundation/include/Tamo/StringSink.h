#ifndef TAMO_STRINGSINK_H
#define TAMO_STRINGSINK_H

#include "Tamo/BlockSink.h"
#include "Tamo/Export.h"
#include <string>

namespace Tamo {

/// A sink that appends to a string, which it has borrowed. std::bad_alloc leaves the string as it was.
class TAMO_API StringSink final : public BlockSink {
public:
    explicit StringSink(std::string& octets) noexcept : _octets(octets) {}

protected:
    void append(const char* data, std::size_t size) override;

private:
    std::string& _octets;
};

} // namespace Tamo

#endif
