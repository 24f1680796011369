// Prints what the document sets take as XML and as Fast Infoset with different limits of indexed strings,
// each also under gzip -6 and zstd -3. Documents are compressed one by one.

#include "Compression.h"
#include "DocumentSet.h"
#include <array>
#include <cstdio>
#include <exception>
#include <iostream>

using namespace Tamo::Benchmarks;

namespace {

struct Size {
    std::size_t plain = 0;
    std::size_t gzip = 0;
    std::size_t zstd = 0;

    void add(const std::string& octets) {
        plain += octets.size();
        gzip += Compression::gzip(octets);
        zstd += Compression::zstd(octets);
    }

    void print(std::size_t whole) const {
        for (const std::size_t size : {plain, gzip, zstd}) {
            std::printf(" %.1f |", 100.0 * static_cast<double>(size) / static_cast<double>(whole));
        }
    }
};

void print(const DocumentSet& set) {
    constexpr std::array<int, 3> LIMITS{0, 16, -1};
    Size xml;
    std::array<Size, LIMITS.size()> fastInfoset;
    for (const auto& pDocument : set.documents()) {
        xml.add(pDocument->xml);
        for (std::size_t i = 0; i < LIMITS.size(); ++i) {
            fastInfoset[i].add(DocumentSet::encode(pDocument->recording, LIMITS[i]));
        }
    }
    std::printf("| %s | %zu |", set.name().c_str(), xml.plain);
    xml.print(xml.plain);
    for (const Size& size : fastInfoset) {
        size.print(xml.plain);
    }
    std::printf("\n");
    std::fflush(stdout);
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: sizes DIRECTORY\n";
        return 2;
    }
    try {
        std::printf("Sizes as percentages of the XML text.\n\n"
                    "| set | octets of XML | XML | gzip | zstd | Fast Infoset, limit 0 | gzip | zstd "
                    "| limit 16 | gzip | zstd | no limit | gzip | zstd |\n"
                    "|---|---:|---:|---:|---:|---:|---:|---:|---:|---:|---:|---:|---:|---:|\n");
        for (const auto& directory : DocumentSet::find(argv[1])) {
            print(DocumentSet(directory));
        }
        return 0;
    } catch (const std::exception& e) {
        std::cerr << "sizes: " << e.what() << '\n';
        return 1;
    }
}
