#include "Tamo/NumberFormatter.h"
#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <string_view>
#include <type_traits>

namespace Tamo {

namespace {

template<class T>
void appendNumber(std::string& text, T value) {
    if constexpr (std::is_floating_point_v<T>) {
        if (!std::isfinite(value)) {
            text.append(std::isnan(value) ? "NaN" : value > 0 ? "INF" : "-INF");
            return;
        }
    }
    char digits[32]; // the shortest spelling of a double takes at most 24
    const auto result = std::to_chars(digits, digits + sizeof(digits), value);
    text.append(digits, static_cast<std::size_t>(result.ptr - digits));
}

template<class T>
void appendCanonicalNumber(std::string& text, T value) {
    if (!std::isfinite(value)) {
        appendNumber(text, value);
        return;
    }
    char digits[32];
    const auto result = std::to_chars(digits, digits + sizeof(digits), value, std::chars_format::scientific);
    const std::string_view spelling(digits, static_cast<std::size_t>(result.ptr - digits)); // "1.5e+00"
    const std::size_t e = spelling.find('e');
    const std::string_view mantissa = spelling.substr(0, e);
    text.append(mantissa).append(mantissa.find('.') == std::string_view::npos ? ".0E" : "E");
    if (spelling[e + 1] == '-') {
        text.push_back('-');
    }
    const std::string_view exponent = spelling.substr(e + 2); // two digits or more
    const std::size_t first = std::min(exponent.find_first_not_of('0'), exponent.size() - 1);
    text.append(exponent.substr(first));
}

template<class T>
std::string formatNumber(T value) {
    std::string text;
    appendNumber(text, value);
    return text;
}

} // namespace

std::string NumberFormatter::format(int value) {
    return formatNumber(value);
}

std::string NumberFormatter::format(unsigned value) {
    return formatNumber(value);
}

std::string NumberFormatter::format(long value) {
    return formatNumber(value);
}

std::string NumberFormatter::format(unsigned long value) {
    return formatNumber(value);
}

std::string NumberFormatter::format(long long value) {
    return formatNumber(value);
}

std::string NumberFormatter::format(unsigned long long value) {
    return formatNumber(value);
}

std::string NumberFormatter::format(float value) {
    return formatNumber(value);
}

std::string NumberFormatter::format(double value) {
    return formatNumber(value);
}

std::string NumberFormatter::formatHex(UInt64 value, int width) {
    std::string text;
    appendHex(text, value, width);
    return text;
}

void NumberFormatter::appendCanonical(std::string& text, float value) {
    appendCanonicalNumber(text, value);
}

void NumberFormatter::appendCanonical(std::string& text, double value) {
    appendCanonicalNumber(text, value);
}

void NumberFormatter::append(std::string& text, int value) {
    appendNumber(text, value);
}

void NumberFormatter::append(std::string& text, unsigned value) {
    appendNumber(text, value);
}

void NumberFormatter::append(std::string& text, long value) {
    appendNumber(text, value);
}

void NumberFormatter::append(std::string& text, unsigned long value) {
    appendNumber(text, value);
}

void NumberFormatter::append(std::string& text, long long value) {
    appendNumber(text, value);
}

void NumberFormatter::append(std::string& text, unsigned long long value) {
    appendNumber(text, value);
}

void NumberFormatter::append(std::string& text, float value) {
    appendNumber(text, value);
}

void NumberFormatter::append(std::string& text, double value) {
    appendNumber(text, value);
}

void NumberFormatter::appendHex(std::string& text, UInt64 value, int width) {
    char digits[16];
    char* p = digits + sizeof(digits);
    do {
        *--p = "0123456789ABCDEF"[value & 15];
        value >>= 4;
    } while (value != 0);
    const auto count = static_cast<std::size_t>(digits + sizeof(digits) - p);
    if (width > 0 && static_cast<std::size_t>(width) > count) {
        text.append(static_cast<std::size_t>(width) - count, '0');
    }
    text.append(p, count);
}

} // namespace Tamo
