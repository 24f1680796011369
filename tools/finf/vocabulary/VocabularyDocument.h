#ifndef TAMO_FINF_VOCABULARYDOCUMENT_H
#define TAMO_FINF_VOCABULARYDOCUMENT_H

#include "Tamo/FastInfoset/DocumentVocabulary.h"
#include "vocabulary/VocabularyUsage.h"
#include <cstdint>
#include <string>
#include <vector>

namespace finf {

/// An XML document from which ExternalVocabularyLoader builds a vocabulary of chosen names and strings.
///
/// Elements, attributes, values, texts and the other strings are numbered from the most frequent one on;
/// prefixes, namespace names and local names in the order in which these need them. A table takes at most
/// half of what a hash table takes, so that documents have room for entries of their own. What no XML
/// document can bring about is left out.
class VocabularyDocument {
public:
    /// Chooses the names of the samples, and the strings that they have at least minCount times. There is an
    /// element at least.
    VocabularyDocument(const VocabularyUsage& usage, std::uint64_t minCount);

    /// The document, an entry a line.
    std::string text() const;

    /// Throws FinfError if a vocabulary does not hold what was chosen, in its order.
    void check(const Tamo::FastInfoset::DocumentVocabulary& vocabulary) const;

private:
    struct Binding {
        std::string prefix;
        std::string uri; // empty undeclares

        bool operator==(const Binding&) const = default;
    };

    void chooseDeclarations(const VocabularyUsage& usage);
    void chooseNames(const VocabularyUsage& usage);
    void chooseStrings(const VocabularyUsage& usage, std::uint64_t minCount);

    // What brings an entry about; empty when nothing can.
    std::string element(const TableName& name, std::vector<Binding> bindings,
                        const std::string& attribute) const;
    std::string withAttribute(const TableName& attribute, const std::string& value) const;
    std::string withDeclaration(const TableName& declaration, bool onFirstName) const;
    std::string otherString(const std::string& s) const;
    std::string prolog() const;
    std::string tag(const TableName& name, std::vector<Binding> bindings, const Binding& inherited) const;

    std::vector<TableName> _declarations;
    std::vector<TableName> _elements;
    std::vector<TableName> _attributes;
    std::vector<std::string> _values;
    std::vector<std::string> _texts;
    std::vector<std::string> _otherStrings;
    std::vector<std::string> _otherNames;
    std::vector<std::string> _identifiers;
};

} // namespace finf

#endif
