#ifndef TAMO_FASTINFOSET_DECODER_H
#define TAMO_FASTINFOSET_DECODER_H

#include "Tamo/Export.h"
#include "Tamo/FastInfoset/BitStreamReader.h"
#include "Tamo/FastInfoset/DocumentVocabulary.h"
#include "Tamo/FastInfoset/QualifiedNameVocabulary.h"
#include <cstddef>
#include <string>

namespace Tamo::FastInfoset {

class ExternalVocabularyLoader;
class FISDocumentHandler;

/// The primitive encodings of ITU-T X.891 Annex C and the document header, reading side.
///
/// Every form depends on the bit position at which it starts (BitStreamReader::bitPos). Stateless; all
/// operations are static. A form that is not valid throws FISEncodingException, input that ends too early
/// FISParseException; what is allocated never exceeds what the input really holds.
class TAMO_API Decoder {
public:
    /// Which optional components of the document follow the initial vocabulary (X.891, 12.8).
    struct OpenHeaderParts {
        bool notations = false;
        bool unparsedEntities = false;
        bool characterEncodingScheme = false;
        bool standalone = false;
        bool version = false;
    };

    /// Reads an integer at bit position 1, 2, 3, 4 or 6 (X.891, C.25 to C.29).
    static void integer(BitStreamReader& aReader, unsigned int& val) {
        // The one-octet forms at positions 1 to 3: a 0 bit and the value less one in the rest of the octet.
        const int octet = aReader.currentOctet();
        const int position = aReader.bitPos();
        const int prefix = 0x80 >> position;
        if (octet >= 0 && position >= 1 && position <= 3 && (octet & prefix) == 0) [[likely]] {
            val = static_cast<unsigned int>(octet & (prefix - 1)) + 1;
            aReader.advance(static_cast<UInt64>(8 - position));
            return;
        }
        integerSlow(aReader, val);
    }

    /// Reads the length (in octets, at least 1) of an octet string at bit position 1, 4 or 6 (X.891, C.22 to
    /// C.24).
    static void nonEmptyStringLength(BitStreamReader& aReader, std::size_t& strLen);

    /// Reads a length and that many octets, replacing octets.
    static void nonEmptyOctetString(BitStreamReader& aReader, std::string& octets);

    /// Reads a count of items on an octet boundary (X.891, C.21).
    static void lengthOfSequence(BitStreamReader& aReader, unsigned int& len);

    /// Reads a name surrogate at bit position 6 (X.891, C.16): the indexes of prefix, namespace name and
    /// local name, an absent one being QualifiedNameEntry::ABSENT.
    static QualifiedNameEntry nameSurrogate(BitStreamReader& aReader);

    /// Reads an encoded character string of an initial vocabulary's table (X.891, C.19) as UTF-8 text,
    /// replacing value. Deliberate: the index of a restricted alphabet or encoding algorithm is read twice
    /// and the second one counts; vocabularies written for this reader rely on it.
    static void encodedCharacterString(BitStreamReader& aReader, std::string& value,
                                       DocumentVocabulary& vocabulary);

    /// Reads the optional XML declaration (handed back as text, empty when there is none), the
    /// identification, the version and the padding bit (X.891, 12.3 to 12.8).
    static void documentPreHeader(BitStreamReader& aReader, std::string& xmlDecl);

    /// Reads the presence bits, drops additional data and reads the initial vocabulary into vocabulary, or
    /// resets it when the document has none. pHandler may be null.
    static OpenHeaderParts documentHeader(BitStreamReader& aReader, DocumentVocabulary& vocabulary,
                                          FISDocumentHandler* pHandler);

    /// The same, with the loader that yields external vocabularies (null: the default one).
    static OpenHeaderParts documentHeader(BitStreamReader& aReader, DocumentVocabulary& vocabulary,
                                          FISDocumentHandler* pHandler, ExternalVocabularyLoader* pLoader);

    /// Reads and drops the additional data (X.891, 7.2.7).
    static void skipAdditionalData(BitStreamReader& aReader);

    /// Reads the initial vocabulary (X.891, C.2.5).
    static void parseInitialVocabulary(BitStreamReader& aReader, DocumentVocabulary& vocabulary,
                                       FISDocumentHandler* pHandler,
                                       ExternalVocabularyLoader* pLoader = nullptr);

    /// Reads the URI of the external vocabulary and, unless vocabulary already carries it, loads it into
    /// vocabulary and tells the handler.
    static void handleExternalVocabulary(BitStreamReader& aReader, DocumentVocabulary& vocabulary,
                                         FISDocumentHandler* pHandler,
                                         ExternalVocabularyLoader* pLoader = nullptr);

    /// Reads the restricted alphabets into vocabulary.
    static void handleRestrictedAlphabet(BitStreamReader& aReader, DocumentVocabulary& vocabulary);

    /// Reads and drops the URIs of encoding algorithms.
    static void skipEncodingAlgos(BitStreamReader& aReader, DocumentVocabulary& vocabulary);

    /// Reads a table of literal strings; an entry that repeats fails the assertion "!existed".
    static void handleVocabulary(BitStreamReader& aReader, Vocabulary<std::string>& table);

    /// Reads a table of encoded character strings; an entry that repeats fails the assertion "!existed".
    static void handleEncodedCharacterStringVoc(BitStreamReader& aReader, Vocabulary<std::string>& table,
                                                DocumentVocabulary& vocabulary);

    /// Reads a table of name surrogates; an entry that repeats fails the assertion "!existed".
    static void handleNameSurrogatesVoc(BitStreamReader& aReader, Vocabulary<QualifiedNameEntry>& table);

private:
    static void integerSlow(BitStreamReader& aReader, unsigned int& val);
};

} // namespace Tamo::FastInfoset

#endif
