// XMLWriter fed with any events: namespace-well-formed XML with the information of the events, or an
// exception.
#include "EventScript.h"
#include "Failure.h"
#include "FuzzSupport.h"
#include "Tamo/XML/XMLWriter.h"
#include <sstream>

using namespace Tamo;
using namespace Tamo::FastInfoset::Fuzz;

namespace {

// The information of the events as a writer has to take them: a name without namespace processing is the
// qualified one.
class Reported : public Information {
public:
    void startElement(const std::string& uri, const std::string& localName, const std::string& qname,
                      const XML::Attributes& attributes) override {
        XML::AttributesImpl named;
        for (int i = 0; i < attributes.getLength(); ++i) {
            named.addAttribute(attributes.getURI(i),
                               orElse(attributes.getLocalName(i), attributes.getQName(i)), std::string(),
                               "CDATA", attributes.getValue(i));
        }
        Information::startElement(uri, orElse(localName, qname), qname, named);
    }
    void endElement(const std::string& uri, const std::string& localName, const std::string& qname) override {
        Information::endElement(uri, orElse(localName, qname), qname);
    }
    // A parser does not report the comments of a document type declaration.
    void startDTD(const std::string& name, const std::string& publicId,
                  const std::string& systemId) override {
        _isDeclaring = true;
        Information::startDTD(name, publicId, systemId);
    }
    void endDTD() override {
        _isDeclaring = false;
        Information::endDTD();
    }
    void comment(const char ch[], int start, int length) override {
        if (!_isDeclaring) {
            Information::comment(ch, start, length);
        }
    }

private:
    bool _isDeclaring = false;

    static const std::string& orElse(const std::string& localName, const std::string& qname) {
        return localName.empty() ? qname : localName;
    }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    EventScript script(data, size);
    std::ostringstream out;
    const auto write = [&](XML::XMLWriter& writer) {
        return FastInfoset::Test::failureOf([&] { script.play({writer, writer, writer}); });
    };
    const bool isPretty = (script.choice() & 1) != 0;
    const int options = (isPretty ? XML::XMLWriter::PRETTY_PRINT : 0) |
                        ((script.choice() & 2) != 0 ? XML::XMLWriter::WRITE_XML_DECLARATION : 0);
    {
        XML::XMLWriter writer(out, options);
        const std::string failure = write(writer);
        if (!failure.empty()) {
            const std::string after = FastInfoset::Test::failureOf([&] { writer.startDocument(); });
            require(after.starts_with("XMLException"), "nothing is written after a failure", failure, after);
            return 0;
        }
        const std::string first = out.str();
        out.str("");
        if (script.isTidy()) {
            require(write(writer).empty() && out.view() == first, "a second document is written alike", first,
                    out.str());
        } else {
            return 0; // it may not have come to its end
        }
    }
    Reported reported;
    script.play({reported, reported, reported});
    const Outcome read = informationOfXML(out.str());
    if (reported.hasRecentNames() && read.failure == "SAXParseException: not well-formed (invalid token)") {
        return 0; // the writer follows the fifth edition of XML 1.0, Expat the fourth
    }
    require(!read.failed(), "XML text is well-formed", read.failure, out.str());
    if (!isPretty) {
        require(read.events == reported.information(), "XML text has the information of the events",
                reported.information(), read.events);
    }
    return 0;
}
