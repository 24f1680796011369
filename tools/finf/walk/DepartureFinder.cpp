#include "walk/DepartureFinder.h"
#include "Tamo/UTF8Encoding.h"
#include "walk/XMLText.h"
#include <algorithm>
#include <iterator>

namespace finf {

using Tamo::UInt64;
using Tamo::FastInfoset::DocumentVocabulary;

namespace {

// X.891, 12.3
constexpr std::string_view XML_DECLARATIONS[] = {
    "<?xml encoding='finf'?>",
    "<?xml encoding='finf' standalone='yes'?>",
    "<?xml encoding='finf' standalone='no'?>",
    "<?xml version='1.0' encoding='finf'?>",
    "<?xml version='1.0' encoding='finf' standalone='yes'?>",
    "<?xml version='1.0' encoding='finf' standalone='no'?>",
    "<?xml version='1.1' encoding='finf'?>",
    "<?xml version='1.1' encoding='finf' standalone='yes'?>",
    "<?xml version='1.1' encoding='finf' standalone='no'?>",
};

constexpr unsigned int BOOLEAN = 6; // encoding algorithm, X.891, 10.7

std::string binary(UInt64 value, UInt64 bits) {
    std::string digits;
    while (bits > 0) {
        digits.push_back((value >> --bits) & 1 ? '1' : '0');
    }
    return digits;
}

std::string entry(Field::Table table, unsigned int index) {
    return std::string(nameOf(table)) + " " + std::to_string(index);
}

/// Absence has two spellings.
unsigned int indexOf(unsigned int part) {
    return part == Tamo::FastInfoset::QualifiedNameEntry::ABSENT ? 0 : part;
}

} // namespace

void DepartureFinder::field(const Field& field) {
    checkBits(field);
    checkPlace(field);
    checkText(field);
    checkTyped(field);
    checkFillBits(field);
    checkCharacters(field);
    checkEntry(field);
    checkAttribute(field);
}

void DepartureFinder::checkBits(const Field& field) {
    UInt64 first = 0;
    for (const FieldPart& part : field.parts) {
        if (part.expected != FieldPart::ANY) {
            const auto expected = static_cast<UInt64>(part.expected);
            const UInt64 found = field.valueOf(first, part.bits);
            if (found != expected) {
                report(field,
                       std::string(part.kind == BitKind::PADDING  ? "padding"
                                   : part.kind == BitKind::LENGTH ? "form of length"
                                   : part.kind == BitKind::INDEX  ? "form of index"
                                                                  : "identification") +
                           " " + binary(found, part.bits) + " where X.891 has " + binary(expected, part.bits),
                       first);
            }
        }
        first += part.bits;
    }
}

// Whether the construct may stand where it does.
void DepartureFinder::checkPlace(const Field& field) {
    switch (field.construct) {
    case Construct::XML_DECLARATION:
        if (std::find(std::begin(XML_DECLARATIONS), std::end(XML_DECLARATIONS), field.value) ==
            std::end(XML_DECLARATIONS)) {
            report(field, "not one of the XML declarations of X.891");
        }
        break;
    case Construct::ELEMENT:
        if (field.depth == 0) {
            if (_hasRoot) {
                report(field, "the document has an element already");
            }
            _hasRoot = true;
        }
        break;
    case Construct::CHARACTER_CHUNK:
    case Construct::UNEXPANDED_ENTITY_REFERENCE:
        if (field.depth == 0) {
            report(field, "outside of the document's element");
        }
        break;
    case Construct::DOCUMENT_TYPE_DECLARATION:
        if (_hasRoot || _hasDeclaration) {
            report(field, _hasDeclaration ? "the document has a document type declaration already"
                                          : "not in front of the document's element");
        }
        _hasDeclaration = true;
        break;
    case Construct::DOCUMENT_END:
        if (!_hasRoot) {
            report(field, "the document has no element");
        }
        break;
    case Construct::TRAILING_OCTETS:
        report(field, std::to_string(field.bits / 8) + " behind the document");
        break;
    default:
        break;
    }
}

// Octets that the field itself carries.
void DepartureFinder::checkText(const Field& field) {
    for (const FieldPart& part : field.parts) {
        const bool isUTF8 =
            part.kind == BitKind::NAME ||
            (part.kind == BitKind::STRING && (!field.isEncoded || field.form == Field::Form::UTF8) &&
             field.construct != Construct::ADDITIONAL_DATUM);
        if (isUTF8 && !Tamo::UTF8Encoding::isValid(field.value)) {
            report(field, "not UTF-8");
        }
        if (part.kind == BitKind::STRING && field.isEncoded && field.form == Field::Form::UTF16 &&
            part.bits % 16 != 0) {
            report(field, "half a character of UTF-16 at the end");
        }
    }
    if (field.construct == Construct::TABLE_ENTRY && field.isEncoded &&
        field.form >= Field::Form::RESTRICTEDALPHABET) {
        report(field, "the index of the alphabet or algorithm stands there twice");
    }
}

// The unused bits behind booleans: less than an octet, and zero.
void DepartureFinder::checkTyped(const Field& field) {
    if (!field.isEncoded || field.form != Field::Form::ENCODINGALGORITHM || field.formIndex != BOOLEAN) {
        return;
    }
    const UInt64 start = field.bits - field.parts.back().bits;
    const UInt64 unused = field.valueOf(start, 4);
    if (unused > 7) {
        report(field, "more unused bits than in one octet", start);
    } else if (field.valueOf(field.bits - unused, unused) != 0) {
        report(field, "unused bits behind the booleans are not zero", field.bits - unused);
    }
}

// Behind the last character of a restricted alphabet, an octet is filled with ones.
void DepartureFinder::checkFillBits(const Field& field) {
    if (!field.isEncoded || field.form != Field::Form::RESTRICTEDALPHABET || field.parts.empty()) {
        return;
    }
    const auto& alphabets = _pVocabulary->restrictedAlphabets();
    if (field.formIndex < 1 || field.formIndex > alphabets.alphabets().size()) {
        return;
    }
    const UInt64 codeBits = alphabets.alphabet(field.formIndex).bitSize();
    const UInt64 bits = field.parts.back().bits;
    const UInt64 filling = codeBits == 0 ? 0 : bits % codeBits;
    if (filling > 0 && filling < 8 && field.valueOf(field.bits - filling, filling) != (1u << filling) - 1) {
        report(field, "fill bits behind the last character are not ones", field.bits - filling);
    }
}

// What a name or a text of XML cannot hold, so that no XML text says what the document says.
void DepartureFinder::checkCharacters(const Field& field) {
    const bool isLiteral = field.use != TableUse::READ && field.hasValue && !field.isCut;
    if (!isLiteral || field.octets.empty() || !Tamo::UTF8Encoding::isValid(field.value)) {
        return;
    }
    switch (field.construct) {
    case Construct::PREFIX:
    case Construct::LOCAL_NAME:
    case Construct::NAME:
    case Construct::NOTATION_NAME:
    case Construct::TARGET:
        if (!XMLText::isNCName(field.value)) {
            report(field, "no name that XML knows");
        }
        break;
    case Construct::ATTRIBUTE_VALUE:
    case Construct::CHARACTER_CHUNK:
    case Construct::COMMENT:
    case Construct::CONTENT:
        if (!XMLText::isText(field.value)) {
            report(field, "a character that XML does not know");
        }
        break;
    default:
        break;
    }
}

void DepartureFinder::checkEntry(const Field& field) {
    const bool isString = field.table >= DocumentVocabulary::PREFIX;
    if (field.use == TableUse::NONE || !isString) {
        return;
    }
    if (field.use == TableUse::READ) {
        if (field.index == 0 && field.table < DocumentVocabulary::ATTRIBUTE_VALUE) {
            report(field, "index 0, which stands for an empty value only");
        }
        return;
    }
    if (field.index == 0) {
        return; // a literal that is not to be added
    }
    const bool isName = field.table >= DocumentVocabulary::ELEMENT_NAME;
    unsigned int earlier = field.index; // tables that look for equal entries have found it themselves
    if (field.use == TableUse::ADDED) {
        earlier = isName ? earlierName(field.table, field.index) : earlierString(field.table, field.index);
    }
    if (earlier != 0) {
        report(field, "repeats " + entry(field.table, earlier));
    }
    if (isName) {
        checkName(field);
    }
}

void DepartureFinder::checkName(const Field& field) {
    const NameEntry& name = nameAt(field.table, field.index);
    if (indexOf(name.prefixId()) != 0 && indexOf(name.namespaceId()) == 0) {
        report(field, "a prefix without a namespace name");
    }
    for (const auto& [table, index] : {std::pair(DocumentVocabulary::PREFIX, indexOf(name.prefixId())),
                                       {DocumentVocabulary::NAMESPACE_NAME, indexOf(name.namespaceId())},
                                       {DocumentVocabulary::LOCAL_NAME, indexOf(name.localNameId())}}) {
        if (index >= _pVocabulary->vocabulary(table).size()) {
            report(field, "there is no " + entry(table, index));
        }
    }
}

void DepartureFinder::checkAttribute(const Field& field) {
    if (field.construct == Construct::ELEMENT) {
        _attributes.clear();
    }
    const bool isAttribute =
        field.use != TableUse::NONE && field.table == DocumentVocabulary::ATTRIBUTE_NAME &&
        (field.construct == Construct::ATTRIBUTE || field.construct == Construct::QUALIFIED_NAME);
    if (isAttribute) {
        const NameEntry& name = nameAt(field.table, field.index);
        if (!_attributes.emplace(indexOf(name.namespaceId()), name.localNameId()).second) {
            report(field, "the element has this attribute already");
        }
    }
}

// The entry with the value of entry index that was there before it, or 0. The first look at a table takes the
// entries in that it began with.
unsigned int DepartureFinder::earlierString(Field::Table table, unsigned int index) {
    unsigned int earlier = 0;
    for (unsigned int& i = _lookedAt[table]; i < index;) {
        ++i;
        const std::string& value = _pVocabulary->value(table, i);
        const auto [position, isNew] = _strings[table].emplace(value, i);
        earlier = !isNew && i == index ? position->second : 0;
    }
    return earlier;
}

unsigned int DepartureFinder::earlierName(Field::Table table, unsigned int index) {
    unsigned int earlier = 0;
    for (unsigned int& i = _lookedAt[table]; i < index;) {
        ++i;
        const NameEntry& name = nameAt(table, i);
        const NameEntry key(indexOf(name.prefixId()), indexOf(name.namespaceId()), name.localNameId());
        const auto [position, isNew] = _names[table].emplace(key, i);
        earlier = !isNew && i == index ? position->second : 0;
    }
    return earlier;
}

const DepartureFinder::NameEntry& DepartureFinder::nameAt(Field::Table table, unsigned int index) const {
    return table == DocumentVocabulary::ELEMENT_NAME ? _pVocabulary->elementVocabulary().value(index)
                                                     : _pVocabulary->attributeVocabulary().value(index);
}

void DepartureFinder::report(const Field& field, const std::string& what, UInt64 partBit) {
    _report(field, what, partBit);
}

} // namespace finf
