#include "Tamo/XML/XMLWriter.h"
#include "Tamo/Exception.h"
#include "Tamo/XML/AttributesImpl.h"
#include "Tamo/XML/NamespaceSupport.h"
#include "Tamo/XML/XMLException.h"
#include "Trace.h"
#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <sstream>
#include <vector>

using namespace Tamo::XML;
using namespace std::string_literals;

namespace {

std::vector<std::string> split(const std::string& text, char separator) {
    std::vector<std::string> parts;
    std::istringstream stream(text);
    for (std::string part; std::getline(stream, part, separator);) {
        parts.push_back(part);
    }
    parts.resize(std::max<std::size_t>(parts.size(), 3)); // so that optional parts may be left out
    return parts;
}

/// "{uri}name" in its two parts; xml and xmlns stand for the reserved namespace names.
std::pair<std::string, std::string> expanded(const std::string& name) {
    if (!name.starts_with('{')) {
        return {"", name};
    }
    const std::size_t end = name.find('}');
    const std::string uri = name.substr(1, end - 1);
    return {uri == "xml"     ? NamespaceSupport::XML_NAMESPACE
            : uri == "xmlns" ? "http://www.w3.org/2000/xmlns/"
                             : uri,
            name.substr(end + 1)};
}

/// Calls the writer's events that a script lists, separated by `;`:
/// - `+p={u}` startPrefixMapping, `<{u}a|p:a` startElement with the attributes `@{u}a=v|p:a` that follow,
///   `/` or `//` one or two endElement, `'t` characters, `[` and `]` the ends of a CDATA section, `&e`
///   skippedEntity;
/// - `!c` comment, `?t d` processingInstruction, `Dname|public|system` and `d` the ends of the DTD;
/// - `Nname|public|system` notation (`-` is null), `Uname|system|notation` unparsed entity, `S`
/// startDocument.
void play(XMLWriter& writer, const std::string& script) {
    AttributesImpl attributes;
    std::string element;
    const auto start = [&] {
        if (!element.empty()) {
            const std::vector<std::string> parts = split(element.substr(1), '|');
            const auto [uri, localName] = expanded(parts[0]);
            element.clear();
            writer.startElement(uri, localName, parts[1], attributes);
            attributes.clear();
        }
    };
    for (const std::string& event : split(script, ';')) {
        const std::string text = event.empty() ? "" : event.substr(1);
        const int length = static_cast<int>(text.size());
        const std::vector<std::string> parts = split(text, '|');
        const std::size_t equals = std::min(text.find('='), text.size());
        const std::size_t space = std::min(text.find(' '), text.size());
        const auto optional = [&](const std::string& part) { return part == "-" ? nullptr : &part; };
        if (!event.starts_with('@')) {
            start();
        }
        const std::map<char, std::function<void()>> calls{
            {'+',
             [&] {
                 writer.startPrefixMapping(text.substr(0, equals), expanded(text.substr(equals + 1)).first);
             }},
            {'<', [&] { element = event; }},
            {'@',
             [&] {
                 const auto [uri, localName] = expanded(text.substr(0, equals));
                 attributes.addAttribute(uri, localName, parts[1], "", parts[0].substr(equals + 1));
             }},
            {'/',
             [&] {
                 for (int i = 0; i <= length; ++i) {
                     writer.endElement("", "", "");
                 }
             }},
            {'\'', [&] { writer.characters(text.data(), 0, length); }},
            {'[', [&] { writer.startCDATA(); }},
            {']', [&] { writer.endCDATA(); }},
            {'!', [&] { writer.comment(text.data(), 0, length); }},
            {'?',
             [&] {
                 writer.processingInstruction(text.substr(0, space),
                                              text.substr(std::min(space + 1, text.size())));
             }},
            {'&', [&] { writer.skippedEntity(text); }},
            {'D', [&] { writer.startDTD(parts[0], parts[1], parts[2]); }},
            {'d', [&] { writer.endDTD(); }},
            {'N', [&] { writer.notationDecl(parts[0], optional(parts[1]), optional(parts[2])); }},
            {'U', [&] { writer.unparsedEntityDecl(parts[0], nullptr, parts[1], parts[2]); }},
            {'S', [&] { writer.startDocument(); }}};
        if (!event.empty()) {
            calls.at(event[0])();
        }
    }
    start();
}

struct Row {
    std::string script; ///< the events between startDocument and endDocument
    std::string text;   ///< the document, or what an XMLException says
};

void expectWritten(std::initializer_list<Row> rows, int options = 0) {
    for (const Row& row : rows) {
        std::ostringstream stream;
        XMLWriter writer(stream, options);
        try {
            play(writer, "S;" + row.script);
            writer.endDocument();
            EXPECT_EQ(stream.str(), row.text) << row.script;
        } catch (const Tamo::Exception& exception) {
            ADD_FAILURE() << row.script << ": " << exception.displayText();
        }
    }
}

} // namespace

