#ifndef TAMO_FASTINFOSET_STRINGWRITER_H
#define TAMO_FASTINFOSET_STRINGWRITER_H

#include "ConstructWriter.h"
#include "LegalStrings.h"
#include "OctetComposer.h"
#include "OpenConstructs.h"
#include "Tamo/AutoPtr.h"
#include "Tamo/Bugcheck.h"
#include "Tamo/Export.h"
#include "Tamo/FastInfoset/DocumentVocabulary.h"
#include "Tamo/FastInfoset/Encoding.h"
#include "Tamo/HashKey.h"
#include <algorithm>
#include <cstddef>
#include <cstring>
#include <functional>
#include <string>
#include <string_view>

namespace Tamo::FastInfoset {

/// Writes strings: as the index of an equal one in its table, or literally, and then enters them (ITU-T
/// X.891, 7.13 and 7.14). Used by one thread at a time.
///
/// The table decides what is written. Identifying strings (parts of names, identifiers) are always entered,
/// others up to a length. Where a string stands in its table (or would stand) is found first and handed on as
/// Found. The engine of the writer is a chain of owners, so that all of it is at hand: ElementWriter has a
/// NameWriter, which has this.
class StringWriter {
public:
    using ID = DocumentVocabulary::ID;
    using Found = ValueIndex<std::string>::Found;

    static constexpr unsigned int NOT_FOUND = Vocabulary<std::string>::NOT_FOUND;

    /// To a stream or sink, with tables of a kind or over a copy of a vocabulary.
    template<class Target, class Tables>
    StringWriter(Target& target, const Tables& tables) : _writer(target, false), _vocabulary(tables) {}

    StringWriter(const StringWriter&) = delete;
    StringWriter& operator=(const StringWriter&) = delete;

    /// What the strings of a document are written with, for those that write its constructs around them.
    ConstructWriter& writer() noexcept { return _writer; }
    DocumentVocabulary& vocabulary() noexcept { return _vocabulary; }
    const DocumentVocabulary& vocabulary() const noexcept { return _vocabulary; }
    OpenConstructs& constructs() noexcept { return _constructs; }
    const OpenConstructs& constructs() const noexcept { return _constructs; }

    /// The length in octets up to which strings are entered; negative: all are.
    void setMaxIndexedLength(int length) noexcept { _maxIndexedLength = length; }

    /// Whether documents are written by the letter: what would be refused because a table is full is then
    /// written literally and not entered (X.891, 7.13.7), and chunks are checked.
    void setStrict(bool strict) noexcept { _strict = strict; }
    bool isStrict() const noexcept { return _strict; }

    // ---- identifying strings, entered whatever their length

    /// Writes one at bit position 0 (X.891, C.13); returns its index, in the strict mode NOT_FOUND where it
    /// finds no place in its table.
    unsigned int writeIdentifying(OctetComposer& octets, const std::string& s, ID id);

    /// The same for a string whose key and place are known.
    unsigned int writeIdentifying(OctetComposer& octets, const std::string& s, ID id, HashKey key,
                                  Found found);

    /// The same bit by bit.
    unsigned int writeIdentifying(const std::string& s, ID id);

    /// Where one stands.
    TAMO_ALWAYS_INLINE Found findIdentifying(ID id, const std::string& text, HashKey key) {
        if (const IndexedVocabulary<std::string>* const pTable = _vocabulary.indexedVocabulary(id))
            [[likely]] {
            return pTable->find(text, key);
        }
        bool found = false;
        return {_vocabulary.vocabulary(id).exists(text, found), 0};
    }

    /// Throws FISEncodingException where an identifying string cannot be written: it is longer than its
    /// length can tell, or new and its table holds all entries that an index can name (X.891, 7.13.7). To be
    /// asked before its construct begins.
    void requireIdentifying(const std::string& s, ID id);

    /// What the refusals of strings throw: one of size octets, where most are possible; or one for which a
    /// table of what the text says has no place.
    [[noreturn]] static void throwTooLong(std::size_t size, UInt64 most);
    [[noreturn]] static void throwFull(const char* content, std::string_view text);

    // ---- other strings

