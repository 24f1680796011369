// Binary X3D: a document as other software writes it, against a vocabulary and with an algorithm that are not
// the standard's.
#include "../codec/Octets.h"
#include "Finf.h"
#include <fstream>
#include <sstream>

namespace {

using Tamo::FastInfoset::Test::octets;

class X3DTest : public FinfTest {
protected:
    X3DTest() { write("scene.x3db", scene()); }

    /// The listing without its comments.
    static std::string scene() {
        std::ifstream listing(TAMO_SAMPLES "/x3d/scene.hex");
        std::string hex;
        for (std::string line; std::getline(listing, line);) {
            hex += line.substr(0, line.find('#'));
        }
        return octets(hex);
    }
};

const char XML[] = "<X3D profile=\"Interchange\" version=\"3.2\"><Scene><Shape>"
                   "<IndexedFaceSet solid=\"false\" coordIndex=\"0 1 2 -1\">"
                   "<Coordinate point=\"0 0 0 1.5 0 0 0 -0.25 1.5\"/></IndexedFaceSet></Shape></Scene></X3D>";

TEST_F(X3DTest, EveryReadingCommandKnowsTheVocabulary) {
    must("cmp scene.x3db " TAMO_SAMPLES "/x3d/scene.x3db");
    write("scene.xml", XML);
    EXPECT_EQ(must("finf decode -c --vocabulary x3d scene.x3db | tail -n +2"), XML);
    must(
        "finf diff --vocabulary x3d scene.x3db scene.xml; finf stats --vocabulary x3d scene.x3db >/dev/null");
    EXPECT_EQ(must("finf validate --vocabulary x3d scene.x3db"), "scene.x3db: clean\n");
    EXPECT_EQ(
        must("finf inspect --vocabulary x3d scene.x3db | grep encoder:"),
        "00000052    32 28 14 08 07 00 00 ..              attribute value \"0 0 0 1.5 0 0 0 -0.25 1.5\" "
        "in encoding algorithm 35, encoder://web3d.org/QuantizedzlibFloatArrayEncoder\n");
    must("finf encode --vocabulary x3d scene.xml; finf diff --vocabulary x3d scene.finf scene.x3db");
    for (const char* command : {"decode -c", "inspect", "validate", "stats"}) {
        const Result refused = run(std::string("finf ") + command + " scene.x3db");
        EXPECT_EQ(refused.status, 1);
        EXPECT_TRUE(refused.errors.ends_with("external vocabulary urn:web3d:x3d:fi-vocabulary-3.2 is needed; "
                                             "give it with --vocabulary x3d\n"))
            << refused.errors;
    }
}

// The example, and every other size of exponent and mantissa, is read; what does not agree with itself, or
// with an algorithm that is known, is refused, and a few octets do not become many.
TEST_F(X3DTest, ArraysAreReadOrRefused) {
    constexpr std::size_t FORM = 0x52;  // the number of the algorithm, in two halves of octets
    constexpr std::size_t ARRAY = 0x55; // bits, counts and a zlib stream
    const struct {
        std::size_t place;
        const char* octets;
        const char* outcome; ///< a part of the text or of the error
    } CASES[] = {
        {ARRAY, "08 07 00 00 00 12 00 00 00 09", "\"0 0 0 1.5 0 0 0 -0.25 1.5\""},
        {ARRAY, "05 0A", "\"0 0 0 "}, // sixteen bits with another meaning
        {ARRAY, "09 06", "9 bits of exponent and 6 of mantissa"},
        {ARRAY, "00 0F", "0 bits of exponent and 15 of mantissa"},
        {ARRAY, "08 18 00 00 00 26 00 00 00 09", "8 bits of exponent and 24 of mantissa"},
        {ARRAY + 2, "00 00 00 13", "9 quantized floats in 19 octets"},
        {ARRAY + 2, "00 00 00 14 00 00 00 0A", "not the zlib stream of 20 octets"},
        {ARRAY + 2, "00 00 00 10 00 00 00 08", "not the zlib stream of 16 octets"},
        {ARRAY + 2, "02 00 00 02 01 00 00 01", "16777217 quantized floats"},
        {ARRAY + 2, "02 00 00 00 01 00 00 00", "not the zlib stream of 33554432 octets"},
        {ARRAY + 20, "FF", "not the zlib stream of 18 octets"},
        {FORM, "32 08",
         "encoding algorithm 33, encoder://web3d.org/QuantizedFloatArrayEncoder, for which no"},
        {FORM, "32 58", "encoding algorithm 38, for which the document declares no URI"},
    };
    for (const auto& each : CASES) {
        SCOPED_TRACE(each.octets);
        std::string document = scene();
        const std::string changed = octets(each.octets);
        document.replace(each.place, changed.size(), changed);
        write("changed.x3db", document);
        const Result result = run("finf decode -c --vocabulary x3d changed.x3db");
        const bool isText = *each.outcome == '"';
        EXPECT_EQ(result.status, isText ? 0 : 1);
        EXPECT_NE((isText ? result.output : result.errors).find(each.outcome), std::string::npos)
            << result.errors;
    }
    // What nobody decodes is there to be looked at.
    EXPECT_NE(must("finf inspect --vocabulary x3d --full changed.x3db").find("\"08070000001200000009"),
              std::string::npos);
    EXPECT_EQ(run("finf validate --vocabulary x3d changed.x3db").output,
              "changed.x3db: offset 0x52, in attribute value: encoding algorithm 38, which nothing declares "
              "(X.891, 8.3)\n");
}

} // namespace
