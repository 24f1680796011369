#include "inspect/DocumentStatistics.h"
#include "walk/Text.h"
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

std::string DocumentStatistics::json(const std::vector<DocumentStatistics>& documents) {
    std::string text = "[";
    for (const DocumentStatistics& document : documents) {
        const auto number = [&](const char* key, Tamo::UInt64 value, const char* separator = ", ") {
            text.append(separator).append("\"").append(key).append("\": ").append(std::to_string(value));
        };
        text.append(text.size() > 1 ? ",\n  { \"file\": " : "\n  { \"file\": ");
        Text::appendJson(text, document.name);
        number("elements", document.elements);
        number("attributes", document.attributes);
        number("characterChunks", document.characterChunks);
        text += ",\n    \"bits\": {";
        for (std::size_t kind = 0; kind < BIT_KINDS; ++kind) {
            number(nameOf(static_cast<BitKind>(kind)), document.bits[kind], kind > 0 ? ", " : " ");
        }
        text += " },\n    \"tables\": {";
        const char* separator = " ";
        for (std::size_t id = 0; id < TABLES; ++id) {
            const TableStatistics& table = document.tables[id];
            if (table.read + table.added + table.literal > 0) {
                text.append(separator)
                    .append("\"")
                    .append(nameOf(static_cast<Field::Table>(id)))
                    .append("\": {");
                number("hits", table.read, " ");
                number("added", table.added);
                number("neither", table.literal);
                text += " }";
                separator = ", ";
            }
        }
        text += " },\n    \"octets\": {";
        number("xml", document.xml, " ");
        number("xmlGzip", document.xmlGzip);
        number("fastInfoset", document.fastInfoset);
        number("fastInfosetGzip", document.fastInfosetGzip);
        text += " } }";
    }
    return text.append(documents.empty() ? "]\n" : "\n]\n");
}

const char* nameOf(BitKind kind) {
    static constexpr const char* NAMES[] = {"structure",  "padding",        "lengths",
                                            "indexes",    "literal names",  "literal strings",
                                            "typed data", "trailing octets"};
    static_assert(std::size(NAMES) == BIT_KINDS);
    return NAMES[static_cast<std::size_t>(kind)];
}

} // namespace finf
