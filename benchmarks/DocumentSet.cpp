#include "DocumentSet.h"
#include "BufferStream.h"
#include "ExpatPeer.h"
#include "Tamo/FastInfoset/Converter.h"
#include "Tamo/FastInfoset/FastInfosetParser.h"
#include "Tamo/FastInfoset/FastInfosetWriter.h"
#include "Tamo/MemoryStream.h"
#include "Tamo/XML/InputSource.h"
#include <algorithm>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <utility>

namespace Tamo::Benchmarks {

using FastInfoset::Converter;
using FastInfoset::DocumentVocabulary;
using FastInfoset::FastInfosetParser;
using FastInfoset::FastInfosetWriter;

namespace {

const char DESCRIPTION[] = "DESCRIPTION";

std::string contentOf(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    if (!in) {
        throw std::runtime_error("cannot read " + file.string());
    }
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

std::string encode(const Recording& recording, int maxIndexedStringLength,
                   DocumentVocabulary::VocabularyImpl impl) {
    BufferStream out;
    FastInfosetWriter writer(out, false, impl);
    writer.setMaxIndexedStringLength(maxIndexedStringLength);
    recording.replay(writer, writer);
    return std::string(out.view());
}

void record(FastInfosetParser& parser, Recording& recording) {
    parser.setContentHandler(&recording);
    parser.setLexicalHandler(&recording);
}

void expectSame(const Document& document, const Recording& recording, const char* way) {
    const std::string difference = document.recording.difference(recording);
    if (!difference.empty()) {
        throw std::runtime_error(document.name + ": " + way + " differs from Expat's reading at " +
                                 difference);
    }
}

void proveReading(const Document& document, const std::string& octets, const char* way) {
    FastInfosetParser parser;
    Recording fromMemory;
    record(parser, fromMemory);
    parser.parseMemoryNP(octets.data(), octets.size());
    expectSame(document, fromMemory, way);
}

} // namespace

DocumentSet::DocumentSet(const std::filesystem::path& directory) : _name(directory.filename().string()) {
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(directory)) {
        if (entry.path().filename() != DESCRIPTION) {
            files.push_back(entry.path());
        }
    }
    std::sort(files.begin(), files.end());
    for (const auto& file : files) {
        add(file);
    }
    addVocabulary();
    if (std::filesystem::exists(directory / DESCRIPTION)) {
        _description = contentOf(directory / DESCRIPTION);
        _description.erase(_description.find_last_not_of('\n') + 1);
    }
}

DocumentSet::DocumentSet(std::string name, const std::vector<std::filesystem::path>& files)
    : _name(std::move(name)) {
    for (const auto& file : files) {
        add(file);
    }
    addVocabulary();
}

void DocumentSet::add(const std::filesystem::path& file) {
    static std::size_t documents = 0;
    auto pDocument = std::make_unique<Document>();
    pDocument->number = ++documents;
    pDocument->name = file.string();
    pDocument->xml = contentOf(file);
    try {
        ExpatPeer::parse(pDocument->xml, pDocument->recording, pDocument->recording);
    } catch (const std::exception& e) {
        throw std::runtime_error(pDocument->name + ": " + e.what());
    }
    pDocument->fastInfoset = encode(pDocument->recording, 16);
    _documents.push_back(std::move(pDocument));
}

void DocumentSet::addVocabulary() {
    constexpr std::size_t EVERY = 7;
    DocumentVocabulary filled("urn:v", DocumentVocabulary::VOC_MAP);
    for (std::size_t i = 0; i < _documents.size(); i += EVERY) {
        BufferStream out;
        FastInfosetWriter writer(out, false, filled);
        writer.setExternalVocabulary(filled.getURI(), filled);
        _documents[i]->recording.replay(writer, writer);
        filled = std::as_const(writer).getDocumentVocabulary();
    }
    _pVocabulary = FastInfoset::SharedVocabulary::of(filled);
    for (const auto& pDocument : _documents) {
        BufferStream out;
        FastInfosetWriter writer(out, false, DocumentVocabulary::VOC_MAP);
        writer.useVocabulary(_pVocabulary);
        pDocument->recording.replay(writer, writer);
        pDocument->withVocabulary = out.view();
    }
}

std::vector<std::filesystem::path> DocumentSet::find(const std::filesystem::path& root) {
    std::vector<std::filesystem::path> directories;
    for (const auto& entry : std::filesystem::directory_iterator(root)) {
        if (entry.is_directory()) {
            directories.push_back(entry.path());
        }
    }
    std::sort(directories.begin(), directories.end());
    return directories;
}

std::string DocumentSet::encode(const Recording& recording, int maxIndexedStringLength) {
    return Benchmarks::encode(recording, maxIndexedStringLength, DocumentVocabulary::VOC_MAP);
}

std::string DocumentSet::description() const {
    std::size_t octets = 0;
    std::size_t elements = 0;
    std::size_t attributes = 0;
    std::size_t text = 0;
    for (const auto& pDocument : _documents) {
        octets += pDocument->xml.size();
        elements += pDocument->recording.elements();
        attributes += pDocument->recording.attributes();
        text += pDocument->recording.textOctets();
    }
    return _description + " (documents " + std::to_string(_documents.size()) + ", octets " +
           std::to_string(octets) + ", elements " + std::to_string(elements) + ", attributes " +
           std::to_string(attributes) + ", octets of text " + std::to_string(text) + ")";
}

void DocumentSet::prove() const {
    FastInfosetParser reused;
    for (const auto& pDocument : _documents) {
        const Document& document = *pDocument;
        proveReading(document, document.fastInfoset, "VOC_MAP, read from memory,");
        try {
            proveReading(document, Benchmarks::encode(document.recording, 16, DocumentVocabulary::VOC_HASH),
                         "VOC_HASH, read from memory,");
        } catch (const PoolOverflowException&) {
            // More different strings than VOC_HASH tables hold.
        }

        FastInfosetParser sharing;
        sharing.useVocabulary(_pVocabulary);
        Recording withVocabulary;
        record(sharing, withVocabulary);
        sharing.parseMemoryNP(document.withVocabulary.data(), document.withVocabulary.size());
        expectSame(document, withVocabulary, "a vocabulary that is shared");

        Recording fromStream;
        record(reused, fromStream);
        MemoryInputStream stream(document.fastInfoset.data(), document.fastInfoset.size());
        XML::InputSource source(stream);
        reused.parse(&source);
        expectSame(document, fromStream, "a reused parser on a stream");

        BufferStream converted;
        MemoryInputStream xml(document.xml.data(), document.xml.size());
        Converter::convertToFIS(xml, converted, 16, 0);
        proveReading(document, std::string(converted.view()), "convertToFIS");

        MemoryInputStream back(document.fastInfoset.data(), document.fastInfoset.size());
        BufferStream text;
        Converter::convertToXML(back, text, 0);
        Recording again;
        ExpatPeer::parse(std::string(text.view()), again, again);
        expectSame(document, again, "convertToXML");
    }
}

} // namespace Tamo::Benchmarks
