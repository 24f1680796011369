#include "Tamo/StringTokenizer.h"
#include <gtest/gtest.h>

using namespace Tamo;

namespace {

// The pieces, each in brackets.
std::string split(const char* text, const char* separators, int options = 0) {
    std::string pieces;
    for (const std::string& piece : StringTokenizer(text, separators, options)) {
        pieces.append("[").append(piece).append("]");
    }
    return pieces;
}

} // namespace

TEST(StringTokenizer, SplitsByTheRulesOfItsOptions) {
    constexpr int TRIM = StringTokenizer::TOK_TRIM;
    constexpr int IGNORE = StringTokenizer::TOK_IGNORE_EMPTY;
    EXPECT_EQ(split("a,,b", ","), "[a][][b]");
    EXPECT_EQ(split(",a", ",") + split("a,", ",") + split("", ","), "[][a][a][][]");
    EXPECT_EQ(split(" a  b ", " "), "[][a][][b][]");
    EXPECT_EQ(split("a,b;c", ",;") + split("a b", ""), "[a][b][c][a b]");
    EXPECT_EQ(split(" a , ,\tb c\r\n", ",", TRIM), "[a][][b c]");
    EXPECT_EQ(split(" a , ,,b", ",", IGNORE), "[ a ][ ][b]");
    EXPECT_EQ(split(" a , ,,b", ",", TRIM | IGNORE) + split(" , ", ",", TRIM | IGNORE), "[a][b]");
    const StringTokenizer tokenizer("x-y", "-");
    EXPECT_TRUE(tokenizer.count() == 2 && tokenizer[1] == "y");
    EXPECT_THROW(tokenizer[2], std::out_of_range);
}
