#include "Tamo/FastInfoset/Decoder.h"
#include "OwnTable.h"
#include "Refusal.h"
#include "RequiredBits.h"
#include "StrictText.h"
#include "Tamo/FastInfoset/CDataEncoding.h"
#include "Tamo/FastInfoset/DocumentPropertiesHandler.h"
#include "Tamo/FastInfoset/Encoder.h"
#include "Tamo/FastInfoset/Encoding.h"
#include "Tamo/FastInfoset/FISDocumentHandler.h"
#include "Tamo/FastInfoset/FISException.h"
#include "Tamo/FastInfoset/StringDecoder.h"
#include "Tamo/FastInfoset/VocabularyLoader.h"
#include "TypedText.h"
#include <deque>
#include <set>
#include <span>
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

// Adds entries to a table. By the letter they are appended; else each must be new, and those that are there
// are kept beside the table, because a vector table does not look for equal ones.
template<class T, class Seen>
class NewEntries {
public:
    NewEntries(Vocabulary<T>& table, bool isStrict) : _table(table), _isStrict(isStrict), _seen(table) {
        for (std::size_t i = 0; i < (isStrict ? 0 : table.size()); ++i) {
            _seen.insert(table.value(static_cast<unsigned int>(i)));
        }
    }

    void add(const T& value) {
        if (_isStrict) {
            OwnTable::append(_table, value);
            return;
        }
        bool existed = _seen.contains(value);
        tamo_assert(!existed);
        const unsigned int index = _table.index(value, existed);
        tamo_assert(!existed);
        _seen.insert(_table.value(index));
    }

private:
    Vocabulary<T>& _table;
    bool _isStrict;
    Seen _seen;
};

using NewStrings = NewEntries<std::string, SeenStrings>;
using NewNames = NewEntries<QualifiedNameEntry, SeenNames>;

// X.891, 12.3
bool isXMLDeclaration(std::string_view text) {
    static constexpr std::string_view VERSIONS[] = {"", " version='1.0'", " version='1.1'"};
    static constexpr std::string_view STANDALONE[] = {"", " standalone='yes'", " standalone='no'"};
    for (const std::string_view version : VERSIONS) {
        for (const std::string_view standalone : STANDALONE) {
            if (text ==
                std::string("<?xml").append(version).append(" encoding='finf'").append(standalone) + "?>") {
                return true;
            }
        }
    }
    return false;
}

constexpr std::size_t LONGEST_XML_DECLARATION = 56;

TypedText textForm(const BitStreamReader& reader) {
    TypedText form;
    form.lowerCaseUUIDs = reader.isStrict();
    return form;
}

// A literal of the initial vocabulary.
void vocabularyString(BitStreamReader& reader, std::string& value) {
    RequiredBits::readAs(reader, 1, 0, VOCABULARY_END,
                         "identification of a vocabulary's string that is not 0", "C.2.5");
    Decoder::nonEmptyOctetString(reader, value);
    if (reader.isStrict()) {
        StrictText::requireUTF8(reader, value);
    }
}

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
    const auto part = [&aReader](UInt32& index) {
        RequiredBits::readAs(aReader, 1, 0, SURROGATE_END, "a part of a name surrogate that is no index",
                             "C.16");
        integer(aReader, index);
        Refusal::unless(index != 0 || !aReader.isStrict(), aReader, "index 0 in a name surrogate", "C.16");
    };
    Refusal::unless(!hasPrefix || hasNamespace || !aReader.isStrict(), aReader,
                    "a name surrogate with a prefix and without namespace name", "C.16.1");
    if (hasPrefix) {
        part(prefix);
    }
    if (hasNamespace) {
        part(namespaceName);
    }
    part(localName);
    return QualifiedNameEntry(prefix, namespaceName, localName);
}

AutoPtr<Encoding> Decoder::encodedString(BitStreamReader& aReader, unsigned char enc,
                                         DocumentVocabulary& vocabulary, std::string& octets,
                                         std::string& text, unsigned int& algorithm) {
    const bool isStrict = aReader.isStrict();
    switch (enc) {
    case DocumentVocabulary::UTF8:
        nonEmptyOctetString(aReader, text);
        if (isStrict) {
            StrictText::requireUTF8(aReader, text);
        }
        break;
    case DocumentVocabulary::UTF16:
        nonEmptyOctetString(aReader, octets);
        if (isStrict) {
            StrictText::decodeUTF16(aReader, octets, text);
        } else {
            StringDecoder::decodeUTF16(octets, text);
        }
        break;
    case DocumentVocabulary::RESTRICTEDALPHABET: {
        const DocumentRestrictedAlphabet& alphabets = std::as_const(vocabulary).restrictedAlphabets();
        unsigned int index = 0;
        integer(aReader, index);
        nonEmptyOctetString(aReader, octets);
        if (isStrict) {
            Refusal::unless(index <= alphabets.alphabets().size(), aReader,
                            "restricted alphabet " + std::to_string(index) + ", which is not declared",
                            "8.2");
            StrictText::decodeAlphabet(aReader, octets, alphabets.alphabet(index), text);
        } else {
            StringDecoder::decodeAlphabet(octets, alphabets.alphabet(index), text);
        }
        break;
    }
    default: {
        tamo_assert(enc == DocumentVocabulary::ENCODINGALGORITHM);
        integer(aReader, algorithm);
        if (!isStrict) {
            return vocabulary.decodings().read(static_cast<int>(algorithm), aReader);
        }
        AutoPtr<Encoding> pEncoding =
            vocabulary.decodings().read(algorithm, aReader, vocabulary.algorithms());
        if (algorithm == CDataEncoding::TYPE) {
            StrictText::requireUTF8(aReader, std::as_const(*pEncoding).content());
        }
        return pEncoding;
    }
    }
    return nullptr;
}

