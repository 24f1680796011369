// Counts heap allocations per element and the most memory in use, reading and writing each set of documents;
// to be held against what the vocabulary tables keep.

#include "ChecksumHandler.h"
#include "CountingStream.h"
#include "DocumentSet.h"
#include "Tamo/FastInfoset/FastInfosetParser.h"
#include "Tamo/FastInfoset/FastInfosetWriter.h"
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <malloc.h>
#include <new>

using namespace Tamo;
using namespace Tamo::Benchmarks;
using FastInfoset::DocumentVocabulary;
using FastInfoset::FastInfosetParser;
using FastInfoset::FastInfosetWriter;

namespace {

// The program has one thread.
std::size_t allocations = 0;
std::size_t inUse = 0;
std::size_t mostInUse = 0;

void* allocate(std::size_t size) {
    void* const p = std::malloc(size);
    if (!p) {
        throw std::bad_alloc();
    }
    ++allocations;
    inUse += malloc_usable_size(p);
    mostInUse = std::max(mostInUse, inUse);
    return p;
}

void release(void* p) noexcept {
    inUse -= p ? malloc_usable_size(p) : 0;
    std::free(p);
}

} // namespace

void* operator new(std::size_t size) {
    return allocate(size);
}

void* operator new[](std::size_t size) {
    return allocate(size);
}

void operator delete(void* p) noexcept {
    release(p);
}

void operator delete[](void* p) noexcept {
    release(p);
}

void operator delete(void* p, std::size_t) noexcept {
    release(p);
}

void operator delete[](void* p, std::size_t) noexcept {
    release(p);
}

namespace {

struct Cost {
    std::size_t allocations = 0;
    std::size_t octets = 0;
};

template<class Work>
Cost costOf(Work work) {
    const std::size_t allocationsBefore = allocations;
    const std::size_t before = inUse;
    mostInUse = inUse;
    work();
    return {allocations - allocationsBefore, mostInUse - before};
}

// Strings and names that the document's tables hold, and their octets.
Cost tablesOf(const DocumentVocabulary& vocabulary) {
    Cost tables;
    for (int id = DocumentVocabulary::PREFIX; id <= DocumentVocabulary::CONTENT_CHARACTER_CHUNK; ++id) {
        const auto& table = vocabulary.vocabulary(static_cast<DocumentVocabulary::ID>(id));
        for (unsigned int i = 0; i < table.size(); ++i) {
            const std::size_t capacity = table.value(i).capacity();
            ++tables.allocations;
            tables.octets += sizeof(std::string) + (capacity > 15 ? capacity + 1 : 0);
        }
    }
    return tables;
}

void print(const DocumentSet& set) {
    std::size_t elements = 0;
    Cost read;
    Cost again;
    Cost write;
    Cost tables;
    for (const auto& pDocument : set.documents()) {
        elements += pDocument->recording.elements();
        ChecksumHandler handler;
        const auto parse = [&](FastInfosetParser& parser) {
            parser.setContentHandler(&handler);
            parser.parseMemoryNP(pDocument->fastInfoset.data(), pDocument->fastInfoset.size());
        };
        const auto add = [](Cost& to, const Cost& cost) {
            to.allocations += cost.allocations;
            to.octets = std::max(to.octets, cost.octets);
        };
        add(read, costOf([&] {
                FastInfosetParser parser;
                parse(parser);
            }));
        FastInfosetParser parser;
        parse(parser);
        add(tables, tablesOf(parser.vocabulary()));
        add(again, costOf([&] { parse(parser); }));
        add(write, costOf([&] {
                CountingStream out;
                FastInfosetWriter writer(out, false, DocumentVocabulary::VOC_MAP);
                pDocument->recording.replay(writer, writer);
            }));
    }
    const auto each = [elements](std::size_t count) {
        return static_cast<double>(count) / static_cast<double>(elements);
    };
    const auto kib = [](std::size_t octets) { return static_cast<double>(octets) / 1024; };
    std::printf("| %s | %zu | %.3f | %.0f | %.3f | %.0f | %.3f | %.3f | %.0f |\n", set.name().c_str(),
                elements, each(tables.allocations), kib(tables.octets), each(read.allocations),
                kib(read.octets), each(again.allocations), each(write.allocations), kib(write.octets));
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: allocations DIRECTORY\n";
        return 2;
    }
    try {
        std::printf(
            "Heap allocations an element, and the most memory a document needs.\n\n"
            "| set | elements | table entries an element | KiB of tables | parse | KiB | parser used again "
            "| write, VOC_MAP | KiB |\n|---|---:|---:|---:|---:|---:|---:|---:|---:|\n");
        for (const auto& directory : DocumentSet::find(argv[1])) {
            print(DocumentSet(directory));
        }
        return 0;
    } catch (const std::exception& e) {
        std::cerr << "allocations: " << e.what() << '\n';
        return 1;
    }
}
