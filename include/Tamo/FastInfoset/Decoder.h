#ifndef TAMO_FASTINFOSET_DECODER_H
#define TAMO_FASTINFOSET_DECODER_H

#include "Tamo/AutoPtr.h"
#include "Tamo/Export.h"
#include "Tamo/FastInfoset/DocumentVocabulary.h"
#include "Tamo/FastInfoset/PrimitiveDecoder.h"
#include "Tamo/FastInfoset/QualifiedNameVocabulary.h"
#include <cstddef>
#include <string>

namespace Tamo::FastInfoset {

class DocumentPropertiesHandler;
class FISDocumentHandler;
class VocabularyLoader;

/// The primitive encodings and the document header (ITU-T X.891, annex C and 7.2), reading side.
///
/// Stateless; all operations are static, and throw what those of PrimitiveDecoder do.
class TAMO_API Decoder : public PrimitiveDecoder {
public:
    /// Which optional components of the document follow the initial vocabulary (X.891, 12.8).
    struct OpenHeaderParts {
        bool notations = false;
        bool unparsedEntities = false;
        bool characterEncodingScheme = false;
        bool standalone = false;
        bool version = false;
    };

    /// Reads a name surrogate at bit position 6 (X.891, C.16): the indexes of prefix, namespace name and
    /// local name, an absent one being QualifiedNameEntry::ABSENT.
    static QualifiedNameEntry nameSurrogate(BitStreamReader& aReader);

    /// Reads what follows the form of an encoded character string (X.891, C.19.3): UTF-8 text, replacing
    /// text, and null; or a typed value and the index of its algorithm. What octets holds is replaced.
    static AutoPtr<Encoding> encodedString(BitStreamReader& aReader, unsigned char form,
                                           DocumentVocabulary& vocabulary, std::string& octets,
                                           std::string& text, unsigned int& algorithm);

    /// Reads an encoded character string of an initial vocabulary's table (X.891, C.19) as UTF-8 text,
    /// replacing value. Deliberate: the index of a restricted alphabet or encoding algorithm is read twice
    /// and the second one counts; vocabularies written for this reader rely on it. The strict mode reads it
    /// once.
    static void encodedCharacterString(BitStreamReader& aReader, std::string& value,
                                       DocumentVocabulary& vocabulary);

    /// Reads the optional XML declaration (handed back as text, empty when there is none), the
    /// identification, the version and the padding bit (X.891, 12.3 to 12.8).
    static void documentPreHeader(BitStreamReader& aReader, std::string& xmlDecl);

    /// Reads the presence bits, drops additional data, which the strict mode hands to a
    /// DocumentPropertiesHandler, and reads the initial vocabulary into vocabulary, or
    /// resets it when the document has none. pHandler may be null. An external vocabulary is opened, by this
    /// and the other operations without a loader (ExternalVocabularyLoader).
    static OpenHeaderParts documentHeader(BitStreamReader& aReader, DocumentVocabulary& vocabulary,
                                          FISDocumentHandler* pHandler);

    /// The same, with the loader that yields external vocabularies (null: they are refused with
    /// FISException).
    static OpenHeaderParts documentHeader(BitStreamReader& aReader, DocumentVocabulary& vocabulary,
                                          FISDocumentHandler* pHandler, VocabularyLoader* pLoader);

    /// Reads and drops the additional data (X.891, 7.2.7).
    static void skipAdditionalData(BitStreamReader& aReader);

    /// Reads the additional data, strictly, and hands it to the handler, which may be null.
    static void additionalData(BitStreamReader& aReader, DocumentPropertiesHandler* pHandler);

    /// Reads the initial vocabulary (X.891, C.2.5).
    static void parseInitialVocabulary(BitStreamReader& aReader, DocumentVocabulary& vocabulary,
                                       FISDocumentHandler* pHandler);
    static void parseInitialVocabulary(BitStreamReader& aReader, DocumentVocabulary& vocabulary,
                                       FISDocumentHandler* pHandler, VocabularyLoader* pLoader);

    /// Reads the URI of the external vocabulary and, unless vocabulary already carries it, loads it into
    /// vocabulary and tells the handler.
    static void handleExternalVocabulary(BitStreamReader& aReader, DocumentVocabulary& vocabulary,
                                         FISDocumentHandler* pHandler);
    static void handleExternalVocabulary(BitStreamReader& aReader, DocumentVocabulary& vocabulary,
                                         FISDocumentHandler* pHandler, VocabularyLoader* pLoader);

    /// Reads the restricted alphabets into vocabulary.
    static void handleRestrictedAlphabet(BitStreamReader& aReader, DocumentVocabulary& vocabulary);

    /// Reads the URIs of encoding algorithms: into vocabulary in the strict mode, and drops them else.
    static void skipEncodingAlgos(BitStreamReader& aReader, DocumentVocabulary& vocabulary);

    /// Reads a table of literal strings; an entry that repeats fails the assertion "!existed", unless
    /// the reading is strict.
    static void handleVocabulary(BitStreamReader& aReader, Vocabulary<std::string>& table);

    /// Reads a table of encoded character strings; an entry that repeats fails the assertion "!existed",
    /// unless the reading is strict.
    static void handleEncodedCharacterStringVoc(BitStreamReader& aReader, Vocabulary<std::string>& table,
                                                DocumentVocabulary& vocabulary);

    /// Reads a table of name surrogates; an entry that repeats fails the assertion "!existed", unless
    /// the reading is strict.
    static void handleNameSurrogatesVoc(BitStreamReader& aReader, Vocabulary<QualifiedNameEntry>& table);
};

} // namespace Tamo::FastInfoset

#endif
