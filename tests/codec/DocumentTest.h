#ifndef TAMO_TESTS_DOCUMENTTEST_H
#define TAMO_TESTS_DOCUMENTTEST_H

#include "EventRecorder.h"
#include "Replay.h"
#include "Tamo/FastInfoset/DocumentVocabulary.h"
#include "Tamo/FastInfoset/FastInfosetParser.h"
#include "Tamo/FastInfoset/FastInfosetWriter.h"
#include "Tamo/FastInfoset/VocabularyLoader.h"
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
    std::string written;   ///< the events, as TypedEventRecorder spells them
    std::string octets;    ///< the document behind identification and version, in hexadecimal
    std::string read = {}; ///< the events that a parser reports; empty: those written
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
                     DocumentVocabulary::VocabularyImpl impl = DocumentVocabulary::VOC_HASH,
                     bool strict = false);

/// Identification, version and these octets.
std::string document(std::string_view hexOctets);

/// The same for each of the octets that a ';' separates.
std::vector<std::string> documents(const std::string& hexOctets);

/// A document that names the vocabulary with this URI; the octets follow the initial vocabulary.
std::string naming(const std::string& uri, std::string_view hexOctets);

/// Calls use with the document cut off behind each of its octets, and with each of its bits turned.
void forEachDamaged(const std::string& document, const std::function<void(const std::string& damaged)>& use);

/// Adds texts to a table; says the index of the last.
unsigned int add(DocumentVocabulary& vocabulary, DocumentVocabulary::ID table,
                 const std::vector<std::string>& texts);

/// Adds local names, and names of elements without namespace that have them.
void addElements(DocumentVocabulary& vocabulary, const std::vector<std::string>& localNames);

/// What writing these events indexes.
DocumentVocabulary vocabularyOf(const std::string& events, const std::string& uri = "",
                                DocumentVocabulary::VocabularyImpl impl = DocumentVocabulary::VOC_MAP);

/// Yields a copy of one vocabulary for every URI; an empty one if none is given.
class GivenVocabulary : public VocabularyLoader {
public:
    explicit GivenVocabulary(
        const DocumentVocabulary& vocabulary = DocumentVocabulary(DocumentVocabulary::VOC_VECTOR));
    DocumentVocabulary load(const std::string& uri) override;

private:
    DocumentVocabulary _vocabulary;
};

/// What reading the document with all handlers reports.
std::string eventsOf(const std::string& document);

/// Parses a copy of exactly its size, so that a sanitizer sees a read behind it.
void parseMemory(FastInfosetParser& parser, std::string_view document);
void parseStream(FastInfosetParser& parser, std::istream& stream);
void parseLive(FastInfosetParser& parser, std::istream& stream);

/// A parser with all its handlers and an empty vocabulary for every URI, for one document after the other.
template<class Recorder = TypedEventRecorder>
class Reading {
public:
    explicit Reading(bool strict = false, const ParserLimits& limits = {}) {
        parser.setStrict(strict);
        parser.setLimits(limits);
        parser.setExternalVocabularyLoader(&_loader);
        recorder.connectAll(parser);
    }

    FastInfosetParser parser;
    Recorder recorder;

    std::string events(const std::string& document) {
        recorder.clear();
        parseMemory(parser, document);
        return recorder.events();
    }

private:
    GivenVocabulary _loader;
};

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
