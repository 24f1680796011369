// Validates Fast Infoset documents by an XML Schema of libxml2, with neither XML text nor a tree in between.
#include "Tamo/FastInfoset/Converter.h"
#include "Tamo/FastInfoset/adapters/libxml2-sax.h"
#include <cstdarg>
#include <cstdio>
#include <iostream>
#include <libxml/xmlschemas.h>
#include <memory>
#include <sstream>

namespace Adapters = Tamo::FastInfoset::Adapters;

namespace {

constexpr std::string_view SCHEMA = R"(<xs:schema xmlns:xs="http://www.w3.org/2001/XMLSchema">
  <xs:element name="order"><xs:complexType><xs:sequence>
    <xs:element name="amount" type="xs:int" maxOccurs="unbounded"/>
  </xs:sequence><xs:attribute name="date" type="xs:date" use="required"/></xs:complexType></xs:element>
</xs:schema>)";

std::string encoded(const std::string& xml) {
    std::istringstream in(xml);
    std::ostringstream octets;
    Tamo::FastInfoset::Converter::convertToFIS(in, octets, 16, 0);
    return octets.str();
}

// [validate]
void printError(void*, const char* format, ...) __attribute__((format(printf, 2, 3)));
void printError(void*, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    char text[512];
    std::vsnprintf(text, sizeof(text), format, arguments);
    va_end(arguments);
    std::cout << text;
}

bool isValid(std::string_view octets, xmlSchema* pSchema) {
    const std::unique_ptr<xmlSchemaValidCtxt, void (*)(xmlSchemaValidCtxt*)> pValidation(
        xmlSchemaNewValidCtxt(pSchema), xmlSchemaFreeValidCtxt);
    xmlSchemaSetValidErrors(pValidation.get(), printError, printError, nullptr);
    xmlSAXHandler* pHandler = nullptr; // of the validation
    void* pContext = nullptr;
    const std::unique_ptr<xmlSchemaSAXPlugStruct, int (*)(xmlSchemaSAXPlugPtr)> pPlug(
        xmlSchemaSAXPlug(pValidation.get(), &pHandler, &pContext), xmlSchemaSAXUnplug);
    Adapters::report(octets, *pHandler, pContext);
    return xmlSchemaIsValid(pValidation.get()) == 1;
}
// [/validate]

} // namespace

int main() {
    try {
        const std::unique_ptr<xmlSchemaParserCtxt, void (*)(xmlSchemaParserCtxt*)> pParser(
            xmlSchemaNewMemParserCtxt(SCHEMA.data(), static_cast<int>(SCHEMA.size())),
            xmlSchemaFreeParserCtxt);
        const std::unique_ptr<xmlSchema, void (*)(xmlSchema*)> pSchema(xmlSchemaParse(pParser.get()),
                                                                       xmlSchemaFree);
        for (const char* const xml :
             {"<order date='2026-05-04'><amount>3</amount><amount>40</amount></order>",
              "<order date='May'><amount>three</amount></order>"}) {
            std::cout << (isValid(encoded(xml), pSchema.get()) ? "valid\n" : "not valid\n");
        }
    } catch (const std::exception& e) {
        std::cerr << e.what() << '\n';
        return 1;
    }
    return 0;
}
