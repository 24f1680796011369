#include "Tamo/FastInfoset/Decoder.h"
#include "OwnTable.h"
#include "Tamo/FastInfoset/Encoder.h"
#include "Tamo/FastInfoset/Encoding.h"
#include "Tamo/FastInfoset/ExternalVocabularyLoader.h"
#include "Tamo/FastInfoset/FISDocumentHandler.h"
#include "Tamo/FastInfoset/FISException.h"
#include "Tamo/FastInfoset/StringDecoder.h"
#include <algorithm>
#include <deque>
#include <limits>
#include <set>
#include <string_view>
#include <utility>

namespace Tamo::FastInfoset {

namespace {

// The bits have to be there for the construct that the message names.
void requireBits(BitStreamReader& reader, int numBits, const char* message) {
    if (!reader.hasBits(numBits)) [[unlikely]] {
        throw FISParseException(message);
    }
}

void skipBits(BitStreamReader& reader, int numBits, const char* message) {
    requireBits(reader, numBits, message);
    reader.skip(numBits);
}

template<class T>
void readBits(BitStreamReader& reader, T& value, int numBits, const char* message) {
    requireBits(reader, numBits, message);
    reader.read(value, numBits);
}

// A number of whole octets, from an octet boundary on.
UInt32 readOctets(BitStreamReader& reader, std::size_t count, const char* message) {
    requireBits(reader, static_cast<int>(8 * count), message);
    const unsigned char* pOctets = nullptr;
    reader.cachedOctets(pOctets);
    UInt32 value = 0;
    for (std::size_t i = 0; i < count; ++i) {
        value = value << 8 | pOctets[i];
    }
    reader.advance(8 * count);
    return value;
}

constexpr const char* INTEGER_END = "Unexpected end of stream while reading integer";
constexpr const char* HEADER_END = "Unexpected end of stream while parsing document header";
constexpr const char* VOCABULARY_END = "Unexpected end of stream while parsing initial vocabulary";
constexpr const char* SURROGATE_END = "Unexpected end of stream while reading surrogate";

// The first group of bits, then the longer forms: an 8-bit or a 16-bit field behind some bits of the group.
unsigned int followed(BitStreamReader& reader, unsigned int high, int numBits, unsigned int offset) {
    unsigned int low = 0;
    readBits(reader, low, numBits, INTEGER_END);
    return ((high << numBits) | low) + offset;
}

void integerAtPosition1(BitStreamReader& aReader, unsigned int& val) {
    unsigned char x = 0;
    readBits(aReader, x, 7, INTEGER_END);
    if (x == 127) {
        val = 0;
    } else if (x < 64) {
        val = x + 1u;
    } else if (x < 96) {
        val = followed(aReader, x % 32, 8, 65);
    } else {
        val = followed(aReader, x % 16, 16, 8257);
        tamo_assert(val <= Encoder::MAXINT20);
    }
    tamo_assert(aReader.bitPos() == 0);
}

void integerAtPosition2(BitStreamReader& aReader, unsigned int& val) {
    unsigned char x = 0;
    readBits(aReader, x, 6, INTEGER_END);
    if (x < 32) {
        val = x + 1u;
    } else if (x < 40) {
        val = followed(aReader, x % 8, 8, 33);
    } else if (x < 48) {
        val = followed(aReader, x % 8, 16, 2081);
    } else {
        val = x;
        tamo_assert(val == 48);
        skipBits(aReader, 4, INTEGER_END);
        val = followed(aReader, 0, 20, 526369);
        tamo_assert(val <= Encoder::MAXINT20);
    }
    tamo_assert(aReader.bitPos() == 0);
}

void integerAtPosition3(BitStreamReader& aReader, unsigned int& val) {
    unsigned char x = 0;
    readBits(aReader, x, 5, INTEGER_END);
    if (x < 16) {
        val = x + 1u;
    } else if (x < 20) {
        val = followed(aReader, x % 4, 8, 17);
    } else if (x < 24) {
        val = followed(aReader, x % 4, 16, 1041);
    } else {
        skipBits(aReader, 4, INTEGER_END);
        val = followed(aReader, 0, 20, 263185);
        tamo_assert(val <= Encoder::MAXINT20);
    }
    tamo_assert(aReader.bitPos() == 0);
}

// The entries of a table of strings: where they are, or copies of those of an application's table.
class SeenStrings {
public:
    explicit SeenStrings(const Vocabulary<std::string>& table)
        : _stay(OwnTable::valuesOf(table) != nullptr) {}

