#ifndef TAMO_FINF_JSONPRINTER_H
#define TAMO_FINF_JSONPRINTER_H

#include "inspect/FieldPrinter.h"

namespace finf {

/// The fields as JSON documents (RFC 8259), one behind the other: for each Fast Infoset document, and for
/// what stands behind the last one, an object with the members
/// - "file": the name of the input,
/// - "fields": an array of objects, one a line, with the members "offset", "bit", "bits", "octets"
///   (hexadecimal), "depth", "construct", and where they apply "note", "value", "encoding", "table", "index",
///   "use" ("adds", "reads", "literal") and "shortened" (octets or value are not complete),
/// - "fault", if there is one: an object of "offset", "bit", "construct" and "reason",
/// - "tables", if asked for: an object of arrays, whose first elements are the entries with index 1,
/// - "more": true when the limit has left fields out.
class JsonPrinter : public FieldPrinter {
public:
    JsonPrinter(std::ostream& out, const Options& options, const std::string& file);

    void fault(const Field& field, const std::string& reason) override;
    void tables(const DocumentWalker& walker) override;
    void finish() override;

private:
    void show(const Field& field) override;

    void begin();
    void beginNext();
    void add(const char* name, std::string_view text);
    void add(const char* name, Tamo::UInt64 number);
    void separate(const char* name);
    void addPlace(const Field& field);
    void endFields();
    void write();

    const std::string _file;
    std::string _json;
    bool _isFirst = true;
    bool _inFields = true;
};

} // namespace finf

#endif
