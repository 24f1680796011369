#ifndef TAMO_BENCHMARKS_DOCUMENTSET_H
#define TAMO_BENCHMARKS_DOCUMENTSET_H

#include "Recording.h"
#include "Tamo/FastInfoset/SharedVocabulary.h"
#include <cstddef>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace Tamo::Benchmarks {

/// One document in all the forms that the jobs need.
struct Document {
    std::string name;
    /// What no other document of the program has, not even one at the same address later.
    std::size_t number = 0;
    /// The XML text.
    std::string xml;
    /// Its events, as Expat reports them.
    Recording recording;
    /// The Fast Infoset document, strings of up to 16 octets indexed.
    std::string fastInfoset;
    /// The same against the set's vocabulary.
    std::string withVocabulary;
};

/// Documents of one kind, which are measured together.
class DocumentSet {
public:
    /// Reads the documents of a directory, in the order of their names, and prepares them.
    explicit DocumentSet(const std::filesystem::path& directory);

    /// Reads and prepares these documents.
    DocumentSet(std::string name, const std::vector<std::filesystem::path>& files);

    /// The directories below root that hold documents, in the order of their names.
    static std::vector<std::filesystem::path> find(const std::filesystem::path& root);

    /// Encodes a recording with VOC_MAP tables.
    static std::string encode(const Recording& recording, int maxIndexedStringLength);

    const std::string& name() const { return _name; }
    /// Documents, octets, elements, attributes and text in words.
    std::string description() const;
    const std::vector<std::unique_ptr<Document>>& documents() const { return _documents; }
    /// A vocabulary for documents of this kind: what every seventh of them fills.
    const std::shared_ptr<const FastInfoset::SharedVocabulary>& vocabulary() const { return _pVocabulary; }

    /// Proves that every way through the library keeps the events that Expat reports; throws
    /// std::runtime_error with the first difference.
    void prove() const;

private:
    void add(const std::filesystem::path& file);
    void addVocabulary();

    std::string _name;
    std::string _description;
    std::vector<std::unique_ptr<Document>> _documents;
    std::shared_ptr<const FastInfoset::SharedVocabulary> _pVocabulary;
};

} // namespace Tamo::Benchmarks

#endif
