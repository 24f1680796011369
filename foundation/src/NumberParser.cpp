#include "Tamo/NumberParser.h"
#include "Tamo/Exception.h"
#include <charconv>
#include <limits>
#include <string>

namespace Tamo {

namespace {

template<class T>
bool readWhole(std::string_view text, T& value) noexcept {
    const char* const pEnd = text.data() + text.size();
    T result{};
    const auto [pStop, error] = std::from_chars(text.data(), pEnd, result);
    if (error != std::errc() || pStop != pEnd) {
        return false;
    }
    value = result;
    return true;
}

template<class T>
T readOrThrow(bool (*read)(std::string_view, T&) noexcept, std::string_view text, const char* message) {
    T value{};
    if (!read(text, value)) {
        throw SyntaxException(message, "\"" + std::string(text) + "\"");
    }
    return value;
}

} // namespace

bool NumberParser::tryParse(std::string_view text, int& value) noexcept {
    return readWhole(text, value);
}

bool NumberParser::tryParseUnsigned(std::string_view text, unsigned& value) noexcept {
    return readWhole(text, value);
}

bool NumberParser::tryParse64(std::string_view text, Int64& value) noexcept {
    return readWhole(text, value);
}

bool NumberParser::tryParseUnsigned64(std::string_view text, UInt64& value) noexcept {
    return readWhole(text, value);
}

bool NumberParser::tryParseFloat(std::string_view text, double& value) noexcept {
    const bool negative = text.starts_with('-');
    const std::string_view magnitude = text.substr(negative ? 1 : 0);
    if (magnitude.empty()) {
        return false;
    }
    const char first = magnitude.front();
    // std::from_chars would take spellings of infinity and not-a-number that are not ours.
    if (first == '.' || (first >= '0' && first <= '9')) {
        return readWhole(text, value);
    }
    if (magnitude == "INF") {
        value = negative ? -std::numeric_limits<double>::infinity() : std::numeric_limits<double>::infinity();
        return true;
    }
    if (text == "NaN") {
        value = std::numeric_limits<double>::quiet_NaN();
        return true;
    }
    return false;
}

int NumberParser::parse(std::string_view text) {
    return readOrThrow(&tryParse, text, "Not a 32-bit integer");
}

unsigned NumberParser::parseUnsigned(std::string_view text) {
    return readOrThrow(&tryParseUnsigned, text, "Not an unsigned 32-bit integer");
}

Int64 NumberParser::parse64(std::string_view text) {
    return readOrThrow(&tryParse64, text, "Not a 64-bit integer");
}

UInt64 NumberParser::parseUnsigned64(std::string_view text) {
    return readOrThrow(&tryParseUnsigned64, text, "Not an unsigned 64-bit integer");
}

double NumberParser::parseFloat(std::string_view text) {
    return readOrThrow(&tryParseFloat, text, "Not a floating-point number");
}

} // namespace Tamo
