#include "convert/FastInfosetToXML.h"
#include "Tamo/FastInfoset/FISException.h"
#include "Tamo/XML/WhitespaceFilter.h"
#include "Tamo/XML/XMLException.h"
#include "command/FinfError.h"
#include "convert/TornDocument.h"
#include "files/DocumentKind.h"
#include "files/X3D.h"
#include <ios>

namespace finf {

using Tamo::XML::XMLReader;
using Tamo::XML::XMLWriter;

namespace {

/// Where the stream stands, -1 when it does not know.
std::streamoff positionOf(std::istream& in) {
    return in.rdbuf()->pubseekoff(0, std::ios_base::cur, std::ios_base::in);
}

} // namespace

FastInfosetToXML::FastInfosetToXML(const Options& options)
    : _options(options), _vocabularies(options.vocabularies, options.limits) {
    _parser.setStrict(!_options.lenient);
    _parser.setCanonicalNumbers(_options.canonicalNumbers);
    _vocabularies.setStrict(!_options.lenient);
    X3D::addDecodings(_parser.decodingAlgorithms());
    _parser.setExternalVocabularyLoader(&_vocabularies);
    _parser.setLimits(_options.limits);
}

void FastInfosetToXML::convert(std::istream& in, std::ostream& out) {
    const std::streamoff start = positionOf(in);
    if (start > 0 && !mayBeFastInfoset(in.peek())) {
        const std::string what =
            "octets that begin no document (X.891, 12), at octet " + std::to_string(start);
        if (_options.recover) {
            throw TornDocument(what, false);
        }
        throw FinfError(what);
    }
    ClosingWriter writer(out, (_options.separator ? 0 : XMLWriter::WRITE_XML_DECLARATION) |
                                  (_options.pretty ? XMLWriter::PRETTY_PRINT : 0));
    struct Current {
        explicit Current(ClosingWriter*& pWriter) : pCurrent(pWriter) {}
        ~Current() { pCurrent = nullptr; }
        ClosingWriter*& pCurrent;
    } const current(_pWriter);
    _pWriter = &writer;
    try {
        FinfError::explainDamage([&] { parse(in, writer); });
    } catch (const std::exception& e) {
        explain(e, in, start, writer, out);
    }
    out << _options.separator.value_or("");
}

void FastInfosetToXML::flush() {
    if (_pWriter) {
        _pWriter->flush();
    }
}

void FastInfosetToXML::parse(std::istream& in, ClosingWriter& writer) {
    // The white space of an indentation that the document has already would count as text.
    Tamo::XML::WhitespaceFilter filter(&_parser);
    if (_options.pretty) {
        filter.setContentHandler(&writer);
        filter.setDTDHandler(&writer);
        filter.setLexicalHandler(&writer);
        _parser.setContentHandler(&filter);
        _parser.setDTDHandler(&filter);
        _parser.setLexicalHandler(&filter);
    } else {
        _parser.initialize(&writer);
    }
    if (!_parser.parseNext(in)) {
        throw Tamo::FastInfoset::FISParseException("Unexpected end of the document");
    }
}

void FastInfosetToXML::explain(const std::exception& failure, std::istream& in, std::streamoff start,
                               ClosingWriter& writer, std::ostream& out) const {
    const std::string place = start > 0 ? "document at octet " + std::to_string(start) + ": " : "";
    if (_options.recover || _options.follow) {
        const std::streamoff end = positionOf(in);
        bool hasOutput = false;
        try {
            hasOutput = writer.close();
        } catch (const Tamo::XML::XMLException&) {
            throw FinfError(place + FinfError::reason(failure)); // what XML cannot say, or nobody takes
        }
        if (hasOutput) {
            out << _options.separator.value_or("");
        }
        throw TornDocument(
            "ended at octet " + std::to_string(end) + ": " + place + FinfError::reason(failure), hasOutput);
    }
    if (start > 0) {
        throw FinfError(place + FinfError::reason(failure));
    }
    throw;
}

} // namespace finf
