// XML text to Fast Infoset and back.
#include "Tamo/FastInfoset/Converter.h"
#include "DocumentTest.h"
#include "Tamo/FastInfoset/FastInfosetToXML.h"
#include "Tamo/FastInfoset/Utility.h"
#include "Tamo/FastInfoset/XMLToFastInfoset.h"
#include "Tamo/SpanSink.h"
#include "Tamo/XML/SAXParser.h"
#include "Tamo/XML/XMLWriter.h"
#include <array>
#include <filesystem>
#include <fstream>

namespace Tamo::FastInfoset::Test {
namespace {

std::string toFastInfoset(const std::string& xml, int maxIndexedStringLength = 16, int options = 0) {
    std::istringstream in(xml);
    std::ostringstream out;
    Converter::convertToFIS(in, out, maxIndexedStringLength, options);
    return out.str();
}

std::string toXML(const std::string& fastInfoset, int options = 0) {
    std::istringstream in(fastInfoset);
    std::ostringstream out;
    Converter::convertToXML(in, out, options);
    return out.str();
}

template<class Reader>
std::string informationOf(Reader& reader, const std::string& document) {
    EventRecorder recorder(EventRecorder::INFORMATION);
    recorder.connect(reader);
    std::istringstream stream(document);
    reader.parse(stream);
    std::string events = recorder.events();
    const std::size_t empty = events.find("[|]|"); // which a Fast Infoset document has no form for
    return empty == std::string::npos ? events : events.erase(empty, 4);
}

std::string informationInXML(const std::string& xml) {
    XML::SAXParser parser;
    parser.setFeature(XML::SAXParser::FEATURE_DECLARATIONS_FIRST, true);
    return informationOf(parser, xml);
}

TEST(ConverterTest, TheInformationComesBack) {
    for (const auto& file : std::filesystem::directory_iterator(TAMO_TEST_DATA "/roundtrip")) {
        SCOPED_TRACE(file.path());
        std::ostringstream xml;
        xml << std::ifstream(file.path(), std::ios::binary).rdbuf();
        const std::string information = informationInXML(xml.str());
        for (const int maxIndexedStringLength : {16, 0, -1}) {
            const std::string fastInfoset = toFastInfoset(xml.str(), maxIndexedStringLength);
            FastInfosetParser parser;
            EXPECT_EQ(informationOf(parser, fastInfoset), information);
            EXPECT_EQ(informationInXML(toXML(fastInfoset)), information);
        }
    }
}

// A document as a technical report was marked up: what is information survives, entities and defaults are
// resolved, and the text that comes out is pinned.
TEST(ConverterTest, DeclarationsAndReferences) {
    const char* const xml = R"(<?xml version="1.0" encoding="ISO-8859-1" standalone="no"?>
<!-- before -->
<!DOCTYPE r:report PUBLIC "-//T//DTD Report//EN" "report.dtd" [
  <!-- not reported -->
  <!NOTATION gif PUBLIC "-//T//NOTATION GIF//EN">
  <!NOTATION png PUBLIC "-//T//NOTATION PNG//EN" "png.exe">
  <!ENTITY figure SYSTEM "figure.gif" NDATA gif>
  <!ENTITY photo PUBLIC "-//T//Photo//EN" "photo.png" NDATA png>
  <!ENTITY name "F&#233;d&#233;ration">
  <!ENTITY para '<p>&name; &amp; others</p>'>
  <!ATTLIST p class CDATA "plain" xml:lang NMTOKEN "fr">
  <!ATTLIST image src ENTITY #REQUIRED>
  <?style compact?>
]>
<?xml-stylesheet href="a.css"?>
<r:report xmlns:r="urn:r" xmlns="urn:x" r:status="WD" date='2&#xB0;'>&para;<image src="figure"/>
<code><![CDATA[if (a<b && c]]>]]&gt;</code>&#x1F600;</r:report>
<!-- after -->)";
    EXPECT_EQ(toXML(toFastInfoset(xml)), R"(<!-- before -->
<!DOCTYPE r:report PUBLIC "-//T//DTD Report//EN" "report.dtd" [
<!NOTATION gif PUBLIC "-//T//NOTATION GIF//EN">
<!NOTATION png PUBLIC "-//T//NOTATION PNG//EN" "png.exe">
<!ENTITY figure SYSTEM "figure.gif" NDATA gif>
<!ENTITY photo PUBLIC "-//T//Photo//EN" "photo.png" NDATA png>
<?style compact?>
]>
<?xml-stylesheet href="a.css"?>
<r:report xmlns="urn:x" xmlns:r="urn:r" r:status="WD" date="2°"><p class="plain" xml:lang="fr">Fédération &amp; others</p><image src="figure"/>
<code><![CDATA[if (a<b && c]]>]]&gt;</code>😀</r:report>
<!-- after -->)");
}

