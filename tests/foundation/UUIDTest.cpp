#include "Tamo/UUID.h"
#include "Tamo/Exception.h"
#include <gtest/gtest.h>

using namespace Tamo;

TEST(UUID, TextAndOctetsConvertBothWays) {
    const UUID::Octets octets{0x6B, 0xA7, 0xB8, 0x10, 0x9D, 0xAD, 0x11, 0xD1,
                              0x80, 0xB4, 0x00, 0xC0, 0x4F, 0xD4, 0x30, 0xC8};
    const UUID uuid("6BA7B810-9DAD-11D1-80B4-00C04FD430C8");
    EXPECT_TRUE(uuid.octets() == octets && UUID::fromOctets(octets.data()) == uuid);
    EXPECT_EQ(uuid.toString(), "6ba7b810-9dad-11d1-80b4-00c04fd430c8");
    EXPECT_TRUE(UUID("00000000-0000-0000-0000-000000000000").isNil() && !uuid.isNil());
    EXPECT_LT(uuid, UUID("80000000-0000-0000-0000-000000000000"));
}

TEST(UUID, EveryDamagedTextIsRefused) {
    const std::string text("6ba7b810-9dad-11d1-80b4-00c04fd430cf");
    const UUID before("01234567-89ab-cdef-0123-456789abcdef");
    UUID uuid(before);
    const auto refused = [&](const std::string& damaged) {
        return !uuid.tryParse(damaged) && uuid == before;
    };
    for (std::size_t i = 0; i < text.size(); ++i) {
        for (const char c :
             {'g', 'G', '@', '`', '/', ':', ' ', '\0', '\xE6', '\x10', text[i] == '-' ? '0' : '-'}) {
            EXPECT_TRUE(refused(std::string(text).replace(i, 1, 1, c))) << i << ' ' << c;
        }
    }
    for (const std::string& other : {std::string(), text.substr(1), text + "0", "{" + text + "}",
                                     std::string("6ba7b8109-dad-11d1-80b4-00c04fd430cf")}) {
        EXPECT_TRUE(refused(other)) << other;
    }
    EXPECT_THROW(UUID wrong("nonsense"), SyntaxException);
}
