#include "Tamo/Hash.h"
#include "Tamo/HashKey.h"
#include "Tamo/NumberFormatter.h"
#include "Tamo/SHA256.h"
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

// Those of FIPS 180-4 and of the same text in pieces of every size.
TEST(SHA256, DigestsOfTheStandard) {
    const std::pair<std::string, const char*> rows[] = {
        {"", "E3B0C44298FC1C149AFBF4C8996FB92427AE41E4649B934CA495991B7852B855"},
        {"abc", "BA7816BF8F01CFEA414140DE5DAE2223B00361A396177A9CB410FF61F20015AD"},
        {"abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq",
         "248D6A61D20638B8E5C026930C3E6039A33CE45964FF2167F6ECEDD419DB06C1"},
        {std::string(1000000, 'a'), "CDC76E5C9914FB9281A1C7E284D73E67F1809A48A497200E046D39CCC7112CD0"}};
    for (const auto& [text, expected] : rows) {
        for (const std::size_t piece : {std::size_t{1}, std::size_t{63}, std::size_t{65}, text.size() + 1}) {
            SHA256 hash;
            for (std::size_t i = 0; i < text.size(); i += piece) {
                hash.add(std::string_view(text).substr(i, piece));
            }
            std::string digest;
            for (const UInt8 octet : hash.finish()) {
                NumberFormatter::appendHex(digest, octet, 2);
            }
            EXPECT_EQ(digest, expected) << piece;
        }
    }
}
