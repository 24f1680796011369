#include "Tamo/Exception.h"
#include "Tamo/NumberFormatter.h"
#include "Tamo/NumberParser.h"
#include <bit>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <locale>

using namespace Tamo;

namespace {

constexpr double INF = std::numeric_limits<double>::infinity();

// A locale in which everything that asks it writes "1.234,5".
struct CommaPunctuation : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

struct CommaLocale {
    CommaLocale()
        : _previous(std::locale::global(std::locale(std::locale::classic(), new CommaPunctuation))) {}
    ~CommaLocale() { std::locale::global(_previous); }
    std::locale _previous;
};

} // namespace

TEST(NumberFormatter, DoublesHaveTheShortestSpellingThatReadsBack) {
    const struct {
        double value;
        const char* text;
    } rows[] = {
        {0.0, "0"},
        {-0.0, "-0"},
        {1, "1"},
        {-1.5, "-1.5"},
        {0.1, "0.1"},
        {1.0 / 3, "0.3333333333333333"},
        {100000, "1e+05"},
        {123456, "123456"},
        {1e23, "1e+23"},
        {1.0000000000000001e23, "1.0000000000000001e+23"},
        {9007199254740991.0, "9007199254740991"},
        {9007199254740992.0, "9007199254740992"},
        {9007199254740994.0, "9007199254740994"},
        {5e-324, "5e-324"},
        {2.225073858507201e-308, "2.225073858507201e-308"},
        {2.2250738585072014e-308, "2.2250738585072014e-308"},
        {1.7976931348623157e308, "1.7976931348623157e+308"},
        {-1.7976931348623157e308, "-1.7976931348623157e+308"},
        {INF, "INF"},
        {-INF, "-INF"},
        {std::numeric_limits<double>::quiet_NaN(), "NaN"},
    };
    const CommaLocale locale;
    for (const auto& row : rows) {
        SCOPED_TRACE(row.text);
        EXPECT_EQ(NumberFormatter::format(row.value), row.text);
        double back = 7;
        ASSERT_TRUE(NumberParser::tryParseFloat(row.text, back));
        if (std::isnan(row.value)) {
            EXPECT_TRUE(std::isnan(back));
        } else {
            EXPECT_EQ(std::bit_cast<UInt64>(back), std::bit_cast<UInt64>(row.value));
        }
    }
    // Edges of every binary exponent: the power of two and its neighbours.
    for (int exponent = -1074; exponent <= 1023; ++exponent) {
        const double power = std::ldexp(1.0, exponent);
        for (const double value : {std::nextafter(power, 0), power, -std::nextafter(power, INF)}) {
            const std::string text = NumberFormatter::format(value);
            EXPECT_LE(text.size(), 24U) << text;
            EXPECT_EQ(NumberParser::parseFloat(text), value) << text;
        }
    }
}

TEST(NumberFormatter, FloatsAreShortestAsFloats) {
    EXPECT_EQ(NumberFormatter::format(0.1F), "0.1");
    EXPECT_EQ(NumberFormatter::format(16777216.0F), "16777216");
    EXPECT_EQ(NumberFormatter::format(1.17549435e-38F), "1.1754944e-38");
    EXPECT_EQ(NumberFormatter::format(-std::numeric_limits<float>::infinity()), "-INF");
    EXPECT_EQ(NumberFormatter::format(static_cast<double>(0.1F)), "0.10000000149011612");
}

TEST(NumberFormatter, IntegersHexAndAppending) {
    const CommaLocale locale;
    EXPECT_EQ(NumberFormatter::format(std::numeric_limits<int>::min()), "-2147483648");
    EXPECT_EQ(NumberFormatter::format(std::numeric_limits<unsigned>::max()), "4294967295");
    EXPECT_EQ(NumberFormatter::format(std::numeric_limits<long>::min()), "-9223372036854775808");
    EXPECT_EQ(NumberFormatter::format(std::numeric_limits<unsigned long long>::max()),
              "18446744073709551615");
    std::string text("x");
    NumberFormatter::append(text, 0);
    NumberFormatter::append(text, 1234567UL);
    NumberFormatter::append(text, -7LL);
    NumberFormatter::append(text, 2.5);
    NumberFormatter::append(text, 0.1F);
    NumberFormatter::appendHex(text, 0xBEEF, 6);
    EXPECT_EQ(text, "x01234567-72.50.100BEEF");

    const struct {
        UInt64 value;
        int width;
        const char* text;
    } hex[] = {{0, 0, "0"},
               {0, 4, "0000"},
               {0xABC, 2, "ABC"},
               {0xABC, -1, "ABC"},
               {10, 18, "00000000000000000A"},
               {~UInt64(0), 16, "FFFFFFFFFFFFFFFF"}};
    for (const auto& row : hex) {
        EXPECT_EQ(NumberFormatter::formatHex(row.value, row.width), row.text);
    }
}

