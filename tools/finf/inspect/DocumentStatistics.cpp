#include "inspect/DocumentStatistics.h"
#include <iterator>

namespace finf {

void DocumentStatistics::field(const Field& field) {
    for (const FieldPart& part : field.parts) {
        bits[static_cast<std::size_t>(part.kind)] += part.bits;
    }
    TableStatistics& table = tables[field.table];
    switch (field.use) {
    case TableUse::NONE:
        break;
    case TableUse::READ:
        ++table.read;
        break;
    case TableUse::ADDED:
        ++table.added;
        break;
    case TableUse::NOT_ADDED:
        ++table.literal;
        break;
    }
    elements += field.construct == Construct::ELEMENT ? 1 : 0;
    attributes += field.construct == Construct::ATTRIBUTE ? 1 : 0;
    characterChunks += field.construct == Construct::CHARACTER_CHUNK ? 1 : 0;
}

const char* nameOf(BitKind kind) {
    static constexpr const char* NAMES[] = {"structure",  "padding",        "lengths",
                                            "indexes",    "literal names",  "literal strings",
                                            "typed data", "trailing octets"};
    static_assert(std::size(NAMES) == BIT_KINDS);
    return NAMES[static_cast<std::size_t>(kind)];
}

} // namespace finf
