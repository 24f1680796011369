#include "Tamo/XML/XMLWriter.h"
#include "Tamo/Exception.h"
#include "Tamo/XML/AttributesImpl.h"
#include "Tamo/XML/NamespaceSupport.h"
#include "Tamo/XML/XMLException.h"
#include "Trace.h"
#include <functional>
#include <gtest/gtest.h>
#include <sstream>

using namespace Tamo::XML;
using namespace std::string_literals;

namespace {

const std::string XML = NamespaceSupport::XML_NAMESPACE;
const std::string XMLNS = "http://www.w3.org/2000/xmlns/";

/// An XMLWriter with shorthands for the events of a test.
class Events : public XMLWriter {
public:
    explicit Events(std::ostream& stream, int options = 0) : XMLWriter(stream, options) {}

    struct Attribute {
        std::string uri, localName, value, qname;
    };

    Events& map(const std::string& prefix, const std::string& uri) {
        startPrefixMapping(prefix, uri);
        return *this;
    }

    Events& start(const std::string& uri, const std::string& localName, const std::string& qname = "",
                  const std::vector<Attribute>& attributes = {}) {
        AttributesImpl list;
        for (const Attribute& attribute : attributes) {
            list.addAttribute(attribute.uri, attribute.localName, attribute.qname, "CDATA", attribute.value);
        }
        startElement(uri, localName, qname, list);
        return *this;
    }

    Events& text(const std::string& text) {
        characters(text.data(), 0, static_cast<int>(text.size()));
        return *this;
    }

    Events& cdata(const std::vector<std::string>& texts) {
        startCDATA();
        for (const std::string& one : texts) {
            text(one);
        }
        endCDATA();
        return *this;
    }

    Events& note(const std::string& text) {
        comment(text.data(), 0, static_cast<int>(text.size()));
        return *this;
    }

    Events& pi(const std::string& target, const std::string& data = "") {
        processingInstruction(target, data);
        return *this;
    }

    Events& notation(const std::string& name, const char* publicId, const char* systemId) {
        const std::string publicText(publicId ? publicId : "");
        const std::string systemText(systemId ? systemId : "");
        notationDecl(name, publicId ? &publicText : nullptr, systemId ? &systemText : nullptr);
        return *this;
    }

    Events& entity(const std::string& name, const std::string& systemId, const std::string& notationName) {
        unparsedEntityDecl(name, nullptr, systemId, notationName);
        return *this;
    }

    Events& dtd(const std::string& name, const std::string& publicId, const std::string& systemId) {
        startDTD(name, publicId, systemId);
        return *this;
    }

    Events& end(int count = 1) {
        for (; count > 0; --count) {
            endElement("", "", "");
        }
        return *this;
    }
};

struct Row {
    std::function<void(Events&)> events; ///< between startDocument and endDocument
    std::string text;                    ///< the document, or what an XMLException says
};

std::string write(const Row& row, int options = 0) {
    std::ostringstream stream;
    Events events(stream, options);
    events.startDocument();
    row.events(events);
    events.endDocument();
    return stream.str();
}

void expectWritten(std::initializer_list<Row> rows, int options = 0) {
    for (const Row& row : rows) {
        try {
            EXPECT_EQ(write(row, options), row.text);
        } catch (const Tamo::Exception& exception) {
            ADD_FAILURE() << exception.displayText() << " instead of " << row.text;
        }
    }
}

} // namespace

