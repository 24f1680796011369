#include "files/VocabularyFiles.h"
#include "Tamo/FastInfoset/FastInfosetParser.h"
#include "Tamo/MemoryStream.h"
#include "Tamo/XML/InputSource.h"
#include "command/FinfError.h"
#include "files/DocumentKind.h"
#include "files/InputFile.h"
#include <algorithm>

namespace finf {

using Tamo::FastInfoset::DocumentVocabulary;
using Tamo::FastInfoset::FastInfosetParser;

DocumentVocabulary VocabularyFiles::load(const std::string& uri) {
    const auto entry =
        std::find_if(_entries.begin(), _entries.end(), [&](const Entry& e) { return e.uri == uri; });
    if (entry == _entries.end()) {
        throw FinfError("external vocabulary " + uri + " is needed; give it with --external-vocabulary " +
                        uri + "=FILE");
    }
    try {
        return read(InputFile::readAll(entry->file));
    } catch (const std::exception& e) {
        throw FinfError("external vocabulary " + entry->file + ": " + FinfError::reason(e));
    }
}

DocumentVocabulary VocabularyFiles::read(const std::string& octets) {
    Tamo::MemoryInputStream stream(octets.data(), octets.size());
    if (kindOf(octets) != DocumentKind::FAST_INFOSET) {
        // Not the kind that loadXML yields: it has limits, which the documents are not bound to.
        return {loadXML(stream), DocumentVocabulary::VOC_VECTOR};
    }
    FastInfosetParser parser;
    parser.setExternalVocabularyLoader(this);
    parser.setLimits(_limits);
    Tamo::XML::InputSource source(stream);
    FinfError::explainDamage([&] { parser.parse(&source); });
    return parser.vocabulary();
}

DocumentVocabulary VocabularyFiles::loadForWriting(const std::string& uri) {
    const DocumentVocabulary found = vocabulary(uri);
    try {
        return DocumentVocabulary(found, DocumentVocabulary::VOC_MAP);
    } catch (const Tamo::InvalidArgumentException& e) {
        throw FinfError("external vocabulary " + uri + " cannot be written against: " + e.message());
    }
}

} // namespace finf
