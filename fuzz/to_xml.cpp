// Converter::convertToXML: what it accepts is well-formed XML with the document's information, and converts
// back.
#include "FuzzSupport.h"
#include "Tamo/XML/XMLWriter.h"

using namespace Tamo;
using namespace Tamo::FastInfoset::Fuzz;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string document(reinterpret_cast<const char*>(data), size);
    const bool isStrict = isForStrictMode(document);
    const Outcome information = informationOfFIS(document, isStrict);
    if (information.isForeign || information.failure.starts_with("FISException: Limit exceeded")) {
        return 0; // the converter opens files and has no limits
    }
    const Outcome xml = convertedToXML(document, 0, isStrict);
    if (xml.failed()) {
        return 0;
    }
    require(!information.failed(), "what is converted can be read", information.failure, xml.events);
    requireProportion(xml, size, information.delivered);
    const Outcome read = informationOfXML(xml.events);
    if (information.hasRecentNames && read.failure == "SAXParseException: not well-formed (invalid token)") {
        return 0; // the writer follows the fifth edition of XML 1.0, Expat the fourth
    }
    require(!read.failed(), "XML text is well-formed", read.failure, xml.events);
    require(read.events == information.events, "XML text has the same information", information.events,
            read.events);

    const Outcome again = convertedToFIS(xml.events, 16);
    require(!again.failed(), "XML text converts back", again.failure, xml.events);
    const Outcome back = convertedToXML(again.events, 0);
    require(!back.failed(), "and forth", back.failure, xml.events);
    require(informationOfXML(back.events).events == read.events, "twice converted it is the same", xml.events,
            back.events);

    const Outcome pretty = convertedToXML(
        document, XML::XMLWriter::WRITE_XML_DECLARATION | XML::XMLWriter::PRETTY_PRINT, isStrict);
    const Outcome readPretty = informationOfXML(pretty.events);
    require(!pretty.failed() && !readPretty.failed(), "pretty XML text is well-formed", readPretty.failure,
            pretty.events);
    return 0;
}
