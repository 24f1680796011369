#ifndef TAMO_FINF_PAGEPRINTER_H
#define TAMO_FINF_PAGEPRINTER_H

#include "inspect/FieldPrinter.h"
#include "inspect/FieldShapes.h"
#include "inspect/PageData.h"
#include "walk/DepartureFinder.h"
#include "walk/RecordingBuf.h"
#include <array>
#include <istream>

namespace finf {

/// The fields as one HTML page that needs nothing but a browser: octets and constructs side by side, tables,
/// what the octets are spent on.
///
/// The page is a frame (PageText) around data (PageData), in this order as they come, so that little is kept:
/// - "octets": those of the fields shown, and what stands behind the last one,
/// - "fields": for each the number of its shape (FieldShapes), and as the shape says the number of octets in
/// the
///   last part and the index,
/// - "texts": notes and values that do not stand in the octets, each behind its length in octets; then the
///   entries that the tables had before the first field shown,
/// - "names": the entries of the name tables from 1 on, three indexes each, 0 for none,
/// - "about": one JSON object, which says what the others are.
class PagePrinter : public FieldPrinter {
public:
    /// The page goes to out; source is what the document is read from; both are borrowed. The page names the
    /// file.
    PagePrinter(std::ostream& out, const Options& options, const std::string& file, std::istream& source);

    /// The source, to be read through the printer, which has to see the octets.
    std::istream& source() { return _source; }

    void start(const DocumentWalker& walker) override;
    void field(const Field& field) override;
    void fault(const Field& field, const std::string& reason) override;
    void tables(const DocumentWalker& walker) override;
    void finish() override;

private:
    void show(const Field& field) override;

    FieldShapes::Form formOf(const Field& field);
    FieldShapes::Source sourceOf(const Field& field) const;
    std::size_t knownOf(Field::Table table, std::size_t size) const;
    void writeText(std::string_view text);
    void writeOctets(Tamo::UInt64 end);
    void addDeparture(const std::string& place, const std::string& what);

    static constexpr std::size_t TABLES = Tamo::FastInfoset::DocumentVocabulary::ATTRIBUTE_NAME + 1;

    RecordingBuf _record;
    std::istream _source;
    PageData _octets;
    PageData _fields;
    PageData _texts;
    PageData _names;
    FieldShapes _shapes;
    DepartureFinder _finder;
    std::string _about;
    std::string _tables;     // JSON
    std::string _departures; // JSON
    std::string _fault;      // JSON
    bool _hasBegun = false;
    Tamo::UInt64 _count = 0;                        // fields shown
    Tamo::UInt64 _departureCount = 0;               // of all
    Tamo::UInt64 _firstBit = 0;                     // of the first field shown
    Tamo::UInt64 _lastOctet = 0;                    // behind those written
    Tamo::UInt64 _lastBit = 0;                      // behind the last field shown
    std::size_t _depth = 0;                         // of that
    std::size_t _openElements = 0;                  // whose start was shown
    std::array<unsigned int, TABLES> _firstAdded{}; // the first entry that a field shown has added, or 0
    std::array<unsigned int, TABLES> _lastAdded{};
};

} // namespace finf

#endif
