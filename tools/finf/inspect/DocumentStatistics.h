#ifndef TAMO_FINF_DOCUMENTSTATISTICS_H
#define TAMO_FINF_DOCUMENTSTATISTICS_H

#include "Tamo/FastInfoset/DocumentVocabulary.h"
#include "Tamo/Types.h"
#include "walk/FieldVisitor.h"
#include <array>
#include <string>
#include <vector>

namespace finf {

/// What the octets of a document are spent on, and what the tables save: filled by a walk.
class DocumentStatistics : public FieldVisitor {
public:
    /// How a table was used.
    struct TableStatistics {
        Tamo::UInt64 added = 0;   ///< literals that became entries: the misses
        Tamo::UInt64 read = 0;    ///< indexes in place of literals: the hits
        Tamo::UInt64 literal = 0; ///< literals that became none
    };

    static constexpr std::size_t TABLES = Tamo::FastInfoset::DocumentVocabulary::ATTRIBUTE_NAME + 1;

    void field(const Field& field) override;

    /// The documents as one JSON array, with a line end.
    static std::string json(const std::vector<DocumentStatistics>& documents);

    std::string name;                             ///< of the document
    std::array<Tamo::UInt64, BIT_KINDS> bits{};   ///< by BitKind
    std::array<TableStatistics, TABLES> tables{}; ///< by Field::Table
    Tamo::UInt64 elements = 0;
    Tamo::UInt64 attributes = 0;
    Tamo::UInt64 characterChunks = 0;

    // The sizes of the document in its forms, in octets.
    Tamo::UInt64 fastInfoset = 0;
    Tamo::UInt64 fastInfosetGzip = 0;
    Tamo::UInt64 xml = 0;
    Tamo::UInt64 xmlGzip = 0;
};

/// What the bits are spent on, as text: "literal names".
const char* nameOf(BitKind kind);

} // namespace finf

#endif
