#ifndef TAMO_VECTORSINK_H
#define TAMO_VECTORSINK_H

#include "Tamo/BlockSink.h"
#include "Tamo/Export.h"
#include <cstddef>
#include <vector>

namespace Tamo {

/// A sink that appends to a vector, which it has borrowed. std::bad_alloc leaves the vector as it was.
class TAMO_API VectorSink final : public BlockSink {
public:
    explicit VectorSink(std::vector<std::byte>& octets) noexcept : _octets(octets) {}

protected:
    void append(const char* data, std::size_t size) override;

private:
    std::vector<std::byte>& _octets;
};

} // namespace Tamo

#endif
