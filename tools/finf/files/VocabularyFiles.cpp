#include "files/VocabularyFiles.h"
#include "Tamo/FastInfoset/FastInfosetParser.h"
#include "Tamo/MemoryStream.h"
#include "command/FinfError.h"
#include "files/DocumentKind.h"
#include "files/InputFile.h"
#include "files/X3D.h"
#include <algorithm>

namespace finf {

using Tamo::FastInfoset::DocumentVocabulary;
using Tamo::FastInfoset::FastInfosetParser;
using Tamo::FastInfoset::SharedVocabulary;

DocumentVocabulary VocabularyFiles::load(const std::string& uri) {
    const auto entry =
        std::find_if(_entries.begin(), _entries.end(), [&](const Entry& e) { return e.uri == uri; });
    if (entry == _entries.end() && uri.starts_with(SharedVocabulary::CONTENT_URI)) {
        for (const Entry& named : _entries) {
            if (named.uri.empty()) {
                DocumentVocabulary vocabulary = load(named);
                if (SharedVocabulary::contentURI(vocabulary) == uri) {
                    return vocabulary;
                }
            }
        }
    }
    if (entry == _entries.end()) {
        const std::vector<std::string> ofX3D = X3D::uris();
        const bool isX3D = std::find(ofX3D.begin(), ofX3D.end(), uri) != ofX3D.end();
        throw FinfError(
            "external vocabulary " + uri + " is needed; give it with " +
            (isX3D ? std::string("--vocabulary ") + X3D::NAME : "--external-vocabulary " + uri + "=FILE"));
    }
    return load(*entry);
}

DocumentVocabulary VocabularyFiles::load(const Entry& entry) {
    if (entry.file.empty()) {
        return {X3D::vocabulary(), DocumentVocabulary::VOC_VECTOR};
    }
    try {
        return read(InputFile::readAll(entry.file));
    } catch (const std::exception& e) {
        throw FinfError("external vocabulary " + entry.file + ": " + FinfError::reason(e));
    }
}

std::shared_ptr<const SharedVocabulary> VocabularyFiles::first() {
    const Entry& entry = _entries.front();
    return shared(entry.uri.empty() ? SharedVocabulary::contentURI(load(entry)) : entry.uri);
}

DocumentVocabulary VocabularyFiles::read(const std::string& octets) {
    Tamo::MemoryInputStream stream(octets.data(), octets.size());
    if (kindOf(octets) != DocumentKind::FAST_INFOSET) {
        // Not the kind that loadXML yields, which may have limits that the documents are not bound to.
        return {loadXML(stream, isStrict()), DocumentVocabulary::VOC_VECTOR};
    }
    FastInfosetParser parser;
    parser.setStrict(isStrict());
    parser.setExternalVocabularyLoader(this);
    X3D::addDecodings(parser.decodingAlgorithms());
    parser.setLimits(_limits);
    FinfError::explainDamage([&] { parser.parse(stream); });
    return parser.vocabulary();
}

} // namespace finf
