#include "inspect/StatisticsChart.h"
#include "command/FinfError.h"
#include <iomanip>
#include <sstream>

namespace finf {

using Tamo::UInt64;

namespace {

constexpr int BAR_WIDTH = 40;
constexpr const char* GREEN = "\x1B[32m";
constexpr const char* CYAN = "\x1B[36m";

/// A number with one decimal.
std::string decimal(double number) {
    std::ostringstream text;
    text << std::fixed << std::setprecision(1) << number;
    return text.str();
}

std::string counted(UInt64 count, const char* what) {
    return std::to_string(count) + ' ' + what + (count == 1 ? "" : "s");
}

} // namespace

void StatisticsChart::write(const DocumentStatistics& statistics) {
    _out << FinfError::oneLine(statistics.name) << ": " << counted(statistics.elements, "element") << ", "
         << counted(statistics.attributes, "attribute") << ", "
         << counted(statistics.characterChunks, "character chunk") << "\n\n";
    octets(statistics);
    tables(statistics);
    sizes(statistics);
}

void StatisticsChart::octets(const DocumentStatistics& statistics) {
    _out << "spent on              octets\n";
    for (std::size_t i = 0; i < BIT_KINDS; ++i) {
        const UInt64 bits = statistics.bits[i];
        if (bits == 0) {
            continue;
        }
        const double fraction = static_cast<double>(bits) / 8 / static_cast<double>(statistics.fastInfoset);
        _out << std::left << std::setw(17) << nameOf(static_cast<BitKind>(i)) << std::right << std::setw(11)
             << decimal(static_cast<double>(bits) / 8) << std::setw(7) << decimal(100 * fraction) << " %";
        bar(fraction, GREEN);
    }
    _out << '\n';
}

void StatisticsChart::tables(const DocumentStatistics& statistics) {
    _out << "table                       hits  added  neither     hits\n";
    for (std::size_t i = 0; i < DocumentStatistics::TABLES; ++i) {
        const auto& table = statistics.tables[i];
        const UInt64 all = table.read + table.added + table.literal;
        if (all == 0) {
            continue;
        }
        const double fraction = static_cast<double>(table.read) / static_cast<double>(all);
        _out << std::left << std::setw(24) << nameOf(static_cast<Field::Table>(i)) << std::right
             << std::setw(8) << table.read << std::setw(7) << table.added << std::setw(9) << table.literal
             << std::setw(7) << decimal(100 * fraction) << " %";
        bar(fraction / 2, CYAN);
    }
    _out << '\n';
}

void StatisticsChart::sizes(const DocumentStatistics& statistics) {
    const std::pair<const char*, UInt64> rows[] = {{"XML", statistics.xml},
                                                   {"XML, gzip", statistics.xmlGzip},
                                                   {"Fast Infoset", statistics.fastInfoset},
                                                   {"Fast Infoset, gzip", statistics.fastInfosetGzip}};
    _out << "form                  octets\n";
    for (const auto& [form, size] : rows) {
        const double fraction = static_cast<double>(size) / static_cast<double>(statistics.xml);
        _out << std::left << std::setw(18) << form << std::right << std::setw(10) << size << std::setw(7)
             << decimal(100 * fraction) << " %";
        bar(fraction < 1 ? fraction : 1, GREEN);
    }
}

// To an eighth of a column.
void StatisticsChart::bar(double fraction, const char* colour) {
    static constexpr const char* EIGHTHS[] = {"", "▏", "▎", "▍", "▌", "▋", "▊", "▉"};
    const int eighths = static_cast<int>(fraction * BAR_WIDTH * 8 + 0.5);
    std::string blocks;
    for (int i = 0; i < eighths / 8; ++i) {
        blocks += "█";
    }
    blocks += EIGHTHS[eighths % 8];
    if (blocks.empty()) {
        _out << '\n';
        return;
    }
    _out << "  " << (_colour ? colour : "") << blocks << (_colour ? "\x1B[0m" : "") << '\n';
}

} // namespace finf
