#include "SharedNames.h"

namespace Tamo::FastInfoset {

using NameKind = DocumentVocabulary::NameKind;

SharedNames::SharedNames(const DocumentVocabulary& vocabulary)
    : usual{resolve(vocabulary, NameKind::ELEMENT, false), resolve(vocabulary, NameKind::ATTRIBUTE, false)},
      strict{usual.elements, resolve(vocabulary, NameKind::ATTRIBUTE, true)} {
    addQualifiedNames();
}

std::vector<ResolvedNames::Name> SharedNames::resolve(const DocumentVocabulary& vocabulary, NameKind kind,
                                                      bool isPrefixCounted) {
    const Vocabulary<QualifiedNameEntry>& names = vocabulary.names(kind);
    std::vector<ResolvedNames::Name> result(names.size());
    const auto part = [&](DocumentVocabulary::ID id, UInt32 index) {
        return vocabulary.indexedVocabulary(id)->values().find(index);
    };
    for (unsigned int i = 1; i < result.size(); ++i) {
        const QualifiedNameEntry& entry = names.value(i);
        const std::string* const pPrefix = part(DocumentVocabulary::PREFIX, entry.prefixId());
        const std::string* const pUri = part(DocumentVocabulary::NAMESPACE_NAME, entry.namespaceId());
        const std::string* const pLocalName = part(DocumentVocabulary::LOCAL_NAME, entry.localNameId());
        if (pPrefix && pUri && pLocalName) {
            result[i] = ResolvedNames::named(*pPrefix, *pUri, *pLocalName, isPrefixCounted);
        }
    }
    return result;
}

// Of elements alone: attributes have theirs when somebody asks.
void SharedNames::addQualifiedNames() {
    for (std::size_t i = 0; i < usual.elements.size(); ++i) {
        ResolvedNames::Name& name = usual.elements[i];
        if (!name.pLocalName) {
            continue;
        }
        strict.elements[i].pQName = ResolvedNames::qualifiedNameOf(name, true);
        name.pQName = ResolvedNames::qualifiedNameOf(name, false);
        if (!name.pQName && ResolvedNames::isKept(name)) {
            name.pQName = &qnames.emplace_back(*name.pPrefix + ':' + *name.pLocalName);
            strict.elements[i].pQName = name.pQName;
        }
    }
}

} // namespace Tamo::FastInfoset
