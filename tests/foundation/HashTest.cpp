#include "Tamo/Hash.h"
#include "Tamo/HashKey.h"
#include <algorithm>
#include <gtest/gtest.h>
#include <vector>

using namespace Tamo;

TEST(Hash, DependsOnEveryOctetAndOnNothingElse) {
    const std::string text(35, 'x');
    for (std::size_t length = 0; length <= 33; ++length) {
        const std::string part(text, 0, length);
        EXPECT_EQ(hash(std::string_view(text).substr(1, length)), hash(part)) << "at another alignment";
        EXPECT_NE(hash(part + std::string(1, '\0')), hash(part));
        for (std::size_t i = 0; i < length; ++i) {
            std::string changed(part);
            changed[i] = 'y';
            EXPECT_NE(hash(changed), hash(part)) << length << ' ' << i;
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

TEST(HashKey, HoldsShortTextsAndTellsLongOnesApart) {
    const auto hasNul = [](const std::string& part) {
        bool has = false;
        EXPECT_TRUE(HashKey::ofWhole(part, has) == HashKey::of(part)) << part;
        return has;
    };
    std::string text("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789abcdefghijklm");
    for (std::size_t size = 0; size <= text.size(); ++size) {
        const std::string part(text, 0, size);
        const HashKey key = HashKey::of(part);
        EXPECT_EQ(HashKey::isExact(size), size <= 16);
        EXPECT_TRUE(key == HashKey::of(std::string_view(text).substr(0, size)));
        EXPECT_TRUE(equalText(part, std::string_view(text).substr(0, size))) << size;
        if (HashKey::isExact(size)) {
            std::string octets(HashKey::MOST_EXACT + 1, '!');
            copyShortText(octets.data(), part.data(), size);
            EXPECT_EQ(octets, part + std::string(octets.size() - size, '!'));
            EXPECT_FALSE(hasNul(part)) << size;
            EXPECT_TRUE(equalShortText(part.data(), text.data(), size)) << size;
        }
        for (std::size_t i = 0; i < size; ++i) {
            std::string changed(part);
            changed[i] = '\0';
            EXPECT_FALSE(key == HashKey::of(changed)) << size << ' ' << i;
            EXPECT_FALSE(equalText(part, changed)) << size << ' ' << i;
            EXPECT_NE(key.hash(), HashKey::of(changed).hash()) << size << ' ' << i;
            EXPECT_TRUE(!HashKey::isExact(size) || hasNul(changed)) << size << ' ' << i;
            EXPECT_FALSE(HashKey::isExact(size) && equalShortText(part.data(), changed.data(), size))
                << size << ' ' << i;
        }
    }
    std::vector<int> load(1024);
    for (int i = 0; i < 4096; ++i) {
        ++load[HashKey::of(std::to_string(i)).hash() >> 54];
    }
    EXPECT_LT(std::count(load.begin(), load.end(), 0), 45);
    EXPECT_LT(*std::max_element(load.begin(), load.end()), 22);
}