    /// Throws FISEncodingException where a value is longer than its length can tell, likewise.
    static TAMO_ALWAYS_INLINE void requireValue(std::size_t size) {
        if (size > Forms::LengthAt4::MOST) [[unlikely]] {
            throwTooLong(size, Forms::LengthAt4::MOST);
        }
    }

    /// Writes one at bit position 0 (X.891, C.14).
    void write(OctetComposer& octets, std::string_view text, ID id);

    /// Writes the constructs of a comment and of a processing instruction.
    void writeComment(std::string_view text);
    void writeInstruction(const std::string& target, const std::string& data);

    /// Writes the value of an attribute, outside of CDATA sections.
    TAMO_ALWAYS_INLINE void writeAttributeValue(OctetComposer& octets, const std::string& value) {
        if (!isIndexed(value.size())) {
            octets.stringAtPosition4(0, value); // which is not empty: the empty one is indexed
            return;
        }
        const HashKey key = HashKey::of(value);
        const Found string = find(DocumentVocabulary::ATTRIBUTE_VALUE, value, key);
        if (OctetComposer::fitsPosition1(string.index)) {
            octets.integerAtPosition1(Forms::STRING_INDEX, string.index);
        } else if (string.index == NOT_FOUND && HashKey::isExact(value.size()) && !value.empty()) [[likely]] {
            const bool added = add(DocumentVocabulary::ATTRIBUTE_VALUE, value, key, string);
            octets.shortStringAtPosition4(added ? Forms::STRING_ADDED : 0, value);
        } else {
            octets.apart([=, this, &value](OctetComposer& composer) {
                write(composer, value, DocumentVocabulary::ATTRIBUTE_VALUE, key, string);
            });
        }
    }

    /// A typed value of an attribute that can be written, or null for text.
    struct TypedValue {
        const Encoding* pValue = nullptr;
        unsigned int algorithm = 0; ///< its index in the document
        std::string octets;         ///< the whole value, of a class of an application's
    };

    /// Looks at a value that is to be written by the algorithm with an index: throws where that cannot be, so
    /// to be asked before its element begins; yields none for an empty array, which has no form.
    TypedValue attributeValue(Encoding& value, unsigned int algorithm) const;

    /// Writes the typed value of an attribute.
    void writeAttributeValue(OctetComposer& octets, const TypedValue& value);

    // ---- character chunks (X.891, 7.9)

    /// Writes ch from start on, up to length octets or the first NUL octet of ch, as a chunk.
    TAMO_ALWAYS_INLINE void writeCharacters(const char ch[], int start, int length) {
        tamo_assert(start >= 0 && length >= 0);
        std::streambuf* const pBuf = _writer.startConstruct();
        // The text ends at the first NUL of ch, but nothing behind start + length is looked at.
        const auto end = static_cast<std::size_t>(start) + static_cast<std::size_t>(length);
        if (start == 0 && isIndexed(end) && HashKey::isExact(end)) {
            bool hasNul = false;
            const HashKey key = HashKey::ofWhole({ch, end}, hasNul);
            if (!hasNul) [[likely]] {
                writeShortChunk(pBuf, {ch, end}, key);
                return;
            }
        }
        const void* pNul = end != 0 ? std::memchr(ch, 0, end) : nullptr;
        const std::size_t stop = pNul ? static_cast<std::size_t>(static_cast<const char*>(pNul) - ch) : end;
        const std::size_t begin = std::min(static_cast<std::size_t>(start), stop);
        writeChunk(pBuf, {ch + begin, stop - begin});
    }

    /// Writes text as one chunk or more.
    void writeText(std::string_view text);

    /// Writes a typed value as a chunk, on an octet boundary.
    void writeTypedChunk(Encoding& value);

    // ---- character chunks of the strict mode, which begin their construct once nothing is to be refused

    /// Writes text as one chunk or more: that is indexed as usual, or literally as part of a CDATA section.
    TAMO_ALWAYS_INLINE void writeLegalText(std::string_view text) {
        if (!isIndexed(text.size()) || !HashKey::isExact(text.size())) {
            writeOtherLegalText(text);
            return;
        }
        const HashKey key = HashKey::of(text);
        const Found chunk = find(DocumentVocabulary::CONTENT_CHARACTER_CHUNK, text, key);
        if (chunk.index == NOT_FOUND) {
            LegalStrings::requireText(TEXT, text);
        }
        writeFoundChunk(_writer.startConstruct(), text, key, chunk);
    }
    void writeCDataText(std::string_view text);