TEST(XMLWriter, FindsDeclaresAndGeneratesPrefixes) {
    expectWritten({
        {[](Events& e) { e.start("", "a").end(); }, "<a/>"},
        {[](Events& e) { e.start("u", "a").start("u", "b").end(2); }, "<a xmlns=\"u\"><b/></a>"},
        {[](Events& e) { e.start("u", "a", "p:a").end(); }, "<p:a xmlns:p=\"u\"/>"},
        // Mappings: announced, unused, repeated on a sibling, twice for one prefix.
        {[](Events& e) { e.map("p", "u").start("u", "a").end(); }, "<p:a xmlns:p=\"u\"/>"},
        {[](Events& e) { e.map("p", "u").map("q", "v").start("", "a").end(); },
         "<a xmlns:p=\"u\" xmlns:q=\"v\"/>"},
        {[](Events& e) { e.map("p", "u").map("p", "v").start("v", "a").end(); }, "<p:a xmlns:p=\"v\"/>"},
        {[](Events& e) {
             e.start("", "r").map("p", "u").start("u", "a").end();
             e.endPrefixMapping("p");
             e.start("u", "b").end().map("p", "v").start("v", "c").end(2);
         },
         "<r><p:a xmlns:p=\"u\"/><b xmlns=\"u\"/><p:c xmlns:p=\"v\"/></r>"},
        // One namespace under several prefixes: the qualified name decides, without one the default
        // namespace.
        {[](Events& e) {
             e.map("a", "u").map("b", "u").start("u", "x", "a:x").start("u", "y", "b:y").end(2);
         },
         "<a:x xmlns:a=\"u\" xmlns:b=\"u\"><b:y/></a:x>"},
        {[](Events& e) {
             e.map("", "u").start("u", "x").map("p", "u").start("u", "y").start("u", "z", "p:z").end(3);
         },
         "<x xmlns=\"u\"><y xmlns:p=\"u\"><p:z/></y></x>"},
        // A qualified name whose prefix means something else.
        {[](Events& e) { e.map("p", "u").start("v", "a", "p:a").end(); },
         "<ns1:a xmlns:p=\"u\" xmlns:ns1=\"v\"/>"},
        {[](Events& e) { e.map("p", "u").start("u", "a", "p:a").start("v", "b", "p:b").end(2); },
         "<p:a xmlns:p=\"u\"><p:b xmlns:p=\"v\"/></p:a>"},
        {[](Events& e) { e.map("p", "u").start("u", "a").map("p", "v").start("u", "b").end(2); },
         "<p:a xmlns:p=\"u\"><b xmlns:p=\"v\" xmlns=\"u\"/></p:a>"},
        // No namespace.
        {[](Events& e) { e.map("", "u").start("u", "a").start("", "b").start("", "c").end(3); },
         "<a xmlns=\"u\"><b xmlns=\"\"><c/></b></a>"},
        {[](Events& e) { e.map("", "u").start("", "a").start("u", "b").end(2); }, "<a><b xmlns=\"u\"/></a>"},
        {[](Events& e) { e.map("", "u").start("u", "a").map("", "").start("", "b").end(2); },
         "<a xmlns=\"u\"><b xmlns=\"\"/></a>"},
        {[](Events& e) { e.map("", "").start("u", "a").end(); }, "<ns1:a xmlns=\"\" xmlns:ns1=\"u\"/>"},
        {[](Events& e) { e.start("", "a", "p:a").end(); }, "<a/>"},
        // Attributes.
        {[](Events& e) {
             e.map("", "u").start("u", "a", "a", {{"u", "x", "1", ""}, {"", "x", "2", ""}}).end();
         },
         "<a xmlns=\"u\" xmlns:ns1=\"u\" ns1:x=\"1\" x=\"2\"/>"},
        {[](Events& e) {
             e.map("p", "u").start("u", "a", "p:a", {{"u", "x", "1", ""}}).end();
         },
         "<p:a xmlns:p=\"u\" p:x=\"1\"/>"},
        {[](Events& e) {
             e.map("a", "u")
                 .map("b", "u")
                 .start("u", "e", "a:e", {{"u", "x", "1", ""}, {"u", "y", "2", "b:y"}})
                 .end();
         },
         "<a:e xmlns:a=\"u\" xmlns:b=\"u\" a:x=\"1\" b:y=\"2\"/>"},
        {[](Events& e) {
             e.map("ns1", "w").start("", "a", "", {{"u", "x", "1", ""}, {"v", "x", "2", ""}});
             e.start("", "b", "", {{"t", "x", "3", ""}, {"u", "x", "4", ""}})
                 .end()
                 .start("", "c", "", {{"t", "x", "5", ""}})
                 .end(2);
         },
         "<a xmlns:ns1=\"w\" xmlns:ns2=\"u\" xmlns:ns3=\"v\" ns2:x=\"1\" ns3:x=\"2\">"
         "<b xmlns:ns4=\"t\" ns4:x=\"3\" ns2:x=\"4\"/><c xmlns:ns4=\"t\" ns4:x=\"5\"/></a>"},
        {[](Events& e) {
             e.start("u", "a", "p:a", {{"v", "x", "1", "p:x"}, {"w", "y", "2", "q:y"}}).end();
         },
         "<p:a xmlns:p=\"u\" xmlns:ns1=\"v\" xmlns:q=\"w\" ns1:x=\"1\" q:y=\"2\"/>"},
        {[](Events& e) {
             e.start("", "a", "", {{XML, "lang", "en", ""}}).start(XML, "b").end(2);
         },
         "<a xml:lang=\"en\"><xml:b/></a>"},
        {[](Events& e) {
             e.start("", "", "a", {{"", "", "1", "x"}}).end();
         },
         "<a x=\"1\"/>"},
        // Mappings that XML does not allow.
        {[](Events& e) {
             e.map("xml", "u").map("xmlns", "u").map("p", XML).map("", XML).map("q", XMLNS).map("1", "u");
             e.map("a:b", "u").map("p q='1", "u").map("r", "");
             e.start("u", "a", "1:a", {{"v", "x", "1", "xmlns:x"}, {"w", "y", "2", "xml:y"}}).end();
         },
         "<ns1:a xmlns:ns1=\"u\" xmlns:ns2=\"v\" xmlns:ns3=\"w\" ns2:x=\"1\" ns3:y=\"2\"/>"},
        {[](Events& e) { e.map("p", "<\"&\n").start("", "a").end(); },
         "<a xmlns:p=\"&lt;&quot;&amp;&#10;\"/>"},
    });
}

