#ifndef TAMO_TESTS_TESTSUPPORT_H
#define TAMO_TESTS_TESTSUPPORT_H

#include "DribblingStream.h"
#include "Failure.h"
#include "Octets.h"
#include "Tamo/FastInfoset/BitStreamReader.h"
#include "Tamo/FastInfoset/BitStreamWriter.h"
#include <functional>
#include <gtest/gtest.h>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>
#include <string_view>

namespace Tamo::FastInfoset::Test {

/// What use writes behind position zero bits, its last octet completed with zero bits, as hex() gives it.
std::string written(const std::function<void(BitStreamWriter&)>& use, int position = 0);

/// Runs use with readers that stand position bits behind the first of the octets: over a memory block, over a
/// stream, over a stream that dribbles, and over streams in which the reader's buffer ends at each of the
/// first octets.
void withReaders(const std::string& octets, int position, const std::function<void(BitStreamReader&)>& use);

/// Expects that the statement throws the class and the message of expected ("FISException: Tag mismatch",
/// "AssertionViolationException: size > 0").
#define EXPECT_FAILURE(expected, ...) EXPECT_EQ(failureOf([&] { __VA_ARGS__; }), expected)

/// The failure of a read past the end of a memory block.
inline constexpr const char* MEMORY_END = "AssertionViolationException: _pStream";
/// The failure of an octet string that is longer than the document.
inline constexpr const char* OCTETS_END =
    "FISParseException: Unexpected end of stream while parsing octet string";

/// An output stream that takes no more than capacity octets and counts how often it is flushed.
class BoundedStream : private std::streambuf, public std::ostream {
public:
    explicit BoundedStream(std::size_t capacity) : std::ostream(this), _capacity(capacity) {}

    const std::string& octets() const { return _octets; }
    int flushes() const { return _flushes; }

private:
    int overflow(int c) override;
    int sync() override;

    std::size_t _capacity;
    std::string _octets;
    int _flushes = 0;
};

} // namespace Tamo::FastInfoset::Test

#endif
