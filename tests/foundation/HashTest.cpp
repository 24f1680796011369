#include "Tamo/Hash.h"
#include <algorithm>
#include <gtest/gtest.h>
#include <vector>

using namespace Tamo;

TEST(Hash, DependsOnEveryOctetAndOnNothingElse) {
    for (std::size_t length = 0; length <= 33; ++length) {
        const std::string text(length, 'x');
        const std::string shifted = "#" + text; // the same octets at another alignment
        EXPECT_EQ(hash(std::string_view(shifted).substr(1)), hash(text));
        EXPECT_NE(hash(text + std::string(1, '\0')), hash(text));
        for (std::size_t i = 0; i < length; ++i) {
            std::string changed(text);
            changed[i] = 'y';
            EXPECT_NE(hash(changed), hash(text)) << "length " << length << " octet " << i;
        }
    }
}

TEST(Hash, SpreadsSimilarNamesOverATable) {
    for (const char* prefix : {"", "n", "item", "element-with-a-long-name-"}) {
        std::vector<int> load(1024);
        for (int i = 0; i < 4096; ++i) {
            ++load[HashFunction<std::string>()(prefix + std::to_string(i), 1024)];
        }
        // A random function leaves about 19 of the slots empty and puts about 14 names into the fullest.
        EXPECT_LT(std::count(load.begin(), load.end(), 0), 45) << prefix;
        EXPECT_LT(*std::max_element(load.begin(), load.end()), 22) << prefix;
    }
}
