// A Fast Infoset document can hold any octets where XML has rules. Whatever stands where: XML text that means
// the same, or an XMLException; never ill-formed text, and never markup that the document does not have.
#include "../xml/Trace.h"
#include "DocumentTest.h"
#include "Tamo/FastInfoset/Converter.h"
#include "Tamo/XML/AttributesImpl.h"
#include "Tamo/XML/SAXParser.h"

namespace Tamo::FastInfoset::Test {
namespace {

using Writer = FastInfosetWriter;

// Expanded names and joined text; no name of the document type declaration, which the format does not carry;
// public identifiers as every parser of XML normalises them.
class Information : public Trace {
public:
    explicit Information(XML::XMLReader& reader) : Trace(INFORMATION) { connect(reader); }
    void setDocumentLocator(const XML::Locator*) override {}
    void startDTD(const std::string&, const std::string& publicId, const std::string& systemId) override {
        Trace::startDTD("", normalized(publicId), systemId);
    }
    void unparsedEntityDecl(const std::string& name, const std::string* publicId, const std::string& systemId,
                            const std::string& notationName) override {
        const std::string publicText = publicId ? normalized(*publicId) : "";
        Trace::unparsedEntityDecl(name, publicId ? &publicText : nullptr, systemId, notationName);
    }

private:
    static std::string normalized(const std::string& publicId) {
        std::istringstream words(publicId);
        std::string result;
        for (std::string word; words >> word;) {
            result += (result.empty() ? "" : " ") + word;
        }
        return result;
    }
};

using S = const std::string&;

// Where a text can stand, by a letter.
struct Place {
    char letter;
    void (*write)(Writer& writer, S text);
};

void element(Writer& writer, S uri, S localName, S qname, S attribute = "", S value = "",
             S attributeURI = "") {
    XML::AttributesImpl attributes;
    if (!attribute.empty()) {
        attributes.addAttribute(attributeURI, attribute, "", "CDATA", value);
    }
    writer.startElement(uri, localName, qname, attributes);
}

void a(Writer& writer) {
    element(writer, "", "a", "");
}

const Place PLACES[] = {
    {'e', [](Writer& w, S t) { element(w, "", t, ""); }},
    {'p', [](Writer& w, S t) { element(w, "u", "a", t + ":a"); }},
    {'u', [](Writer& w, S t) { element(w, t, "a", "p:a"); }},
    {'a', [](Writer& w, S t) { element(w, "", "a", "", t, "v"); }},
    {'v', [](Writer& w, S t) { element(w, "", "a", "", "b", t); }},
    {'w', [](Writer& w, S t) { element(w, "", "a", "", "b", "v", t); }},
    {'m', [](Writer& w, S t) { w.startPrefixMapping(t, "u"), element(w, "", "a", "", "b", "v", "u"); }},
    {'n', [](Writer& w, S t) { w.startPrefixMapping("p", t), a(w); }},
    {'t', [](Writer& w, S t) { a(w), w.characters(t); }},
    {'c', [](Writer& w, S t) { a(w), w.startCDATA(), w.characters(t), w.endCDATA(); }},
    {'k', [](Writer& w, S t) { w.comment(t), a(w); }},
    {'i', [](Writer& w, S t) { a(w), w.processingInstruction(t, "d"); }},
    {'d', [](Writer& w, S t) { a(w), w.processingInstruction("t", t); }},
    {'S', [](Writer& w, S t) { w.startDTD("", "", t), w.endDTD(), a(w); }},
    {'P', [](Writer& w, S t) { w.startDTD("", t, "s"), w.endDTD(), a(w); }},
    {'D',
     [](Writer& w, S t) { w.startDTD("", "", "s"), w.processingInstruction("t", t), w.endDTD(), a(w); }}};

// Declarations stand in front of the document.
const Place DECLARATIONS[] = {{'N', [](Writer& w, S t) { w.notationDecl(t, &t, nullptr); }},
                              {'Y', [](Writer& w, S t) { w.notationDecl("n", nullptr, &t); }},
                              {'E', [](Writer& w, S t) { w.unparsedEntityDecl(t, nullptr, "s", "n"); }},
                              {'Z', [](Writer& w, S t) { w.unparsedEntityDecl("e", nullptr, "s", t); }},
                              {'Q', [](Writer& w, S t) { w.unparsedEntityDecl("e", &t, "s", "n"); }}};

// "" when the text arrives as it is at that place of the XML text, else how the conversion fails.
std::string passed(const std::string& octets) {
    std::istringstream in(octets);
    std::ostringstream xml;
    const std::string failure = failureOf([&] { Converter::convertToXML(in, xml, 0); });
    if (!failure.empty()) {
        return failure;
    }
    FastInfosetParser parser;
    const Information expected(parser);
    parseMemory(parser, octets);
    XML::SAXParser sax;
    sax.setFeature(XML::SAXParser::FEATURE_DECLARATIONS_FIRST, true);
    const Information actual(sax);
    const std::string text = xml.str();
    EXPECT_EQ(failureOf([&] { sax.parseMemoryNP(text.data(), text.size()); }), "") << text;
    // A document type declaration that only holds declarations is there in XML text alone.
    std::string events = actual.text();
    if (const std::size_t dtd = events.find("(DTD ,, DTD) "); dtd != std::string::npos) {
        events.erase(dtd, 13);
    }
    EXPECT_EQ(events, expected.text()) << text;
    return "";
}

TEST(OutputSafetyTest, EveryTextAtEveryPlace) {
    using namespace std::string_literals;
    // Prefixes are never trusted, so that p and m take anything; what is no name is replaced.
    const struct {
        std::string text;
        const char* accepted;
    } rows[] = {{"x", "epuavwmntckidSPDNYEZQ"},
                {"xmlns", "epuvwmntckidSPDNYEZQ"},
                {"xml", "epuavwmntckdSPDNYEZQ"},
                {"a:b", "puvwmntckdSPDYQ"},
                {"1", "puvwmntckdSPDYQ"},
                {"a b", "puvwmntckdSPDYQ"},
                {"a='1'", "puvwmntckdSPDYQ"},
                {"a\"><b c='", "puvwmntckdD"},
                {"a><b/>", "puvwmntckdSDY"},
                {"\"]><b/>", "puvwmntckdSDY"},
                {"&e;", "puvwmntckdSDY"},
                {"]]><b/>", "puvwmntckdSDY"},
                {"a--><b/>", "puvwmntcdSDY"},
                {"-", "puvwmntcdSPDYQ"},
                {"?><b/>", "puvwmntckSY"},
                {" x", "puvwmntckSPYQ"},
                {"a\nb\tc", "puvwmntckdSDY"},
                {"a\rb", "puvwmntcPQ"},
                {"a\0b"s, "pm"},
                {"\x1F", "pm"},
                {"\xC3", "pm"},
                {"\xC0\xBC", "pm"},         // '<', overlong
                {"\xED\xA0\x80", "pm"},     // a surrogate
                {"\xEF\xBF\xBE", "pm"},     // U+FFFE
                {"\xF4\x90\x80\x80", "pm"}, // beyond Unicode
                {"http://www.w3.org/2000/xmlns/", "pvmntckdSPDYQ"},
                {"http://www.w3.org/XML/1998/namespace", "puvwmntckdSPDYQ"}};
    const auto check = [](const Place& place, const auto& row, const std::string& octets) {
        SCOPED_TRACE(std::string("place ") + place.letter + ": " + hex(row.text));
        const std::string failure = passed(octets);
        if (std::string_view(row.accepted).find(place.letter) != std::string_view::npos) {
            EXPECT_EQ(failure, "");
        } else {
            EXPECT_TRUE(failure.starts_with("XMLException: Cannot write ")) << failure;
        }
    };
    for (const auto& row : rows) {
        for (const Place& place : PLACES) {
            check(place, row, document([&](Writer& writer) {
                      writer.startDocument();
                      place.write(writer, row.text);
                      play(">|$", writer);
                  }));
        }
        for (const Place& place : DECLARATIONS) {
            check(place, row, document([&](Writer& writer) {
                      place.write(writer, row.text);
                      play("^|<a|>|$", writer);
                  }));
        }
    }
}

} // namespace
} // namespace Tamo::FastInfoset::Test