    bool contains(const std::string& value) const { return _views.contains(value); }
    void insert(const std::string& value) { _views.insert(_stay ? value : _copies.emplace_back(value)); }

private:
    bool _stay;
    std::deque<std::string> _copies;
    std::set<std::string_view> _views; // hashes could be chosen to be equal
};

// Those of a table of names.
class SeenNames : public std::set<QualifiedNameEntry> {
public:
    explicit SeenNames(const Vocabulary<QualifiedNameEntry>&) {}
};

// Adds entries to a table, each of which must be new. Those that are there are kept beside it, because a
// vector table does not look for equal ones.
template<class T, class Seen>
class NewEntries {
public:
    explicit NewEntries(Vocabulary<T>& table) : _table(table), _seen(table) {
        for (std::size_t i = 0; i < table.size(); ++i) {
            _seen.insert(table.value(static_cast<unsigned int>(i)));
        }
    }

    void add(const T& value) {
        bool existed = _seen.contains(value);
        tamo_assert(!existed);
        const unsigned int index = _table.index(value, existed);
        tamo_assert(!existed);
        _seen.insert(_table.value(index));
    }

private:
    Vocabulary<T>& _table;
    Seen _seen;
};

using NewStrings = NewEntries<std::string, SeenStrings>;
using NewNames = NewEntries<QualifiedNameEntry, SeenNames>;

} // namespace

void Decoder::integerSlow(BitStreamReader& aReader, unsigned int& val) {
    switch (aReader.bitPos()) {
    case 0:
        throw FISEncodingException("Illegal bit position 0: Integers can never start there");
    case 1:
        integerAtPosition1(aReader, val);
        break;
    case 2:
        integerAtPosition2(aReader, val);
        break;
    case 3:
        integerAtPosition3(aReader, val);
        break;
    case 4:
    case 6: {
        unsigned char x = 0;
        readBits(aReader, x, 8, INTEGER_END);
        val = x + 1u;
        break;
    }
    default:
        throw FISEncodingException(
            "Illegal bit position: No Integers are allowed to be read from pos 5 or 7.");
    }
}

void Decoder::nonEmptyStringLength(BitStreamReader& aReader, std::size_t& strLen) {
    static constexpr const char* END = "Unexpected end of stream while parsing string length";
    const int position = aReader.bitPos();
    if (position != 1 && position != 4 && position != 6) {
        throw FISEncodingException("illegal position for nonEmptyOctetString encoding");
    }
    const int groupBits = 8 - position;
    const unsigned int half = 1u << (groupBits - 1);
    unsigned char x = 0;
    readBits(aReader, x, groupBits, END);
    UInt64 length = UInt64{x} + 1;
    if (x == half) {
        length = UInt64{readOctets(aReader, 1, END)} + half + 1;
    } else if (x > half) {
        length = UInt64{readOctets(aReader, 4, END)} + half + 257;
    }
    const UInt64 limit = std::min<UInt64>(aReader.maxStringLength(), std::numeric_limits<std::size_t>::max());
    if (length > limit) {
        throw FISException("Limit exceeded: string length", std::to_string(limit));
    }
    strLen = static_cast<std::size_t>(length);
    tamo_assert(strLen > 0);
    tamo_assert(aReader.bitPos() == 0);
}

void Decoder::nonEmptyOctetString(BitStreamReader& aReader, std::string& octets) {
    std::size_t length = 0;
    nonEmptyStringLength(aReader, length);
    if (!aReader.read(octets, length)) {
        throw FISParseException("Unexpected end of stream while reading octet string");
    }
}

void Decoder::lengthOfSequence(BitStreamReader& aReader, unsigned int& len) {
    static constexpr const char* END = "Unexpected end of stream while parsing sequence length";
    if (aReader.bitPos() != 0) {
        throw FISEncodingException("Illegal startposition for a lengthOfSequence value");
    }
    requireBits(aReader, 1, END);
    unsigned char first = 0;
    aReader.peek(first, 1);
    if (first == 0) {
        unsigned char x = 0;
        readBits(aReader, x, 8, END);
        len = x + 1u;
    } else {
        unsigned int y = 0;
        readBits(aReader, y, 24, END);
        len = y % Encoder::MAXINT20 + 129;
    }
    if (len == 0) {
        throw FISEncodingException("Illegal value zero for lengthOfSequence");
    }
}

QualifiedNameEntry Decoder::nameSurrogate(BitStreamReader& aReader) {
    if (aReader.bitPos() != 6) {
        throw FISEncodingException("Illegal startposition for a nameSurrogate value");
    }
    unsigned char presence = 0;
    readBits(aReader, presence, 2, SURROGATE_END);
    const bool hasPrefix = (presence & 2) != 0;
    const bool hasNamespace = (presence & 1) != 0;
    UInt32 prefix = QualifiedNameEntry::ABSENT;
    UInt32 namespaceName = QualifiedNameEntry::ABSENT;
    UInt32 localName = QualifiedNameEntry::ABSENT;
    if (hasPrefix) {
        skipBits(aReader, 1, SURROGATE_END);
        integer(aReader, prefix);
    }
    if (hasNamespace) {
        skipBits(aReader, 1, SURROGATE_END);
        integer(aReader, namespaceName);
    }
    skipBits(aReader, 1, SURROGATE_END);
    integer(aReader, localName);
    return QualifiedNameEntry(prefix, namespaceName, localName);
}

void Decoder::encodedCharacterString(BitStreamReader& aReader, std::string& value,
                                     DocumentVocabulary& vocabulary) {
    unsigned char enc = 0;
    readBits(aReader, enc, 2, "Unexpected end of stream while parsing encoded character string");
    unsigned int index = 0;
    if (enc >= DocumentVocabulary::RESTRICTEDALPHABET) {
        integer(aReader, index); // deliberate: only the second index counts, see the header
        integer(aReader, index);
    }
    std::string octets;
    switch (enc) {
    case DocumentVocabulary::UTF8:
        nonEmptyOctetString(aReader, value);
        break;
    case DocumentVocabulary::UTF16:
        nonEmptyOctetString(aReader, octets);
        StringDecoder::decodeUTF16(octets, value);
        break;
    case DocumentVocabulary::RESTRICTEDALPHABET:
        nonEmptyOctetString(aReader, octets);
        StringDecoder::decodeAlphabet(octets, std::as_const(vocabulary).restrictedAlphabets().alphabet(index),
                                      value);
        break;
    default: {
        tamo_assert(enc == DocumentVocabulary::ENCODINGALGORITHM);
        const AutoPtr<Encoding> pEncoding = vocabulary.decodings().read(static_cast<int>(index), aReader);
        value = StringDecoder::textOf(*pEncoding);
    }
    }
}

void Decoder::documentPreHeader(BitStreamReader& aReader, std::string& xmlDecl) {
    xmlDecl.clear();
    unsigned short word = 0;
    readBits(aReader, word, 16, HEADER_END);
    if (word == Encoder::XMLDECLARATION) {
        xmlDecl = "<?";
        while (xmlDecl.back() != '>') {
            if (!aReader.hasOctet()) {
                throw FISParseException("Unexpected end of stream while parsing XML declaration");
            }
            char octet = 0;
            aReader.read(octet, 8);
            xmlDecl.push_back(octet);
        }
        readBits(aReader, word, 16, HEADER_END);
    }
    if (word != Encoder::DOCUMENTSTART) {
        throw FISException("Not a valid Fast Infoset document (invalid header)");
    }
    unsigned short version = 0;
    readBits(aReader, version, 16, HEADER_END);
    if (version != Encoder::DOCUMENTVERSION) {
        throw FISException("Unsupported Fast Infoset document version");
    }
    skipBits(aReader, 1, HEADER_END);
}

Decoder::OpenHeaderParts Decoder::documentHeader(BitStreamReader& aReader, DocumentVocabulary& vocabulary,
                                                 FISDocumentHandler* pHandler) {
    return documentHeader(aReader, vocabulary, pHandler, nullptr);
}

Decoder::OpenHeaderParts Decoder::documentHeader(BitStreamReader& aReader, DocumentVocabulary& vocabulary,
                                                 FISDocumentHandler* pHandler,
                                                 ExternalVocabularyLoader* pLoader) {
    tamo_assert(aReader.bitPos() == 1);
    unsigned char flags = 0;
    readBits(aReader, flags, 7, HEADER_END);
    if (flags & 0x40) {
        skipAdditionalData(aReader);
    }
    if (flags & 0x20) {
        parseInitialVocabulary(aReader, vocabulary, pHandler, pLoader);
    } else {
        vocabulary.reset();
    }
    OpenHeaderParts parts;
    parts.notations = (flags & 0x10) != 0;
    parts.unparsedEntities = (flags & 0x08) != 0;
    parts.characterEncodingScheme = (flags & 0x04) != 0;
    parts.standalone = (flags & 0x02) != 0;
    parts.version = (flags & 0x01) != 0;
    return parts;
}

void Decoder::skipAdditionalData(BitStreamReader& aReader) {
    unsigned int count = 0;
    lengthOfSequence(aReader, count);
    std::string dropped;
    for (unsigned int i = 0; i < 2 * count; ++i) { // each datum is an identifier and its octets
        skipBits(aReader, 1, HEADER_END);
        nonEmptyOctetString(aReader, dropped);
    }
}

void Decoder::parseInitialVocabulary(BitStreamReader& aReader, DocumentVocabulary& vocabulary,
                                     FISDocumentHandler* pHandler, ExternalVocabularyLoader* pLoader) {
    skipBits(aReader, 3, VOCABULARY_END);
    unsigned short flags = 0;
    readBits(aReader, flags, 13, VOCABULARY_END);
    if (flags == 0) {
        throw FISException(
            "Initial Vocabulary detected with zero information in it - at least one dictionary required");
    }
    if (flags & 0x1000) {
        handleExternalVocabulary(aReader, vocabulary, pHandler, pLoader);
    } else {
        vocabulary.reset();
    }
    if (flags & 0x0800) {
        handleRestrictedAlphabet(aReader, vocabulary);
    }
    if (flags & 0x0400) {
        skipEncodingAlgos(aReader, vocabulary);
    }
    // The tables stand in the order of the standard, in which content character chunks precede other strings.
    using ID = DocumentVocabulary::ID;
    static constexpr ID LITERAL[] = {DocumentVocabulary::PREFIX, DocumentVocabulary::NAMESPACE_NAME,
                                     DocumentVocabulary::LOCAL_NAME, DocumentVocabulary::OTHER_NCNAME,
                                     DocumentVocabulary::OTHER_URI};
    unsigned int flag = 0x0200;
    for (const ID id : LITERAL) {
        if (flags & flag) {
            handleVocabulary(aReader, vocabulary.vocabulary(id));
        }
        flag >>= 1;
    }
    static constexpr ID ENCODED[] = {DocumentVocabulary::ATTRIBUTE_VALUE,
                                     DocumentVocabulary::CONTENT_CHARACTER_CHUNK,
                                     DocumentVocabulary::OTHER_STRING};
    for (const ID id : ENCODED) {
        if (flags & flag) {
            handleEncodedCharacterStringVoc(aReader, vocabulary.vocabulary(id), vocabulary);
        }
        flag >>= 1;
    }
    if (flags & 0x0002) {
        handleNameSurrogatesVoc(aReader, vocabulary.elementVocabulary());
    }
    if (flags & 0x0001) {
        handleNameSurrogatesVoc(aReader, vocabulary.attributeVocabulary());
    }
}

void Decoder::handleExternalVocabulary(BitStreamReader& aReader, DocumentVocabulary& vocabulary,
                                       FISDocumentHandler* pHandler, ExternalVocabularyLoader* pLoader) {
    skipBits(aReader, 1, VOCABULARY_END);
    std::string uri;
    nonEmptyOctetString(aReader, uri);
    if (uri == vocabulary.getURI()) {
        return;
    }
    if (pLoader) {
        vocabulary = pLoader->vocabulary(uri);
    } else {
        ExternalVocabularyLoader loader;
        vocabulary = loader.vocabulary(uri);
    }
    // Only a vocabulary given in advance carries its URI: one that was loaded is loaded anew for the next
    // document.
    vocabulary.setURI(std::string());
    if (pHandler) {
        pHandler->setExternalVocabulary(uri, vocabulary);
    }
}

void Decoder::handleRestrictedAlphabet(BitStreamReader& aReader, DocumentVocabulary& vocabulary) {
    unsigned int count = 0;
    lengthOfSequence(aReader, count);
    std::string characters;
    for (unsigned int i = 0; i < count; ++i) {
        skipBits(aReader, 1, VOCABULARY_END);
        nonEmptyOctetString(aReader, characters);
        vocabulary.restrictedAlphabets().add(characters);
    }
}

void Decoder::skipEncodingAlgos(BitStreamReader& aReader, DocumentVocabulary&) {
    unsigned int count = 0;
    lengthOfSequence(aReader, count);
    std::string dropped;
    for (unsigned int i = 0; i < count; ++i) {
        skipBits(aReader, 1, VOCABULARY_END);
        nonEmptyOctetString(aReader, dropped);
    }
}

void Decoder::handleVocabulary(BitStreamReader& aReader, Vocabulary<std::string>& table) {
    unsigned int count = 0;
    lengthOfSequence(aReader, count);
    NewStrings entries(table);
    std::string value;
    for (unsigned int i = 0; i < count; ++i) {
        skipBits(aReader, 1, VOCABULARY_END);
        nonEmptyOctetString(aReader, value);
        entries.add(value);
    }
}

void Decoder::handleEncodedCharacterStringVoc(BitStreamReader& aReader, Vocabulary<std::string>& table,
                                              DocumentVocabulary& vocabulary) {
    unsigned int count = 0;
    lengthOfSequence(aReader, count);
    NewStrings entries(table);
    std::string value;
    for (unsigned int i = 0; i < count; ++i) {
        skipBits(aReader, 2, VOCABULARY_END);
        encodedCharacterString(aReader, value, vocabulary);
        entries.add(value);
    }
}

void Decoder::handleNameSurrogatesVoc(BitStreamReader& aReader, Vocabulary<QualifiedNameEntry>& table) {
    unsigned int count = 0;
    lengthOfSequence(aReader, count);
    NewNames entries(table);
    for (unsigned int i = 0; i < count; ++i) {
        skipBits(aReader, 6, VOCABULARY_END);
        entries.add(nameSurrogate(aReader));
    }
}

} // namespace Tamo::FastInfoset
