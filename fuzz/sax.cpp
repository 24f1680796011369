// XML text through SAXParser, from memory and from streams, and what XMLWriter makes of its events. The first
// octet chooses the features.
#include "DribblingStream.h"
#include "Failure.h"
#include "FuzzSupport.h"
#include "Tamo/MemoryStream.h"
#include "Tamo/XML/EntityResolver.h"
#include "Tamo/XML/InputSource.h"
#include "Tamo/XML/SAXException.h"
#include "Tamo/XML/SAXParser.h"
#include "Tamo/XML/XMLWriter.h"
#include <sstream>

using namespace Tamo;
using namespace Tamo::FastInfoset::Fuzz;
using namespace Tamo::XML;

namespace {

// Entities without any file: they contain each other, text, and a declaration.
class Resolver : public EntityResolver {
public:
    InputSource* resolveEntity(const std::string*, const std::string& systemId) override {
        static const std::string TEXTS[] = {"<b>x</b>&e;", "<!ENTITY f 'g'><!ATTLIST a b CDATA 'c'>", "plain",
                                            "<?xml encoding='ISO-8859-1'?>\xE4&f;"};
        const std::string& text = TEXTS[systemId.size() % 4];
        auto pStream = std::make_unique<MemoryInputStream>(text.data(), text.size());
        auto pSource = std::make_unique<InputSource>(*pStream);
        pSource->setSystemId(systemId);
        _streams.push_back(std::move(pStream));
        return pSource.release();
    }
    void releaseInputSource(InputSource* pSource) override { delete pSource; }

private:
    std::vector<std::unique_ptr<std::istream>> _streams;
};

// The class, message and place of a failure.
Outcome outcomeOf(SAXParser& parser, Trace& trace, const std::function<void()>& use) {
    trace.connect(parser);
    std::string place;
    const std::string failure = FastInfoset::Test::failureOf([&] {
        try {
            use();
        } catch (const SAXParseException& e) {
            place = " " + std::to_string(e.getLineNumber()) + ":" + std::to_string(e.getColumnNumber());
            throw;
        }
    });
    return {failure + place, trace.text(), false, false, 0};
}

void requireEqual(const Outcome& first, const Outcome& second) {
    require(first.failure == second.failure, "sources fail alike", first.failure, second.failure);
    require(first.events == second.events, "sources deliver the same", first.events, second.events);
}

// What is well-formed can be written and means the same, with exceptions that Namespaces in XML makes.
void rewrite(const std::string& xml, const Outcome& information) {
    std::ostringstream out;
    XMLWriter writer(out);
    SAXParser parser;
    parser.setContentHandler(&writer);
    parser.setDTDHandler(&writer);
    parser.setLexicalHandler(&writer);
    const std::string failure =
        FastInfoset::Test::failureOf([&] { parser.parseMemoryNP(xml.data(), xml.size()); });
    if (!failure.empty()) {
        // Colons in names that are no qualified names pass the parser, and a reference to an entity that only
        // an external subset declares passes where the writer sees none.
        const bool isKnown = failure.find("is no XML name") != std::string::npos ||
                             failure.find("is declared nowhere") != std::string::npos;
        require(isKnown, "well-formed XML can be written", xml, failure);
        return;
    }
    requireProportion({failure, out.str()}, xml.size(), information.delivered);
    const Outcome again = informationOfXML(out.str());
    require(!again.failed(), "what is written is well-formed", again.failure, out.str());
    require(again.events == information.events, "what is written means the same", information.events,
            again.events);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 1) {
        return 0;
    }
    const unsigned int features = data[0];
    const std::string xml(reinterpret_cast<const char*>(data) + 1, size - 1);
    Resolver resolver;
    SAXParser parser;
    parser.setEntityResolver(&resolver);
    parser.setFeature(XMLReader::FEATURE_NAMESPACES, (features & 1) == 0);
    parser.setFeature(SAXParser::FEATURE_DECLARATIONS_FIRST, (features & 2) != 0);
    parser.setFeature(XMLReader::FEATURE_EXTERNAL_GENERAL_ENTITIES, (features & 4) != 0);
    parser.setFeature(XMLReader::FEATURE_EXTERNAL_PARAMETER_ENTITIES, (features & 8) != 0);

    Trace fromMemory;
    const Block block(xml);
    const Outcome memory =
        outcomeOf(parser, fromMemory, [&] { parser.parseMemoryNP(block.data(), block.size()); });
    for (const bool dribbling : {false, true}) {
        MemoryInputStream whole(xml.data(), xml.size());
        FastInfoset::Test::DribblingStream dribble(xml);
        InputSource source(dribbling ? static_cast<std::istream&>(dribble) : whole);
        Trace fromStream;
        requireEqual(memory, outcomeOf(parser, fromStream, [&] { parser.parse(&source); }));
    }
    if (features < 16) {
        const Outcome information = informationOfXML(xml);
        if (!information.failed()) {
            rewrite(xml, information);
        }
    }
    return 0;
}
