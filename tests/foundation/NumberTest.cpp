#include "Tamo/Exception.h"
#include "Tamo/NumberFormatter.h"
#include "Tamo/NumberParser.h"
#include "Tamo/StringTokenizer.h"
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <locale>

using namespace Tamo;

namespace {

// What asks the locale writes "1.234,5" in this program.
struct Punctuation : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};
const std::locale CLASSIC = std::locale::global(std::locale(std::locale::classic(), new Punctuation));

} // namespace

TEST(NumberFormatter, DoublesHaveTheShortestSpellingThatReadsBack) {
    for (const std::string& text : StringTokenizer(
             "0 -0 1 -1.5 0.1 0.3333333333333333 1e+05 123456 1e+23 1.0000000000000001e+23 "
             "9007199254740991 9007199254740992 9007199254740994 5e-324 2.225073858507201e-308 "
             "2.2250738585072014e-308 1.7976931348623157e+308 -1.7976931348623157e+308 INF -INF NaN",
             " ")) {
        EXPECT_EQ(NumberFormatter::format(NumberParser::parseFloat(text)), text);
    }
    // Every binary exponent: the power of two and its neighbours.
    for (int exponent = -1074; exponent <= 1023; ++exponent) {
        const double power = std::ldexp(1.0, exponent);
        for (const double value : {std::nextafter(power, 0), power, -std::nextafter(power, 2 * power)}) {
            EXPECT_EQ(NumberParser::parseFloat(NumberFormatter::format(value)), value) << value;
        }
    }
    EXPECT_EQ(NumberFormatter::format(0.1F), "0.1");
    EXPECT_EQ(NumberFormatter::format(1.17549435e-38F), "1.1754944e-38");
    EXPECT_EQ(NumberFormatter::format(static_cast<double>(0.1F)), "0.10000000149011612");
}

TEST(NumberFormatter, IntegersAndHexAreAppendedToWhatIsThere) {
    std::string text("x");
    NumberFormatter::append(text, std::numeric_limits<int>::min());
    NumberFormatter::append(text, 1234567UL);
    NumberFormatter::append(text, std::numeric_limits<long>::min());
    NumberFormatter::append(text, -std::numeric_limits<float>::infinity());
    NumberFormatter::append(text, 2.5);
    NumberFormatter::appendHex(text, 0xBEEF, 6);
    EXPECT_EQ(text, "x-21474836481234567-9223372036854775808-INF2.500BEEF");
    EXPECT_EQ(NumberFormatter::formatHex(0, -1) + NumberFormatter::formatHex(0xABC, 2), "0ABC");
    EXPECT_EQ(NumberFormatter::formatHex(~UInt64(0), 18), "00FFFFFFFFFFFFFFFF");
}

TEST(NumberParser, IntegersAcceptTheirWholeRangeAndNothingElse) {
    int i = 5;
    Int64 l = 5;
    unsigned u = 5;
    UInt64 ul = 5;
    EXPECT_TRUE(NumberParser::tryParse("-2147483648", i) && i == std::numeric_limits<int>::min());
    EXPECT_TRUE(NumberParser::tryParse64("-9223372036854775808", l) &&
                l == std::numeric_limits<Int64>::min());
    EXPECT_TRUE(NumberParser::tryParseUnsigned("4294967295", u) && u == 4294967295U);
    EXPECT_TRUE(NumberParser::tryParseUnsigned64("18446744073709551615", ul) && ul == ~UInt64(0));
    EXPECT_TRUE(NumberParser::tryParse(std::string_view("12x").substr(0, 2), i) && i == 12);
    EXPECT_FALSE(NumberParser::tryParse("2147483648", i) || NumberParser::tryParse("-2147483649", i));
    EXPECT_FALSE(NumberParser::tryParse64("9223372036854775808", l));
    EXPECT_FALSE(NumberParser::tryParseUnsigned("4294967296", u) || NumberParser::tryParseUnsigned("-0", u));
    EXPECT_FALSE(NumberParser::tryParseUnsigned64("18446744073709551616", ul));
    for (const std::string& text : StringTokenizer("|+1| 1|1 |-|--1|1.0|0x1|1,000|\xD9\xA1|1\n", "|")) {
        EXPECT_FALSE(NumberParser::tryParse(text, i) || NumberParser::tryParse64(text, l) ||
                     NumberParser::tryParseUnsigned(text, u) || NumberParser::tryParseUnsigned64(text, ul))
            << text;
    }
    EXPECT_EQ(i, 12) << "a refused text leaves the value alone";
    EXPECT_EQ(NumberParser::parse("-3") + NumberParser::parse64("-3000000000"), -3000000003);
    EXPECT_EQ(NumberParser::parseUnsigned("3") + NumberParser::parseUnsigned64("3"), 6U);
    EXPECT_THROW(NumberParser::parse("3 "), SyntaxException);
}

TEST(NumberParser, FloatsAcceptDecimalSpellingsAndNothingElse) {
    // Accepted spellings with the canonical one.
    for (const std::string& row :
         StringTokenizer("5.=5 .5=0.5 -.5e-1=-0.05 1E5=1e+05 0e-999=0 007=7 2.5e-324=5e-324 "
                         "9007199254740993=9007199254740992 1.7976931348623158e308=1.7976931348623157e+308",
                         " ")) {
        const StringTokenizer parts(row, "=");
        EXPECT_EQ(NumberFormatter::format(NumberParser::parseFloat(parts[0])), parts[1]) << row;
    }
    double value = 42;
    for (const std::string& text : StringTokenizer(
             "|-|.|e5|1e|1e+|+1| 1|1 |1,5|0x1p3|inf|-inf|Inf|nan|-NaN|NAN|INFX|+INF|INFINITY|infinity|"
             "nan(1)|--1|1f|1.797693134862316e308|-1e999|1e-400",
             "|")) {
        EXPECT_FALSE(NumberParser::tryParseFloat(text, value)) << text;
    }
    EXPECT_EQ(value, 42);
}