TEST(ConverterTest, Options) {
    const std::string xml = "<a>\n  <b> x </b>\n</a>";
    const std::string all = toFastInfoset(xml);
    EXPECT_EQ(eventsOf(all), "^|<a|'\n  |<b|' x |>|'\n|>|$");
    const std::string stripped = toFastInfoset(xml, 16, 1);
    EXPECT_EQ(eventsOf(stripped), "^|<a|<b|' x |>|>|$");
    EXPECT_EQ(toFastInfoset(xml, 16, 0x80), stripped);
    EXPECT_EQ(toFastInfoset(xml, 16, 0x7E), all);
    std::istringstream in(xml);
    std::ostringstream out;
    Utility::convertToFIS(in, out, 16);
    EXPECT_EQ(out.str(), all);
    std::istringstream back(all);
    std::ostringstream text;
    Utility::convertToXML(back, text);
    EXPECT_EQ(text.str(), toXML(all, 1));
    EXPECT_TRUE(text.str().starts_with("<?xml version=\"1.0\" encoding=\"UTF-8\"?>"));
    EXPECT_EQ(toXML(all), xml);
    const std::string twice = "<a>" + std::string(20, 'x') + "<b/>" + std::string(20, 'x') + "</a>";
    EXPECT_EQ(toFastInfoset(twice).size(), toFastInfoset(twice, -1).size() + 21);
}

TEST(ConverterTest, Failures) {
    std::istringstream in("<a>\n<b></a>");
    std::ostringstream out;
    EXPECT_FAILURE("SAXParseException: mismatched tag", Utility::convertToFIS(in, out, 16));
    EXPECT_FAILURE("FISException: Not a valid Fast Infoset document (invalid header)", toXML("<a/>"));
    EXPECT_FAILURE("XMLException: Cannot write element name: \" \" is no XML name",
                   toXML(document("00 3C 00 20 FF")));
    BoundedStream full(3);
    std::istringstream good("<a/>");
    EXPECT_FAILURE("IOException: error while writing Fast Infoset document to stream",
                   Utility::convertToFIS(good, full, 16));
}

// One object for all documents, whatever has become of the last one, does what is made anew for each.
template<class Kept, class Convert>
std::vector<std::string> expectAsAnew(const std::vector<std::string>& documents,
                                      const Converter::Options& options, const Convert& convert) {
    Kept kept(options);
    std::vector<std::string> results;
    for (int round = 0; round < 2; ++round) {
        for (const std::string& document : documents) {
            std::istringstream in(document);
            std::istringstream again(document);
            std::ostringstream expected;
            std::ostringstream out;
            const std::string failure = failureOf([&] { convert(in, expected, options); });
            EXPECT_EQ(failureOf([&] { kept.convert(again, out); }), failure) << document;
            EXPECT_EQ(hex(out.str()), hex(expected.str())) << document;
            BoundedStream full(3);
            std::istringstream more(document);
            EXPECT_NE(failureOf([&] { kept.convert(more, full); }), "") << document;
            std::string text;
            const std::string inMemory = failureOf([&] { text = kept.convert(document); });
            EXPECT_EQ(inMemory.empty(), failure.empty()) << inMemory << failure;
            EXPECT_EQ(hex(text), hex(failure.empty() ? expected.str() : "")) << document;
            std::array<std::byte, 3> octets{};
            SpanSink sink(octets);
            EXPECT_NE(failureOf([&] { kept.convert(document, sink); }), "") << document;
            if (failure.empty()) {
                EXPECT_EQ(failureOf([&] { kept.convert(document, sink); }),
                          "IOException: no place left in the span of 3 octets");
            }
            results.push_back(expected.str());
        }
    }
    return results;
}

TEST(ConverterTest, ObjectsThatAreKept) {
    const std::vector<std::string> xml{
        "<p:a xmlns:p='u' xmlns='v' b='1'><p:c> </p:c><c/><a xml:space='preserve'> </a></p:a>",
        "<!DOCTYPE a [<!NOTATION n PUBLIC 'p'><!ENTITY e SYSTEM 's' NDATA n>]><a xmlns='w'><!--c-->&lt;</a>",
        "<a><b c='d'>" + std::string(70000, 'x') + "</a>",
        "",
        "<a xmlns:p='w' p:b='1'><![CDATA[x]]>\n<?t d?><d/>\n</a>",
        "<!DOCTYPE a [<!ENTITY e '<b/>'>]><a>&e;&f;</a>",
        "<a/>"};
    for (const bool strict : {false, true}) {
        for (const bool flag : {false, true}) {
            Converter::Options options;
            options.strict = strict;
            options.stripWhitespace = flag;
            options.xmlOptions = flag ? XML::XMLWriter::PRETTY_PRINT : 0;
            std::vector<std::string> documents = expectAsAnew<XMLToFastInfoset>(
                xml, options, [](std::istream& in, std::ostream& out, const Converter::Options& all) {
                    Converter::convertToFIS(in, out, all);
                });
            documents.resize(xml.size());
            documents.push_back(document("00 3C 00 61 3C 00 20 FF F0")); // no name of XML
            documents.push_back(document("00 38 CF 00 70 00 75 F0 3F 81 81 00 61"));
            documents.insert(documents.end(), everyConstruct(strict).begin(), everyConstruct(strict).end());
            documents.push_back(documents.front());
            expectAsAnew<FastInfosetToXML>(
                documents, options, [](std::istream& in, std::ostream& out, const Converter::Options& all) {
                    Converter::convertToXML(in, out, all);
                });
        }
    }
}

} // namespace
} // namespace Tamo::FastInfoset::Test
