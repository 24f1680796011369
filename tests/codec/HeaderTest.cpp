// Every component of a document's header, by itself.
#include "DocumentTest.h"

namespace Tamo::FastInfoset::Test {
namespace {

// In a table the index of an alphabet or algorithm is read twice; the second one counts.
TEST(HeaderTest, EveryComponent) {
    const struct {
        const char* name;
        const char* octets; ///< from the presence bits on
        const char* events;
    } rows[] = {
        {"none", "00 F0", "^|$"},
        {"additional data", "40 01 00 75 01 64 64 00 76 00 65 3C 00 61 FF", "^|<a|>|$"},
        {"initial vocabulary: restricted alphabets", "20 08 00 00 01 61 62 88 3C 1F F0", "^|'aaabbbbb|$"},
        {"initial vocabulary: encoding algorithms", "20 04 00 01 00 75 01 76 77 F0", "^|$"},
        {"initial vocabulary: prefixes", "20 02 00 00 00 70 3E 81 00 61 FF", "^|<p:a|>|$"},
        {"initial vocabulary: namespace names", "20 01 00 00 00 75 3D 81 00 61 FF", "^|<{u}a|>|$"},
        {"initial vocabulary: local names", "20 00 80 01 00 6B 00 6C 3C 81 FF", "^|<l|>|$"},
        {"initial vocabulary: other NCNames", "20 00 40 00 00 74 E1 80 00 64 F0", "^|?t d|$"},
        {"initial vocabulary: other URIs", "20 00 20 00 00 73 C6 80 FF", "^|!,,s|~|$"},
        {"initial vocabulary: attribute values (UTF-16)", "20 00 10 00 11 00 76 7C 00 61 78 00 62 80 FF F0",
         R"(^|<a b="v"|>|$)"},
        {"initial vocabulary: content character chunks (alphabet)", "20 00 08 00 2F F0 00 01 A0 F0",
         "^|'01|$"},
        {"initial vocabulary: other strings (algorithm)", "20 00 04 00 3F F0 33 00 00 00 07 E2 80 F0",
         "^|#7|$"},
        {"initial vocabulary: element names",
         "20 03 82 00 00 70 00 00 75 00 00 6C 01 03 00 01 00 00 00 00 F0 01 FF", "^|<{u}xml:l|>|<l|>|$"},
        {"initial vocabulary: attribute names", "20 00 81 00 00 6C 00 00 00 7C 00 61 00 40 76 FF F0",
         R"(^|<a l="v"|>|$)"},
        {"notations", "10 C3 00 6E 00 73 00 70 C1 00 6D 81 F0 F0", "Nn,p,s|Nm,p,-|^|$"},
        {"no notations", "10 F0 F0", "^|$"},
        {"unparsed entities", "08 D1 00 65 00 73 00 70 00 6E D0 00 66 80 81 F0 F0", "Ue,p,s,n|Uf,-,s,n|^|$"},
        {"character encoding scheme", "04 04 75 74 66 2D 38 F0", "^|$"},
        {"standalone", "02 01 F0", "^|$"},
        {"version", "01 40 31 3C 00 61 E2 80 FF", "^|<a|#1|>|$"}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        expectEvents(octets("E0000001") + octets(row.octets), row.events);
    }
}

TEST(HeaderTest, DeclarationInFront) {
    const std::string anyText = octets("3C 3F 78 3E E0 00 00 01 00 F0");
    expectEvents(anyText, "^|$");
    Reading in;
    EXPECT_EQ(in.events(anyText), "declaration|vocabulary|^|$");
    EXPECT_EQ(in.events(document("00 F0")), "none|vocabulary|^|$");
}

TEST(HeaderTest, Refusals) {
    const std::string end = "FISParseException: Unexpected end of stream while parsing ";
    const std::string invalid = "FISException: Not a valid Fast Infoset document (invalid header)";
    const struct {
        const char* octets;
        std::string failure;
    } rows[] = {{"00 00 00 00", invalid},
                {"", end + "document header"},
                {"E0", end + "document header"},
                {"3C 3F 78 6D 6C", end + "XML declaration"},
                {"E0 00 00 02 00", "FISException: Unsupported Fast Infoset document version"},
                {"E0 00 00 01", end + "document header"},
                {"E0 00 00 01 20 00 02 01 00 00 00 00", "AssertionViolationException: !existed"},
                {"E0 00 00 01 20 00 80 8F FF FF 00", OCTETS_END},
                {"E0 00 00 01 20 00 80 00 60 FF FF FF FF 61", OCTETS_END}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.octets);
        expectFailure(octets(row.octets), row.failure);
    }
}

} // namespace
} // namespace Tamo::FastInfoset::Test
