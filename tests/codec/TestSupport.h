#ifndef TAMO_TESTS_TESTSUPPORT_H
#define TAMO_TESTS_TESTSUPPORT_H

#include "DribblingStream.h"
#include "Failure.h"
#include "Octets.h"
#include "Tamo/FastInfoset/BitStreamReader.h"
#include "Tamo/FastInfoset/BitStreamWriter.h"
#include "Tamo/FastInfoset/Encoding.h"
#include "Tamo/FastInfoset/FISContentHandler.h"
#include <functional>
#include <gtest/gtest.h>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>
#include <string_view>

namespace Tamo::FastInfoset::Test {

/// What use writes, its last octet completed with zero bits, as hex() gives it.
std::string written(const std::function<void(BitStreamWriter&)>& use);

/// Runs use with readers that stand at the first of the octets: over a memory block, over a stream, over a
/// stream that dribbles, and over streams in which the reader's buffer ends at each of the first octets.
void withReaders(const std::string& octets, const std::function<void(BitStreamReader&)>& use);

/// Expects that the statement throws the class and the message of expected ("FISException: Tag mismatch",
/// "AssertionViolationException: size > 0").
#define EXPECT_FAILURE(expected, ...) EXPECT_EQ(failureOf([&] { __VA_ARGS__; }), expected)

/// The octets of an encoding object, its length at bit position 4 behind four zero bits.
std::string encoded(const Encoding& encoding);

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

/// Writes down, one word a call, what a typed handler receives: "int:5 characters:abc".
class TypedRecorder : public FISContentHandler {
public:
    std::string calls;

    void binaryData(const char* data, std::size_t length) override;
    void encodedData(Int16 value) override { add("short:", value); }
    void encodedData(Int32 value) override { add("int:", value); }
    void encodedData(Int64 value) override { add("long:", value); }
    void encodedData(bool value) override { add("bool:", value); }
    void encodedData(float value) override { add("float:", value); }
    void encodedData(double value) override { add("double:", value); }
    void encodedData(const UUID& value) override { add("uuid:", value.toString()); }

    void setDocumentLocator(const XML::Locator*) override {}
    void startDocument() override {}
    void endDocument() override {}
    void startElement(const std::string&, const std::string&, const std::string&,
                      const XML::Attributes&) override {}
    void endElement(const std::string&, const std::string&, const std::string&) override {}
    void characters(const char ch[], int start, int length) override;
    void ignorableWhitespace(const char[], int, int) override {}
    void processingInstruction(const std::string&, const std::string&) override {}
    void startPrefixMapping(const std::string&, const std::string&) override {}
    void endPrefixMapping(const std::string&) override {}
    void skippedEntity(const std::string&) override {}

private:
    template<class T>
    void add(const char* kind, const T& value) {
        std::ostringstream word;
        word << (calls.empty() ? "" : " ") << kind << value;
        calls += word.str();
    }
};

/// What the encoding delivers to a typed handler, and as text to a plain one.
std::string typedCalls(const Encoding& encoding);
std::string plainCalls(Encoding& encoding);

} // namespace Tamo::FastInfoset::Test

#endif
