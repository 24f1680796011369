#include "Tamo/FastInfoset/SharedVocabulary.h"
#include "SharedNames.h"
#include "Tamo/Base64.h"
#include "Tamo/Exception.h"
#include "Tamo/FastInfoset/FISException.h"
#include "Tamo/SHA256.h"
#include <array>

namespace Tamo::FastInfoset {

namespace {

constexpr std::size_t HASHED = 16; // octets of the digest

// What is hashed: counts, indexes, and strings with their lengths, one after the other.
class ContentHash {
public:
    void add(UInt64 number) {
        std::array<char, 8> octets{};
        for (char& octet : octets) {
            octet = static_cast<char>(number & 0xFF);
            number >>= 8;
        }
        _hash.add(std::string_view(octets.data(), octets.size()));
    }

    void add(std::string_view text) {
        add(UInt64{text.size()});
        _hash.add(text);
    }

    // An absent part is 0, however the table has it.
    void add(const QualifiedNameEntry& name) {
        for (const UInt32 part : {name.prefixId(), name.namespaceId(), name.localNameId()}) {
            add(UInt64{part == QualifiedNameEntry::ABSENT ? 0 : part});
        }
    }

    template<class T>
    void addTable(const Vocabulary<T>& table) {
        add(UInt64{table.size()});
        for (std::size_t i = 0; i < table.size(); ++i) {
            add(table.value(static_cast<unsigned int>(i)));
        }
    }

    std::string finish() {
        const SHA256::Digest digest = _hash.finish();
        std::string text;
        Base64::encode({reinterpret_cast<const char*>(digest.data()), HASHED}, text);
        text.resize(text.find('='));
        for (char& c : text) { // as URIs have it (RFC 4648, 5)
            c = c == '+' ? '-' : c == '/' ? '_' : c;
        }
        return text;
    }

private:
    SHA256 _hash;
};

} // namespace

SharedVocabulary::SharedVocabulary(const DocumentVocabulary& vocabulary)
    : _vocabulary(vocabulary.searchable()), _pNames(std::make_unique<const SharedNames>(_vocabulary)) {
    if (uri().empty()) {
        _vocabulary.setURI(contentURI(_vocabulary));
    } else {
        requireContent(uri(), _vocabulary);
    }
}

SharedVocabulary::~SharedVocabulary() = default;

std::string SharedVocabulary::contentURI(const DocumentVocabulary& vocabulary) {
    ContentHash hash;
    for (int id = DocumentVocabulary::PREFIX; id < DocumentVocabulary::ELEMENT_NAME; ++id) {
        hash.addTable(vocabulary.vocabulary(static_cast<DocumentVocabulary::ID>(id)));
    }
    hash.addTable(vocabulary.elementVocabulary());
    hash.addTable(vocabulary.attributeVocabulary());
    hash.add(UInt64{vocabulary.restrictedAlphabets().alphabets().size()});
    for (const RestrictedAlphabet& alphabet : vocabulary.restrictedAlphabets().alphabets()) {
        hash.add(alphabet.characters());
    }
    hash.add(UInt64{vocabulary.algorithms().firstIndex()});
    hash.add(UInt64{vocabulary.algorithms().uris().size()});
    for (const std::string& uri : vocabulary.algorithms().uris()) {
        hash.add(uri);
    }
    return std::string(CONTENT_URI).append(hash.finish());
}

void SharedVocabulary::requireContent(const std::string& uri, const DocumentVocabulary& vocabulary) {
    if (uri.starts_with(CONTENT_URI) && uri != contentURI(vocabulary)) {
        throw FISException("The external vocabulary has other entries than its URI says", uri);
    }
}

} // namespace Tamo::FastInfoset
