// Every allocation of libxml2 that fails: std::bad_alloc, and nothing is left behind.
#include "Tamo/FastInfoset/adapters/libxml2.h"
#include "TreeTexts.h"
#include <cstdlib>
#include <cstring>
#include <gtest/gtest.h>
#include <libxml/parser.h>
#include <libxml/xmlmemory.h>

namespace Tamo::FastInfoset::Adapters::Test {
namespace {

long blocks = 0;     // in use
long remaining = -1; // that are still given; negative: any number

bool isGiven() {
    if (remaining == 0) {
        return false;
    }
    remaining -= remaining > 0;
    return true;
}

void* allocate(std::size_t size) {
    if (!isGiven()) {
        return nullptr;
    }
    ++blocks;
    return std::malloc(size);
}

void* reallocate(void* p, std::size_t size) {
    if (!isGiven()) {
        return nullptr;
    }
    blocks += p == nullptr;
    return std::realloc(p, size);
}

void release(void* p) {
    blocks -= p != nullptr;
    std::free(p);
}

char* duplicate(const char* text) {
    char* const p = static_cast<char*>(allocate(std::strlen(text) + 1));
    return p ? std::strcpy(p, text) : nullptr;
}

void ignore(void*, const char*, ...) {}

// Before libxml2 allocates anything.
[[maybe_unused]] const int SET_UP = [] {
    xmlMemSetup(release, allocate, reallocate, duplicate);
    xmlInitParser();
    xmlSetGenericErrorFunc(nullptr, ignore);
    return 0;
}();

} // namespace

TEST(LibxmlMemory, EveryFailureIsAnExceptionAndLeavesNothing) {
    const std::string octets = encoded(
        "<!DOCTYPE a PUBLIC 'p' 's' [<!NOTATION n SYSTEM 'n'><!ENTITY e SYSTEM 'e' NDATA n><?in it?>]>"
        "<a xmlns='urn:d' xmlns:p='urn:p' p:x='short' y='a value that is long enough for its own place'>"
        "<!--comment--><p:b>text that is long enough</p:b><?target data?><![CDATA[section]]>tail</a>");
    const auto left = [&] {
        xmlResetLastError();
        return blocks;
    };
    const std::string tree = textOf(loadDocument(octets).get());
    const long before = left();
    long given = 0;
    for (bool isEnough = false; !isEnough; ++given) {
        ASSERT_LT(given, 1000);
        remaining = given;
        try {
            const LibxmlDocument pDocument = loadDocument(octets);
            isEnough = remaining > 0;
            remaining = -1;
            EXPECT_EQ(textOf(pDocument.get()), tree) << "with " << given << " allocations";
        } catch (const std::bad_alloc&) {
            remaining = -1;
        }
        EXPECT_EQ(left(), before) << "with " << given << " allocations";
    }
    EXPECT_GT(given, 30);
}

} // namespace Tamo::FastInfoset::Adapters::Test
