#ifndef EXAMPLES_X3DVOCABULARY_H
#define EXAMPLES_X3DVOCABULARY_H

#include "Tamo/FastInfoset/DocumentVocabulary.h"
#include "Tamo/FastInfoset/FISException.h"
#include "Tamo/FastInfoset/VocabularyLoader.h"
#include <algorithm>
#include <iterator>
#include <string>
#include <vector>

namespace example {

using Tamo::FastInfoset::DocumentVocabulary;

// [vocabulary]
/// The lists of samples/x3d.
struct X3DLists {
    std::vector<std::string> elements, attributes, values, algorithms;
};

inline DocumentVocabulary x3dVocabulary(const X3DLists& lists) {
    using Kind = DocumentVocabulary::NameKind;
    DocumentVocabulary vocabulary(DocumentVocabulary::VOC_MAP); // so that a writer can look names up
    bool found = false;
    for (const Kind kind : {Kind::ELEMENT, Kind::ATTRIBUTE}) {
        for (const std::string& name : kind == Kind::ELEMENT ? lists.elements : lists.attributes) {
            const unsigned int local = vocabulary.index(DocumentVocabulary::LOCAL_NAME, name, found);
            vocabulary.names(kind).index({0, 0, local}, found); // no prefix, no namespace
        }
    }
    for (const std::string& value : lists.values) {
        vocabulary.index(DocumentVocabulary::ATTRIBUTE_VALUE, value, found);
    }
    vocabulary.algorithms().setFirstIndex(33); // the documents have 32 where X.891 has the number less one
    for (const std::string& uri : lists.algorithms) {
        vocabulary.algorithms().add(uri);
    }
    return vocabulary;
}
// [/vocabulary]

// [loader]
/// Yields the vocabulary by the names that documents have for it, and opens nothing.
class X3DLoader : public Tamo::FastInfoset::VocabularyLoader {
public:
    static constexpr const char* URIS[] = {"urn:web3d:x3d:fi-vocabulary-3.2",
                                           "urn:web3d:x3d:fi-vocabulary-3.3", "urn:external-vocabulary"};

    explicit X3DLoader(const X3DLists& lists) : _vocabulary(x3dVocabulary(lists)) {}

    DocumentVocabulary load(const std::string& uri) override {
        if (std::find(std::begin(URIS), std::end(URIS), uri) == std::end(URIS)) {
            throw Tamo::FastInfoset::FISException("Unknown external vocabulary", uri);
        }
        return {_vocabulary, DocumentVocabulary::VOC_VECTOR}; // of the kind that parsers read fastest
    }

private:
    const DocumentVocabulary _vocabulary;
};
// [/loader]

} // namespace example

#endif
