#include "Tamo/XML/SAXParser.h"
#include "Tamo/Bugcheck.h"
#include "Tamo/XML/DefaultHandler.h"
#include "Tamo/XML/EntityResolver.h"
#include "Tamo/XML/InputSource.h"
#include "Tamo/XML/Locator.h"
#include "Tamo/XML/SAXException.h"
#include "Trace.h"
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <malloc.h>
#include <map>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <vector>

using namespace Tamo::XML;
using namespace std::string_literals;

namespace {

/// Serves entities from memory.
class MemoryResolver : public EntityResolver {
public:
    std::map<std::string, std::string> texts;
    int open = 0;

    InputSource* resolveEntity(const std::string*, const std::string& systemId) override {
        if (!texts.contains(systemId)) {
            return nullptr;
        }
        ++open;
        auto pSource = std::make_unique<InputSource>(systemId);
        pSource->setByteStream(new std::istringstream(texts[systemId]));
        return pSource.release();
    }

    void releaseInputSource(InputSource* pSource) override {
        --open;
        delete pSource->getByteStream();
        delete pSource;
    }
};

/// Throws at its n-th event.
struct Thrower : Trace {
    explicit Thrower(int n) : left(n) {}
    void event(const std::string&) override {
        if (--left == 0) {
            throw std::domain_error("stop");
        }
    }
    int left;
};

/// The calls of `characters`.
struct Runs : DefaultHandler {
    std::vector<std::string> runs;
    void characters(const char ch[], int start, int length) override {
        runs.emplace_back(ch + start, static_cast<std::size_t>(length));
    }
};

/// Says of itself what is not so, gives the text in two parts.
struct Liar : std::streambuf {
    Liar(std::string text, std::streamsize claim) : _text(std::move(text)), _claim(claim) {}
    std::streamsize showmanyc() override { return _claim < -1 ? throw std::runtime_error("no") : _claim; }
    int_type underflow() override {
        const std::size_t end = _at == 0 ? _text.size() / 3 : _text.size();
        setg(_text.data() + _at, _text.data() + _at, _text.data() + end);
        _at = end;
        return gptr() == egptr() ? traits_type::eof() : traits_type::to_int_type(*gptr());
    }
    std::string _text;
    std::streamsize _claim;
    std::size_t _at = 0;
};

/// The events of a parse, with the message and the place of its error.
std::string outcomeOf(const std::function<void(SAXParser&)>& parse) {
    Trace trace;
    SAXParser parser;
    trace.connect(parser);
    try {
        parse(parser);
    } catch (const SAXParseException& e) {
        return trace.text() + e.message() + numbered(" ", e.getLineNumber()) +
               numbered(":", e.getColumnNumber());
    }
    return trace.text();
}

const char* const EVERYTHING =
    "<?before d?><!--c-->"
    "<!DOCTYPE a PUBLIC 'p' 's' [<!NOTATION n SYSTEM 'ns'><?inside ?>"
    "<!ENTITY u SYSTEM 'us' NDATA n><!--dropped--><!ENTITY e 'text'>]>"
    "<!--between--><a xmlns:p='u' p:b='1'>x&e;y<![CDATA[z]]>&unknown;</a><?after?>";

} // namespace

