#include "convert/FastInfosetToXML.h"
#include "Tamo/FastInfoset/FastInfosetParser.h"
#include "Tamo/XML/InputSource.h"
#include "Tamo/XML/XMLWriter.h"
#include "command/FinfError.h"

namespace finf {

void FastInfosetToXML::convert(std::istream& in, std::ostream& out) {
    Tamo::XML::XMLWriter writer(out, Tamo::XML::XMLWriter::WRITE_XML_DECLARATION);
    Tamo::FastInfoset::FastInfosetParser parser;
    parser.setExternalVocabularyLoader(&_vocabularies);
    parser.setLimits(_options.limits);
    parser.initialize(&writer);
    Tamo::XML::InputSource source(in);
    FinfError::explainDamage([&] { parser.parse(&source); });
}

} // namespace finf
