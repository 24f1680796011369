// Documents as trees of pugixml and libxml2: both are refused for the same reason or both are there, what is
// saved of them is one document, and what libxml2 writes of its tree as text is well-formed.
#include "Failure.h"
#include "FuzzSupport.h"
#include "Tamo/FastInfoset/adapters/libxml2.h"
#include "Tamo/FastInfoset/adapters/pugixml.h"
#include <libxml/parser.h>
#include <memory>
#include <sstream>

using namespace Tamo::FastInfoset;
using namespace Tamo::FastInfoset::Fuzz;

namespace {

std::string printed(const pugi::xml_document& document) {
    std::ostringstream out;
    document.print(out, "", pugi::format_raw);
    return out.str();
}

struct Free {
    void operator()(xmlChar* text) const noexcept { xmlFree(text); }
};

std::string dumped(xmlDoc* pDocument) {
    xmlChar* pText = nullptr;
    int size = 0;
    xmlDocDumpMemoryEnc(pDocument, &pText, &size, "UTF-8");
    const std::unique_ptr<xmlChar, Free> pOwner(pText);
    return {reinterpret_cast<const char*>(pText), static_cast<std::size_t>(size)};
}

// What trees are not looked at for, and text cannot have: two attributes of one name.
bool isTwice(const xmlError* pError) {
    return pError &&
           (pError->code == XML_ERR_ATTRIBUTE_REDEFINED || pError->code == XML_NS_ERR_ATTRIBUTE_REDEFINED);
}

} // namespace

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
    require(printed(again) == printed(ofPugixml), "what is saved is loaded again", printed(ofPugixml),
            printed(again));

    // References to entities that are nowhere declared are text's fault.
    const std::string text = dumped(pOfLibxml.get());
    xmlParserCtxt* const pParser = xmlNewParserCtxt();
    const Adapters::LibxmlDocument pParsed(
        xmlCtxtReadMemory(pParser, text.data(), static_cast<int>(text.size()), nullptr, "UTF-8",
                          XML_PARSE_NONET | XML_PARSE_HUGE | XML_PARSE_NOERROR | XML_PARSE_NOWARNING));
    const auto* const pError = xmlCtxtGetLastError(pParser);
    const bool isAllowed = isTwice(pError) || (pError && pError->code == XML_ERR_UNDECLARED_ENTITY);
    const std::string message = pError && pError->message ? pError->message : "";
    xmlFreeParserCtxt(pParser);
    require(pParsed || isAllowed, "libxml2 reads what it writes", message, text);
    return 0;
}