TEST(XMLWriter, FindsDeclaresAndGeneratesPrefixes) {
    expectWritten({
        {"<a;/", "<a/>"},
        {"<{u}a;<{u}b;//", "<a xmlns=\"u\"><b/></a>"},
        {"<{u}a|p:a;/", "<p:a xmlns:p=\"u\"/>"},
        // Mappings: announced, unused, twice for one prefix, repeated on a sibling, of strange namespace
        // names.
        {"+p={u};<{u}a;/", "<p:a xmlns:p=\"u\"/>"},
        {"+p={u};+q={v};<a;/", "<a xmlns:p=\"u\" xmlns:q=\"v\"/>"},
        {"+p={u};+p={v};<{v}a;/", "<p:a xmlns:p=\"v\"/>"},
        {"<r;+p={u};<{u}a;/;<{u}b;/;+p={v};<{v}c;//",
         "<r><p:a xmlns:p=\"u\"/><b xmlns=\"u\"/><p:c xmlns:p=\"v\"/></r>"},
        {"+p={<&\n};<a;/", "<a xmlns:p=\"&lt;&amp;&#10;\"/>"},
        // One namespace under several prefixes: the qualified name decides, without one the default
        // namespace.
        {"+a={u};+b={u};<{u}x|a:x;<{u}y|b:y;//", "<a:x xmlns:a=\"u\" xmlns:b=\"u\"><b:y/></a:x>"},
        {"+={u};<{u}x;+p={u};<{u}y;<{u}z|p:z;//;/", "<x xmlns=\"u\"><y xmlns:p=\"u\"><p:z/></y></x>"},
        // A qualified name whose prefix means something else.
        {"+p={u};<{v}a|p:a;/", "<ns1:a xmlns:p=\"u\" xmlns:ns1=\"v\"/>"},
        {"+p={u};<{u}a|p:a;<{v}b|p:b;//", "<p:a xmlns:p=\"u\"><p:b xmlns:p=\"v\"/></p:a>"},
        {"+p={u};<{u}a;+p={v};<{u}b;//", "<p:a xmlns:p=\"u\"><b xmlns:p=\"v\" xmlns=\"u\"/></p:a>"},
        // No namespace.
        {"+={u};<{u}a;<b;<c;//;/", "<a xmlns=\"u\"><b xmlns=\"\"><c/></b></a>"},
        {"+={u};<a;<{u}b;//", "<a><b xmlns=\"u\"/></a>"},
        {"+={u};<{u}a;+=;<b;//", "<a xmlns=\"u\"><b xmlns=\"\"/></a>"},
        {"+=;<{u}a;/", "<ns1:a xmlns=\"\" xmlns:ns1=\"u\"/>"},
        {"<a|p:a;/", "<a/>"},
        // Attributes.
        {"+={u};<{u}a|a;@{u}x=1;@x=2;/", "<a xmlns=\"u\" xmlns:ns1=\"u\" ns1:x=\"1\" x=\"2\"/>"},
        {"+a={u};+b={u};<{u}e|a:e;@{u}x=1;@{u}y=2|b:y;/",
         "<a:e xmlns:a=\"u\" xmlns:b=\"u\" a:x=\"1\" b:y=\"2\"/>"},
        {"+ns1={w};<a;@{u}x=1;@{v}x=2;<b;@{t}x=3;@{u}x=4;/;<c;@{t}x=5;//",
         "<a xmlns:ns1=\"w\" xmlns:ns2=\"u\" xmlns:ns3=\"v\" ns2:x=\"1\" ns3:x=\"2\">"
         "<b xmlns:ns4=\"t\" ns4:x=\"3\" ns2:x=\"4\"/><c xmlns:ns4=\"t\" ns4:x=\"5\"/></a>"},
        {"<{u}a|p:a;@{v}x=1|p:x;@{w}y=2|q:y;/",
         "<p:a xmlns:p=\"u\" xmlns:ns1=\"v\" xmlns:q=\"w\" ns1:x=\"1\" q:y=\"2\"/>"},
        {"<a;@{xml}lang=en;<{xml}b;//", "<a xml:lang=\"en\"><xml:b/></a>"},
        {"<|a;@=1|x;/", "<a x=\"1\"/>"},
        // Mappings that XML does not allow.
        {"+xml={u};+xmlns={u};+p={xml};+={xml};+q={xmlns};+1={u};+a:b={u};+p q={u};+r=;"
         "<{u}a|1:a;@{v}x=1|xmlns:x;@{w}y=2|xml:y;/",
         "<ns1:a xmlns:ns1=\"u\" xmlns:ns2=\"v\" xmlns:ns3=\"w\" ns2:x=\"1\" ns3:y=\"2\"/>"},
    });
}