    /// Writes octets as a chunk of a form, RESTRICTEDALPHABET or ENCODINGALGORITHM, by the alphabet or
    /// algorithm with an index.
    void writeFormedChunk(DocumentVocabulary::CharacterStringForm form, unsigned int index,
                          std::string_view octets);

    /// Writes a typed value by the algorithm with an index, which is its own unless it is an application's.
    void writeTypedChunk(Encoding& value, unsigned int algorithm);

    /// Writes by the algorithm with an index what write(writer) appends to the first bits of the chunk: its
    /// length and octets.
    void writeApplicationChunk(unsigned int algorithm, const std::function<void(BitStreamWriter&)>& write);

private:
    /// A chunk that is short enough for its table.
    TAMO_ALWAYS_INLINE void writeShortChunk(std::streambuf* pBuf, std::string_view text, HashKey key) {
        writeFoundChunk(pBuf, text, key, find(DocumentVocabulary::CONTENT_CHARACTER_CHUNK, text, key));
    }

    TAMO_ALWAYS_INLINE void writeFoundChunk(std::streambuf* pBuf, std::string_view text, HashKey key,
                                            Found chunk) {
        if (OctetComposer::fitsPosition3(chunk.index) && pBuf) [[likely]] {
            PutArea::put(*pBuf, [=](char* p) {
                return OctetComposer::integerAtPosition3(p, Forms::CHARACTERS | Forms::CHARACTERS_INDEX,
                                                         chunk.index);
            });
        } else {
            writeNewChunk(pBuf, text, key, chunk);
        }
    }

    static constexpr const char* TEXT = "text";

    void writeOtherLegalText(std::string_view text);
    void write(OctetComposer& octets, std::string_view text, ID id, HashKey key, Found string);
    void writeLiteral(OctetComposer& octets, std::string_view text, bool added);
    void writeIdentifyingIndex(unsigned int index);
    void writeChunk(std::streambuf* pBuf, std::string_view text);
    void writeNewChunk(std::streambuf* pBuf, std::string_view text, HashKey key, Found chunk);
    void writeLiteralChunk(OctetComposer& octets, std::string_view text, bool added);
    void writeCDataChunk(OctetComposer& octets, std::string_view text, bool added);
    bool addChunk(std::string_view text, HashKey key, Found notFound);
    void writeTyped(const Encoding& value);

    TAMO_ALWAYS_INLINE bool isIndexed(std::size_t size) const noexcept {
        // The limit is widened with its sign: a negative one is greater than every size.
        return size <= static_cast<std::size_t>(static_cast<std::ptrdiff_t>(_maxIndexedLength));
    }

    TAMO_ALWAYS_INLINE Found find(ID id, std::string_view text, HashKey key) {
        if (const IndexedVocabulary<std::string>* const pTable = _vocabulary.indexedVocabulary(id))
            [[likely]] {
            return pTable->find(text, key);
        }
        return findOrAdd(id, text);
    }

    // A table that holds all the entries that an index can name takes no more (X.891, 7.14.7): its other
    // strings are written literally each time.
    TAMO_ALWAYS_INLINE bool add(ID id, std::string_view text, HashKey key, Found notFound) {
        if (IndexedVocabulary<std::string>* const pTable = _vocabulary.indexedVocabulary(id)) [[likely]] {
            const bool takesMore = pTable->values().size() <= Forms::MOST_INTEGER;
            if (takesMore) [[likely]] {
                pTable->append(text, key, notFound);
            }
            return takesMore;
        }
        return notFound.place != NOT_FOUND; // findOrAdd() has added it
    }

    Found findOrAdd(ID id, std::string_view text);

    ConstructWriter _writer;
    DocumentVocabulary _vocabulary;
    OpenConstructs _constructs;
    int _maxIndexedLength = 16;
    bool _strict = false;
};

} // namespace Tamo::FastInfoset

#endif
