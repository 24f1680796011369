#ifndef TAMO_FINF_FIELDPRINTER_H
#define TAMO_FINF_FIELDPRINTER_H

#include "walk/DocumentWalker.h"
#include "walk/FieldVisitor.h"
#include <ostream>
#include <string>
#include <utility>

namespace finf {

/// Shows the fields of documents on a stream, which is borrowed: the part that the options select.
class FieldPrinter : public FieldVisitor {
public:
    struct Options {
        Tamo::UInt64 offset = 0;                            ///< the octet from which on fields are shown
        Tamo::UInt64 limit = static_cast<Tamo::UInt64>(-1); ///< how many fields are shown
        bool full = false;                                  ///< octets and values are not shortened
        bool colour = false;                                ///< for a terminal
    };

    FieldPrinter(std::ostream& out, const Options& options) : _out(out), _options(options) {}

    /// Comes first, with the walker that is going to hand over the fields.
    virtual void start(const DocumentWalker&) {}

    void field(const Field& field) override;

    /// Whether a field had to be left out because of the limit, so that nothing is gained by going on.
    bool isFull() const { return _isFull; }

    /// Shows what has been read of a field that is broken, and why it is.
    virtual void fault(const Field& field, const std::string& reason) = 0;

    /// Shows the tables as the walker has them now.
    virtual void tables(const DocumentWalker& walker) = 0;

    /// Comes behind a document, and its tables.
    void endDocument() { _isBehindDocument = true; }

    /// Comes last.
    virtual void finish() = 0;

protected:
    /// Shows a field that is selected.
    virtual void show(const Field& field) = 0;

    const Options& options() const { return _options; }

    /// Whether what is to be shown is the first that is shown behind a document; tells it once.
    bool isBehindDocument() { return std::exchange(_isBehindDocument, false); }

    /// Calls use(table, list of the entries from 1 on) for each table that has entries.
    template<class Use>
    static void forEachTable(const DocumentWalker& walker, Use use);

    std::ostream& _out;

private:
    const Options _options;
    Tamo::UInt64 _shown = 0;
    bool _isFull = false;
    bool _isBehindDocument = false;
};

template<class Use>
void FieldPrinter::forEachTable(const DocumentWalker& walker, Use use) {
    using Tamo::FastInfoset::DocumentVocabulary;
    const DocumentVocabulary& vocabulary = walker.vocabulary();
    for (int id = DocumentVocabulary::PREFIX; id <= DocumentVocabulary::ATTRIBUTE_NAME; ++id) {
        const auto table = static_cast<Field::Table>(id);
        if (table < DocumentVocabulary::ELEMENT_NAME) {
            const auto& values = vocabulary.vocabulary(table);
            use(table, values.size(),
                [&](std::size_t i) { return values.value(static_cast<unsigned int>(i)); });
        } else {
            const auto& names = table == DocumentVocabulary::ELEMENT_NAME ? vocabulary.elementVocabulary()
                                                                          : vocabulary.attributeVocabulary();
            use(table, names.size(),
                [&](std::size_t i) { return walker.qualifiedName(table, static_cast<unsigned int>(i)); });
        }
    }
}

} // namespace finf

#endif
