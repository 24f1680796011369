#include "Tamo/XML/WhitespaceFilter.h"
#include "Tamo/XML/SAXException.h"
#include "Tamo/XML/SAXParser.h"
#include "Trace.h"
#include <gtest/gtest.h>

using namespace Tamo::XML;

namespace {

struct Row {
    std::string xml;
    std::string trace;
};

} // namespace

TEST(WhitespaceFilter, DropsRunsOfWhiteSpaceOnly) {
    const Row rows[] = {
        {"<a> <b/>\n\t<!--c--> <?p d?> </a>", "L [ <a> <b> </b> <!--c--> <?p|d?> </a> ]"},
        {"<a> x <b> </b> y</a>", "L [ <a> ' x ' <b> </b> ' y' </a> ]"},
        {"<a> <![CDATA[ ]]> <![CDATA[]]></a>", "L [ <a> (C ' ' C) (C C) </a> ]"},
        {"<a xml:space='preserve'> <b xml:space='default'> <c/> </b> <d> </d></a>",
         "L [ <a {http://www.w3.org/XML/1998/namespace}xml:space=preserve> ' ' "
         "<b {http://www.w3.org/XML/1998/namespace}xml:space=default> <c> </c> </b> ' ' <d> ' ' </d> </a> ]"},
        {"<!DOCTYPE a [<!NOTATION n SYSTEM 's'>]><a xmlns='u'> </a>",
         "L [ (DTD a,, N(n,-,'s') DTD) +=u <{u}a> </{u}a> - ]"},
    };
    for (const Row& row : rows) {
        SAXParser parser;
        Trace outer;
        outer.connect(parser);
        WhitespaceFilter filter(&parser);
        Trace trace;
        trace.connect(filter);
        filter.parseMemoryNP(row.xml.data(), row.xml.size());
        EXPECT_EQ(trace.text(), row.trace) << row.xml;
        EXPECT_EQ(parser.getContentHandler(), &outer) << "the parent has its own handlers back";
        EXPECT_EQ(outer.text(), "");
    }
}

TEST(WhitespaceFilter, DecidesOnTheWholeRunHoweverItIsCut) {
    SAXParser parser;
    WhitespaceFilter filter(&parser);
    for (const std::size_t length : {std::size_t{10}, std::size_t{65536}, std::size_t{200000}}) {
        const std::string space(length, ' ');
        for (const std::string& tail : {std::string(), std::string("x"), "x" + space}) {
            Trace trace(Trace::INFORMATION);
            trace.connect(filter);
            const std::string xml = "<a>" + space + tail + "</a>";
            filter.parseMemoryNP(xml.data(), xml.size());
            EXPECT_EQ(trace.text(),
                      tail.empty() ? "L [ <a> </a> ]" : "L [ <a> '" + space + tail + "' </a> ]");
        }
    }
}

TEST(WhitespaceFilter, StartsCleanAfterAParseThatFailed) {
    SAXParser parser;
    WhitespaceFilter filter(&parser);
    const std::string bad = "<a xml:space='preserve'>x<![CDATA[ <b>";
    EXPECT_THROW(filter.parseMemoryNP(bad.data(), bad.size()), SAXParseException);
    Trace trace;
    trace.connect(filter);
    filter.parseMemoryNP("<a> <b/></a>", 12);
    EXPECT_EQ(trace.text(), "L [ <a> <b> </b> </a> ]");
}
