// A document from memory, from a stream, from a stream that delivers one octet at a time, from streams that
// are read live in pieces of any size, and from a stream in which the reader's buffer ends within the
// document: the same events, the same failure. What is read live waits for no octet behind the document, and
// takes none.
#include "DribblingStream.h"
#include "EventRecorder.h"
#include "Failure.h"
#include "FuzzSupport.h"
#include "LiveStream.h"
#include "Replay.h"
#include "Tamo/FastInfoset/BitStreamReader.h"
#include "Tamo/FastInfoset/FastInfosetParser.h"
#include "Tamo/MemoryStream.h"
#include "Tamo/XML/DefaultHandler.h"
#include "Tamo/XML/InputSource.h"

using namespace Tamo;
using namespace Tamo::FastInfoset;
using namespace Tamo::FastInfoset::Fuzz;

namespace {

// One parser reads all of them, so that what one document leaves behind would show in the next.
template<class Recorder>
class Reading {
public:
    Reading(std::string_view document, DocumentVocabulary::VocabularyImpl impl)
        : _loader(document), _impl(impl), _isStrict(isForStrictMode(document)) {
        renew();
    }

    Outcome memory(std::string_view document) {
        const Block block(document);
        return outcome([&] { _pParser->parseMemoryNP(block.data(), block.size()); });
    }

    Outcome stream(std::istream& stream) {
        XML::InputSource source(stream);
        return outcome([&] { _pParser->parse(&source); });
    }

    Outcome live(std::istream& stream) {
        _pParser->setLive(true);
        const Outcome result = this->stream(stream);
        _pParser->setLive(false);
        return result;
    }

    UInt64 documentSize() const { return _documentSize; }

private:
    Outcome outcome(const std::function<void()>& use) {
        _recorder.clear();
        const std::string failure = Test::failureOf(use);
        _documentSize = _pParser->documentSize();
        constexpr std::size_t BUILT_IN = 15;
        if (!_isStrict && _pParser->vocabulary().restrictedAlphabets().alphabets().size() > BUILT_IN) {
            renew(); // alphabets stay with a parser, see docs/vocabularies.md
        }
        return {failure, _recorder.events(), false, false};
    }

    void renew() {
        _pParser = std::make_unique<FastInfosetParser>(_impl);
        _pParser->setStrict(_isStrict);
        _pParser->setLimits(limits());
        _pParser->setExternalVocabularyLoader(&_loader);
        _recorder.connect(*_pParser);
    }

