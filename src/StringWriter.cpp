#include "StringWriter.h"
#include "Position.h"
#include "Tamo/FastInfoset/BoolEncoding.h"
#include "Tamo/FastInfoset/CDataEncoding.h"
#include "Tamo/FastInfoset/DWordEncoding.h"
#include "Tamo/FastInfoset/DoubleEncoding.h"
#include "Tamo/FastInfoset/Encoder.h"
#include "Tamo/FastInfoset/FISException.h"
#include "Tamo/FastInfoset/FloatEncoding.h"
#include "Tamo/FastInfoset/HexEncoding.h"
#include "Tamo/FastInfoset/IntEncoding.h"
#include "Tamo/FastInfoset/LongEncoding.h"
#include "Tamo/FastInfoset/NullEncoding.h"
#include "Tamo/FastInfoset/ShortEncoding.h"
#include "Tamo/FastInfoset/UUIDEncoding.h"
#include "TextPieces.h"
#include <sstream>
#include <type_traits>
#include <typeinfo>
#include <utility>

namespace Tamo::FastInfoset {

namespace {

// Whether a value is of a class, and of none derived from it; gives the octets that its array takes.
template<class E>
bool isArray(const Encoding& value, std::size_t& size) {
    if (typeid(value) != typeid(E)) {
        return false;
    }
    const auto& array = static_cast<const E&>(value);
    if constexpr (requires { array.values(); }) {
        size = array.values().size();
        using Value = typename std::remove_cvref_t<decltype(array.values())>::value_type;
        size = std::is_same_v<Value, bool> ? size / 8 + (size != 0 ? 1 : 0) : size * sizeof(Value);
    } else {
        size = array.content().size();
    }
    return true;
}

// The same for all of this library's classes of arrays.
bool isBuiltInArray(const Encoding& value, std::size_t& size) {
    switch (value.type()) {
    case ShortEncoding::TYPE:
        return isArray<ShortEncoding>(value, size);
    case IntEncoding::TYPE:
        return isArray<IntEncoding>(value, size);
    case LongEncoding::TYPE:
        return isArray<LongEncoding>(value, size);
    case BoolEncoding::TYPE:
        return isArray<BoolEncoding>(value, size);
    case FloatEncoding::TYPE:
        return isArray<FloatEncoding>(value, size);
    case DoubleEncoding::TYPE:
        return isArray<DoubleEncoding>(value, size);
    case UUIDEncoding::TYPE:
        return isArray<UUIDEncoding>(value, size);
    default:
        return false;
    }
}

// What an application's class writes behind the first bits of a value, of which nothing is known before it is
// there: the index of the algorithm, length and octets.
std::string applicationOctets(unsigned int firstBits, int count, unsigned int algorithm,
                              const std::function<void(BitStreamWriter&)>& write) {
    std::ostringstream octets;
    BitStreamWriter bits(octets, false);
    bits.write(firstBits, count);
    Encoder::integer(bits, algorithm);
    write(bits);
    if (bits.bitPos() != 0) {
        throw FISEncodingException("Cannot write a value by the algorithm " + std::to_string(algorithm) +
                                   ": its encoding ends within an octet");
    }
    return octets.str();
}

// Whether the octets of a value are its content.
bool isOctetString(const Encoding& value) {
    return typeid(value) == typeid(HexEncoding) || typeid(value) == typeid(DWordEncoding);
}

} // namespace

// ---- identifying strings

unsigned int StringWriter::writeIdentifying(OctetComposer& octets, const std::string& s, ID id) {
    const HashKey key = HashKey::of(s);
    return writeIdentifying(octets, s, id, key, findIdentifying(id, s, key));
}

unsigned int StringWriter::writeIdentifying(OctetComposer& octets, const std::string& s, ID id, HashKey key,
                                            Found found) {
    IndexedVocabulary<std::string>* const pTable = _vocabulary.indexedVocabulary(id);
    if (!pTable) [[unlikely]] {
        found = findOrAdd(id, s);
    }
    const bool isKnown = found.index != NOT_FOUND;
    const bool isFull = _strict && pTable && pTable->values().size() > Forms::MOST_INTEGER;
    const unsigned int index = isKnown || isFull ? static_cast<unsigned int>(found.index)
                               : pTable          ? pTable->append(s, key, found)
                                                 : static_cast<unsigned int>(found.place);
    if (isKnown && OctetComposer::fitsPosition1(index)) {
        octets.integerAtPosition1(Forms::STRING_INDEX, index);
    } else if (!isKnown && !s.empty()) {
        octets.stringAtPosition1(0, s);
    } else {
        octets.flush();
        if (isKnown) {
            writeIdentifyingIndex(index);
        } else {
            _writer.write(false);
            Encoder::nonEmptyOctetString(_writer, s); // throws
        }
    }
    return index;
}

unsigned int StringWriter::writeIdentifying(const std::string& s, ID id) {
    if (_strict) {
        OctetComposer octets(_writer);
        const unsigned int index = writeIdentifying(octets, s, id);
        octets.flush();
        return index;
    }
    bool found = false;
    const unsigned int index = _vocabulary.index(id, s, found);
    requirePosition(_writer.bitPos() == 0, found ? "Illegal startposition for an writeIdentifyingStringIndex"
                                                 : "Illegal startposition for an writeIdentifyingString");
    if (found) {
        writeIdentifyingIndex(index);
    } else {
        _writer.write(false);
        Encoder::nonEmptyOctetString(_writer, s);
    }
    return index;
}

void StringWriter::writeIdentifyingIndex(unsigned int index) {
    _writer.write(true);
    Encoder::integer(_writer, index);
}

void StringWriter::requireIdentifying(const std::string& s, ID id) {
    if (s.size() > Forms::LengthAt1::MOST) [[unlikely]] {
        throwTooLong(s.size(), Forms::LengthAt1::MOST);
    }
    const Vocabulary<std::string>& table = _vocabulary.vocabulary(id);
    if (table.size() > Forms::MOST_INTEGER && !_strict) [[unlikely]] {
        bool found = false;
        table.exists(s, found);
        if (!found) {
            throwFull("identifying strings", s);
        }
    }
}

void StringWriter::throwFull(const char* content, std::string_view text) {
    constexpr std::size_t MOST_QUOTED = 40;
    throw FISEncodingException("The document's table of " + std::string(content) + " is full with " +
                               std::to_string(Forms::MOST_INTEGER) + " entries and does not have \"" +
                               std::string(text.substr(0, MOST_QUOTED)) +
                               (text.size() > MOST_QUOTED ? "...\"" : "\""));
}

void StringWriter::throwTooLong(std::size_t size, UInt64 most) {
    throw FISEncodingException("A string of " + std::to_string(size) +
                               " octets is longer than the longest one that can be written, of " +
                               std::to_string(most));
}

// ---- other strings

void StringWriter::write(OctetComposer& octets, std::string_view text, ID id) {
    if (!isIndexed(text.size())) {
        writeLiteral(octets, text, false);
        return;
    }
    const HashKey key = HashKey::of(text);
    write(octets, text, id, key, find(id, text, key));
}

void StringWriter::write(OctetComposer& octets, std::string_view text, ID id, HashKey key, Found string) {
    if (string.index != NOT_FOUND) {
        if (OctetComposer::fitsPosition1(string.index)) [[likely]] {
            octets.integerAtPosition1(Forms::STRING_INDEX, string.index);
        } else {
            octets.flush();
            _writer.write(true);
            Encoder::integer(_writer, static_cast<unsigned int>(string.index));
        }
        return;
    }
    const bool added = add(id, text, key, string);
    if (!text.empty() && HashKey::isExact(text.size()) && !_constructs.isInCData()) {
        octets.shortStringAtPosition4(added ? Forms::STRING_ADDED : 0, text);
    } else {
        writeLiteral(octets, text, added);
    }
}

void StringWriter::writeLiteral(OctetComposer& octets, std::string_view text, bool added) {
    if (text.empty()) [[unlikely]] {
        octets.flush();
        _writer.write(added ? 0x04u : 0x00u, 4);
        Encoder::nonEmptyOctetString(_writer, std::string()); // throws
    } else if (_constructs.isInCData()) [[unlikely]] {
        octets.octet(Forms::STRING_FORM | (added ? Forms::STRING_ADDED : 0));
        octets.stringAtPosition4((CDataEncoding::TYPE - 1) << 4, text);
    } else {
        octets.stringAtPosition4(added ? Forms::STRING_ADDED : 0, text);
    }
}

void StringWriter::writeComment(std::string_view text) {
    _writer.complete(false);
    OctetComposer octets(_writer);
    octets.octet(Forms::COMMENT);
    write(octets, text, DocumentVocabulary::OTHER_STRING);
    octets.flush();
}

void StringWriter::writeInstruction(const std::string& target, const std::string& data) {
    _writer.complete(false);
    OctetComposer octets(_writer);
    octets.octet(Forms::PROCESSING_INSTRUCTION);
    writeIdentifying(octets, target, DocumentVocabulary::OTHER_NCNAME);
    write(octets, data, DocumentVocabulary::OTHER_STRING);
    octets.flush();
}

// In a table of another kind, which decides by itself what it has: a string that is not there is added at
// once, and its place is its index. Entries beyond those that an index can name are not added.
StringWriter::Found StringWriter::findOrAdd(ID id, std::string_view text) {
    Vocabulary<std::string>& table = _vocabulary.vocabulary(id);
    const bool isFull = table.size() > Forms::MOST_INTEGER;
    bool found = false;
    const unsigned int index =
        isFull ? table.exists(std::string(text), found) : table.index(std::string(text), found);
    return found ? Found{index, 0} : Found{NOT_FOUND, isFull ? NOT_FOUND : index};
}

// ---- typed values of attributes

StringWriter::TypedValue StringWriter::attributeValue(Encoding& value, unsigned int algorithm) const {
    const bool isOwn = algorithm == value.type();
    const bool isOctets = isOwn && isOctetString(value);
    std::size_t size = isOctets ? std::as_const(value).content().size() : 0;
    if (isOctets || (isOwn && isBuiltInArray(value, size))) {
        if (_strict) {
            LegalStrings::requireSize("the value of an attribute", size);
        } else {
            requireValue(size);
        }
        return size != 0 ? TypedValue{&value, algorithm, {}} : TypedValue();
    }
    value.createContent();
    return {&value, algorithm,
            applicationOctets(Forms::STRING_FORM >> 4, 4, algorithm,
                              [&value](BitStreamWriter& writer) { value.write(writer); })};
}

void StringWriter::writeAttributeValue(OctetComposer& octets, const TypedValue& value) {
    octets.flush();
    if (value.octets.empty()) {
        _writer.write(Forms::STRING_FORM >> 4, 4);
        Encoder::integer(_writer, value.algorithm);
        value.pValue->write(_writer);
    } else {
        _writer.write(value.octets);
    }
}

// ---- character chunks

void StringWriter::writeText(std::string_view text) {
    TextPieces::forEach(text,
                        [this](std::string_view piece) { writeChunk(_writer.startConstruct(), piece); });
}

void StringWriter::writeChunk(std::streambuf* pBuf, std::string_view text) {
    if (isIndexed(text.size())) {
        writeShortChunk(pBuf, text, HashKey::of(text));
    } else {
        OctetComposer octets(_writer, pBuf);
        writeLiteralChunk(octets, text, false);
        octets.flush();
    }
}

void StringWriter::writeNewChunk(std::streambuf* pBuf, std::string_view text, HashKey key, Found chunk) {
    if (chunk.index != NOT_FOUND) { // in the writer's own area, or as no other form can hold it
        _writer.write(0x05u, 3);
        Encoder::integer(_writer, static_cast<unsigned int>(chunk.index));
        return;
    }
    const bool added = addChunk(text, key, chunk);
    OctetComposer octets(_writer, pBuf);
    if (!text.empty() && HashKey::isExact(text.size()) && !_constructs.isInCData()) [[likely]] {
        octets.shortStringAtPosition6(Forms::CHARACTERS | (added ? Forms::CHARACTERS_ADDED : 0), text);
    } else {
        writeLiteralChunk(octets, text, added);
    }
    octets.flush();
}

bool StringWriter::addChunk(std::string_view text, HashKey key, Found notFound) {
    try {
        return add(DocumentVocabulary::CONTENT_CHARACTER_CHUNK, text, key, notFound);
    } catch (...) {
        _writer.write(0x02u, 2); // the chunk had begun
        throw;
    }
}

TAMO_ALWAYS_INLINE void StringWriter::writeCDataChunk(OctetComposer& octets, std::string_view text,
                                                      bool added) {
    octets.octet(Forms::CHARACTERS | Forms::CHARACTERS_FORM | (added ? Forms::CHARACTERS_ADDED : 0));
    octets.stringAtPosition6((CDataEncoding::TYPE - 1) << 2, text);
}

TAMO_ALWAYS_INLINE void StringWriter::writeLiteralChunk(OctetComposer& octets, std::string_view text,
                                                        bool added) {
    if (text.empty()) [[unlikely]] {
        octets.flush();
        _writer.write(added ? 0x24u : 0x20u, 6);
        Encoder::nonEmptyOctetString(_writer, std::string()); // throws
    } else if (_constructs.isInCData()) {
        writeCDataChunk(octets, text, added);
    } else {
        octets.stringAtPosition6(Forms::CHARACTERS | (added ? Forms::CHARACTERS_ADDED : 0), text);
    }
}

void StringWriter::writeTypedChunk(Encoding& value) {
    // The built-in arrays are written from their values: where nobody can see it their text would be built
    // for nothing.
    std::size_t size = 0;
    if (value.referenceCount() != 1 || !isBuiltInArray(value, size)) {
        value.createContent();
    }
    if (value.type() == CDataEncoding::TYPE) {
        requirePosition(_writer.bitPos() == 0, "Illegal startposition for a CharacterChunk value");
        writeChunk(_writer.place(), value.content());
    } else {
        _writer.write(0x02u, 2);
        writeTyped(value);
    }
}

// At bit position 0 or 2 (X.891, C.14 and C.15), and its encoded character string at 2 or 4.
void StringWriter::writeTyped(const Encoding& value) {
    constexpr ID CHUNK = DocumentVocabulary::CONTENT_CHARACTER_CHUNK;
    requirePosition(_writer.bitPos() == 0 || _writer.bitPos() == 2,
                    "Illegal startposition for a NonIdentifyingStringOrIndex value");
    const bool isText = value.type() == CDataEncoding::TYPE || value.type() == NullEncoding::TYPE;
    const std::string& text = value.content();
    const bool indexed = isText && isIndexed(text.size());
    const HashKey key = HashKey::of(indexed ? std::string_view(text) : std::string_view());
    const Found string = indexed ? find(CHUNK, text, key) : Found();
    _writer.write(string.index != NOT_FOUND);
    if (string.index != NOT_FOUND) {
        Encoder::integer(_writer, static_cast<unsigned int>(string.index));
        return;
    }
    _writer.write(indexed && add(CHUNK, text, key, string));
    if (value.type() == NullEncoding::TYPE) {
        _writer.write(0x00u, 2);
        Encoder::nonEmptyOctetString(_writer, text);
    } else {
        _writer.write(0x03u, 2);
        Encoder::integer(_writer, value.type());
        value.write(_writer);
    }
}

// ---- the strict mode

void StringWriter::writeOtherLegalText(std::string_view text) {
    LegalStrings::requireText(TEXT, text);
    TextPieces::forEach(text,
                        [this](std::string_view piece) { writeChunk(_writer.startConstruct(), piece); });
}

void StringWriter::writeCDataText(std::string_view text) {
    LegalStrings::requireText(TEXT, text);
    TextPieces::forEach(text, [this](std::string_view piece) {
        OctetComposer octets(_writer, _writer.startConstruct());
        writeCDataChunk(octets, piece, false);
        octets.flush();
    });
}

void StringWriter::writeFormedChunk(DocumentVocabulary::CharacterStringForm form, unsigned int index,
                                    std::string_view octets) {
    LegalStrings::requireSize("a character chunk", octets.size());
    if (octets.empty()) {
        return;
    }
    OctetComposer composer(_writer, _writer.startConstruct());
    // The index begins in the last two bits of the first octet.
    composer.octet(Forms::CHARACTERS | static_cast<unsigned int>(form) << 2 | (index - 1) >> 6);
    composer.stringAtPosition6(((index - 1) & 0x3F) << 2, octets);
    composer.flush();
}

void StringWriter::writeTypedChunk(Encoding& value, unsigned int algorithm) {
    std::size_t size = 0;
    const bool isOwn = algorithm == value.type();
    if (isOwn && algorithm == NullEncoding::TYPE) {
        writeLegalText(value.content());
    } else if (isOwn && algorithm == CDataEncoding::TYPE) {
        writeCDataText(value.content());
    } else if (isOwn && isOctetString(value)) {
        writeFormedChunk(DocumentVocabulary::ENCODINGALGORITHM, algorithm, value.content());
    } else if (isOwn && isBuiltInArray(value, size)) {
        LegalStrings::requireSize("an array", size);
        if (size != 0) {
            _writer.complete(false);
            _writer.write(0x02u, 2);
            writeTyped(value);
        }
    } else {
        value.createContent();
        writeApplicationChunk(algorithm, [&value](BitStreamWriter& writer) { value.write(writer); });
    }
}

void StringWriter::writeApplicationChunk(unsigned int algorithm,
                                         const std::function<void(BitStreamWriter&)>& write) {
    const std::string octets = applicationOctets(
        (Forms::CHARACTERS | DocumentVocabulary::ENCODINGALGORITHM << 2) >> 2, 6, algorithm, write);
    _writer.complete(false);
    _writer.write(octets);
}

} // namespace Tamo::FastInfoset