void Decoder::encodedCharacterString(BitStreamReader& aReader, std::string& value,
                                     DocumentVocabulary& vocabulary) {
    unsigned char enc = 0;
    RequiredBits::read(aReader, enc, 2, "Unexpected end of stream while parsing encoded character string");
    if (enc >= DocumentVocabulary::RESTRICTEDALPHABET && !aReader.isStrict()) {
        unsigned int index = 0;
        integer(aReader, index); // deliberate: only the second index counts, see the header
    }
    std::string octets;
    unsigned int algorithm = 0;
    const AutoPtr<Encoding> pEncoding = encodedString(aReader, enc, vocabulary, octets, value, algorithm);
    if (pEncoding) {
        value = textForm(aReader).of(*pEncoding);
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
            Refusal::unless(xmlDecl.size() <= LONGEST_XML_DECLARATION || !aReader.isStrict(), aReader,
                            "an XML declaration that is none of the nine", "12.3");
        }
        Refusal::unless(!aReader.isStrict() || isXMLDeclaration(xmlDecl), aReader,
                        "an XML declaration that is none of the nine", "12.3");
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
    RequiredBits::readAs(aReader, 1, 0, HEADER_END, "padding behind the version that is not 0", "12.8");
}

Decoder::OpenHeaderParts Decoder::documentHeader(BitStreamReader& aReader, DocumentVocabulary& vocabulary,
                                                 FISDocumentHandler* pHandler, VocabularyLoader* pLoader) {
    tamo_assert(aReader.bitPos() == 1);
    unsigned char flags = 0;
    RequiredBits::read(aReader, flags, 7, HEADER_END);
    if (flags & 0x40) {
        if (aReader.isStrict()) {
            additionalData(aReader, dynamic_cast<DocumentPropertiesHandler*>(pHandler));
        } else {
            skipAdditionalData(aReader);
        }
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

void Decoder::additionalData(BitStreamReader& aReader, DocumentPropertiesHandler* pHandler) {
    unsigned int count = 0;
    lengthOfSequence(aReader, count);
    std::string id;
    std::string octets;
    for (unsigned int i = 0; i < count; ++i) {
        RequiredBits::readAs(aReader, 1, 0, HEADER_END, "identification of additional data that is not 0",
                             "C.2.4");
        nonEmptyOctetString(aReader, id);
        StrictText::requireUTF8(aReader, id);
        RequiredBits::readAs(aReader, 1, 0, HEADER_END, "identification of additional data that is not 0",
                             "C.2.4");
        nonEmptyOctetString(aReader, octets);
        if (pHandler) {
            pHandler->additionalData(id, std::as_bytes(std::span(octets.data(), octets.size())));
        }
    }
}

void Decoder::parseInitialVocabulary(BitStreamReader& aReader, DocumentVocabulary& vocabulary,
                                     FISDocumentHandler* pHandler, VocabularyLoader* pLoader) {
    RequiredBits::readAs(aReader, 3, 0, VOCABULARY_END, "padding of the initial vocabulary that is not 0",
                         "C.2.5");
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
    std::string uri;
    vocabularyString(aReader, uri);
    if (uri == vocabulary.getURI()) {
        return;
    }
    if (!pLoader) {
        throw FISException("The document names an external vocabulary, which is not to be opened", uri);
    }
    if (const std::shared_ptr<const SharedVocabulary> pShared = pLoader->shared(uri)) {
        vocabulary.reset({pShared, &pShared->vocabulary()});
    } else {
        vocabulary = pLoader->vocabulary(uri);
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
        vocabularyString(aReader, characters);
        if (aReader.isStrict()) {
            StrictText::requireAlphabet(aReader, characters);
        }
        vocabulary.restrictedAlphabets().add(characters);
    }
}

void Decoder::skipEncodingAlgos(BitStreamReader& aReader, DocumentVocabulary& vocabulary) {
    unsigned int count = 0;
    lengthOfSequence(aReader, count);
    std::string uri;
    for (unsigned int i = 0; i < count; ++i) {
        vocabularyString(aReader, uri);
        if (aReader.isStrict()) {
            vocabulary.algorithms().add(uri);
        }
    }
}

void Decoder::handleVocabulary(BitStreamReader& aReader, Vocabulary<std::string>& table) {
    unsigned int count = 0;
    lengthOfSequence(aReader, count);
    NewStrings entries(table, aReader.isStrict());
    std::string value;
    for (unsigned int i = 0; i < count; ++i) {
        vocabularyString(aReader, value);
        entries.add(value);
    }
}

void Decoder::handleEncodedCharacterStringVoc(BitStreamReader& aReader, Vocabulary<std::string>& table,
                                              DocumentVocabulary& vocabulary) {
    unsigned int count = 0;
    lengthOfSequence(aReader, count);
    NewStrings entries(table, aReader.isStrict());
    std::string value;
    for (unsigned int i = 0; i < count; ++i) {
        RequiredBits::readAs(aReader, 2, 0, VOCABULARY_END,
                             "identification of a table's entry that is not 00", "C.2.5");
        encodedCharacterString(aReader, value, vocabulary);
        entries.add(value);
    }
}

void Decoder::handleNameSurrogatesVoc(BitStreamReader& aReader, Vocabulary<QualifiedNameEntry>& table) {
    unsigned int count = 0;
    lengthOfSequence(aReader, count);
    NewNames entries(table, aReader.isStrict());
    for (unsigned int i = 0; i < count; ++i) {
        RequiredBits::readAs(aReader, 6, 0, VOCABULARY_END, "padding of a name surrogate that is not 0",
                             "C.2.5");
        entries.add(nameSurrogate(aReader));
    }
}

} // namespace Tamo::FastInfoset
