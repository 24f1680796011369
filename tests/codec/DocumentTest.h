#ifndef TAMO_TESTS_DOCUMENTTEST_H
#define TAMO_TESTS_DOCUMENTTEST_H

#include "EventRecorder.h"
#include "Replay.h"
#include "Tamo/FastInfoset/DocumentVocabulary.h"
#include "Tamo/FastInfoset/FastInfosetParser.h"
#include "Tamo/FastInfoset/FastInfosetWriter.h"
#include "TestSupport.h"
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace Tamo::FastInfoset::Test {

constexpr DocumentVocabulary::VocabularyImpl ALL_KINDS[] = {
    DocumentVocabulary::VOC_VECTOR, DocumentVocabulary::VOC_MAP, DocumentVocabulary::VOC_HASH};

/// A document that must be written and read in one way whatever the tables, the source and the detours.
struct DocumentRow {
    const char* name;
    const char* written;        ///< the events, as TypedEventRecorder spells them
    const char* octets;         ///< the document behind identification and version, in hexadecimal
    const char* read = nullptr; ///< the events that a parser reports; null: those written
    int maxIndexedStringLength = 16;
};

/// Documents that between them use every construct that can be read, by default or strictly.
const std::vector<std::string>& everyConstruct(bool strict = false);

/// A document that a writer makes, with every construct that it can write, as events.
extern const std::string EVERY_EVENT;

/// Drives the writer with events; an attribute's prefix and an element's are those of their qualified names.
void play(std::string_view events, FastInfosetWriter& writer);

/// The document that use writes.
std::string document(const std::function<void(FastInfosetWriter&)>& use,
                     DocumentVocabulary::VocabularyImpl impl = DocumentVocabulary::VOC_HASH);

/// Identification, version and these octets.
std::string document(std::string_view hexOctets);

/// What reading the document with all handlers reports.
std::string eventsOf(const std::string& document);

/// Parses a copy of exactly its size, so that a sanitizer sees a read behind it.
void parseMemory(FastInfosetParser& parser, std::string_view document);
void parseStream(FastInfosetParser& parser, std::istream& stream);
void parseLive(FastInfosetParser& parser, std::istream& stream);

/// Expects these events from parsers and readers with all kinds of tables, each used for a memory block, a
/// stream and a stream that dribbles in a row.
void expectEvents(const std::string& document, const std::string& events);

/// Expects that a parser connected to a writer writes the document again.
void expectRewritten(const std::string& document, int maxIndexedStringLength = 16);

/// Expects of each row that writing gives its octets with both kinds of tables that a writer accepts, that
/// reading gives the row's events in every way, and that parsers connected to writers give the octets again.
void expectDocuments(const std::vector<DocumentRow>& rows);

/// Expects that reading the document fails like this from memory and from streams, whatever the tables, and
/// that the parser reads the next document.
void expectFailure(const std::string& document, const std::string& failure);

} // namespace Tamo::FastInfoset::Test

#endif