TEST(XMLWriter, EscapesContent) {
    const std::string kept = "\xC3\xA9\xF0\x9F\x98\x80\x7F";
    const std::string longText(200000, 'x');
    expectWritten({
        {"<a;'<&>\"\t\n\r]]>" + kept + ";/", "<a>&lt;&amp;&gt;\"\t\n&#13;]]&gt;" + kept + "</a>"},
        {"<a;';/", "<a/>"},
        {"<a;@b=<&>\"\t\n\r" + kept + ";@c=;/",
         "<a b=\"&lt;&amp;>&quot;&#9;&#10;&#13;" + kept + "\" c=\"\"/>"},
        {"<a;[;'<&]]>]]]>;']];'>];'];'>;];[;];/",
         "<a><![CDATA[<&]]]]><![CDATA[>]]]]]><![CDATA[>]]]]><![CDATA[>]]]]><![CDATA[>]]><![CDATA[]]></a>"},
        {"<a;[;'x\r\ny;];/", "<a><![CDATA[x]]>&#13;<![CDATA[\ny]]></a>"},
        {"<a;!- <&> -x;!;?t <&>? ;?t;/", "<a><!--- <&> -x--><!----><?t <&>? ?><?t?></a>"},
        {"<a;'" + longText + ";/", "<a>" + longText + "</a>"},
    });
    // What is escaped or checked is found wherever it stands.
    const char* const found[][3] = {{"<", "&lt;", "&lt;"},   {"&", "&amp;", "&amp;"}, {">", "&gt;", ">"},
                                    {"\"", "\"", "&quot;"},  {"\t", "\t", "&#9;"},    {"\n", "\n", "&#10;"},
                                    {"\r", "&#13;", "&#13;"}};
    for (std::size_t at = 0; at < 10; ++at) {
        for (std::size_t behind = 0; behind < 6; ++behind) {
            const std::string front(at, 'x'), rest(behind, 'y');
            for (const auto& row : found) {
                const std::string both = front + row[0] + rest + row[0];
                expectWritten({{"<a;@b=" + both + ";'" + both + ";/", "<a b=\"" + front + row[2] + rest +
                                                                          row[2] + "\">" + front + row[1] +
                                                                          rest + row[1] + "</a>"}});
            }
            for (const char* const bad : {"\x01", "\xFF", "\xC3"}) {
                const std::string text = front + bad + rest;
                std::ostringstream out;
                XMLWriter writer(out);
                writer.startDocument();
                writer.startElement("", "", "a", AttributesImpl());
                EXPECT_THROW(writer.characters(text.data(), 0, static_cast<int>(text.size())), XMLException);
            }
        }
    }
}

