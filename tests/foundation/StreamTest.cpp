#include "Tamo/DeferredFlushStream.h"
#include "Tamo/MemoryStream.h"
#include "Tamo/NullStream.h"
#include <gtest/gtest.h>
#include <sstream>
#include <vector>

using namespace Tamo;

namespace {

// Records what arrives, and refuses everything after `limit` octets.
class Recorder : public std::streambuf {
public:
    std::string octets;
    std::vector<std::size_t> writes;
    int flushes = 0;
    std::size_t limit = std::string::npos;

protected:
    int_type overflow(int_type c) override {
        const char octet = traits_type::to_char_type(c);
        return xsputn(&octet, 1) == 1 ? c : traits_type::eof();
    }
    std::streamsize xsputn(const char* text, std::streamsize count) override {
        if (octets.size() + static_cast<std::size_t>(count) > limit) {
            return 0;
        }
        octets.append(text, static_cast<std::size_t>(count));
        writes.push_back(static_cast<std::size_t>(count));
        return count;
    }
    int sync() override {
        ++flushes;
        return 0;
    }
};

} // namespace

TEST(MemoryInputStream, ReadsAndSeeksWithinItsBlock) {
    const char data[] = {'a', 'b', '\0', '\xFF', 'e'};
    MemoryInputStream stream(data, sizeof(data));
    EXPECT_EQ(stream.get(), 'a');
    stream.seekg(2);
    EXPECT_EQ(stream.get(), 0);
    EXPECT_EQ(stream.get(), 0xFF);
    EXPECT_EQ(stream.tellg(), 4);
    stream.seekg(-2, std::ios::cur);
    EXPECT_EQ(stream.tellg(), 2);
    stream.seekg(-1, std::ios::end);
    EXPECT_EQ(stream.get(), 'e');
    EXPECT_EQ(stream.get(), std::char_traits<char>::eof());
    stream.clear();
    stream.seekg(0, std::ios::end);
    EXPECT_TRUE(stream.good());
    for (const int offset : {-6, 1}) {
        EXPECT_TRUE(stream.seekg(offset, std::ios::end).fail());
        stream.clear();
        EXPECT_EQ(stream.tellg(), 5) << "a refused move changes nothing";
    }
    MemoryInputStream empty(nullptr, 0);
    EXPECT_EQ(empty.get(), std::char_traits<char>::eof());
    EXPECT_TRUE(empty.eof() && !empty.bad());
}

TEST(NullOutputStream, NeverFails) {
    NullOutputStream stream;
    stream << "text" << 1.5 << std::endl;
    stream.put('x').write("abc", 3).flush();
    EXPECT_TRUE(stream.good());
}

TEST(DeferredFlushOutputStream, PassesWholeBlocksAndNoFlush) {
    Recorder recorder;
    std::ostream target(&recorder);
    std::string expected;
    {
        DeferredFlushOutputStream stream(target, 8);
        for (const char* piece : {"abc", "defgh", "i", "", "0123456", "7", "a write of many octets", "x"}) {
            stream << piece << std::flush;
            expected += piece;
        }
        stream.put('y').put('z');
        stream.write(nullptr, 0);
        expected += "yz";
        EXPECT_EQ(recorder.flushes, 0);
        EXPECT_EQ(recorder.writes, (std::vector<std::size_t>{8, 8, 1, 22}));
        stream.finish();
        EXPECT_TRUE(stream.good());
        EXPECT_EQ(recorder.flushes, 1);
        EXPECT_EQ(recorder.octets, expected);
        stream << "tail";
    }
    EXPECT_EQ(recorder.octets, expected + "tail") << "the destructor passes on the rest";
    EXPECT_EQ(recorder.flushes, 1);

    DeferredFlushOutputStream tiny(target, 0);
    tiny << 'p' << 'q' << "rs";
    tiny.finish();
    EXPECT_EQ(recorder.octets, expected + "tailpqrs");
}

TEST(DeferredFlushOutputStream, FailingTargetMakesItBad) {
    // Whether the target reports by its state or by an exception, in a small write, a big one or at the end.
    for (const bool throws : {false, true}) {
        for (const std::size_t size : {1U, 8U, 100U}) {
            Recorder recorder;
            recorder.limit = 8;
            std::ostream target(&recorder);
            if (throws) {
                target.exceptions(std::ios::badbit | std::ios::failbit);
            }
            const std::string piece(size, 'x');
            DeferredFlushOutputStream stream(target, 8);
            stream << "12345678";
            EXPECT_TRUE(stream.good());
            for (std::size_t i = 0; i < 20 && stream.good(); ++i) {
                stream << piece;
            }
            EXPECT_TRUE(stream.bad()) << size;
            stream.finish();
            EXPECT_TRUE(stream.bad());
            EXPECT_EQ(recorder.octets, "12345678") << "nothing follows a gap";
        }
        Recorder recorder;
        recorder.limit = 2;
        std::ostream target(&recorder);
        if (throws) {
            target.exceptions(std::ios::badbit);
        }
        DeferredFlushOutputStream late(target, 8);
        late << "abc";
        EXPECT_TRUE(late.good());
        late.finish();
        EXPECT_TRUE(late.bad());
        DeferredFlushOutputStream abandoned(target, 8);
        abandoned << "abc"; // the destructor meets the failure and keeps it to itself
    }
}