TEST(SAXParser, ReportsEvents) {
    struct Row {
        const char* xml;
        const char* trace;
    };
    const Row rows[] = {
        {"<a/>", "<a> </a>"},
        {"<p:a xmlns:p='u' xmlns='v' p:x='1' y='2'><b/></p:a>",
         "+p=u +=v <{u}p:a y=2 {u}p:x=1> <{v}b> </{v}b> </{u}p:a> - -p"},
        {"<a xmlns='u'><b xmlns=''/></a>", "+=u <{u}a> += <b> </b> - </{u}a> -"},
        {"<p:a xmlns:p='u'><p:a xmlns:p='v'/><p:a/></p:a>",
         "+p=u <{u}p:a> +p=v <{v}p:a> </{v}p:a> -p <{u}p:a> </{u}p:a> </{u}p:a> -p"},
        {"<a xml:lang='en'/>", "<a {http://www.w3.org/XML/1998/namespace}xml:lang=en> </a>"},
        {"<a>one\ntwo\r\nthree&amp;&#65;&#x20AC;</a>", "<a> 'one\ntwo\nthree&A\xE2\x82\xAC' </a>"},
        {"<a>1<![CDATA[<2>]]>3<![CDATA[]]></a>", "<a> '1' (C '<2>' C) '3' (C C) </a>"},
        {"<a>1<!---->2<?t?>3<?t  d ?></a>", "<a> '1' <!----> '2' <?t|?> '3' <?t|d ?> </a>"},
        {"<!DOCTYPE a [<!ENTITY e '<b>&f;</b>'><!ENTITY f 'in'>]><a>x&f;&e;y</a>",
         "(DTD a,, DTD) <a> 'xin' <b> 'in' </b> 'y' </a>"},
        {"<!DOCTYPE a [<!ATTLIST a d CDATA 'dflt' xmlns CDATA #FIXED 'u'>]><a/>",
         "(DTD a,, DTD) +=u <{u}a d=dflt> </{u}a> -"},
        {"<!DOCTYPE a [<!ATTLIST a i ID #IMPLIED e (x|y) #IMPLIED n NOTATION (x) #IMPLIED>]>"
         "<a i='1' e='x' n='x' c='2'/>",
         "(DTD a,, DTD) <a c=2 e:NMTOKEN=x i:ID=1 n:NOTATION=x> </a>"},
        {"<!DOCTYPE a SYSTEM \"a'b\"><a b=' &#9; '/>", "(DTD a,,a'b DTD) <a b= \t > </a>"},
        {"<!DOCTYPE a SYSTEM 'l\r\nm\rn'><a/>", "(DTD a,,l\nm\nn DTD) <a> </a>"},
        {"<!DOCTYPE a PUBLIC ' p  q ' 's'><a>1&x;2</a>", "(DTD a,p q,s DTD) <a> '1' &x; '2' </a>"},
        {"<!DOCTYPE a [<!ENTITY x SYSTEM 'x.xml'><!ENTITY y '[&x;]'>]><a>1&x;2&y;</a>",
         "(DTD a,, DTD) <a> '1' &x; '2[' &x; ']' </a>"},
        {"<!DOCTYPE a [<!NOTATION n PUBLIC 'p'><!NOTATION m PUBLIC 'p' 's'>"
         "<!ENTITY u PUBLIC 'p' 's' NDATA n><!ENTITY v SYSTEM 'rel/s' NDATA m>]><a/>",
         "(DTD a,, N(n,'p',-) N(m,'p','s') U(u,'p',s,n) U(v,-,rel/s,m) DTD) <a> </a>"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(traceOf(row.xml), "L [ "s + row.trace + " ]") << row.xml;
    }
}

TEST(SAXParser, ReportsDeclarationsFirstWhenTold) {
    const std::string prolog = "<?before|d?> <!--c--> (DTD a,p,s ";
    const std::string rest =
        "<!--between--> +p=u <a {u}p:b=1> 'xtexty' (C 'z' C) &unknown; </a> -p <?after|?> ]";
    EXPECT_EQ(traceOf(EVERYTHING), "L [ " + prolog + "N(n,-,'ns') <?inside|?> U(u,-,us,n) DTD) " + rest);
    EXPECT_EQ(traceOf(EVERYTHING, Trace::EVERYTHING, true),
              "L N(n,-,'ns') U(u,-,us,n) [ " + prolog + "<?inside|?> DTD) " + rest);
    EXPECT_EQ(traceOf("<?p?><!--c--><a xmlns='u'/>", Trace::EVERYTHING, true),
              "L [ <?p|?> <!--c--> +=u <{u}a> </{u}a> - ]");
}

TEST(SAXParser, DeliversRawNamesWithoutNamespaces) {
    SAXParser parser;
    parser.setFeature(XMLReader::FEATURE_NAMESPACES, false);
    Trace trace;
    trace.connect(parser);
    const std::string xml = "<p:a xmlns:p='u' xmlns='v' q:b='1'/>";
    parser.parseMemoryNP(xml.data(), xml.size());
    EXPECT_EQ(trace.text(), "L [ <p:a q:b=1> </p:a> ]");
}

TEST(SAXParser, ReadsEncodings) {
    struct Row {
        std::string octets;
        std::string encoding; // of the input source
        std::string text;
    };
    const auto declared = [](const std::string& name, const std::string& text) {
        return "<?xml version='1.0' encoding='" + name + "'?><a>" + text + "</a>";
    };
    const std::string euro = "\xE2\x82\xAC";
    const std::string kanji = "\xE6\x97\xA5\xE6\x9C\xAC"; // two characters
    const Row rows[] = {
        {"\xEF\xBB\xBF<a>" + euro + "</a>", "", euro},
        {"\xFF\xFE<\0a\0>\0\xAC\x20\x3D\xD8\x00\xDE<\0/\0a\0>\0"s, "", euro + "\xF0\x9F\x98\x80"},
        {"\xFE\xFF\0<\0a\0>\x20\xAC\0<\0/\0a\0>"s, "", euro},
        {declared("ISO-8859-1", "\xE9"), "", "\xC3\xA9"},
        {declared("windows-1252", "\x80\xE9"), "", euro + "\xC3\xA9"},
        {declared("ISO-8859-15", "\xA4"), "", euro},
        {declared("Shift_JIS", "\x93\xFA\x96\x7B\xB1"), "", kanji + "\xEF\xBD\xB1"},
        {declared("EUC-JP", "\xC6\xFC\xCB\xDC\x8F\xB0\xA1"), "", kanji + "\xE4\xB8\x82"},
        {declared("GBK", "\xC8\xD5\xB1\xBE"), "", kanji},
        {declared("ISO-8859-1", euro), "UTF-8", euro},
        {"<a>\x80</a>", "windows-1252", euro},
    };
    for (const Row& row : rows) {
        std::istringstream stream(row.octets);
        InputSource source(stream);
        source.setEncoding(row.encoding);
        SAXParser parser;
        Runs runs;
        parser.setContentHandler(&runs);
        parser.parse(&source);
        EXPECT_EQ(runs.runs, std::vector<std::string>{row.text}) << row.octets;
    }
    for (const char* refused : {"UTF-7", "UTF-32", "IBM037", "no-such-encoding"}) {
        EXPECT_THROW(traceOf(declared(refused, "x")), SAXParseException) << refused;
    }
    std::istringstream characters(declared("ISO-8859-1", euro));
    InputSource source;
    source.setCharacterStream(characters);
    SAXParser parser;
    Runs runs;
    parser.setContentHandler(&runs);
    parser.parse(&source);
    EXPECT_EQ(runs.runs, std::vector<std::string>{euro}) << "a character stream is UTF-8";
}

TEST(SAXParser, CutsLongRunsBetweenCharactersOnly) {
    constexpr std::size_t LIMIT = 64 * 1024;
    for (std::size_t shift = 0; shift < 4; ++shift) {
        std::string text(shift, 'x');
        while (text.size() < 3 * LIMIT) {
            text += "\xE2\x82\xAC\xF0\x9F\x98\x80\n";
        }
        const std::string xml = "<a>" + text + "&amp;<![CDATA[" + text + "]]></a>";
        SAXParser parser;
        Runs runs;
        parser.setContentHandler(&runs);
        parser.parseMemoryNP(xml.data(), xml.size());
        std::string joined;
        for (const std::string& run : runs.runs) {
            EXPECT_LE(run.size(), LIMIT);
            EXPECT_NE(static_cast<unsigned char>(run.front()) & 0xC0, 0x80);
            joined += run;
        }
        EXPECT_EQ(joined, text + "&" + text);
        EXPECT_EQ(runs.runs.size(), joined.size() / LIMIT + 1);
    }
}

TEST(SAXParser, ReadsAlikeFromEverySource) {
    constexpr std::size_t PIECE = 64 * 1024;
    for (const std::size_t size :
         {40ul, PIECE - 1, PIECE, PIECE + 1, 2 * PIECE, 5 * PIECE, (1ul << 24) + 7}) {
        for (const char* end : {"</a>", "</b>"}) {
            std::string xml = "<a>\n<b/>";
            xml += std::string(size - xml.size() - 5, 'x') + "\n" + end;
            const std::string expected =
                outcomeOf([&](SAXParser& parser) { parser.parseMemoryNP(xml.data(), xml.size()); });
            ASSERT_EQ(expected.ends_with("mismatched tag 3:3"), end == "</b>"s) << size;
            std::istringstream whole(xml);
            Liar silent(xml, 0), modest(xml, 30), boastful(xml, 1l << 40), nervous(xml, -2);
            for (std::streambuf* pBuffer : std::initializer_list<std::streambuf*>{
                     whole.rdbuf(), &silent, &modest, &boastful, &nervous}) {
                std::istream stream(pBuffer);
                InputSource source(stream);
                ASSERT_TRUE(outcomeOf([&](SAXParser& parser) { parser.parse(&source); }) == expected) << size;
                ASSERT_TRUE(stream.eof() || end == "</b>"s) << size;
            }
        }
    }
}

// What Expat looks at, in octets: all of an unfinished token each time that it gets more of it. The source
// does not say how much it has.
std::size_t lookedAt(const std::string& before, const std::string& behind, std::size_t size) {
    class Counting : public std::streambuf {
    public:
        explicit Counting(const std::string& xml) : _xml(xml) {}
        std::size_t octets = 0;

    protected:
        std::streamsize xsgetn(char* p, std::streamsize n) override {
            const std::size_t count = _xml.copy(p, static_cast<std::size_t>(n), _position);
            _position += count;
            octets += _position; // of which nearly all is the token
            return static_cast<std::streamsize>(count);
        }

    private:
        const std::string& _xml;
        std::size_t _position = 0;
    };
    const std::string xml = before + std::string(size, 'x') + behind + "</a>";
    Counting buffer(xml);
    std::istream stream(&buffer);
    InputSource source(stream);
    SAXParser parser;
    parser.parse(&source);
    return buffer.octets;
}

TEST(SAXParser, LongTokensAreLookedAtAFewTimes) {
    const std::pair<const char*, const char*> tokens[] = {
        {"<a><!--", "-->"}, {"<a><?p ", "?>"}, {"<a b='", "'>"}, {"<!--", "--><a>"}, {"<a ", "=''>"}};
    for (const auto& [before, behind] : tokens) {
        const std::size_t once = lookedAt(before, behind, 1 << 20);
        const std::size_t twice = lookedAt(before, behind, 1 << 21);
        EXPECT_LT(static_cast<double>(twice), 2.2 * static_cast<double>(once)) << before;
        EXPECT_LT(twice, 4u << 21) << before;
    }
}

#ifdef __GLIBC__
// A document that turns out to be unusual is there once while it is read again.
TEST(SAXParser, HoldsADocumentOnceWhateverIsReadAgain) {
    struct Handler : DefaultHandler {
        std::size_t most = 0;
        void endElement(const std::string&, const std::string&, const std::string&) override {
            const auto info = mallinfo2();
            most = std::max(most, info.uordblks + info.hblkhd);
        }
    } handler;
    std::string xml("<!DOCTYPE a [<!ENTITY e 'x'>]><a>");
    while (xml.size() < 8000000) {
        xml += "<b>" + std::string(100000, 'x') + "</b>";
    }
    xml += "</a>";
    const auto before = mallinfo2();
    SAXParser parser;
    parser.setContentHandler(&handler);
    parser.parseMemoryNP(xml.data(), xml.size());
    EXPECT_LT(handler.most, before.uordblks + before.hblkhd + xml.size() * 3 / 2);
}
#endif

// What is unusual about namespaces makes the parser read a document again, in the way that it reads from the
// beginning what does not come as a whole. The events must not tell.
TEST(SAXParser, ResolvesNamespacesAlikeInEveryWay) {
    const char* const attributes[] = {"p:x='1'",
                                      "xmlns:q='u' q:y='1'",
                                      "xmlns:q='u' p:x='1' q:x='2'",
                                      "xmlns:q='v' p:x='1' q:x='2'",
                                      "xmlns:p='v' p:x='1'",
                                      "xmlns:p='u' p:x='1'",
                                      "xmlns=''",
                                      "xmlns='d'",
                                      "xmlns='u' x='1' p:x='2'",
                                      "xmlns:p=''",
                                      "xmlns:xml='http://www.w3.org/XML/1998/namespace'",
                                      "xmlns:xml='o'",
                                      "xmlns:z='http://www.w3.org/XML/1998/namespace'",
                                      "xmlns='http://www.w3.org/2000/xmlns/'",
                                      "xmlns:xmlns='o'",
                                      "xmlns:xmlq='w' xmlq:x=''",
                                      "xml:lang='en'",
                                      "xmlnsx='1'",
                                      "xmlns:='u'",
                                      "xmlns:a:b='u'",
                                      "xmlns:1='u'",
                                      "x='1' x='2'",
                                      "p:x='1' p:x='2'",
                                      ":x='1'",
                                      "x:='1'",
                                      "p:x:y='1'",
                                      "p:1='1'",
                                      "p:\xC3\xA4='1'",
                                      "\xC3\xA4='1'",
                                      "none:x='1'",
                                      "xmlns:\xC3\xA4='a' \xC3\xA4:b='1'",
                                      "x=&a:b;"};
    const char* const contents[] = {"",
                                    "t&lt;",
                                    "<p:b/>",
                                    "<none:b/>",
                                    "<b:/>",
                                    "<:b/>",
                                    "<p:b:c/>",
                                    "<xmlns:b/>",
                                    "<xml:b/>",
                                    "<?a:b c?>",
                                    "<?a c?>",
                                    "&a:b;",
                                    "&b;",
                                    "<![CDATA[c]]><!--d-->",
                                    "<b xmlns:z='1' xmlns:y='2'/>",
                                    "<b xmlns:z='1' xmlns:y='2'/><?a:b c?>",
                                    "<p:b xmlns:p='w'><p:c xmlns:p='u' p:d=''/></p:b><p:b/>",
                                    "</p:c>"};
    const char* const prologs[] = {"",
                                   "<!--c--><?d e?>",
                                   "<!DOCTYPE r SYSTEM 's'>",
                                   "<!DOCTYPE r:s:t>",
                                   "<!--c--><!DOCTYPE r [<!ATTLIST e xmlns:n CDATA 'n' n:d CDATA 'd'>]>",
                                   "<!DOCTYPE r [<!ELEMENT a:b:c ANY>]>"};
    std::size_t errors = 0;
    for (const char* prolog : prologs) {
        for (const char* attribute : attributes) {
            for (const char* content : contents) {
                const std::string xml = prolog + "<r xmlns:p='u'>\n text <p:a p:x=''/><e "s + attribute +
                                        ">" + content + "<p:f/></e><p:a/> tail</r>" + std::string(70000, ' ');
                Liar buffer(xml, 0);
                std::istream stream(&buffer);
                InputSource source(stream);
                const std::string expected = outcomeOf([&](SAXParser& parser) { parser.parse(&source); });
                ASSERT_EQ(outcomeOf([&](SAXParser& parser) { parser.parseMemoryNP(xml.data(), xml.size()); }),
                          expected)
                    << xml.substr(0, 300);
                errors += expected.ends_with(']') ? 0 : 1;
            }
        }
    }
    EXPECT_GT(errors, 1000u);
}

TEST(SAXParser, NamesThePlaceOfAnError) {
    struct Row {
        std::string xml;
        int line, column;
        std::string message;
    };
    const Row rows[] = {
        {"", 1, 1, "no element found"},
        {"<a>\n  <b></a>", 2, 8, "mismatched tag"},
        {"<a b='1' b='2'/>", 1, 10, "duplicate attribute"},
        {"<a>\n<p:b/></a>", 2, 1, "unbound prefix"},
        {"<a>\x01</a>", 1, 4, "not well-formed (invalid token)"},
        {"<a>\xFF</a>", 1, 4, "not well-formed (invalid token)"},
        {"<a>&e;</a>", 1, 4, "undefined entity"},
        {"<a/>\n<b/>", 2, 1, "junk after document element"},
        {"<?xml version='1.0' encoding='x-none'?><a/>", 1, 31, "unknown encoding"},
    };
    struct Errors : DefaultHandler {
        int fatal = 0;
        void fatalError(const SAXParseException&) override { ++fatal; }
    };
    for (const Row& row : rows) {
        std::istringstream stream(row.xml);
        InputSource source(stream);
        source.setSystemId("doc.xml");
        source.setPublicId("-//X//Y");
        SAXParser parser;
        Errors errors;
        parser.setErrorHandler(&errors);
        try {
            parser.parse(&source);
            ADD_FAILURE() << row.xml;
        } catch (const SAXParseException& exception) {
            EXPECT_EQ(exception.getLineNumber(), row.line) << row.xml;
            EXPECT_EQ(exception.getColumnNumber(), row.column) << row.xml;
            EXPECT_EQ(exception.message(), row.message) << row.xml;
            EXPECT_EQ(exception.getSystemId(), "doc.xml");
            EXPECT_EQ(exception.getPublicId(), "-//X//Y");
            const std::unique_ptr<Tamo::Exception> pClone(exception.clone());
            EXPECT_THROW(pClone->rethrow(), SAXParseException);
        }
        EXPECT_EQ(errors.fatal, 1);
    }
}

TEST(SAXParser, PassesExceptionsOfHandlersAndGoesOnWithTheNextDocument) {
    SAXParser parser;
    MemoryResolver resolver;
    resolver.texts["x"] = "<in/>";
    parser.setEntityResolver(&resolver);
    parser.setFeature(XMLReader::FEATURE_EXTERNAL_GENERAL_ENTITIES, true);
    const std::string xml = "<?p?><!--c--><!DOCTYPE a [<!NOTATION n SYSTEM 's'><!ENTITY u SYSTEM 'u' NDATA n>"
                            "<!ENTITY x SYSTEM 'x'>]><a xmlns='u'>t<b/>&x;<![CDATA[c]]></a>";
    for (const bool declarationsFirst : {false, true}) {
        parser.setFeature(SAXParser::FEATURE_DECLARATIONS_FIRST, declarationsFirst);
        int events = 0;
        for (bool completed = false; !completed;) {
            Thrower thrower(++events);
            thrower.connect(parser);
            try {
                parser.parseMemoryNP(xml.data(), xml.size());
                completed = true;
            } catch (const std::domain_error&) {
                EXPECT_LE(events, 21);
            }
            EXPECT_EQ(resolver.open, 0);
        }
        EXPECT_EQ(events, 22) << "one more than the document has";
    }
}

TEST(SAXParser, ReadsExternalEntitiesOnlyWhenTold) {
    const std::string xml = "<!DOCTYPE a SYSTEM 'sub/dtd'><a b='1'>x&e;y</a>";
    MemoryResolver resolver;
    resolver.texts["http://host/dir/sub/dtd"] =
        "<?in dtd?><!--no--><!ATTLIST a d CDATA 'v'><!ENTITY e SYSTEM '../e'>";
    resolver.texts["http://host/dir/e"] = "<?xml encoding='ISO-8859-1'?>[\xE9<in/>";
    const auto parse = [&](bool general, bool parameter) {
        std::istringstream stream(xml);
        InputSource source(stream);
        source.setSystemId("http://host/dir/doc");
        SAXParser parser;
        parser.setEntityResolver(&resolver);
        parser.setFeature(XMLReader::FEATURE_EXTERNAL_GENERAL_ENTITIES, general);
        parser.setFeature(XMLReader::FEATURE_EXTERNAL_PARAMETER_ENTITIES, parameter);
        Trace trace;
        trace.connect(parser);
        parser.parse(&source);
        EXPECT_EQ(resolver.open, 0);
        return trace.text();
    };
    EXPECT_EQ(parse(false, false), "L [ (DTD a,,sub/dtd DTD) <a b=1> 'x' &e; 'y' </a> ]");
    EXPECT_EQ(parse(true, false), "L [ (DTD a,,sub/dtd DTD) <a b=1> 'x' &e; 'y' </a> ]");
    EXPECT_EQ(parse(false, true), "L [ (DTD a,,sub/dtd <?in|dtd?> DTD) <a b=1 d=v> 'x' &e; 'y' </a> ]");
    EXPECT_EQ(parse(true, true),
              "L [ (DTD a,,sub/dtd <?in|dtd?> DTD) <a b=1 d=v> 'x[\xC3\xA9' <in> </in> 'y' </a> ]");

    resolver.texts["http://host/dir/e"] = "<in>\n<b></in>";
    try {
        parse(true, true);
        ADD_FAILURE();
    } catch (const SAXParseException& exception) {
        EXPECT_EQ(exception.getSystemId(), "http://host/dir/e");
        EXPECT_EQ(exception.getLineNumber(), 2);
    }
    resolver.texts.erase("http://host/dir/e");
    EXPECT_THROW(parse(true, true), SAXParseException);
}

TEST(SAXParser, ReadsFilesBySystemIdentifier) {
    const std::string path = testing::TempDir() + "tamo_xml_SAXParserTest.xml";
    std::ofstream(path) << "<a/>";
    SAXParser parser;
    EXPECT_NO_THROW(parser.parse(path));
    std::remove(path.c_str());
    try {
        parser.parse(path);
        ADD_FAILURE();
    } catch (const SAXParseException& exception) {
        EXPECT_EQ(exception.message(), "Cannot resolve system identifier: " + path);
    }
}

TEST(SAXParser, ReportsAFailingStream) {
    struct Broken : std::streambuf {
        int_type underflow() override { throw std::runtime_error("broken"); }
    } buffer;
    std::istream broken(&buffer);
    std::ifstream missing("/nonexistent/file");
    for (std::istream* pStream : {&broken, static_cast<std::istream*>(&missing)}) {
        EXPECT_THROW(SAXParser().parse(*pStream), Tamo::IOException);
    }
}

TEST(SAXParser, RefusesWhatItCannotDo) {
    SAXParser parser;
    EXPECT_THROW(parser.setFeature(XMLReader::FEATURE_VALIDATION, true), SAXNotSupportedException);
    EXPECT_THROW(parser.setFeature("x", true), SAXNotRecognizedException);
    EXPECT_THROW(parser.getFeature("x"), SAXNotRecognizedException);
    EXPECT_THROW(parser.setProperty("x", nullptr), SAXNotRecognizedException);
    EXPECT_THROW(parser.setProperty(XMLReader::PROPERTY_LEXICAL_HANDLER, "x"s), SAXNotSupportedException);
}

TEST(SAXParser, KeepsNamesApartWhenTheyAreMany) {
    // More names than the parser remembers, many at once on one element, some very long.
    std::string body;
    for (int i = 0; i < 30000; ++i) {
        body += numbered("<p:n", i) + (i % 1000 ? "" : std::string(600, 'x')) + "/>";
    }
    std::string xml = "<p:r xmlns:p='u'>" + body + "<p:many";
    for (int i = 0; i < 12000; ++i) {
        xml += numbered(" p:a", i) + numbered("='a", i) + "'";
    }
    xml += "/>" + body + "</p:r>";
    struct Checker : DefaultHandler {
        int elements = 0;
        void startElement(const std::string& uri, const std::string& localName, const std::string& qname,
                          const Attributes& list) override {
            ++elements;
            ASSERT_EQ(qname, "p:" + localName);
            ASSERT_EQ(uri, "u");
            for (int i = 0; i < list.getLength(); ++i) {
                ASSERT_EQ(list.getQName(i), "p:" + list.getValue(i));
                ASSERT_EQ(list.getLocalName(i), list.getValue(i));
            }
            open.push_back(qname);
        }
        void endElement(const std::string& uri, const std::string& localName,
                        const std::string& qname) override {
            ASSERT_EQ(uri, "u");
            ASSERT_EQ(qname, "p:" + localName);
            ASSERT_EQ(qname, open.back());
            open.pop_back();
        }
        std::vector<std::string> open;
    } checker;
    SAXParser parser;
    parser.setContentHandler(&checker);
    parser.parseMemoryNP(xml.data(), xml.size());
    EXPECT_EQ(checker.elements, 60002);
    EXPECT_TRUE(checker.open.empty());
}

TEST(SAXParser, SurvivesHostileDocuments) {
    std::string deep;
    for (int i = 0; i < 200000; ++i) {
        deep += "<a>";
    }
    EXPECT_THROW(traceOf(deep), SAXParseException);

    std::string laughs = "<!DOCTYPE a [<!ENTITY e0 'hahahahahahahahahaha'>";
    std::string chain = laughs;
    for (int i = 1; i < 12; ++i) {
        const std::string one = numbered("&e", i - 1) + ";";
        laughs += numbered("<!ENTITY e", i) + " '" + one + one + one + one + one + one + one + one + "'>";
    }
    EXPECT_THROW(traceOf(laughs + "]><a>&e11;</a>"), SAXParseException);

    // Expat alone expands such a chain by recursion and ends the process.
    for (int i = 1; i < 100000; ++i) {
        chain += numbered("<!ENTITY e", i) + numbered(" '&e", i - 1) + ";'>";
    }
    EXPECT_THROW(traceOf(chain + "]><a b='&e99999;'>&e99999;</a>"), SAXParseException);

    MemoryResolver resolver;
    for (int i = 0; i < 200; ++i) {
        resolver.texts[numbered("e", i)] = numbered("&e", i + 1) + ";";
    }
    std::string nested = "<!DOCTYPE a [";
    for (int i = 0; i <= 200; ++i) {
        nested += numbered("<!ENTITY e", i) + numbered(" SYSTEM 'e", i) + "'>";
    }
    nested += "]><a>&e0;</a>";
    SAXParser parser;
    parser.setEntityResolver(&resolver);
    parser.setFeature(XMLReader::FEATURE_EXTERNAL_GENERAL_ENTITIES, true);
    EXPECT_THROW(parser.parseMemoryNP(nested.data(), nested.size()), SAXParseException);
    EXPECT_EQ(resolver.open, 0);
}
