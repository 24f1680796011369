#include "walk/DepartureFinder.h"
#include "Tamo/FastInfoset/CDataEncoding.h"
#include "Tamo/XML/Characters.h"
#include "walk/AlphabetCodes.h"
#include <algorithm>
#include <iterator>

namespace finf {

using Tamo::UInt64;
using Tamo::FastInfoset::DocumentVocabulary;
using Tamo::XML::Characters;

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
constexpr unsigned int LAST_BUILT_IN = Tamo::FastInfoset::CDataEncoding::TYPE;
constexpr std::size_t MOST_CHARACTERS = 1 << 20; // of a restricted alphabet

/// What prescribes the bits of a construct (X.891).
const char* clauseOf(Construct construct) {
    switch (construct) {
    case Construct::XML_DECLARATION:
    case Construct::IDENTIFICATION:
    case Construct::VERSION_NUMBER:
        return "12";
    case Construct::OPTIONAL_COMPONENTS:
        return "12.8";
    case Construct::NUMBER_OF_ITEMS:
        return "C.21";
    case Construct::ADDITIONAL_DATUM_ID:
    case Construct::ADDITIONAL_DATUM:
        return "C.2.4";
    case Construct::INITIAL_VOCABULARY:
    case Construct::EXTERNAL_VOCABULARY:
    case Construct::RESTRICTED_ALPHABET:
    case Construct::ENCODING_ALGORITHM:
    case Construct::TABLE_ENTRY:
        return "C.2.5";
    case Construct::NAME_SURROGATE:
        return "C.16";
    case Construct::NOTATION:
    case Construct::NOTATIONS_END:
        return "C.2.6";
    case Construct::UNPARSED_ENTITY:
    case Construct::UNPARSED_ENTITIES_END:
        return "C.2.7";
    case Construct::CHARACTER_ENCODING_SCHEME:
        return "C.2.8";
    case Construct::STANDALONE:
        return "C.2.9";
    case Construct::VERSION:
        return "C.2.10";
    case Construct::DOCUMENT_END:
        return "12";
    case Construct::ATTRIBUTE:
        return "C.4";
    case Construct::PROCESSING_INSTRUCTION:
        return "C.5";
    case Construct::UNEXPANDED_ENTITY_REFERENCE:
        return "C.6";
    case Construct::CHARACTER_CHUNK:
        return "C.7";
    case Construct::COMMENT:
        return "C.8";
    case Construct::DOCUMENT_TYPE_DECLARATION:
    case Construct::DOCUMENT_TYPE_DECLARATION_END:
        return "C.9";
    case Construct::NAMESPACE_ATTRIBUTE:
        return "C.12";
    case Construct::PREFIX:
    case Construct::NAMESPACE_NAME:
    case Construct::LOCAL_NAME:
    case Construct::TARGET:
    case Construct::NAME:
    case Construct::SYSTEM_IDENTIFIER:
    case Construct::PUBLIC_IDENTIFIER:
    case Construct::NOTATION_NAME:
        return "C.13";
    case Construct::ATTRIBUTE_VALUE:
    case Construct::CONTENT:
        return "C.14";
    default: // elements and what belongs to them
        return "C.3";
    }
}

/// A form of an integer or a length; those of all positions.
const char* clauseOf(const FieldPart& part, Construct construct) {
    return part.kind == BitKind::LENGTH  ? "C.22 to C.24"
           : part.kind == BitKind::INDEX ? "C.25 to C.28"
                                         : clauseOf(construct);
}

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
    checkCodes(field);
    checkAlphabet(field);
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
                       clauseOf(part, field.construct), first);
            }
        }
        first += part.bits;
    }
}

// Whether the construct may stand where it does.
void DepartureFinder::checkPlace(const Field& field) {
    switch (field.construct) {
    case Construct::IDENTIFICATION:
        _hasRoot = false;
        _hasDeclaration = false;
        break;
    case Construct::XML_DECLARATION:
        if (std::find(std::begin(XML_DECLARATIONS), std::end(XML_DECLARATIONS), field.value) ==
            std::end(XML_DECLARATIONS)) {
            report(field, "not one of the nine XML declarations", "12.3");
        }
        break;
    case Construct::ELEMENT:
        if (field.depth == 0) {
            if (_hasRoot) {
                report(field, "the document has an element already", "C.2.11");
            }
            _hasRoot = true;
        }
        break;
    case Construct::CHARACTER_CHUNK:
    case Construct::UNEXPANDED_ENTITY_REFERENCE:
        if (field.depth == 0) {
            report(field, "outside of the document's element", "C.2.11");
        }
        break;
    case Construct::DOCUMENT_TYPE_DECLARATION:
        if (_hasRoot || _hasDeclaration) {
            report(field,
                   _hasDeclaration ? "the document has a document type declaration already"
                                   : "not in front of the document's element",
                   "C.2.11");
        }
        _hasDeclaration = true;
        break;
    case Construct::DOCUMENT_END:
        if (!_hasRoot) {
            report(field, "the document has no element", "C.2.11");
        }
        break;
    default:
        break;
    }
}

