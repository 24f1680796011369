#include "TestSupport.h"
#include <algorithm>

namespace Tamo::FastInfoset::Test {

std::string written(const std::function<void(BitStreamWriter&)>& use) {
    std::ostringstream stream;
    {
        BitStreamWriter writer(stream, false);
        use(writer);
    }
    return hex(stream.str());
}

void withReaders(const std::string& octets, const std::function<void(BitStreamReader&)>& use) {
    {
        SCOPED_TRACE("memory");
        // A copy of the exact size, so that a sanitizer sees a read behind it.
        const std::unique_ptr<char[]> pBlock(new char[octets.size()]);
        std::copy(octets.begin(), octets.end(), pBlock.get());
        BitStreamReader reader(pBlock.get(), octets.size());
        use(reader);
    }
    {
        SCOPED_TRACE("dribbling stream");
        DribblingStream stream(octets);
        BitStreamReader reader(stream);
        use(reader);
    }
    for (std::size_t before = 0; before <= std::min<std::size_t>(octets.size(), 6); ++before) {
        const std::size_t skipped = before == 0 ? 0 : BitStreamReader::BUFFER_SIZE - before;
        SCOPED_TRACE("stream behind " + std::to_string(skipped) + " octets");
        std::istringstream stream(std::string(skipped, '\xA5') + octets);
        BitStreamReader reader(stream);
        std::string dropped;
        reader.read(dropped, skipped);
        use(reader);
    }
}

std::string encoded(const Encoding& encoding) {
    return written([&](BitStreamWriter& writer) {
        writer.writeBits(4, false);
        encoding.write(writer);
    });
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

void TypedRecorder::binaryData(const char* data, std::size_t length) {
    add("binary:", hex(std::string_view(data, length)));
}

void TypedRecorder::characters(const char ch[], int start, int length) {
    add("characters:", std::string(ch + start, static_cast<std::size_t>(length)));
}

std::string typedCalls(const Encoding& encoding) {
    TypedRecorder recorder;
    encoding.handle(&recorder);
    encoding.handle(static_cast<FISContentHandler*>(nullptr));
    return recorder.calls;
}

std::string plainCalls(Encoding& encoding) {
    TypedRecorder recorder;
    encoding.createContent();
    encoding.handle(static_cast<XML::ContentHandler*>(&recorder));
    encoding.handle(static_cast<XML::ContentHandler*>(nullptr));
    return recorder.calls;
}

} // namespace Tamo::FastInfoset::Test
