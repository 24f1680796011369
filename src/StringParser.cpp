#include "StringParser.h"
#include "Forms.h"
#include "OwnTable.h"
#include "Position.h"
#include "RequiredBits.h"
#include "Tamo/FastInfoset/CDataEncoding.h"
#include "Tamo/FastInfoset/Decoder.h"
#include "Tamo/FastInfoset/EncodingAlgorithm.h"
#include "Tamo/FastInfoset/VectorVocabulary.h"
#include <algorithm>
#include <utility>

namespace Tamo::FastInfoset {

namespace {

// What stands for the values of an application's table.
const VerbTable<std::string>& noValues() {
    static const VerbTable<std::string> NONE{};
    return NONE;
}

} // namespace

TAMO_CONSTINIT const std::string StringParser::EMPTY;

void StringParser::throwLimitExceeded(const char* message, UInt64 limit) {
    throw FISException(message, std::to_string(limit));
}

const std::string& StringParser::parseIdentifying(BitStreamReader& reader, ID id, unsigned int& index) {
    requirePosition(reader.bitPos() == 0, "Illegal startposition for an parseIdentifyingStringOrIndex");
    const bool isIndex =
        RequiredBits::readFlag(reader, "Unexpected end of stream while parsing identifying string or index");
    if (isIndex) {
        Decoder::integer(reader, index);
        Refusal::unless(index != 0 || !reader.isStrict(), reader, "index 0 of an identifying string", "C.13");
    } else {
        Decoder::nonEmptyOctetString(reader, _scratch);
        if (reader.isStrict()) {
            StrictText::requireUTF8(reader, _scratch);
        }
        index = addToTable(id, _scratch);
    }
    return tableValue(id, index);
}

const std::string& StringParser::parseIdentifying(BitStreamReader& reader, ID id) {
    unsigned int index = 0;
    return parseIdentifying(reader, id, index);
}

const std::string& StringParser::parseIdentifyingIf(BitStreamReader& reader, bool present, ID id) {
    return present ? parseIdentifying(reader, id) : EMPTY;
}

// The typed form: text, or a typed value as the document carries it.
StringParser::Value StringParser::parseOther(BitStreamReader& reader, ID id) {
    const int position = reader.bitPos();
    requirePosition(position == 0 || position == 2,
                    "Illegal startposition for a NonIdentifyingStringOrIndex value");
    const bool isIndex = RequiredBits::readFlag(
        reader, "Unexpected end of stream whil parsing non identifying string or index");
    if (isIndex) {
        unsigned int index = 0;
        Decoder::integer(reader, index);
        return {&tableValue(id, index), false};
    }
    const bool isAdded =
        RequiredBits::readFlag(reader, "Unexpected end of stream whil parsing encoded character string");
    const Value value = parseEncoded(reader);
    if (isAdded) {
        keepOther(id, value.typed ? _typedText.of(*_pTyped) : *value.pText);
    }
    return value;
}

// The text form: typed values become their text.
const std::string& StringParser::parseOtherText(BitStreamReader& reader, ID id) {
    return textOf(parseOtherValue(reader, id));
}

const std::string& StringParser::textOf(const Value& value) {
    if (!value.pText) {
        _text = _typedText.of(*_pTyped);
        return _text;
    }
    return *value.pText;
}

StringParser::Value StringParser::parseAttributeValue(BitStreamReader& reader) {
    const Value value = parseOtherValue(reader, DocumentVocabulary::ATTRIBUTE_VALUE);
    if (value.typed && (_pTyped->type() == CDataEncoding::TYPE ||
                        (!_isStrict && _typedAlgorithm >= EncodingAlgorithm::USER_DEFINED))) {
        return {&textOf(value), false};
    }
    return value;
}

StringParser::Value StringParser::parseOtherValue(BitStreamReader& reader, ID id) {
    const int position = reader.bitPos();
    requirePosition(position == 0 || position == 2,
                    "Illegal startposition for a NonIdentifyingStringOrIndex value");
    const bool isIndex = RequiredBits::readFlag(
        reader, "Unexpected end of stream while parsing non identifying string or index");
    if (isIndex) {
        unsigned int index = 0;
        Decoder::integer(reader, index);
        return {&tableValue(id, index), false};
    }
    const bool isAdded =
        RequiredBits::readFlag(reader, "Unexpected end of stream while parsing encoded character string");
    Value value = parseEncoded(reader);
    if (isAdded) {
        value.pText = &textOf(value);
        keepOther(id, _text);
    }
    return value;
}

StringParser::Value StringParser::parseEncoded(BitStreamReader& reader) {
    const int position = reader.bitPos();
    requirePosition(position == 2 || position == 4, "Illegal startposition for an encodedCharacterString");
    const unsigned char enc =
        RequiredBits::read(reader, 2, "Unexpected end of stream while parsing encoded character string");
    if (enc == DocumentVocabulary::UTF8) [[likely]] {
        Decoder::nonEmptyOctetString(reader, _text);
        if (_isStrict) {
            StrictText::requireUTF8(reader, _text);
        }
        return {&_text, false};
    }
    _pTyped = Decoder::encodedString(reader, enc, _vocabulary, _octets, _text, _typedAlgorithm);
    if (_pTyped) {
        return {nullptr, true};
    }
    return {&_text, false};
}

// The tables stay in place for the whole document, so their stores are looked up once. What the header has
// brought is within the limit, alphabets beyond the built-in ones too: those stay from document to document.
void StringParser::bindTables(const BitStreamReader& reader) {
    _pReader = &reader;
    _isStrict = reader.isStrict();
    _typedText.lowerCaseUUIDs = _isStrict;
    constexpr std::size_t BUILT_IN_ALPHABETS = 15;
    std::size_t largest = _vocabulary.restrictedAlphabets().alphabets().size() - BUILT_IN_ALPHABETS;
    largest =
        std::max({largest, _vocabulary.elementVocabulary().size(), _vocabulary.attributeVocabulary().size()});
    for (int id = DocumentVocabulary::PREFIX; id < DocumentVocabulary::ELEMENT_NAME; ++id) {
        Vocabulary<std::string>& table = _vocabulary.vocabulary(static_cast<DocumentVocabulary::ID>(id));
        const auto i = static_cast<std::size_t>(id);
        const VerbTable<std::string>* const pValues = OwnTable::valuesOf(table);
        _tables[i] = pValues ? pValues : &noValues();
        _appendedTables[i] = OwnTable::vector(table);
        largest = std::max(largest, table.size());
    }
    _areNamesAppended = OwnTable::vector(_vocabulary.elementVocabulary()) &&
                        OwnTable::vector(_vocabulary.attributeVocabulary());
    _copiedValues.clear();
    requireEntries(largest);
    _mostKept = static_cast<std::size_t>(std::min<UInt64>(_limits.maxTableEntries, Forms::MOST_INTEGER + 1));
}

unsigned int StringParser::addToTable(ID id, const std::string& s) {
    if (_isStrict) [[unlikely]] {
        return addStrictly(id, s);
    }
    bool found = false;
    Vocabulary<std::string>& table = _vocabulary.vocabulary(id);
    const unsigned int index = table.index(s, found);
    requireEntries(table.size());
    return index;
}

// By the letter every literal is appended; each kind of table has its own way else.
unsigned int StringParser::addStrictly(ID id, const std::string& s) {
    if (_appendedTables[id]) [[likely]] {
        return addLiteral(id, s.data(), s.size()).index;
    }
    Vocabulary<std::string>& table = _vocabulary.vocabulary(id);
    const unsigned int index = OwnTable::append(table, s);
    requireEntries(table.size());
    return index;
}

// Of a literal that stands in the input. A table that only appends takes it from there.
StringParser::Entry StringParser::addLiteral(ID id, const char* pText, std::size_t size) {
    if (VectorVocabulary<std::string>* const pTable = _appendedTables[id]) [[likely]] {
        const std::string& value = pTable->append(std::string_view(pText, size));
        requireEntries(_tables[id]->size());
        return {&value, static_cast<unsigned int>(_tables[id]->size() - 1)};
    }
    return addOtherLiteral(id, pText, size);
}

StringParser::Entry StringParser::addOtherLiteral(ID id, const char* pText, std::size_t size) {
    StringDecoder::decodeUTF8(pText, size, _scratch);
    const unsigned int index = addToTable(id, _scratch);
    return {&tableValue(id, index), index};
}

const std::string* StringParser::keepElsewhere(ID id, const char* pText, std::size_t size) {
    StringDecoder::decodeUTF8(pText, size, _scratch);
    keepOther(id, _scratch);
    return nullptr;
}

// Entries beyond those that an index can name are left out.
void StringParser::keepOther(ID id, const std::string& s) {
    const std::size_t size = _tables[id]->size();
    if (size <= Forms::MOST_INTEGER) {
        addToTable(id, s);
    } else {
        requireEntries(size + 1);
    }
}

// Of a table of this library's the failure of its kind; of another one a copy that stays.
const std::string& StringParser::otherValue(ID id, unsigned int index) {
    if (_isStrict && index >= _vocabulary.vocabulary(id).size()) {
        Refusal::at(*_pReader, "string " + std::to_string(index) + " of a table that ends before", "8.4");
    }
    const std::string& value = _vocabulary.value(id, index);
    if (_tables[id] != &noValues()) {
        return value;
    }
    return _copiedValues.try_emplace(UInt64{id} << 32 | index, value).first->second;
}

unsigned int StringParser::addNameAlways(DocumentVocabulary::NameKind kind, const QualifiedNameEntry& name) {
    Vocabulary<QualifiedNameEntry>& names = _vocabulary.names(kind);
    const unsigned int index = OwnTable::append(names, name);
    requireEntries(names.size());
    return index;
}

QualifiedNameEntry StringParser::name(DocumentVocabulary::NameKind kind, unsigned int index) {
    const Vocabulary<QualifiedNameEntry>& names = _vocabulary.names(kind);
    if (_isStrict && (index == 0 || index >= names.size())) {
        Refusal::at(*_pReader, "name " + std::to_string(index) + " of a table that ends before", "8.5");
    }
    return names.value(index);
}

} // namespace Tamo::FastInfoset
