#ifndef TAMO_FINF_DOCUMENTWALKER_H
#define TAMO_FINF_DOCUMENTWALKER_H

#include "Tamo/FastInfoset/BitStreamReader.h"
#include "Tamo/FastInfoset/DocumentVocabulary.h"
#include "Tamo/FastInfoset/ExternalVocabularyLoader.h"
#include "Tamo/FastInfoset/ParserLimits.h"
#include "walk/Field.h"
#include "walk/FieldVisitor.h"
#include "walk/RecordingBuf.h"
#include <istream>
#include <string>
#include <string_view>
#include <vector>

namespace finf {

/// Reads Fast Infoset documents, one behind the other, by the letter of ITU-T X.891, as FastInfosetParser
/// does in the strict mode, and hands every field of them to a visitor: not what the documents say, but how.
///
/// Integers and lengths it reads by itself, so that the codec's own reading can be compared with it. It goes
/// on where the letter is broken and what follows can still be told, which DepartureFinder finds; elsewhere
/// it throws what the reading of the codec throws, or Tamo::FastInfoset::FISException with a message of its
/// own. Values of algorithms that nobody has added are shown as their octets. What it keeps is the
/// vocabulary, four octets for an open element, and the field that it reads.
class DocumentWalker {
public:
    /// Over the octets of source; all arguments are borrowed.
    DocumentWalker(std::istream& source, FieldVisitor& visitor,
                   Tamo::FastInfoset::ExternalVocabularyLoader& loader,
                   const Tamo::FastInfoset::ParserLimits& limits);

    /// Arrays of more octets than this, unless they become entries of a table, are shown by their first
    /// values alone, whose text would be larger than the array; without the call every array is shown as a
    /// whole.
    void setMaxShownArray(std::size_t octets) { _maxShownArray = octets; }

    /// The algorithms that values are shown by, to which the caller adds those of applications.
    Tamo::FastInfoset::DecodingAlgorithm& decodingAlgorithms() { return _vocabulary.decodings(); }

    /// Reads a piece: first the header, then a child (an element with its attributes, a character chunk, ...)
    /// or an end at a time. False when the document is complete; it goes on with the next one, with tables of
    /// its own.
    bool step();

    /// Whether what stands behind the complete document begins another one.
    bool hasNextDocument();

    /// Hands what stands behind the complete document to the visitor as one field; false if there is nothing.
    bool trailingOctets();

    /// The tables as they are now.
    const Tamo::FastInfoset::DocumentVocabulary& vocabulary() const { return _vocabulary; }

    /// A name of one of the two name tables, with its prefix: "p:local". Parts that are in no table are left
    /// out.
    std::string qualifiedName(Field::Table table, unsigned int index) const;

    /// The field that is being read: when step() has thrown, the one that is broken, with the octets that
    /// are there.
    const Field& current();

private:
    using Names = Tamo::FastInfoset::Vocabulary<Tamo::FastInfoset::QualifiedNameEntry>;

    void header();
    void identification();
    unsigned short identificationWord();
    void additionalData();
    void initialVocabulary();
    void checkTableSizes() const;
    void checkTableSize(std::size_t size) const;
    void externalVocabulary();
    void restrictedAlphabets();
    void encodingAlgorithms();
    void table(Field::Table id);
    void nameTable(Field::Table id);
    void nameSurrogate(Field::Table id);
    void notations();
    void unparsedEntities();

    void child();
    void element();
    void namespaceAttributes();
    void attributes();
    void documentTypeDeclaration();
    void processingInstruction();
    void name(Field::Table id, std::size_t depth);
    void identifiers(std::size_t depth, bool hasSystemId, bool hasPublicId);

    void identifyingString(Construct construct, std::size_t depth, Field::Table id);
    void nonIdentifyingString(Field::Table id);
    void encodedCharacterString(bool isEntry);
    void typedValues(bool isEntry);
    void beginningOfArray(int bitPosition, std::size_t valueSize);
    void octetString(std::string& octets, BitKind kind);
    void lengthPart(unsigned int group, int groupBits);
    std::size_t length();
    unsigned int integer();
    unsigned int value(int position);
    unsigned int numberOfItems(const char* what, std::size_t depth);

    void begin(Construct construct, std::size_t depth);
    void emit();
    unsigned int take(int numBits, BitKind kind, Tamo::Int64 expected = FieldPart::ANY);
    unsigned int bits(int numBits, const char* message);
    unsigned int peek(int numBits);
    void paddingAfterEnd();
    void part(BitKind kind, Tamo::UInt64 bits, Tamo::Int64 expected = FieldPart::ANY);
    void read(Field::Table id, unsigned int index);
    void enter(Field::Table id);
    void enterName(Field::Table id, const Tamo::FastInfoset::QualifiedNameEntry& entry,
                   bool hasAllParts = true);
    template<class T>
    void append(Field::Table id, Tamo::FastInfoset::Vocabulary<T>& table, const T& entry,
                bool canBeEntered = true);
    void show(std::string_view value);
    const std::string& stringAt(Field::Table id, unsigned int index) const;
    const Names& names(Field::Table id) const;
    Names& names(Field::Table id);

    RecordingBuf _record;
    std::istream _stream;
    Tamo::FastInfoset::BitStreamReader _reader;
    FieldVisitor& _visitor;
    Tamo::FastInfoset::ExternalVocabularyLoader& _loader;
    Tamo::FastInfoset::ParserLimits _limits;
    Tamo::FastInfoset::DocumentVocabulary _vocabulary;
    std::vector<unsigned int> _openElements; // indexes of their names
    bool _headerRead = false;
    bool _isPadded = false; // the field before ended with padding in place of another end
    Field _field;
    unsigned int _lastIndex = 0; // of the string read last
    std::size_t _maxShownArray = static_cast<std::size_t>(-1);
    std::string _text;
    std::string _octets;
};

} // namespace finf

#endif