// Octets that the field itself carries.
void DepartureFinder::checkText(const Field& field) {
    UInt64 first = 0;
    for (const FieldPart& part : field.parts) {
        const bool isUTF8 =
            part.kind == BitKind::NAME ||
            (part.kind == BitKind::STRING && (!field.isEncoded || field.form == Field::Form::UTF8) &&
             field.construct != Construct::ADDITIONAL_DATUM) ||
            (part.kind == BitKind::TYPED && field.formIndex == LAST_BUILT_IN);
        if (isUTF8 && Characters::findIllFormed(field.value) != Characters::NONE) {
            report(field, "not UTF-8", "7.17.3");
        }
        if (part.kind == BitKind::STRING && field.isEncoded && field.form == Field::Form::UTF16) {
            checkUTF16(field, first, part.bits);
        }
        first += part.bits;
    }
}

void DepartureFinder::checkUTF16(const Field& field, UInt64 first, UInt64 bits) {
    bool isInPair = false; // behind the first half of a character
    for (const UInt64 end = first + bits; first + 16 <= end; first += 16) {
        const UInt64 unit = field.valueOf(first, 16);
        const bool isLow = unit >= 0xDC00 && unit <= 0xDFFF;
        if (isLow != isInPair) {
            report(field, "half a character of UTF-16", "7.17.4", isInPair ? first - 16 : first);
            return;
        }
        isInPair = unit >= 0xD800 && unit <= 0xDBFF;
    }
    if (isInPair || bits % 16 != 0) {
        report(field, "half a character of UTF-16 at the end", "7.17.4");
    }
}

// The algorithm, and the unused bits behind booleans: less than an octet, and zero.
void DepartureFinder::checkTyped(const Field& field) {
    if (!field.isEncoded || field.form != Field::Form::ENCODINGALGORITHM) {
        return;
    }
    if (field.formIndex > LAST_BUILT_IN && field.algorithm.empty()) {
        report(field, "encoding algorithm " + std::to_string(field.formIndex) + ", which nothing declares",
               "8.3");
    }
    if (field.formIndex != BOOLEAN) {
        return;
    }
    const UInt64 start = field.bits - field.parts.back().bits;
    const UInt64 unused = field.valueOf(start, 4);
    if (unused > 7) {
        report(field, "more unused bits than in one octet", "10.7", start);
    } else if (field.valueOf(field.bits - unused, unused) != 0) {
        report(field, "unused bits behind the booleans are not zero", "10.7", field.bits - unused);
    }
}

// The codes of a string in a restricted alphabet, and the ones behind them.
void DepartureFinder::checkCodes(const Field& field) {
    const auto& alphabets = _pVocabulary->restrictedAlphabets();
    if (!field.isEncoded || field.form != Field::Form::RESTRICTEDALPHABET || field.parts.empty() ||
        field.formIndex < 1 || field.formIndex > alphabets.alphabets().size()) {
        return;
    }
    const auto& alphabet = alphabets.alphabet(field.formIndex);
    const unsigned int width = AlphabetCodes::width(alphabet);
    UInt64 left = width == 0 ? 0 : field.parts.back().bits;
    UInt64 code = 0;
    while (left >= width && left > 0) {
        code = field.valueOf(field.bits - left, width);
        if (AlphabetCodes::isFilling(code, width, left)) {
            break;
        }
        if (code >= alphabet.size()) {
            report(field, "a code that the restricted alphabet does not have", "7.17.6", field.bits - left);
            return;
        }
        left -= width;
    }
    if (left > 0 && field.valueOf(field.bits - left, left) != (UInt64{1} << left) - 1) {
        report(field, "fill bits behind the last character are not ones", "7.17.6", field.bits - left);
    }
}

