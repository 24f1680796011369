#include "convert/FastInfosetToXML.h"
#include "Tamo/XML/InputSource.h"
#include "command/FinfError.h"
#include "files/X3D.h"

namespace finf {

using Tamo::XML::XMLReader;
using Tamo::XML::XMLWriter;

FastInfosetToXML::FastInfosetToXML(const Options& options)
    : _options(options), _vocabularies(options.vocabularies, options.limits), _filter(&_parser) {
    _parser.setStrict(!options.lenient);
    _parser.setCanonicalNumbers(options.canonicalNumbers);
    _vocabularies.setStrict(!options.lenient);
    X3D::addDecodings(_parser.decodingAlgorithms());
    _parser.setExternalVocabularyLoader(&_vocabularies);
    _parser.setLimits(options.limits);
}

void FastInfosetToXML::begin(std::ostream& out) {
    if (_writer) {
        _writer->reset(out);
        return;
    }
    XMLWriter& writer = _writer.emplace(out, XMLWriter::WRITE_XML_DECLARATION |
                                                 (_options.pretty ? XMLWriter::PRETTY_PRINT : 0));
    if (_options.pretty) {
        _filter.setContentHandler(&writer);
        _filter.setDTDHandler(&writer);
        _filter.setProperty(XMLReader::PROPERTY_LEXICAL_HANDLER,
                            static_cast<void*>(static_cast<Tamo::XML::LexicalHandler*>(&writer)));
    } else {
        _parser.initialize(&writer);
    }
}

void FastInfosetToXML::convert(std::istream& in, std::ostream& out) {
    begin(out);
    // The white space of an indentation that the document has already would count as text.
    XMLReader& reader = _options.pretty ? static_cast<XMLReader&>(_filter) : _parser;
    Tamo::XML::InputSource source(in);
    FinfError::explainDamage([&] {
        try {
            reader.parse(&source);
        } catch (...) {
            _writer.reset(); // passes on what there is of the document
            throw;
        }
    });
}

} // namespace finf
