#include "Tamo/StringTokenizer.h"
#include <gtest/gtest.h>
#include <stdexcept>

using namespace Tamo;

TEST(StringTokenizer, SplitsByTheRulesOfItsOptions) {
    using Tokens = std::vector<std::string>;
    constexpr int TRIM = StringTokenizer::TOK_TRIM;
    constexpr int IGNORE = StringTokenizer::TOK_IGNORE_EMPTY;
    const struct {
        const char* text;
        const char* separators;
        int options;
        Tokens tokens;
    } rows[] = {
        {"a,,b", ",", 0, {"a", "", "b"}},
        {",a", ",", 0, {"", "a"}},
        {"a,", ",", 0, {"a", ""}},
        {"", ",", 0, {""}},
        {",", ",", 0, {"", ""}},
        {"a b", ",", 0, {"a b"}},
        {"a b", "", 0, {"a b"}},
        {" a  b ", " ", 0, {"", "a", "", "b", ""}},
        {"a,b;c", ",;", 0, {"a", "b", "c"}},
        {" a , ,\tb c\r\n", ",", TRIM, {"a", "", "b c"}},
        {" a , ,\tb c\r\n", ",", IGNORE, {" a ", " ", "\tb c\r\n"}},
        {" a , ,,\tb c\r\n", ",", TRIM | IGNORE, {"a", "b c"}},
        {"", ",", IGNORE, {}},
        {" , ", ",", TRIM | IGNORE, {}},
    };
    for (const auto& row : rows) {
        const StringTokenizer tokenizer(row.text, row.separators, row.options);
        EXPECT_EQ(Tokens(tokenizer.begin(), tokenizer.end()), row.tokens) << '"' << row.text << '"';
        EXPECT_EQ(tokenizer.count(), row.tokens.size());
        EXPECT_THROW(tokenizer[row.tokens.size()], std::out_of_range);
    }
    EXPECT_EQ(StringTokenizer("x-y", "-")[1], "y");
}
