#include "Tamo/FastInfoset/Decoder.h"
#include "OwnTable.h"
#include "RequiredBits.h"
#include "Tamo/FastInfoset/Encoder.h"
#include "Tamo/FastInfoset/Encoding.h"
#include "Tamo/FastInfoset/FISDocumentHandler.h"
#include "Tamo/FastInfoset/FISException.h"
#include "Tamo/FastInfoset/StringDecoder.h"
#include "Tamo/FastInfoset/VocabularyLoader.h"
#include <deque>
#include <set>
#include <string_view>
#include <utility>

namespace Tamo::FastInfoset {

namespace {

constexpr const char* HEADER_END = "Unexpected end of stream while parsing document header";
constexpr const char* VOCABULARY_END = "Unexpected end of stream while parsing initial vocabulary";
constexpr const char* SURROGATE_END = "Unexpected end of stream while reading surrogate";

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

QualifiedNameEntry Decoder::nameSurrogate(BitStreamReader& aReader) {
    if (aReader.bitPos() != 6) {
        throw FISEncodingException("Illegal startposition for a nameSurrogate value");
    }
    unsigned char presence = 0;
    RequiredBits::read(aReader, presence, 2, SURROGATE_END);
    const bool hasPrefix = (presence & 2) != 0;
    const bool hasNamespace = (presence & 1) != 0;
    UInt32 prefix = QualifiedNameEntry::ABSENT;
    UInt32 namespaceName = QualifiedNameEntry::ABSENT;
    UInt32 localName = QualifiedNameEntry::ABSENT;
    if (hasPrefix) {
        RequiredBits::skip(aReader, 1, SURROGATE_END);
        integer(aReader, prefix);
    }
    if (hasNamespace) {
        RequiredBits::skip(aReader, 1, SURROGATE_END);
        integer(aReader, namespaceName);
    }
    RequiredBits::skip(aReader, 1, SURROGATE_END);
    integer(aReader, localName);
    return QualifiedNameEntry(prefix, namespaceName, localName);
}

void Decoder::encodedCharacterString(BitStreamReader& aReader, std::string& value,
                                     DocumentVocabulary& vocabulary) {
    unsigned char enc = 0;
    RequiredBits::read(aReader, enc, 2, "Unexpected end of stream while parsing encoded character string");
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
    RequiredBits::read(aReader, word, 16, HEADER_END);
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
        RequiredBits::read(aReader, word, 16, HEADER_END);
    }
    if (word != Encoder::DOCUMENTSTART) {
        throw FISException("Not a valid Fast Infoset document (invalid header)");
    }
    unsigned short version = 0;
    RequiredBits::read(aReader, version, 16, HEADER_END);
    if (version != Encoder::DOCUMENTVERSION) {
        throw FISException("Unsupported Fast Infoset document version");
    }
    RequiredBits::skip(aReader, 1, HEADER_END);
}

Decoder::OpenHeaderParts Decoder::documentHeader(BitStreamReader& aReader, DocumentVocabulary& vocabulary,
                                                 FISDocumentHandler* pHandler, VocabularyLoader* pLoader) {
    tamo_assert(aReader.bitPos() == 1);
    unsigned char flags = 0;
    RequiredBits::read(aReader, flags, 7, HEADER_END);
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
        RequiredBits::skip(aReader, 1, HEADER_END);
        nonEmptyOctetString(aReader, dropped);
    }
}

void Decoder::parseInitialVocabulary(BitStreamReader& aReader, DocumentVocabulary& vocabulary,
                                     FISDocumentHandler* pHandler, VocabularyLoader* pLoader) {
    RequiredBits::skip(aReader, 3, VOCABULARY_END);
    unsigned short flags = 0;
    RequiredBits::read(aReader, flags, 13, VOCABULARY_END);
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
                                       FISDocumentHandler* pHandler, VocabularyLoader* pLoader) {
    RequiredBits::skip(aReader, 1, VOCABULARY_END);
    std::string uri;
    nonEmptyOctetString(aReader, uri);
    if (uri == vocabulary.getURI()) {
        return;
    }
    if (!pLoader) {
        throw FISException("The document names an external vocabulary, which is not to be opened", uri);
    }
    vocabulary = pLoader->vocabulary(uri);
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
        RequiredBits::skip(aReader, 1, VOCABULARY_END);
        nonEmptyOctetString(aReader, characters);
        vocabulary.restrictedAlphabets().add(characters);
    }
}

void Decoder::skipEncodingAlgos(BitStreamReader& aReader, DocumentVocabulary&) {
    unsigned int count = 0;
    lengthOfSequence(aReader, count);
    std::string dropped;
    for (unsigned int i = 0; i < count; ++i) {
        RequiredBits::skip(aReader, 1, VOCABULARY_END);
        nonEmptyOctetString(aReader, dropped);
    }
}

void Decoder::handleVocabulary(BitStreamReader& aReader, Vocabulary<std::string>& table) {
    unsigned int count = 0;
    lengthOfSequence(aReader, count);
    NewStrings entries(table);
    std::string value;
    for (unsigned int i = 0; i < count; ++i) {
        RequiredBits::skip(aReader, 1, VOCABULARY_END);
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
        RequiredBits::skip(aReader, 2, VOCABULARY_END);
        encodedCharacterString(aReader, value, vocabulary);
        entries.add(value);
    }
}

void Decoder::handleNameSurrogatesVoc(BitStreamReader& aReader, Vocabulary<QualifiedNameEntry>& table) {
    unsigned int count = 0;
    lengthOfSequence(aReader, count);
    NewNames entries(table);
    for (unsigned int i = 0; i < count; ++i) {
        RequiredBits::skip(aReader, 6, VOCABULARY_END);
        entries.add(nameSurrogate(aReader));
    }
}

} // namespace Tamo::FastInfoset
