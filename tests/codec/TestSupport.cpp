#include "TestSupport.h"
#include <algorithm>

namespace Tamo::FastInfoset::Test {

std::string written(const std::function<void(BitStreamWriter&)>& use, int position) {
    std::ostringstream stream;
    {
        BitStreamWriter writer(stream, false);
        writer.writeBits(position, false);
        use(writer);
    }
    return hex(stream.str());
}

void withReaders(const std::string& octets, int position, const std::function<void(BitStreamReader&)>& use) {
    const auto run = [&](BitStreamReader& reader, std::size_t before, const std::string& source) {
        SCOPED_TRACE(source);
        std::string dropped;
        reader.read(dropped, before);
        if (position != 0) {
            reader.refillBufferIfLessThan(position);
            reader.advance(static_cast<UInt64>(position));
        }
        use(reader);
    };
    // A copy of the exact size, so that a sanitizer sees a read behind it.
    const std::unique_ptr<char[]> pBlock(new char[octets.size()]);
    std::copy(octets.begin(), octets.end(), pBlock.get());
    BitStreamReader block(pBlock.get(), octets.size());
    run(block, 0, "memory");
    DribblingStream dribblingStream(octets);
    BitStreamReader dribble(dribblingStream);
    run(dribble, 0, "dribbling stream");
    DribblingStream liveStream(octets);
    BitStreamReader live(liveStream, BitStreamReader::Waiting::FOR_OCTETS);
    run(live, 0, "dribbling stream, octet by octet");
    for (std::size_t before = 0; before <= std::min<std::size_t>(octets.size(), 6); ++before) {
        const std::size_t skipped = before == 0 ? 0 : BitStreamReader::BUFFER_SIZE - before;
        std::istringstream stream(std::string(skipped, '\xA5') + octets);
        BitStreamReader reader(stream);
        run(reader, skipped, "stream behind " + std::to_string(skipped) + " octets");
    }
}

int BoundedStream::overflow(int c) {
    if (c == EOF || _octets.size() >= _capacity) {
        return EOF;
    }
    _octets.push_back(static_cast<char>(c));
    return c;
}

int BoundedStream::sync() {
    ++_flushes;
    return 0;
}

} // namespace Tamo::FastInfoset::Test
