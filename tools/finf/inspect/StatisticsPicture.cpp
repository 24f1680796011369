#include "inspect/StatisticsPicture.h"
#include "Tamo/UTF8Encoding.h"
#include <algorithm>
#include <array>
#include <string>

namespace finf {

using Tamo::UInt64;

namespace {

constexpr int WIDTH = 760;
constexpr int LEFT = 150;  // where bars begin
constexpr int BARS = 520;  // the longest one
constexpr int ROW = 26;    // from bar to bar
constexpr int LEGEND = 44; // height of the legend
constexpr int DOCUMENT = 4 * ROW + 44;

constexpr const char* GREY = "#9aa0a6";

// By BitKind; colours that the colour-blind can tell apart (Okabe and Ito).
constexpr std::array<const char*, BIT_KINDS> COLOURS = {"#0072b2", "#000000", "#56b4e9", "#009e73",
                                                        "#e69f00", "#f0e442", "#cc79a7", "#d55e00"};

/// The text with the characters that mean something to XML escaped; those that XML or UTF-8 do not have
/// become question marks.
std::string escaped(const std::string& text) {
    if (!Tamo::UTF8Encoding::isValid(text)) {
        return "?";
    }
    std::string result;
    for (const char c : text) {
        switch (c) {
        case '<':
            result += "&lt;";
            break;
        case '&':
            result += "&amp;";
            break;
        default:
            result.push_back(static_cast<unsigned char>(c) < 0x20 ? '?' : c);
        }
    }
    return result;
}

/// Tenths of pixels are enough, and the same whatever the locale.
std::string pixels(double value) {
    const auto tenths = static_cast<UInt64>(value * 10 + 0.5);
    return std::to_string(tenths / 10) + "." + std::to_string(tenths % 10);
}

void text(std::ostream& out, double x, int y, const std::string& content, const char* attributes = "") {
    out << "<text x=\"" << pixels(x) << "\" y=\"" << y << "\"" << attributes << ">" << escaped(content)
        << "</text>\n";
}

void box(std::ostream& out, double x, int y, double width, const char* colour, const std::string& title) {
    out << "<rect x=\"" << pixels(x) << "\" y=\"" << y << "\" width=\"" << pixels(width)
        << "\" height=\"16\" fill=\"" << colour << "\"><title>" << escaped(title) << "</title></rect>\n";
}

void legend(std::ostream& out) {
    for (std::size_t i = 0; i < BIT_KINDS; ++i) {
        const int x = 20 + static_cast<int>(i % 4) * 180;
        const int y = 8 + static_cast<int>(i / 4) * 22;
        box(out, x, y, 16, COLOURS[i], nameOf(static_cast<BitKind>(i)));
        text(out, x + 22, y + 13, nameOf(static_cast<BitKind>(i)));
    }
}

void document(std::ostream& out, const DocumentStatistics& statistics, int top) {
    const UInt64 largest = std::max(
        {statistics.xml, statistics.xmlGzip, statistics.fastInfoset, statistics.fastInfosetGzip, UInt64{1}});
    const auto width = [&](double octets) { return octets * BARS / static_cast<double>(largest); };
    text(out, 20, top + 20, statistics.name, " font-weight=\"bold\"");
    int y = top + 32;
    const auto row = [&](const char* form, UInt64 octets) {
        text(out, LEFT - 8, y + 13, form, " text-anchor=\"end\"");
        text(out, LEFT + width(static_cast<double>(octets)) + 6, y + 13, std::to_string(octets));
    };
    const auto plain = [&](const char* form, UInt64 octets) {
        row(form, octets);
        box(out, LEFT, y, width(static_cast<double>(octets)), GREY, form);
        y += ROW;
    };
    plain("XML", statistics.xml);
    plain("XML, gzip", statistics.xmlGzip);
    row("Fast Infoset", statistics.fastInfoset);
    double x = LEFT;
    for (std::size_t i = 0; i < BIT_KINDS; ++i) {
        const double octets = static_cast<double>(statistics.bits[i]) / 8;
        if (octets > 0) {
            box(out, x, y, width(octets), COLOURS[i],
                std::string(nameOf(static_cast<BitKind>(i))) + ": " + pixels(octets) + " octets");
            x += width(octets);
        }
    }
    y += ROW;
    plain("Fast Infoset, gzip", statistics.fastInfosetGzip);
}

} // namespace

void StatisticsPicture::write(std::ostream& out, const std::vector<DocumentStatistics>& documents) {
    const int height = LEGEND + 12 + DOCUMENT * static_cast<int>(documents.size());
    out << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        << "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" << WIDTH << "\" height=\"" << height
        << "\" viewBox=\"0 0 " << WIDTH << " " << height
        << "\" font-family=\"sans-serif\" font-size=\"13\">\n"
        << "<rect width=\"100%\" height=\"100%\" fill=\"#ffffff\"/>\n";
    legend(out);
    int top = LEGEND + 12;
    for (const DocumentStatistics& statistics : documents) {
        document(out, statistics, top);
        top += DOCUMENT;
    }
    out << "</svg>\n";
}

} // namespace finf
