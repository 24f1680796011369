#include "Tamo/Hash.h"
#include <algorithm>
#include <gtest/gtest.h>
#include <set>
#include <vector>

using namespace Tamo;

TEST(Hash, DependsOnEveryOctetAndOnNothingElse) {
    for (std::size_t length = 0; length <= 33; ++length) {
        const std::string text(length, 'x');
        std::string shifted = "#" + text; // the same octets at another alignment
        const UInt32 value = hash(text);
        EXPECT_EQ(hash(std::string_view(shifted).substr(1)), value);
        EXPECT_EQ(hash(text.c_str()), value);
        EXPECT_NE(hash(text + std::string(1, '\0')), value);
        for (std::size_t i = 0; i < length; ++i) {
            std::string changed(text);
            changed[i] = 'y';
            EXPECT_NE(hash(changed), value) << "length " << length << " octet " << i;
        }
    }
}

TEST(Hash, SpreadsSimilarNamesOverATable) {
    constexpr UInt32 SIZE = 1024;
    constexpr int NAMES = 4 * SIZE;
    for (const char* prefix : {"", "n", "item", "element-with-a-long-name-"}) {
        std::vector<int> load(SIZE);
        std::set<UInt32> values;
        for (int i = 0; i < NAMES; ++i) {
            const std::string name = prefix + std::to_string(i);
            ++load[HashFunction<std::string>()(name, SIZE)];
            values.insert(hash(name));
        }
        // A random function leaves about 19 of 1024 slots empty and puts about 14 names into the fullest.
        EXPECT_LT(std::count(load.begin(), load.end(), 0), 45) << prefix;
        EXPECT_LT(*std::max_element(load.begin(), load.end()), 22) << prefix;
        EXPECT_GE(values.size(), NAMES - 2U) << prefix;
    }
}