    Loader _loader;
    DocumentVocabulary::VocabularyImpl _impl;
    bool _isStrict;
    std::unique_ptr<FastInfosetParser> _pParser;
    UInt64 _documentSize = 0; // of the last one
    Recorder _recorder;
};

// An identifier that is empty counts as absent, as it does for the cursor.
class Recorder : public Test::TypedEventRecorder {
public:
    void notationDecl(const std::string& name, const std::string* publicId,
                      const std::string* systemId) override {
        Test::TypedEventRecorder::notationDecl(name, presentOrNull(publicId), presentOrNull(systemId));
    }
    void unparsedEntityDecl(const std::string& name, const std::string* publicId, const std::string& systemId,
                            const std::string& notationName) override {
        Test::TypedEventRecorder::unparsedEntityDecl(name, presentOrNull(publicId), systemId, notationName);
    }

private:
    static const std::string* presentOrNull(const std::string* pIdentifier) {
        return pIdentifier && !pIdentifier->empty() ? pIdentifier : nullptr;
    }
};

// What the cursor reports of a document that fails ends with the last whole item.
void compareCursor(const std::string& document, const Outcome& memory) {
    Loader loader(document);
    FastInfosetReader reader;
    reader.setStrict(isForStrictMode(document));
    reader.setLimits(limits());
    reader.setExternalVocabularyLoader(&loader);
    Recorder recorder;
    const Block block(document);
    const std::string failure = Test::failureOf([&] {
        reader.open(std::string_view(block.data(), block.size()));
        Test::replay(reader, recorder);
    });
    require(failure == Test::cursorFailureOf(memory.failure), "parser and cursor fail alike", memory.failure,
            failure);
    require(memory.failed() ? memory.events.starts_with(recorder.events())
                            : memory.events == recorder.events(),
            "parser and cursor report the same", memory.events, recorder.events());
}

// The text of everything, typed values included, as a plain handler gets it.
void compareTexts(const std::string& document) {
    struct Texts : XML::DefaultHandler {
        std::string texts;
        void characters(const char ch[], int start, int length) override {
            if (length > 0) { // an array of no values is empty text here, and no event to the cursor
                texts.append(ch + start, static_cast<std::size_t>(length)) += '|';
            }
        }
    } expected;
    const Block block(document);
    Loader loader(document);
    FastInfosetParser parser;
    parser.setStrict(isForStrictMode(document));
    parser.setLimits(limits());
    parser.setExternalVocabularyLoader(&loader);
    parser.setContentHandler(&expected);
    const std::string failure = Test::failureOf([&] { parser.parseMemoryNP(block.data(), block.size()); });

    std::string texts;
    FastInfosetReader reader;
    reader.setStrict(isForStrictMode(document));
    reader.setLimits(limits());
    reader.setExternalVocabularyLoader(&loader);
    const std::string cursorsFailure = Test::failureOf([&] {
        reader.open(std::string_view(block.data(), block.size()));
        while (reader.next() != FastInfosetReader::END_DOCUMENT) {
            if (reader.event() == FastInfosetReader::TEXT && !reader.text().empty()) {
                texts.append(reader.text()) += '|';
            }
        }
    });
    if (!failure.empty() && failure.find("delivered octets") != std::string::npos) {
        return; // of typed values only text is counted
    }
    require(Test::cursorFailureOf(failure) == cursorsFailure, "parser and cursor fail alike", failure,
            cursorsFailure);
    require(expected.texts == texts, "parser and cursor give the same text", expected.texts, texts);
}

void requireEqual(const Outcome& first, const Outcome& second) {
    require(first.failure == second.failure, "streams fail alike", first.failure, second.failure);
    require(first.events == second.events, "streams deliver the same", first.events, second.events);
}

// A document in whose middle the buffer of a reader ends: the octets of a longer declaration go in front of
// it.
std::string shifted(const std::string& document) {
    std::size_t sum = 0;
    for (const char octet : document) {
        sum = sum * 31 + static_cast<unsigned char>(octet);
    }
    const std::size_t behind = sum % std::min<std::size_t>(document.size(), BitStreamReader::BUFFER_SIZE - 3);
    return "<?" + std::string(BitStreamReader::BUFFER_SIZE - behind - 3, 'x') + ">" + document;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string document(reinterpret_cast<const char*>(data), size);
    Reading<Recorder> typed(document, DocumentVocabulary::VOC_VECTOR);
    const Outcome memory = typed.memory(document);
    compareCursor(document, memory);
    compareTexts(document);
    MemoryInputStream whole(document.data(), document.size());
    const Outcome stream = typed.stream(whole);
    require(memory.failure == stream.failure, "memory and stream fail alike", memory.failure, stream.failure);
    require(memory.events == stream.events, "memory and stream deliver the same", memory.events,
            stream.events);

    Test::DribblingStream dribble(document);
    requireEqual(stream, typed.stream(dribble));
    for (const std::size_t most : {std::size_t{0}, std::size_t{1}, 2 + size % 37}) {
        Test::LiveStream live(document, memory.failed() ? size : typed.documentSize(), most);
        if (memory.failed()) {
            live.endAtEnd();
        }
        requireEqual(stream, typed.live(live));
        require(memory.failed() || live.taken() == typed.documentSize(), "no more and no less is taken");
    }
    const bool isStrict = isForStrictMode(document);
    if (size > 1 && !isStrict && !document.starts_with("<?")) {
        const std::string longer = shifted(document);
        MemoryInputStream behind(longer.data(), longer.size());
        requireEqual(stream, typed.stream(behind));
    }

    // Other tables may number entries otherwise, but in the strict mode, and text takes the place of values:
    // only safety is looked at.
    for (const auto impl : {DocumentVocabulary::VOC_MAP, DocumentVocabulary::VOC_HASH}) {
        if (isStrict) {
            requireEqual(memory, Reading<Recorder>(document, impl).memory(document));
        }
        Reading<Test::EventRecorder>(document, impl).memory(document);
    }
    return 0;
}
