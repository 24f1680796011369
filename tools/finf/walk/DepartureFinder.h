#ifndef TAMO_FINF_DEPARTUREFINDER_H
#define TAMO_FINF_DEPARTUREFINDER_H

#include "Tamo/FastInfoset/DocumentVocabulary.h"
#include "Tamo/FastInfoset/QualifiedNameVocabulary.h"
#include "walk/FieldVisitor.h"
#include <functional>
#include <set>
#include <string>
#include <utility>

namespace finf {

/// Finds what a document that can be read has against ITU-T X.891, so that a strict reader would refuse it:
/// bits that are not as prescribed, children in the wrong place, text that is no UTF-8, ... each with the
/// clause that it breaks.
class DepartureFinder : public FieldVisitor {
public:
    /// Takes a departure: the field, what is wrong with it, and with which of its bits.
    using Report = std::function<void(const Field& field, const std::string& what, Tamo::UInt64 partBit)>;

    /// Calls report for each departure.
    explicit DepartureFinder(Report report) : _report(std::move(report)) {}

    /// The tables of the documents as the walker fills them; to be called before the walk, borrowed.
    void setVocabulary(const Tamo::FastInfoset::DocumentVocabulary& vocabulary) {
        _pVocabulary = &vocabulary;
    }

    void field(const Field& field) override;

private:
    using NameEntry = Tamo::FastInfoset::QualifiedNameEntry;

    void checkBits(const Field& field);
    void checkPlace(const Field& field);
    void checkText(const Field& field);
    void checkTyped(const Field& field);
    void checkUTF16(const Field& field, Tamo::UInt64 first, Tamo::UInt64 bits);
    void checkCodes(const Field& field);
    void checkAlphabet(const Field& field);
    void checkCharacters(const Field& field);
    void checkEntry(const Field& field);
    void checkName(const Field& field);
    void checkAttribute(const Field& field);
    const NameEntry& nameAt(Field::Table table, unsigned int index) const;
    void report(const Field& field, const std::string& what, const char* clause, Tamo::UInt64 partBit = 0);

    Report _report;
    const Tamo::FastInfoset::DocumentVocabulary* _pVocabulary = nullptr;
    // The namespace names and local names of the attributes of the element that is being read.
    std::set<std::pair<unsigned int, unsigned int>> _attributes;
    bool _hasRoot = false;
    bool _hasDeclaration = false;
};

} // namespace finf

#endif
