#ifndef TAMO_FINF_TEXTPRINTER_H
#define TAMO_FINF_TEXTPRINTER_H

#include "inspect/FieldPrinter.h"

namespace finf {

/// One line for each field: where it begins, its octets, and what they mean, indented as the fields are
/// nested.
///
/// Offsets are hexadecimal, with the bit behind a dot where that is not the first of the octet. Of an octet
/// that a field shares with another one, the hexadecimal digit or the bits that belong to it are shown, and
/// dots for the rest. "+ TABLE n" is an entry that the field adds, "= TABLE n" one that it stands for.
class TextPrinter : public FieldPrinter {
public:
    using FieldPrinter::FieldPrinter;

    void fault(const Field& field, const std::string& reason) override;
    void tables(const DocumentWalker& walker) override;
    void finish() override;

private:
    void show(const Field& field) override;

    void begin(const Field& field, std::string_view octets, Tamo::UInt64 bits);
    void appendOctets(const Field& field, std::string_view octets, Tamo::UInt64 bits);
    void appendColoured(const char* colour, std::string_view text);
    void setColour(const char* colour);
    void write();

    std::string _line;
    bool _hasBegun = false;
};

} // namespace finf

#endif