// Two characters or more, all different.
void DepartureFinder::checkAlphabet(const Field& field) {
    if (field.construct != Construct::RESTRICTED_ALPHABET ||
        Characters::findIllFormed(field.value) != Characters::NONE) {
        return;
    }
    std::set<char32_t> characters;
    std::size_t count = 0;
    const char* const pEnd = field.value.data() + field.value.size();
    for (const char* p = field.value.data(); p != pEnd; ++count) {
        char32_t character = 0;
        p += Characters::decode(p, pEnd, character);
        characters.insert(character);
    }
    if (characters.size() < count) {
        report(field, "a character twice", "8.2");
    } else if (count < 2 || count > MOST_CHARACTERS) {
        report(field, "an alphabet of size " + std::to_string(count), "8.2");
    }
}

// What a name or a text of XML cannot hold, so that no XML text says what the document says.
void DepartureFinder::checkCharacters(const Field& field) {
    const bool isLiteral = field.use != TableUse::READ && field.hasValue && !field.isCut;
    if (!isLiteral || field.octets.empty() || Characters::findIllFormed(field.value) != Characters::NONE) {
        return;
    }
    switch (field.construct) {
    case Construct::PREFIX:
    case Construct::LOCAL_NAME:
    case Construct::NAME:
    case Construct::NOTATION_NAME:
    case Construct::TARGET:
        if (!Characters::isNCName(field.value)) {
            _report(field, "no name that XML knows (Namespaces in XML, 3)", 0);
        }
        break;
    case Construct::ATTRIBUTE_VALUE:
    case Construct::CHARACTER_CHUNK:
    case Construct::COMMENT:
    case Construct::CONTENT:
        if (Characters::findIllegal(field.value) != Characters::NONE) {
            _report(field, "a character that XML does not know (XML 1.0, 2.2)", 0);
        }
        break;
    default:
        break;
    }
}

void DepartureFinder::checkEntry(const Field& field) {
    const bool isString = field.table >= DocumentVocabulary::PREFIX;
    if (field.use == TableUse::READ && isString) {
        if (field.index == 0 && field.table < DocumentVocabulary::ATTRIBUTE_VALUE) {
            report(field, "index 0, which stands for an empty value only", "C.13");
        }
    } else if (field.use == TableUse::ADDED && field.table >= DocumentVocabulary::ELEMENT_NAME) {
        checkName(field);
    }
}

void DepartureFinder::checkName(const Field& field) {
    const NameEntry& name = nameAt(field.table, field.index);
    if (indexOf(name.prefixId()) != 0 && indexOf(name.namespaceId()) == 0) {
        report(field, "a prefix without a namespace name", "C.16.1");
    }
    const bool isSurrogate = field.construct == Construct::NAME_SURROGATE;
    for (const auto& [table, index] : {std::pair(DocumentVocabulary::PREFIX, name.prefixId()),
                                       {DocumentVocabulary::NAMESPACE_NAME, name.namespaceId()},
                                       {DocumentVocabulary::LOCAL_NAME, name.localNameId()}}) {
        if (isSurrogate && index == 0) {
            report(field, "index 0 of a part", "C.16");
        }
        if (indexOf(index) >= _pVocabulary->vocabulary(table).size()) {
            report(field, "there is no " + entry(table, index), "C.16");
        }
    }
}

void DepartureFinder::checkAttribute(const Field& field) {
    if (field.construct == Construct::ELEMENT) {
        _attributes.clear();
    }
    const bool isAttribute =
        field.use != TableUse::NONE && field.index != 0 &&
        field.table == DocumentVocabulary::ATTRIBUTE_NAME &&
        (field.construct == Construct::ATTRIBUTE || field.construct == Construct::QUALIFIED_NAME);
    if (isAttribute) {
        const NameEntry& name = nameAt(field.table, field.index);
        if (!_attributes.emplace(indexOf(name.namespaceId()), name.localNameId()).second) {
            report(field, "the element has this attribute already", "7.3");
        }
    }
}

const DepartureFinder::NameEntry& DepartureFinder::nameAt(Field::Table table, unsigned int index) const {
    return table == DocumentVocabulary::ELEMENT_NAME ? _pVocabulary->elementVocabulary().value(index)
                                                     : _pVocabulary->attributeVocabulary().value(index);
}

void DepartureFinder::report(const Field& field, const std::string& what, const char* clause,
                             UInt64 partBit) {
    _report(field, what + " (X.891, " + clause + ")", partBit);
}

} // namespace finf
