#include "Tamo/FastInfoset/DocumentVocabulary.h"
#include "Tamo/FastInfoset/HashVocabulary.h"
#include "Tamo/FastInfoset/MapVocabulary.h"
#include "Tamo/FastInfoset/StringDecoder.h"
#include "Tamo/FastInfoset/VectorVocabulary.h"
#include "TestSupport.h"

namespace Tamo::FastInfoset::Test {
namespace {

template<class Table>
void expectTable() {
    constexpr bool IS_VECTOR = std::is_same_v<Table, VectorVocabulary<std::string>>;
    Table table(65521ul);
    bool found = false;
    const auto exists = [&](const char* value) { return std::pair(table.exists(value, found), found); };
    const auto index = [&](const char* value) { return std::pair(table.index(value, found), found); };
    EXPECT_EQ(table.size(), 1u);
    EXPECT_EQ(exists(""), std::pair(0u, true));
    EXPECT_EQ(index("a"), std::pair(1u, false));
    EXPECT_EQ(exists("b"), std::pair(0xFFFFFFFFu, false));
    EXPECT_EQ(index("a"), std::pair(IS_VECTOR ? 2u : 1u, !IS_VECTOR));

    Table large(65521ul);
    large.index("first", found);
    const std::string* const pFirst = &large.value(1);
    for (int i = 2; i < 5000; ++i) {
        ASSERT_EQ(large.index(std::to_string(i), found), static_cast<unsigned int>(i));
    }
    EXPECT_EQ(&large.value(1), pFirst); // nothing ever moved
    for (const unsigned int edge : {255u, 256u, 767u, 768u, 4999u}) {
        EXPECT_EQ(large.value(edge), std::to_string(edge));
        EXPECT_EQ(large.exists(std::to_string(edge), found), edge);
    }
    const std::unique_ptr<Vocabulary<std::string>> pCopy(large.clone());
    const std::unique_ptr<Vocabulary<std::string>> pNothing(large.subtract(*pCopy));
    EXPECT_TRUE(pNothing->size() == 0 && pNothing->empty());
    pCopy->index("only in the copy", found);
    const std::unique_ptr<Vocabulary<std::string>> pRest(pCopy->subtract(large));
    EXPECT_EQ(pRest->size(), 1u);
    EXPECT_EQ(pRest->value(0), "only in the copy");
    EXPECT_FAILURE(IS_VECTOR ? "out_of_range: index out of range"
                             : "AssertionViolationException: this->_index.size() > idx",
                   large.value(5000));
    large.reset();
    EXPECT_EQ(large.size(), 1u);
    EXPECT_EQ(large.exists("first", found), 0xFFFFFFFFu);

    // A table that has been used is as good as a new one, also to copy into.
    Table few, used;
    for (int i = 0; i < 30; ++i) {
        used.index(std::to_string(i), found);
    }
    used.reset();
    for (Table* const pTable : {&few, &used}) {
        EXPECT_EQ(pTable->exists("", found), 0u);
        EXPECT_EQ(pTable->index("a", found), 1u);
        EXPECT_EQ(pTable->exists("a", found), 1u);
        EXPECT_EQ(pTable->exists("29", found), 0xFFFFFFFFu);
    }
    used.reset();
    used = few;
    EXPECT_EQ(used.exists("a", found), 1u);
}

TEST(VocabularyTest, TablesIndexFindAndGrow) {
    expectTable<VectorVocabulary<std::string>>();
    expectTable<MapVocabulary<std::string>>();
    expectTable<HashVocabulary<std::string>>();
}

TEST(VocabularyTest, HashTableAcceptsAsManyEntriesAsItHasSlots) {
    HashVocabulary<std::string> table(19ul);
    bool found = false;
    for (int i = 0; i < 18; ++i) {
        table.index(std::to_string(i), found);
    }
    EXPECT_FAILURE("PoolOverflowException: Vocabulary hash table full", table.index("one more", found));
    EXPECT_EQ(table.size(), 19u);
    EXPECT_EQ(table.index("17", found), 18u);
}

TEST(VocabularyTest, TextsThatDifferInSizeAlone) {
    MapVocabulary<std::string> table;
    bool found = false;
    for (const bool again : {false, true}) {
        for (unsigned int size = 1; size <= 20; ++size) {
            EXPECT_EQ(table.index(std::string(size, '\0'), found), size);
            EXPECT_EQ(found, again) << size;
        }
    }
}

TEST(VocabularyTest, NamesHashAndOrders) {
    const QualifiedNameEntry entry(1, 2, 3);
    const UInt32 product = (1u ^ 1000003u) * (2u ^ 1000003u) * (3u ^ 1000003u);
    EXPECT_EQ(HashFunction<QualifiedNameEntry>()(entry, 10009), product % 10009);
    EXPECT_TRUE(QualifiedNameEntry(1, 9, 9) < QualifiedNameEntry(2, 0, 0));
    EXPECT_TRUE(QualifiedNameEntry(1, 2, 2) < entry);
    EXPECT_FALSE(entry < entry);
}

TEST(VocabularyTest, PredefinedEntriesResetCopyAndDifference) {
    for (const auto impl :
         {DocumentVocabulary::VOC_HASH, DocumentVocabulary::VOC_MAP, DocumentVocabulary::VOC_VECTOR}) {
        DocumentVocabulary vocabulary("urn:v", impl);
        bool found = false;
        EXPECT_EQ(vocabulary.value(DocumentVocabulary::PREFIX, 1), "xml");
        EXPECT_EQ(vocabulary.value(DocumentVocabulary::NAMESPACE_NAME, 1),
                  "http://www.w3.org/XML/1998/namespace");
        vocabulary.index(DocumentVocabulary::LOCAL_NAME, "a", found);
        vocabulary.elementVocabulary().index(QualifiedNameEntry(0, 0, 1), found);
        vocabulary.restrictedAlphabets().add("abc");
        const DocumentVocabulary copy(vocabulary);
        EXPECT_EQ(copy.getURI(), "urn:v");
        const DocumentVocabulary added = copy - DocumentVocabulary(impl);
        EXPECT_TRUE(added.vocabulary(DocumentVocabulary::PREFIX).empty());
        EXPECT_EQ(added.value(DocumentVocabulary::LOCAL_NAME, 0), "a");
        EXPECT_EQ(added.restrictedAlphabets().alphabets().size(), 1u);
        EXPECT_TRUE((vocabulary - vocabulary).elementVocabulary().empty());
        vocabulary.reset();
        EXPECT_EQ(vocabulary.vocabulary(DocumentVocabulary::LOCAL_NAME).size(), 1u);
        EXPECT_EQ(vocabulary.vocabulary(DocumentVocabulary::PREFIX).size(), 2u);
        EXPECT_EQ(vocabulary.elementVocabulary().size(), 1u);
        EXPECT_EQ(copy.vocabulary(DocumentVocabulary::LOCAL_NAME).size(), 2u);
        EXPECT_FAILURE("AssertionViolationException: voc > DocumentVocabulary::ENCODING_ALGORITHM && "
                       "voc < DocumentVocabulary::ELEMENT_NAME",
                       vocabulary.vocabulary(DocumentVocabulary::ENCODING_ALGORITHM));
        EXPECT_FAILURE("AssertionViolationException: vocabulary > DocumentVocabulary::ENCODING_ALGORITHM && "
                       "vocabulary < DocumentVocabulary::ELEMENT_NAME",
                       vocabulary.value(DocumentVocabulary::ELEMENT_NAME, 1));
    }
}

TEST(VocabularyTest, AlphabetsDecodeCodesUntilTheEnd) {
    DocumentRestrictedAlphabet().alphabet(1) = RestrictedAlphabet("changed");
    DocumentRestrictedAlphabet alphabets;
    alphabets.add("xyz");
    RestrictedAlphabet& held = alphabets.alphabet(16);
    const DocumentRestrictedAlphabet copy(alphabets);
    held = RestrictedAlphabet("abc");
    EXPECT_EQ(copy.alphabet(16).characters(), "xyz");
    alphabets.add("0123456789");
    alphabets.add("\xC3\xA4");
    EXPECT_EQ(alphabets.alphabet(2).characters(), "0123456789-:TZ ");
    EXPECT_EQ(alphabets.alphabet(17).bitSize(), 3u);
    const struct {
        unsigned int index;
        const char* hex;
        const char* text;
    } rows[] = {{1, "12 3F", "123"},   {1, "12 34", "1234"},         {16, "1B", "abc"},
                {16, "18 FF", "abca"}, {17, "05 39 77", "01234567"}, {18, "1F", "\xC3\xA4\xC3\xA4\xC3\xA4"}};
    for (const auto& row : rows) {
        std::string text("old");
        StringDecoder::decodeAlphabet(octets(row.hex), alphabets.alphabet(row.index), text);
        EXPECT_EQ(text, row.text) << row.hex;
    }
    std::string text;
    EXPECT_FAILURE("FISEncodingException: Illegal restricted alphabet: the index is reserved",
                   StringDecoder::decodeAlphabet("x", alphabets.alphabet(3), text));
    EXPECT_FAILURE("AssertionViolationException: vocabulary > 0 && vocabulary <= _alphabets.size()",
                   alphabets.alphabet(19));
    StringDecoder::decodeUTF16(octets("00 41 D8 3D DE 00 DC 00 20 AC 00"), text);
    EXPECT_EQ(text, "A\xF0\x9F\x98\x80?\xE2\x82\xAC?");
}

} // namespace
} // namespace Tamo::FastInfoset::Test
