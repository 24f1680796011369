// FastInfosetWriter fed with any events: a document with the same events, or an exception. The order of
// events is the application's matter: where it is wrong, nothing more is asked than that no harm is done. The
// strict mode refuses whatever is wrong in one way, and moves declarations to the front.
#include "EventScript.h"
#include "Failure.h"
#include "FuzzSupport.h"
#include "KeptEvents.h"
#include "Octets.h"
#include "Tamo/FastInfoset/FastInfosetParser.h"
#include "Tamo/FastInfoset/FastInfosetWriter.h"
#include "Tamo/FastInfoset/SharedVocabulary.h"
#include "Tamo/XML/Name.h"
#include <array>
#include <memory>
#include <sstream>

using namespace Tamo;
using namespace Tamo::FastInfoset;
using namespace Tamo::FastInfoset::Fuzz;

namespace {

// The events without prefixes, which the writer may have chosen itself, and with names as the writer takes
// them.
class WithoutPrefixes : public KeptEvents {
public:
    void startElement(const std::string& uri, const std::string& localName, const std::string& qname,
                      const XML::Attributes& attributes) override {
        XML::AttributesImpl named;
        for (int i = 0; i < attributes.getLength(); ++i) {
            const std::string& attributeName = attributes.getLocalName(i);
            named.addAttribute(attributes.getURI(i),
                               attributeName.empty() ? XML::Name::localName(attributes.getQName(i))
                                                     : attributeName,
                               std::string(), "CDATA", attributes.getValue(i));
        }
        KeptEvents::startElement(uri, localName.empty() ? qname : localName, qname, named);
    }
    void endElement(const std::string& uri, const std::string& localName, const std::string& qname) override {
        KeptEvents::endElement(uri, localName.empty() ? qname : localName, qname);
    }
    void startDTD(const std::string&, const std::string& publicId, const std::string& systemId) override {
        KeptEvents::startDTD(std::string(), publicId, systemId); // the format has no name there
    }
    void skippedEntity(const std::string&) override {}
};

// A vocabulary with names and strings of the events.
const std::shared_ptr<const SharedVocabulary>& sharedVocabulary() {
    static const auto pVocabulary = [] {
        std::istringstream xml("<p:a xmlns:p='u' p:b='' b='text'><b/><c xmlns='u'>text</c></p:a>");
        return SharedVocabulary::of(ExternalVocabularyLoader::loadXML(xml, true));
    }();
    return pVocabulary;
}

// A document in order.
std::string written(FastInfosetWriter& writer, std::ostringstream& out) {
    writer.setWriteXMLDeclaration(false);
    writer.setMaxIndexedStringLength(16);
    writer.startDocument();
    writer.startPrefixMapping("p", "u");
    writer.startElement("u", "a", "p:a");
    writer.emptyElement("", "b", "b");
    writer.endElement("u", "a", "p:a");
    writer.endPrefixMapping("p");
    writer.endDocument();
    return out.str();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static constexpr std::array MAX_INDEXED{16, 0, -1};
    EventScript script(data, size);
    std::ostringstream out;
    std::ostringstream second;
    FastInfosetWriter writer(out, (script.choice() & 4) != 0,
                             (script.choice() & 8) != 0 ? DocumentVocabulary::VOC_HASH
                                                        : DocumentVocabulary::VOC_MAP);
    writer.setMaxIndexedStringLength(MAX_INDEXED[script.choice() % MAX_INDEXED.size()]);
    const bool isStrict = (script.choice() & 16) != 0;
    writer.setStrict(isStrict);
    const bool isShared = (script.choice() & 32) != 0;
    if (isShared) {
        writer.useVocabulary(sharedVocabulary());
    }
    const auto write = [&] {
        return Test::failureOf([&] { script.play({writer, writer, writer, &writer}); });
    };
    const std::string failure = write();
    require(!isStrict || failure.empty() || failure.starts_with("FISEncodingException: "),
            "the strict mode says what it refuses", failure);

    FastInfosetParser parser(DocumentVocabulary::VOC_MAP);
    parser.setLimits(limits());
    if (isShared) {
        parser.useVocabulary(sharedVocabulary());
    }
    WithoutPrefixes read;
    read.connect(parser);
    const Block document(out.view());
    const std::string readFailure =
        Test::failureOf([&] { parser.parseMemoryNP(document.data(), document.size()); });
    if (script.isTidy() && failure.empty()) {
        WithoutPrefixes reported;
        script.play({reported, reported, reported, &reported});
        require(readFailure.empty(), "what is written can be read", readFailure, reported.events());
        require(isStrict || read.events() == reported.events(), "the events are the same", reported.events(),
                read.events());
    }

    // Whatever has become of it, the writer writes the next document as a new one does.
    writer.reset(second);
    if (script.isTidy()) {
        const std::string secondFailure = write();
        require(secondFailure == failure, "the next document fails alike", failure, secondFailure);
        require(second.view() == out.view(), "the octets are the same after reset()", Test::hex(out.view()),
                Test::hex(second.view()));
    } else {
        const std::string next = written(writer, second);
        std::ostringstream fresh;
        FastInfosetWriter other(fresh);
        other.setStrict(isStrict);
        if (isShared) {
            other.useVocabulary(sharedVocabulary());
        }
        require(next == written(other, fresh), "a writer is ready again after reset()", Test::hex(next));
    }
    return 0;
}
