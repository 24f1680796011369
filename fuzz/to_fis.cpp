// Converter::convertToFIS: what it makes of XML text can be read, and holds the information of the text.
#include "FuzzSupport.h"

using namespace Tamo;
using namespace Tamo::FastInfoset;
using namespace Tamo::FastInfoset::Fuzz;

namespace {

// In ISO-8859-1 Expat takes U+00AA, U+00B5 and U+00BA for letters of names, which XMLWriter refuses.
bool isLatin1Name(const std::string& xml, const Outcome& back) {
    return back.failure.ends_with("is no XML name") && xml.find_first_of("\xAA\xB5\xBA") != std::string::npos;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string xml(reinterpret_cast<const char*>(data), size);
    const bool isStrict = isForStrictMode(xml);
    const Outcome original = informationOfXML(xml);
    for (const int maxIndexed : {0, 16, -1}) {
        const Outcome document = convertedToFIS(xml, maxIndexed, false, isStrict);
        if (original.failed()) {
            require(document.failure == original.failure, "the parser's failure passes", original.failure,
                    document.failure);
            return 0;
        }
        if (document.failed()) {
            return 0;
        }
        requireProportion(document, size, original.delivered);
        const Outcome read = informationOfFIS(document.events, isStrict);
        if (read.failure.starts_with("FISException: Limit exceeded")) {
            return 0;
        }
        require(!read.failed(), "what is written can be read", read.failure, xml);
        require(read.events == original.events, "it holds the same information", original.events,
                read.events);
        const Outcome back = convertedToXML(document.events, 0, isStrict);
        if (isLatin1Name(xml, back)) {
            return 0;
        }
        require(!back.failed(), "it converts back", back.failure, xml);
        require(informationOfXML(back.events).events == original.events, "and is the same", xml, back.events);
    }
    const Outcome stripped = convertedToFIS(xml, 16, true, isStrict);
    require(!stripped.failed() && !convertedToXML(stripped.events, 0, isStrict).failed(),
            "without white space too", stripped.failure, xml);
    return 0;
}
