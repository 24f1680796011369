// Documents as trees of pugixml and libxml2: both are refused for the same reason or both are there, what is
// saved of them is one document, and what pugixml writes of its tree as text is well-formed.
#include "Failure.h"
#include "FuzzSupport.h"
#include "Tamo/FastInfoset/adapters/libxml2.h"
#include "Tamo/FastInfoset/adapters/pugixml.h"
#include "TreeTexts.h"
#include <libxml/parser.h>
#include <sstream>

using namespace Tamo::FastInfoset;
using namespace Tamo::FastInfoset::Fuzz;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string document(reinterpret_cast<const char*>(data), size);
    Loader loader(document);
    const Adapters::LoadOptions options{
        .limits = limits(), .strict = isForStrictMode(document), .pVocabularyLoader = &loader};
    pugi::xml_document ofPugixml;
    Adapters::LibxmlDocument pOfLibxml;
    const std::string failure =
        Test::failureOf([&] { Adapters::loadDocument(document, ofPugixml, options); });
    const std::string libxmlsFailure =
        Test::failureOf([&] { pOfLibxml = Adapters::loadDocument(document, options); });
    require(failure == libxmlsFailure, "both libraries get the tree or none", failure, libxmlsFailure);
    if (!failure.empty()) {
        return 0;
    }

    std::ostringstream saved;
    Adapters::save(ofPugixml, saved);
    pugi::xml_document again;
    Adapters::loadDocument(saved.str(), again, {.limits = limits()});
    const std::string saves = Adapters::Test::textOf(ofPugixml);
    const std::string loads = Adapters::Test::textOf(again);
    require(saves == loads, "what is saved is loaded again", saves, loads);

    // Not what libxml2 writes, which does not escape namespace names.
    std::ostringstream text;
    ofPugixml.print(text, "", pugi::format_raw);
    const std::string xml = text.str();
    xmlParserCtxt* const pParser = xmlNewParserCtxt();
    const Adapters::LibxmlDocument pParsed(
        xmlCtxtReadMemory(pParser, xml.data(), static_cast<int>(xml.size()), nullptr, "UTF-8",
                          XML_PARSE_NONET | XML_PARSE_HUGE | XML_PARSE_NOERROR | XML_PARSE_NOWARNING));
    const auto* const pError = xmlCtxtGetLastError(pParser);
    const std::string message = pError && pError->message ? pError->message : "";
    xmlFreeParserCtxt(pParser);
    require(pParsed != nullptr, "what a tree is as text can be read", message, xml);
    return 0;
}
