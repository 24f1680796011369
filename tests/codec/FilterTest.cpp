// Filters between parser and writer.
#include "AllocationCount.h"
#include "DocumentTest.h"
#include "Tamo/FastInfoset/FISDefaultHandler.h"
#include "Tamo/FastInfoset/FISFilter.h"

namespace Tamo::FastInfoset::Test {
namespace {

class Dropping : public FISFilter {
public:
    using FISFilter::FISFilter;

protected:
    bool drops(const std::string&, const std::string& localName, const XML::Attributes&) override {
        return localName == "drop";
    }
};

// What a writer makes of a document, behind two filters of a class or at once.
template<class Filter>
std::string copied(const std::string& document, bool strict) {
    std::ostringstream stream;
    FastInfosetWriter writer(stream, false, DocumentVocabulary::VOC_MAP);
    FastInfosetParser parser(DocumentVocabulary::VOC_MAP);
    writer.setStrict(strict);
    parser.setStrict(strict);
    parser.initialize(&writer);
    std::vector<std::unique_ptr<FISFilter>> filters;
    if constexpr (!std::is_void_v<Filter>) {
        auto pLast = std::make_unique<Filter>(writer);
        filters.push_back(std::make_unique<Filter>(pLast.get()));
        parser.initialize(filters.front().get());
        filters.push_back(std::move(pLast));
    }
    try {
        parseMemory(parser, document);
    } catch (const Exception& e) { // what no writer takes
        return stream.str() + e.message();
    }
    return stream.str();
}

TEST(FilterTest, PassesEverythingOn) {
    for (const bool strict : {false, true}) {
        for (const std::string& document : everyConstruct(strict)) {
            EXPECT_EQ(hex(copied<Dropping>(document, strict)), hex(copied<void>(document, strict)));
        }
    }
}

TEST(FilterTest, DropsElementsWithAllThatIsInThem) {
    const struct {
        const char* events;
        const char* left;
    } rows[] = {
        {"^|<a|=int 1|<drop x=\"1\"|'t|#c|?p d|=double 2|<b|=int 5|>|[|'u|]|>|'v|>|$", "^|<a|=int 1|'v|>|$"},
        {"^|<a|<drop|<drop|>|>|<b|<drop|>|=int 2|>|#c|>|?p d|$", "^|<a|<b|=int 2|>|#c|>|?p d|$"},
        {"^|+p=u|<{u}p:a|+p=v|+q=w|<drop|<{v}p:b|>|>|-q|-p|<{u}p:c|>|>|-p|$",
         "^|+p=u|<{u}p:a|<{u}p:c|>|>|-p|$"},
    };
    for (const bool strict : {false, true}) {
        for (const auto& row : rows) {
            const auto write = [](const char* events) {
                return document([&](FastInfosetWriter& writer) { play(events, writer); });
            };
            EXPECT_EQ(eventsOf(copied<Dropping>(write(row.events), strict)),
                      eventsOf(copied<void>(write(row.left), strict)))
                << row.events << strict;
        }
    }
}

// The declarations of an element wait until it is known whether it goes; what a document has once, they hold
// once.
TEST(FilterTest, DeclarationsThatRepeatTakeLittleMemory) {
    const std::string uri(100000, 'u');
    const std::string octets = document([&](FastInfosetWriter& writer) {
        const FastInfosetWriter::Document scope(writer);
        for (int i = 0; i < 100; ++i) {
            writer.startPrefixMapping("p" + std::to_string(i), uri);
        }
        writer.element("a");
    });
    FISDefaultHandler handler;
    FISFilter filter(handler);
    FastInfosetParser parser;
    parser.initialize(&filter);
    const AllocationCount memory;
    parseMemory(parser, octets);
    EXPECT_LT(memory.peak(), 10 * uri.size());
}

} // namespace
} // namespace Tamo::FastInfoset::Test