TEST(XMLWriter, WritesProlog) {
    const std::string root = "+p={u};<{u}a|p:a;/";
    const std::string a = "<p:a xmlns:p=\"u\"/>";
    expectWritten({
        {"!c;?t;" + root + ";' \n;!d;?u", "<!--c-->\n<?t?>\n" + a + " \n\n<!--d-->\n<?u?>"},
        {"Dx;d;" + root, "<!DOCTYPE x>\n" + a},
        // A declaration without a name waits for the root element and keeps its place.
        {"!1;D||s;?t in;!in;d;!2;?t 3;'\n;" + root,
         "<!--1-->\n<!DOCTYPE p:a SYSTEM \"s\" [\n<?t in?>\n<!--in-->\n]>\n<!--2-->\n<?t 3?>\n\n" + a},
        {"Dx:y|pub|s\"s;Nn|p|it's;Nm|p|-;Ue|s|n;d;" + root + ";&%pe",
         "<!DOCTYPE x:y PUBLIC \"pub\" 's\"s' [\n<!NOTATION n PUBLIC \"p\" \"it's\">\n"
         "<!NOTATION m PUBLIC \"p\">\n<!ENTITY e SYSTEM \"s\" NDATA n>\n]>\n" +
             a},
        {"Da|pub;d;<a;&e;/", "<!DOCTYPE a PUBLIC \"pub\" \"\">\n<a>&e;</a>"},
    });

    // Declarations before the document, and one writer for two documents.
    std::ostringstream stream;
    XMLWriter writer(stream, XMLWriter::WRITE_XML_DECLARATION);
    for (const char* dtd : {"", "D;d;"}) {
        play(writer, "Nn|-|s;Ue||n;S;" + (dtd + root));
        writer.endDocument();
    }
    const std::string document = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE p:a [\n"
                                 "<!NOTATION n SYSTEM \"s\">\n<!ENTITY e SYSTEM \"\" NDATA n>\n]>\n" +
                                 a;
    EXPECT_EQ(stream.str(), document + document);
}

TEST(XMLWriter, IndentsWhereNoTextIs) {
    expectWritten({{"<a;<b;'t;<c;//;!n;<d;/;<e;@{xml}space=preserve;<f;//;/",
                    "<a>\n  <b>t<c/></b>\n  <!--n-->\n  <d/>\n  <e xml:space=\"preserve\"><f/></e>\n</a>\n"}},
                  XMLWriter::PRETTY_PRINT);
}

TEST(XMLWriter, RefusesWhatIsNoXML) {
    std::string twins = "<a";
    for (int i = 0; i < 20; ++i) {
        twins += numbered(";@{u}a", i % 19) + "=";
    }
    const Row rows[] = {
        {"<a;'\x01", "Cannot write text: XML does not allow the character U+0001"},
        {"<a;'a\0b"s, "Cannot write text: XML does not allow the character U+0000"},
        {"<a;'\xEF\xBF\xBE", "Cannot write text: XML does not allow the character U+FFFE"},
        {"<a;'\xC0\x80", "Cannot write text: octet 0xC0 is not UTF-8"},
        {"<a;'\xE0\x9F\xBF", "octet 0xE0"},
        {"<a;'\xED\xA0\x80", "octet 0xED"},
        {"<a;'\xF0\x8F\xBF\xBF", "octet 0xF0"},
        {"<a;'\xF4\x90\x80\x80", "octet 0xF4"},
        {"<a;'\xE2\x82", "octet 0xE2"},
        {"<a;'\x80", "octet 0x80"},
        {"<a;@b=\x1F", "Cannot write attribute value: XML does not allow the character U+001F"},
        {"<a;[;'\x0B", "U+000B"},
        {"<a;!a--b", "Cannot write comment: it contains \"--\""},
        {"<a;!a-", "Cannot write comment: it ends with \"-\""},
        {"<a;!\r", "carriage return"},
        {"<a;?t a?>b", "\"?>\""},
        {"<a;?t  a", "white space"},
        {"<a;?t a\r", "carriage return"},
        {"<a;?xMl", "\"xMl\" is reserved"},
        {"<a;?a:b", "\"a:b\" is no XML name"},
        {"<a;&e", "\"e\" is declared nowhere"},
        {"<|", "Cannot write element name: \"\" is no XML name"},
        {"<1a", "\"1a\" is no XML name"},
        {"<a:b", "\"a:b\" is no XML name"},
        {"<a\xC3\x97", "is no XML name"},
        {"<\xCC\x80", "is no XML name"},
        {"<a\xFF", "\"a?\" is no XML name"},
        {"<{xmlns}a", "reserved namespace name"},
        {"<{\x01}a", "Cannot write namespace name: XML does not allow the character U+0001"},
        {"<a;@xmlns=u", "\"xmlns\" is reserved"},
        {"<a;@xmlns:p=u", "is no XML name"},
        {"<a;@{xmlns}p=u", "reserved namespace name"},
        {"<a;@{u}x=|p:x;@{u}x=|q:x", "Cannot write attribute: \"x\" stands twice on one element"},
        {twins, "stands twice"},
        {"", "Cannot write document: it has no root element"},
        {"<a", "it ends inside an element"},
        {"<a;/;<b", "has a root element already"},
        {"<a;//", "no element is open"},
        {"'x", "outside of the root element"},
        {"S", "started already"},
        {"<a;[;[", "outside of content"},
        {"<a;[;<b", "outside of content"},
        {"<a;Da", "outside of the prolog"},
        {"<a;Nn|p|s", "has been written already"},
        {"Da;d;d", "none is open"},
        {"Da;d;Ue|s|n", "has been written already"},
        {"D;d;Da", "has one already"},
        {"Da b;d", "name of document type"},
        {"Da|\";d", "public identifier"},
        {"Da||'\";d", "both kinds of quotation marks"},
        {"Na:b|-|s", "Cannot write notation"},
        {"Ue|\x02|n", "U+0002"},
        {"Ue|s", "notation of unparsed entity"},
    };
    for (const Row& row : rows) {
        std::ostringstream stream;
        XMLWriter writer(stream);
        try {
            play(writer, "S;" + row.script);
            writer.endDocument();
            ADD_FAILURE() << row.script << " gave " << stream.str();
        } catch (const XMLException& exception) {
            EXPECT_NE(exception.message().find(row.text), std::string::npos) << exception.message();
            EXPECT_THROW(writer.startDocument(), XMLException) << "the document is lost";
        }
    }
}

TEST(XMLWriter, FlushShowsWhatIsWritten) {
    std::ostringstream stream;
    XMLWriter writer(stream);
    play(writer, "S;<a");
    writer.flush();
    EXPECT_EQ(stream.str(), "<a");
    play(writer, "'b;<c;/");
    writer.flush();
    EXPECT_EQ(stream.str(), "<a>b<c/>");
    stream.setstate(std::ios::badbit);
    EXPECT_THROW(writer.flush(), Tamo::IOException);
    EXPECT_THROW(play(writer, "/"), XMLException) << "the document is lost";
}

TEST(XMLWriter, BuffersAndReportsAFailingStream) {
    struct Counter : std::streambuf {
        int writes = 0;
        std::size_t size = 0;
        std::size_t limit = 0;
        std::streamsize xsputn(const char*, std::streamsize count) override {
            ++writes;
            size += static_cast<std::size_t>(count);
            return size > limit ? 0 : count;
        }
    };
    std::string children;
    for (int i = 0; i < 20000; ++i) {
        children += "<child;'0123456789;/;";
    }
    for (const std::size_t limit : {std::size_t{0}, std::size_t{100000}, std::size_t{500013}}) {
        Counter counter;
        counter.limit = limit;
        std::ostream stream(&counter);
        XMLWriter writer(stream);
        const auto run = [&] {
            play(writer, "S;<root;" + children + "/");
            writer.endDocument();
        };
        if (limit < 500013) {
            EXPECT_THROW(run(), Tamo::IOException);
        } else {
            EXPECT_NO_THROW(run());
            EXPECT_EQ(counter.size, limit);
            EXPECT_LE(counter.writes, 10);
        }
    }

    // What an exception leaves behind has reached the stream.
    std::ostringstream part;
    XMLWriter interrupted(part);
    EXPECT_THROW(play(interrupted, "S;<a;'x\x01"), XMLException);
    EXPECT_EQ(part.str(), "<a>");
}

// The next document is that of a new writer, wherever the last one has stopped, and that one's stream rests.
TEST(XMLWriter, ResetsWhateverHasBecomeOfTheLastDocument) {
    std::string deep;
    for (int i = 0; i < 2000; ++i) {
        deep += ";<{u}a|p:a;@{v" + std::to_string(i) + "}b=c";
    }
    const std::string whole = "S;Nn|p|-;Da|b|c;d;!c;+q={w};<a;@{w}b=1;@{v}b=2;<{u}b;'t;/;[;'x];];/";
    std::ostringstream expected;
    XMLWriter fresh(expected);
    play(fresh, whole);
    fresh.endDocument();
    for (const std::string& stopped :
         {""s, "S"s, "Nm|p|-"s, "S;Um|s|n;Dx|y|z;!c"s, "S;<{u}a|p:a;@{v}b=c"s, "S;+p={u}"s, "S;<a;[;'x]]"s,
          "S;<a;'\x01"s, "S;<a;/;<b"s, "S" + deep, whole + ";<c"}) {
        std::ostringstream first;
        std::ostringstream second;
        XMLWriter writer(first);
        try {
            play(writer, stopped);
        } catch (const XMLException&) {
        }
        const std::string before = first.str();
        writer.reset(second);
        play(writer, whole);
        writer.endDocument();
        EXPECT_EQ(second.str(), expected.str()) << stopped.substr(0, 40);
        EXPECT_TRUE(first.str() == before) << stopped.substr(0, 40);
    }
}

TEST(XMLWriter, WritesDeepDocumentsWithDeclarationsQuickly) {
    std::ostringstream stream;
    XMLWriter writer(stream);
    writer.startDocument();
    constexpr int DEPTH = 200000;
    AttributesImpl attributes;
    attributes.addAttribute("", "b", "", "", "");
    for (int i = 0; i < DEPTH; ++i) {
        attributes.setURI(0, numbered("v", i));
        writer.startElement(numbered("u", i), "a", "", attributes);
    }
    for (int i = 0; i < DEPTH; ++i) {
        writer.endElement("", "", "");
    }
    writer.endDocument();
    EXPECT_TRUE(stream.str().ends_with("</a></a>"));
}
