#include "TamoJobs.h"
#include "BufferStream.h"
#include "ChecksumHandler.h"
#include "CountingStream.h"
#include "Tamo/FastInfoset/Converter.h"
#include "Tamo/FastInfoset/FastInfosetParser.h"
#include "Tamo/FastInfoset/FastInfosetPushParser.h"
#include "Tamo/FastInfoset/FastInfosetWriter.h"
#include "Tamo/MemoryStream.h"
#include "Tamo/XML/InputSource.h"
#include "Tamo/XML/SAXParser.h"
#include "Tamo/XML/XMLWriter.h"
#include <algorithm>
#include <span>

namespace Tamo::Benchmarks {

using FastInfoset::Converter;
using FastInfoset::DocumentVocabulary;
using FastInfoset::FastInfosetParser;
using FastInfoset::FastInfosetPushParser;
using FastInfoset::FastInfosetWriter;

namespace {

constexpr int MAX_INDEXED = 16;

template<class Handler>
void setHandler(XML::XMLReader& parser, Handler& handler) {
    parser.setContentHandler(&handler);
    parser.setLexicalHandler(&handler);
}

UInt64 replay(const DocumentSet& set) {
    ChecksumHandler handler;
    for (const auto& pDocument : set.documents()) {
        pDocument->recording.replay(handler, handler);
    }
    return handler.sum();
}

UInt64 replayWithCopies(const DocumentSet& set) {
    ChecksumHandler handler;
    for (const auto& pDocument : set.documents()) {
        pDocument->recording.replayWithCopies(handler, handler);
    }
    return handler.sum();
}

UInt64 parseFresh(const DocumentSet& set) {
    ChecksumHandler handler;
    for (const auto& pDocument : set.documents()) {
        FastInfosetParser parser;
        setHandler(parser, handler);
        parser.parseMemoryNP(pDocument->fastInfoset.data(), pDocument->fastInfoset.size());
    }
    return handler.sum();
}

enum class Mode { DEFAULT, STRICT };

template<class Handler, Mode mode = Mode::DEFAULT>
UInt64 parseReused(const DocumentSet& set) {
    Handler handler;
    FastInfosetParser parser;
    parser.setStrict(mode == Mode::STRICT);
    setHandler(parser, handler);
    for (const auto& pDocument : set.documents()) {
        parser.parseMemoryNP(pDocument->fastInfoset.data(), pDocument->fastInfoset.size());
    }
    return handler.sum();
}

UInt64 parseSharing(const DocumentSet& set) {
    ChecksumHandler handler;
    FastInfosetParser parser;
    parser.useVocabulary(set.vocabulary());
    setHandler(parser, handler);
    for (const auto& pDocument : set.documents()) {
        parser.parseMemoryNP(pDocument->withVocabulary.data(), pDocument->withVocabulary.size());
    }
    return handler.sum();
}

UInt64 parseStream(const DocumentSet& set) {
    ChecksumHandler handler;
    FastInfosetParser parser;
    setHandler(parser, handler);
    for (const auto& pDocument : set.documents()) {
        MemoryInputStream stream(pDocument->fastInfoset.data(), pDocument->fastInfoset.size());
        XML::InputSource source(stream);
        parser.parse(&source);
    }
    return handler.sum();
}

// As from a connection, in pieces of so many octets; 0 for the whole document.
template<std::size_t PIECE>
UInt64 parseFed(const DocumentSet& set) {
    ChecksumHandler handler;
    FastInfosetParser parser;
    FastInfosetPushParser push(parser);
    setHandler(parser, handler);
    for (const auto& pDocument : set.documents()) {
        auto octets = std::as_bytes(std::span(pDocument->fastInfoset));
        while (!octets.empty()) {
            const std::size_t size = PIECE == 0 ? octets.size() : std::min(PIECE, octets.size());
            push.feed(octets.first(size));
            octets = octets.subspan(size);
        }
    }
    return handler.sum();
}

UInt64 parseXML(const DocumentSet& set) {
    ChecksumHandler handler;
    XML::SAXParser parser;
    setHandler(parser, handler);
    for (const auto& pDocument : set.documents()) {
        parser.parseMemoryNP(pDocument->xml.data(), pDocument->xml.size());
    }
    return handler.sum();
}

// A buffer that lasts as long as the program: the cost of its pages is not the writer's.
BufferStream& emptyBuffer() {
    static BufferStream buffer;
    buffer.reset();
    return buffer;
}

// VOC_HASH tables are limited, some to no more than 18 entries.
void replayTo(FastInfosetWriter& writer, const Recording& recording) {
    try {
        recording.replay(writer, writer);
    } catch (const PoolOverflowException& e) {
        throw NotPossible(e.displayText());
    }
}

template<DocumentVocabulary::VocabularyImpl impl, Mode mode = Mode::DEFAULT>
UInt64 write(const DocumentSet& set) {
    UInt64 size = 0;
    for (const auto& pDocument : set.documents()) {
        BufferStream& out = emptyBuffer();
        FastInfosetWriter writer(out, false, impl);
        writer.setStrict(mode == Mode::STRICT);
        replayTo(writer, pDocument->recording);
        size += out.view().size();
    }
    return size;
}

UInt64 writeReused(const DocumentSet& set) {
    UInt64 size = 0;
    BufferStream& out = emptyBuffer();
    FastInfosetWriter writer(out, false, DocumentVocabulary::VOC_MAP);
    for (const auto& pDocument : set.documents()) {
        writer.reset(emptyBuffer());
        replayTo(writer, pDocument->recording);
        size += out.view().size();
    }
    return size;
}

UInt64 writeSharing(const DocumentSet& set) {
    UInt64 size = 0;
    BufferStream& out = emptyBuffer();
    FastInfosetWriter writer(out, false, DocumentVocabulary::VOC_MAP);
    writer.useVocabulary(set.vocabulary());
    for (const auto& pDocument : set.documents()) {
        writer.reset(emptyBuffer());
        replayTo(writer, pDocument->recording);
        size += out.view().size();
    }
    return size;
}

template<DocumentVocabulary::VocabularyImpl impl>
UInt64 writeCounted(const DocumentSet& set) {
    UInt64 size = 0;
    for (const auto& pDocument : set.documents()) {
        CountingStream out;
        {
            FastInfosetWriter writer(out, false, impl);
            replayTo(writer, pDocument->recording);
        }
        size += out.count();
    }
    return size;
}

UInt64 writeXML(const DocumentSet& set) {
    UInt64 size = 0;
    for (const auto& pDocument : set.documents()) {
        BufferStream& out = emptyBuffer();
        XML::XMLWriter writer(out);
        pDocument->recording.replay(writer, writer);
        size += out.view().size();
    }
    return size;
}

UInt64 convertToFIS(const DocumentSet& set) {
    UInt64 size = 0;
    for (const auto& pDocument : set.documents()) {
        BufferStream& out = emptyBuffer();
        MemoryInputStream in(pDocument->xml.data(), pDocument->xml.size());
        Converter::convertToFIS(in, out, MAX_INDEXED, 0);
        size += out.view().size();
    }
    return size;
}

UInt64 convertToXML(const DocumentSet& set) {
    UInt64 size = 0;
    for (const auto& pDocument : set.documents()) {
        BufferStream& out = emptyBuffer();
        MemoryInputStream in(pDocument->fastInfoset.data(), pDocument->fastInfoset.size());
        Converter::convertToXML(in, out, 0);
        size += out.view().size();
    }
    return size;
}

} // namespace

std::vector<Job> TamoJobs::all() {
    return {
        {"replay", "prepared events reported again: the limit of any reader", replay},
        {"replay-copy", "the same, the attribute list copied once: the limit of a SAX2 reader",
         replayWithCopies},
        {"parse", "Fast Infoset in memory, one parser for all documents", parseReused<ChecksumHandler>},
        {"parse-fresh", "Fast Infoset in memory, a parser for each document", parseFresh},
        {"parse-strict", "as parse, by the letter of X.891", parseReused<ChecksumHandler, Mode::STRICT>},
        {"parse-typed", "as parse, to a handler of typed values", parseReused<TypedChecksumHandler>},
        {"parse-stream", "as parse, from a std::istream", parseStream},
        {"parse-vocabulary", "as parse, documents with a vocabulary that is shared", parseSharing},
        {"parse-fed", "as parse, fed 1,400 octets at a time", parseFed<1400>},
        {"parse-fed-whole", "as parse, fed whole documents", parseFed<0>},
        {"parse-fed-single", "as parse, fed single octets", parseFed<1>},
        {"write-hash", "recorded events to a memory stream, VOC_HASH", write<DocumentVocabulary::VOC_HASH>},
        {"write-map", "recorded events to a memory stream, VOC_MAP", write<DocumentVocabulary::VOC_MAP>},
        {"write-strict", "as write-map, by the letter of X.891",
         write<DocumentVocabulary::VOC_MAP, Mode::STRICT>},
        {"write-reused", "as write-map, one writer for all documents", writeReused},
        {"write-vocabulary", "as write-reused, with a vocabulary that is shared", writeSharing},
        {"write-hash-null", "recorded events to a stream that counts, VOC_HASH",
         writeCounted<DocumentVocabulary::VOC_HASH>},
        {"write-map-null", "recorded events to a stream that counts, VOC_MAP",
         writeCounted<DocumentVocabulary::VOC_MAP>},
        {"to-fis", "Converter::convertToFIS, XML text to Fast Infoset", convertToFIS},
        {"to-xml", "Converter::convertToXML, Fast Infoset to XML text", convertToXML},
        {"sax-parser", "XML::SAXParser on XML text in memory", parseXML},
        {"xml-writer", "recorded events through XML::XMLWriter", writeXML},
    };
}

} // namespace Tamo::Benchmarks
