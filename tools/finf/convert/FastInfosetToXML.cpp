#include "convert/FastInfosetToXML.h"
#include "Tamo/FastInfoset/FastInfosetParser.h"
#include "Tamo/XML/InputSource.h"
#include "Tamo/XML/WhitespaceFilter.h"
#include "Tamo/XML/XMLWriter.h"
#include "command/FinfError.h"
#include "files/X3D.h"

namespace finf {

void FastInfosetToXML::convert(std::istream& in, std::ostream& out) {
    using Tamo::XML::XMLWriter;
    XMLWriter writer(out, XMLWriter::WRITE_XML_DECLARATION | (_options.pretty ? XMLWriter::PRETTY_PRINT : 0));
    Tamo::FastInfoset::FastInfosetParser parser;
    parser.setStrict(!_options.lenient);
    parser.setCanonicalNumbers(_options.canonicalNumbers);
    _vocabularies.setStrict(!_options.lenient);
    X3D::addDecodings(parser.decodingAlgorithms());
    parser.setExternalVocabularyLoader(&_vocabularies);
    parser.setLimits(_options.limits);
    Tamo::XML::InputSource source(in);
    FinfError::explainDamage([&] {
        if (_options.pretty) {
            // The white space of an indentation that the document has already would count as text.
            Tamo::XML::WhitespaceFilter filter(&parser);
            filter.setContentHandler(&writer);
            filter.setDTDHandler(&writer);
            filter.setProperty(Tamo::XML::XMLReader::PROPERTY_LEXICAL_HANDLER,
                               static_cast<void*>(static_cast<Tamo::XML::LexicalHandler*>(&writer)));
            filter.parse(&source);
        } else {
            parser.initialize(&writer);
            parser.parse(&source);
        }
    });
}

} // namespace finf