TEST(NumberParser, IntegersAcceptTheirWholeRangeAndNothingElse) {
    int i = 5;
    Int64 l = 5;
    unsigned u = 5;
    UInt64 ul = 5;
    EXPECT_TRUE(NumberParser::tryParse("-2147483648", i) && i == std::numeric_limits<int>::min());
    EXPECT_TRUE(NumberParser::tryParse("2147483647", i) && i == std::numeric_limits<int>::max());
    EXPECT_TRUE(NumberParser::tryParse64("-9223372036854775808", l) &&
                l == std::numeric_limits<Int64>::min());
    EXPECT_TRUE(NumberParser::tryParse64("9223372036854775807", l) && l == std::numeric_limits<Int64>::max());
    EXPECT_TRUE(NumberParser::tryParseUnsigned("4294967295", u) && u == 4294967295U);
    EXPECT_TRUE(NumberParser::tryParseUnsigned64("18446744073709551615", ul) && ul == ~UInt64(0));
    EXPECT_TRUE(NumberParser::tryParse(std::string_view("12x").substr(0, 2), i) && i == 12);
    EXPECT_FALSE(NumberParser::tryParse("2147483648", i) || NumberParser::tryParse("-2147483649", i));
    EXPECT_FALSE(NumberParser::tryParse64("9223372036854775808", l));
    EXPECT_FALSE(NumberParser::tryParseUnsigned("4294967296", u) || NumberParser::tryParseUnsigned("-0", u));
    EXPECT_FALSE(NumberParser::tryParseUnsigned64("18446744073709551616", ul));
    for (const std::string_view text :
         {std::string_view(""), std::string_view("+1"), std::string_view(" 1"), std::string_view("1 "),
          std::string_view("-"), std::string_view("--1"), std::string_view("1.0"), std::string_view("0x1"),
          std::string_view("1\0", 2), std::string_view("1,000"), std::string_view("\xD9\xA1")}) {
        SCOPED_TRACE(text);
        EXPECT_FALSE(NumberParser::tryParse(text, i) || NumberParser::tryParse64(text, l) ||
                     NumberParser::tryParseUnsigned(text, u) || NumberParser::tryParseUnsigned64(text, ul));
    }
    EXPECT_EQ(i, 12) << "a refused text leaves the value alone";
}

TEST(NumberParser, FloatsAcceptDecimalSpellingsAndNothingElse) {
    const struct {
        const char* text;
        double value;
    } accepted[] = {{"5.", 5},
                    {".5", .5},
                    {"-.5e-1", -.05},
                    {"1E5", 1e5},
                    {"0e-999", 0},
                    {"007", 7},
                    {"9007199254740993", 9007199254740992.0},
                    {"1e+23", 1e23},
                    {"2.5e-324", 5e-324},
                    {"1.7976931348623158e308", 1.7976931348623157e308}};
    const CommaLocale locale;
    double value = 0;
    for (const auto& row : accepted) {
        EXPECT_TRUE(NumberParser::tryParseFloat(row.text, value)) << row.text;
        EXPECT_EQ(value, row.value) << row.text;
    }
    value = 42;
    for (const char* text :
         {"",      "-",        ".",        "e5",     "1e",  "1e+", "+1",   " 1",  "1 ",
          "1,5",   "0x1p3",    "inf",      "-inf",   "Inf", "nan", "-NaN", "NAN", "INFX",
          "+INF",  "INFINITY", "infinity", "nan(1)", "-",   "--1", "1f",   "1d",  "1.797693134862316e308",
          "1e999", "-1e999",   "1e-400"}) {
        EXPECT_FALSE(NumberParser::tryParseFloat(text, value)) << text;
    }
    EXPECT_EQ(value, 42);
}

TEST(NumberParser, ThrowingFormsNameTheText) {
    EXPECT_EQ(NumberParser::parse("-3"), -3);
    EXPECT_EQ(NumberParser::parseUnsigned("3"), 3U);
    EXPECT_EQ(NumberParser::parse64("-3000000000"), -3000000000);
    EXPECT_EQ(NumberParser::parseUnsigned64("3"), 3U);
    EXPECT_THROW(NumberParser::parseUnsigned("-3"), SyntaxException);
    EXPECT_THROW(NumberParser::parse64("x"), SyntaxException);
    EXPECT_THROW(NumberParser::parseUnsigned64("x"), SyntaxException);
    EXPECT_THROW(NumberParser::parseFloat("x"), SyntaxException);
    try {
        NumberParser::parse("12 ");
        FAIL();
    } catch (const SyntaxException& e) {
        EXPECT_EQ(e.displayText(), "Syntax error: Not a 32-bit integer: \"12 \"");
    }
}
