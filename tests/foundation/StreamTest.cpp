#include "Tamo/DeferredFlushStream.h"
#include "Tamo/MemoryStream.h"
#include "Tamo/NullStream.h"
#include <gtest/gtest.h>
#include <string>
#include <vector>

using namespace Tamo;

namespace {

// Records what arrives and refuses what exceeds the limit.
struct Recorder : std::streambuf {
    explicit Recorder(std::size_t octetLimit) : limit(octetLimit) {}
    std::streamsize xsputn(const char* text, std::streamsize count) override {
        if (octets.size() + static_cast<std::size_t>(count) > limit) {
            return 0;
        }
        octets.append(text, static_cast<std::size_t>(count));
        writes.push_back(count);
        return count;
    }
    int sync() override { return ++flushes, 0; }
    const std::size_t limit;
    std::string octets;
    std::vector<std::streamsize> writes;
    int flushes = 0;
};

} // namespace

TEST(MemoryInputStream, ReadsAndSeeksWithinItsBlock) {
    MemoryInputStream stream("ab\0\xFF!", 5);
    stream.seekg(2);
    EXPECT_EQ(stream.get(), 0);
    EXPECT_EQ(stream.get(), 0xFF);
    stream.seekg(-3, std::ios::cur);
    EXPECT_EQ(stream.get(), 'b');
    stream.seekg(-1, std::ios::end);
    EXPECT_EQ(stream.get(), '!');
    EXPECT_EQ(stream.get(), EOF);
    for (const int offset : {-6, 1}) {
        stream.clear();
        EXPECT_TRUE(stream.seekg(offset, std::ios::end).fail());
        stream.clear();
        EXPECT_EQ(stream.tellg(), 5) << "a refused move changes nothing";
    }
    MemoryInputStream empty(nullptr, 0);
    EXPECT_TRUE(empty.get() == EOF && empty.eof() && !empty.bad());
    NullOutputStream null;
    EXPECT_TRUE(null.put('x').write("abc", 3).flush().good());
}

TEST(DeferredFlushOutputStream, PassesWholeBlocksAndNoFlush) {
    Recorder recorder(1000);
    std::ostream target(&recorder);
    std::string expected;
    {
        DeferredFlushOutputStream stream(target, 8);
        for (const char* piece : {"abc", "defgh", "i", "", "0123456", "7", "a write of many octets", "x"}) {
            stream << piece << std::flush;
            expected += piece;
        }
        stream.put('y').put('z').write(nullptr, 0);
        EXPECT_EQ(recorder.flushes, 0);
        EXPECT_EQ(recorder.writes, (std::vector<std::streamsize>{8, 8, 1, 22}));
        stream.finish();
        EXPECT_TRUE(stream.good() && recorder.flushes == 1);
        EXPECT_EQ(recorder.octets, expected += "yz");
        stream << "tail";
    }
    EXPECT_EQ(recorder.octets, expected + "tail") << "the destructor passes on the rest";
    EXPECT_EQ(recorder.flushes, 1);
}

// A record is where it is to last when finish() returns, and not a moment before.
TEST(DeferredFlushOutputStream, RecordsAreMadeDurableOneByOne) {
    Recorder recorder(40);
    std::ostream target(&recorder);
    DeferredFlushOutputStream stream(target, 8);
    std::string durable;
    for (int i = 1; i <= 9; ++i) {
        const std::string record = "rec" + std::to_string(i);
        stream << record << std::flush;
        EXPECT_EQ(recorder.octets, durable);
        stream.finish();
        EXPECT_EQ(recorder.octets, durable += record);
        EXPECT_EQ(recorder.flushes, i);
    }
    stream << "too much";
    stream.finish();
    EXPECT_TRUE(stream.bad() && recorder.octets == durable);
    Recorder other(40);
    std::ostream next(&other);
    stream << "dropped";
    stream.reset(next);
    stream << "whole";
    stream.finish();
    EXPECT_TRUE(stream.good() && other.octets == "whole" && recorder.octets == durable);
}

TEST(DeferredFlushOutputStream, FailingTargetMakesItBad) {
    // The target reports by its state or by an exception, in a small write, in a big one or at the end.
    for (const auto exceptions : {std::ios::goodbit, std::ios::badbit}) {
        for (const std::size_t size : {1U, 8U, 100U}) {
            Recorder recorder(8);
            std::ostream target(&recorder);
            target.exceptions(exceptions);
            DeferredFlushOutputStream stream(target, 8);
            stream << "12345678";
            EXPECT_TRUE(stream.good());
            for (int i = 0; i < 20; ++i) {
                stream << std::string(size, 'x');
            }
            EXPECT_TRUE(stream.bad()) << size;
            EXPECT_EQ(recorder.octets, "12345678") << "nothing follows a gap";
        }
        Recorder recorder(2);
        std::ostream target(&recorder);
        target.exceptions(exceptions);
        DeferredFlushOutputStream late(target, 8);
        EXPECT_TRUE((late << "abc").good());
        late.finish();
        EXPECT_TRUE(late.bad());
        DeferredFlushOutputStream abandoned(target, 8);
        abandoned << "abc"; // the destructor meets the failure and keeps it to itself
    }
}