TEST(XMLWriter, EscapesContent) {
    const auto inside = [](const auto& events) { return [=](Events& e) { events(e.start("", "a")).end(); }; };
    expectWritten({
        {inside([](Events& e) -> Events& { return e.text("<&>\"'\t\n\r]]>\xC3\xA9\xF0\x9F\x98\x80\x7F"); }),
         "<a>&lt;&amp;&gt;\"'\t\n&#13;]]&gt;\xC3\xA9\xF0\x9F\x98\x80\x7F</a>"},
        {inside([](Events& e) -> Events& { return e.text(""); }), "<a/>"},
        {[](Events& e) {
             e.start("", "a", "", {{"", "b", "<&>\"'\t\n\r", ""}, {"", "c", "", ""}}).end();
         },
         "<a b=\"&lt;&amp;>&quot;'&#9;&#10;&#13;\" c=\"\"/>"},
        {inside([](Events& e) -> Events& {
             return e.cdata({"<&]]>]]]>", "]]", ">]", "]", ">"}).cdata({});
         }),
         "<a><![CDATA[<&]]]]><![CDATA[>]]]]]><![CDATA[>]]]]><![CDATA[>]]]]><![CDATA[>]]><![CDATA[]]></a>"},
        {inside([](Events& e) -> Events& { return e.cdata({"x\r\ny"}); }),
         "<a><![CDATA[x]]>&#13;<![CDATA[\ny]]></a>"},
        {inside([](Events& e) -> Events& { return e.note("- <&> -x").note("").pi("t", "<&>? ").pi("t"); }),
         "<a><!--- <&> -x--><!----><?t <&>? ?><?t?></a>"},
        {inside([](Events& e) -> Events& { return e.text(std::string(200000, 'x')); }),
         "<a>" + std::string(200000, 'x') + "</a>"},
    });
}

