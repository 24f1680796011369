#ifndef TAMO_FINF_VOCABULARYUSAGE_H
#define TAMO_FINF_VOCABULARYUSAGE_H

#include "Tamo/XML/DefaultHandler.h"
#include <compare>
#include <cstdint>
#include <map>
#include <string>

namespace finf {

/// A name as a Fast Infoset document's tables have it.
struct TableName {
    std::string prefix;
    std::string uri;
    std::string localName;

    auto operator<=>(const TableName&) const = default;
};

/// Counts how often Fast Infoset documents use the entries of their vocabularies. Set as all handlers of a
/// FastInfosetParser that is strict; what it counts of several documents adds up.
class VocabularyUsage : public Tamo::XML::DefaultHandler {
public:
    /// What a reader of an XML document numbers of values and texts, in octets.
    static constexpr std::size_t MAX_STRING = 16;

    template<class T>
    using Counts = std::map<T, std::uint64_t>;

    Counts<TableName> elements;
    Counts<TableName> attributes;
    Counts<TableName> declarations; ///< of namespaces, without local names
    Counts<std::string> values;
    Counts<std::string> texts;
    Counts<std::string> otherStrings; ///< comments and processing instructions' data
    Counts<std::string> otherNames;   ///< processing instructions' targets, notations, entities
    Counts<std::string> identifiers;  ///< system and public

    void startElement(const std::string& uri, const std::string& localName, const std::string& qname,
                      const Tamo::XML::Attributes& attrs) override;
    void characters(const char ch[], int start, int length) override;
    void processingInstruction(const std::string& target, const std::string& data) override;
    void startPrefixMapping(const std::string& prefix, const std::string& uri) override;
    void comment(const char ch[], int start, int length) override;
    void startDTD(const std::string& name, const std::string& publicId, const std::string& systemId) override;
    void notationDecl(const std::string& name, const std::string* publicId,
                      const std::string* systemId) override;
    void unparsedEntityDecl(const std::string& name, const std::string* publicId, const std::string& systemId,
                            const std::string& notationName) override;

private:
    static std::string prefixOf(const std::string& qualifiedName);
    static void countString(Counts<std::string>& counts, const std::string& s);
    static void countAll(Counts<std::string>& counts, const std::string& s);
};

} // namespace finf

#endif
