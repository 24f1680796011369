#include "walk/Field.h"
#include "walk/Text.h"
#include <iterator>

namespace finf {

namespace {

constexpr const char* CONSTRUCTS[] = {"XML declaration",
                                      "identification",
                                      "version number",
                                      "optional components",
                                      "number of items",
                                      "additional datum identifier",
                                      "additional datum",
                                      "initial vocabulary",
                                      "external vocabulary",
                                      "restricted alphabet",
                                      "encoding algorithm",
                                      "table entry",
                                      "name surrogate",
                                      "notation",
                                      "end of notations",
                                      "unparsed entity",
                                      "end of unparsed entities",
                                      "character encoding scheme",
                                      "standalone",
                                      "version",
                                      "child or end",
                                      "element",
                                      "end of element",
                                      "namespace attribute",
                                      "end of namespace attributes",
                                      "attribute",
                                      "attribute value",
                                      "end of attributes",
                                      "qualified name",
                                      "prefix",
                                      "namespace name",
                                      "local name",
                                      "character chunk",
                                      "comment",
                                      "processing instruction",
                                      "target",
                                      "content",
                                      "unexpanded entity reference",
                                      "document type declaration",
                                      "end of document type declaration",
                                      "name",
                                      "system identifier",
                                      "public identifier",
                                      "notation name",
                                      "end of document",
                                      "trailing octets"};
static_assert(std::size(CONSTRUCTS) == static_cast<std::size_t>(Construct::TRAILING_OCTETS) + 1);

// In the order of DocumentVocabulary::ID.
constexpr const char* TABLES[] = {"RESTRICTED ALPHABET",
                                  "ENCODING ALGORITHM",
                                  "PREFIX",
                                  "NAMESPACE NAME",
                                  "LOCAL NAME",
                                  "OTHER NCNAME",
                                  "OTHER URI",
                                  "ATTRIBUTE VALUE",
                                  "OTHER STRING",
                                  "CONTENT CHARACTER CHUNK",
                                  "ELEMENT NAME",
                                  "ATTRIBUTE NAME"};

constexpr const char* ALPHABETS[] = {"numeric", "date and time"};
constexpr const char* ALGORITHMS[] = {"hexadecimal", "base64", "short",  "int",  "long",
                                      "boolean",     "float",  "double", "uuid", "cdata"};

std::string numbered(const char* kind, unsigned int index, const char* const* names, std::size_t count) {
    std::string text = kind + std::to_string(index);
    if (index >= 1 && index <= count) {
        text.append(" (").append(names[index - 1]).append(")");
    }
    return text;
}

} // namespace

const char* nameOf(Construct construct) {
    return CONSTRUCTS[static_cast<std::size_t>(construct)];
}

const char* nameOf(Field::Table table) {
    return TABLES[static_cast<std::size_t>(table)];
}

std::string Field::encodingName() const {
    switch (form) {
    case Form::UTF8:
        return "UTF-8";
    case Form::UTF16:
        return "UTF-16";
    case Form::RESTRICTEDALPHABET:
        return numbered("restricted alphabet ", formIndex, ALPHABETS, std::size(ALPHABETS));
    default:
        return numbered("encoding algorithm ", formIndex, ALGORITHMS, std::size(ALGORITHMS))
            .append(algorithm.empty() ? "" : ", ")
            .append(algorithm);
    }
}

std::string Field::place(Tamo::UInt64 partBit) const {
    const Tamo::UInt64 position = bit + partBit;
    std::string text = "offset 0x";
    Text::appendNumber(text, position / 8, 1, 16);
    if (position % 8 != 0) {
        text.append(", bit ").append(std::to_string(position % 8));
    }
    return text.append(", in ").append(nameOf(construct));
}

Tamo::UInt64 Field::valueOf(Tamo::UInt64 first, Tamo::UInt64 count) const {
    Tamo::UInt64 bitsRead = 0;
    for (Tamo::UInt64 i = bit % 8 + first; count > 0; ++i, --count) {
        const auto octet = static_cast<unsigned char>(octets[i / 8]);
        bitsRead = (bitsRead << 1) | ((octet >> (7 - i % 8)) & 1u);
    }
    return bitsRead;
}

} // namespace finf