TEST(XMLWriter, WritesProlog) {
    const auto root = [](Events& e) { e.map("p", "u").start("u", "a", "p:a").end(); };
    const std::string a = "<p:a xmlns:p=\"u\"/>";
    expectWritten({
        {[&](Events& e) {
             e.note("c").pi("t");
             root(e);
             e.text(" \n").note("d").pi("u");
         },
         "<!--c-->\n<?t?>\n" + a + " \n\n<!--d-->\n<?u?>"},
        {[&](Events& e) {
             e.dtd("x", "", "").endDTD();
             root(e);
         },
         "<!DOCTYPE x>\n" + a},
        // A declaration without a name waits for the root element and keeps its place.
        {[&](Events& e) {
             e.note("1").dtd("", "", "s").pi("t", "in").note("in").endDTD();
             e.note("2").pi("t", "3").text("\n");
             root(e);
         },
         "<!--1-->\n<!DOCTYPE p:a SYSTEM \"s\" [\n<?t in?>\n<!--in-->\n]>\n<!--2-->\n<?t 3?>\n\n" + a},
        {[&](Events& e) {
             e.dtd("x:y", "pub", "s\"s").notation("n", "p", "it's").notation("m", "p", nullptr);
             e.entity("e", "s", "n").endDTD();
             root(e);
             e.skippedEntity("%pe");
         },
         "<!DOCTYPE x:y PUBLIC \"pub\" 's\"s' [\n<!NOTATION n PUBLIC \"p\" \"it's\">\n<!NOTATION m PUBLIC "
         "\"p\">\n"
         "<!ENTITY e SYSTEM \"s\" NDATA n>\n]>\n" +
             a},
        {[&](Events& e) {
             e.dtd("a", "pub", "").endDTD();
             e.start("", "a").skippedEntity("e");
             e.end();
         },
         "<!DOCTYPE a PUBLIC \"pub\" \"\">\n<a>&e;</a>"},
    });

    // Declarations before the document, and one writer for two documents.
    std::ostringstream stream;
    Events events(stream, XMLWriter::WRITE_XML_DECLARATION);
    for (int i = 0; i < 2; ++i) {
        events.notation("n", nullptr, "s").entity("e", "", "n").startDocument();
        if (i == 1) {
            events.dtd("", "", "").endDTD();
        }
        root(events);
        events.endDocument();
    }
    const std::string document =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE p:a [\n<!NOTATION n SYSTEM \"s\">\n"
        "<!ENTITY e SYSTEM \"\" NDATA n>\n]>\n" +
        a;
    EXPECT_EQ(stream.str(), document + document);
}

TEST(XMLWriter, IndentsWhereNoTextIs) {
    expectWritten(
        {{[](Events& e) {
              e.start("", "a").start("", "b").text("t").start("", "c").end(2).note("n").start("", "d").end();
              e.start("", "e", "", {{XML, "space", "preserve", ""}}).start("", "f").end(3);
          },
          "<a>\n  <b>t<c/></b>\n  <!--n-->\n  <d/>\n  <e xml:space=\"preserve\"><f/></e>\n</a>\n"}},
        XMLWriter::PRETTY_PRINT);
}

TEST(XMLWriter, RefusesWhatIsNoXML) {
    const auto inside = [](const auto& events) {
        return [=](Events& e) { events(e.start("", "a")), e.end(); };
    };
    const auto text = [&](const std::string& octets) { return inside([=](Events& e) { e.text(octets); }); };
    const auto value = [](const std::string& octets) {
        return [=](Events& e) { e.start("", "a", "", {{"", "b", octets, ""}}).end(); };
    };
    const auto root = [](const std::string& uri, const std::string& name) {
        return [=](Events& e) { e.start(uri, name).end(); };
    };
    const auto attribute = [](const std::string& uri, const std::string& name) {
        return [=](Events& e) { e.start("", "a", "", {{uri, name, "", ""}}).end(); };
    };
    std::vector<Events::Attribute> twins;
    for (int i = 0; i < 20; ++i) {
        twins.push_back({"u", numbered("a", i % 19), "", ""});
    }
    const Row rows[] = {
        {text("\x01"s), "Cannot write text: XML does not allow the character U+0001"},
        {text("a\0b"s), "Cannot write text: XML does not allow the character U+0000"},
        {text("\xEF\xBF\xBE"), "Cannot write text: XML does not allow the character U+FFFE"},
        {text("\xC0\x80"), "Cannot write text: octet 0xC0 is not UTF-8"},
        {text("\xE0\x9F\xBF"), "octet 0xE0"},
        {text("\xED\xA0\x80"), "octet 0xED"},
        {text("\xF0\x8F\xBF\xBF"), "octet 0xF0"},
        {text("\xF4\x90\x80\x80"), "octet 0xF4"},
        {text("\xE2\x82"), "octet 0xE2"},
        {text("\x80"), "octet 0x80"},
        {value("\x1F"), "Cannot write attribute value: XML does not allow the character U+001F"},
        {value("\xFF"), "attribute value"},
        {inside([](Events& e) { e.cdata({"\x0B"}); }), "U+000B"},
        {inside([](Events& e) { e.note("a--b"); }), "Cannot write comment: it contains \"--\""},
        {inside([](Events& e) { e.note("a-"); }), "Cannot write comment: it ends with \"-\""},
        {inside([](Events& e) { e.note("\r"); }), "carriage return"},
        {inside([](Events& e) { e.note("\xFF"); }), "comment"},
        {inside([](Events& e) { e.pi("t", "a?>b"); }), "\"?>\""},
        {inside([](Events& e) { e.pi("t", " a"); }), "white space"},
        {inside([](Events& e) { e.pi("t", "a\r"); }), "carriage return"},
        {inside([](Events& e) { e.pi("xMl", ""); }), "\"xMl\" is reserved"},
        {inside([](Events& e) { e.pi("a:b", ""); }), "\"a:b\" is no XML name"},
        {inside([](Events& e) { e.pi("", ""); }), "\"\" is no XML name"},
        {inside([](Events& e) { e.skippedEntity("e"); }), "\"e\" is declared nowhere"},
        {root("", ""), "Cannot write element name: \"\" is no XML name"},
        {root("", "1a"), "\"1a\" is no XML name"},
        {root("", "a:b"), "\"a:b\" is no XML name"},
        {root("", "a b"), "\"a b\""},
        {root("", "a\xC3\x97"), "is no XML name"},
        {root("", "\xCC\x80"), "is no XML name"},
        {root("", "a\xFF"), "\"a?\" is no XML name"},
        {root(XMLNS, "a"), "reserved namespace name"},
        {root("\x01", "a"), "Cannot write namespace name: XML does not allow the character U+0001"},
        {attribute("", "xmlns"), "\"xmlns\" is reserved"},
        {attribute("", "xmlns:p"), "is no XML name"},
        {attribute(XMLNS, "p"), "reserved namespace name"},
        {[](Events& e) {
             e.start("", "a", "", {{"u", "x", "", "p:x"}, {"u", "x", "", "q:x"}}).end();
         },
         "Cannot write attribute: \"x\" stands twice on one element"},
        {[=](Events& e) { e.start("", "a", "", twins).end(); }, "stands twice"},
        {[](Events&) {}, "Cannot write document: it has no root element"},
        {[](Events& e) { e.start("", "a"); }, "it ends inside an element"},
        {[](Events& e) { e.start("", "a").end().start("", "b"); }, "has a root element already"},
        {[](Events& e) { e.start("", "a").end(2); }, "no element is open"},
        {[](Events& e) { e.text("x"); }, "outside of the root element"},
        {[](Events& e) { e.start("", "a").end().text("x"); }, "outside of the root element"},
        {[](Events& e) { e.cdata({}); }, "outside of content"},
        {[](Events& e) { e.startDocument(); }, "started already"},
        {inside([](Events& e) { e.endCDATA(); }), "none is open"},
        {inside([](Events& e) { e.startCDATA(), e.startCDATA(); }), "outside of content"},
        {inside([](Events& e) { e.startCDATA(), e.note("c"); }), "outside of content"},
        {inside([](Events& e) { e.startCDATA(), e.start("", "b"); }), "outside of content"},
        {inside([](Events& e) { e.dtd("a", "", ""); }), "outside of the prolog"},
        {inside([](Events& e) { e.notation("n", "p", "s"); }), "has been written already"},
        {[](Events& e) { e.dtd("a", "", "").endDTD(), e.endDTD(); }, "none is open"},
        {[](Events& e) { e.dtd("a", "", "").endDTD(), e.entity("e", "s", "n"); }, "has been written already"},
        {[](Events& e) { e.dtd("", "", "").endDTD(), e.dtd("a", "", ""); }, "has one already"},
        {[](Events& e) { e.dtd("a", "", "").start("", "a"); }, "outside of content"},
        {[](Events& e) { e.dtd("a b", "", "").endDTD(); }, "name of document type"},
        {[](Events& e) { e.dtd("a", "\"", "").endDTD(); }, "public identifier"},
        {[](Events& e) { e.dtd("a", "\xC3\xA9", "").endDTD(); }, "public identifier"},
        {[](Events& e) { e.dtd("a", "", "'\"").endDTD(); }, "both kinds of quotation marks"},
        {[](Events& e) { e.notation("n", nullptr, nullptr); }, "\"n\" has no identifier"},
        {[](Events& e) { e.notation("a:b", nullptr, "s"); }, "Cannot write notation"},
        {[](Events& e) { e.entity("e", "\x02", "n"); }, "U+0002"},
        {[](Events& e) { e.entity("e", "s", ""); }, "notation of unparsed entity"},
    };
    for (const Row& row : rows) {
        std::ostringstream stream;
        Events events(stream);
        try {
            events.startDocument();
            row.events(events);
            events.endDocument();
            ADD_FAILURE() << stream.str() << " instead of: " << row.text;
        } catch (const XMLException& exception) {
            EXPECT_NE(exception.message().find(row.text), std::string::npos)
                << exception.message() << " instead of: " << row.text;
            EXPECT_THROW(events.startDocument(), XMLException) << "the document is lost";
        }
    }
}

TEST(XMLWriter, BuffersAndReportsAFailingStream) {
    struct Counter : std::streambuf {
        int writes = 0;
        std::size_t size = 0;
        std::size_t limit = static_cast<std::size_t>(-1);
        std::streamsize xsputn(const char*, std::streamsize count) override {
            ++writes;
            size += static_cast<std::size_t>(count);
            return size > limit ? 0 : count;
        }
    };
    Counter counter;
    std::ostream stream(&counter);
    Events events(stream);
    events.startDocument();
    events.start("", "root");
    for (int i = 0; i < 20000; ++i) {
        events.start("", "child").text("0123456789").end();
    }
    events.end();
    events.endDocument();
    EXPECT_EQ(counter.size, 13u + 20000u * 25u);
    EXPECT_LE(counter.writes, 10);

    for (const std::size_t limit : {std::size_t{0}, std::size_t{100000}}) {
        Counter full;
        full.limit = limit;
        std::ostream device(&full);
        Events writer(device);
        writer.startDocument();
        const auto run = [&] {
            writer.start("", "a").text(std::string(limit, 'x')).end();
            writer.endDocument();
        };
        EXPECT_THROW(run(), Tamo::IOException);
    }

    // What an exception leaves behind has reached the stream.
    std::ostringstream part;
    Events failing(part);
    failing.startDocument();
    EXPECT_THROW(failing.start("", "a").text("x\x01"), XMLException);
    EXPECT_EQ(part.str(), "<a>");
}

TEST(XMLWriter, WritesDeepDocumentsWithDeclarationsQuickly) {
    std::ostringstream stream;
    Events events(stream);
    events.startDocument();
    constexpr int DEPTH = 200000;
    for (int i = 0; i < DEPTH; ++i) {
        events.start(numbered("u", i), "a", "", {{numbered("v", i), "b", "", ""}});
    }
    events.end(DEPTH).endDocument();
    EXPECT_TRUE(stream.str().ends_with("</a></a>"));
}
