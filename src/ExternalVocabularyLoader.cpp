#include "Tamo/FastInfoset/ExternalVocabularyLoader.h"
#include "Tamo/FastInfoset/FISException.h"
#include "Tamo/FastInfoset/FastInfosetParser.h"
#include "Tamo/FastInfoset/FastInfosetWriter.h"
#include "Tamo/NullStream.h"
#include "Tamo/Path.h"
#include "Tamo/URI.h"
#include "Tamo/URIStreamOpener.h"
#include "Tamo/XML/SAXParser.h"
#include <istream>
#include <memory>
#include <utility>

namespace Tamo::FastInfoset {

namespace {

// The extension of the resource's file name, in lower case whatever the locale.
std::string extensionOf(const std::string& uri) {
    std::string extension = Path(URI(uri).getPath()).getExtension();
    for (char& c : extension) {
        if (c >= 'A' && c <= 'Z') {
            c = static_cast<char>(c - 'A' + 'a');
        }
    }
    return extension;
}

} // namespace

ExternalVocabularyLoader::~ExternalVocabularyLoader() = default;

DocumentVocabulary ExternalVocabularyLoader::load(const std::string& uri) {
    const std::unique_ptr<std::istream> pStream(URIStreamOpener::defaultOpener().open(uri));
    return extensionOf(uri) == "xml" ? loadXML(*pStream, _strict) : loadFastInfoset(*pStream, *this, _strict);
}

DocumentVocabulary ExternalVocabularyLoader::loadXML(std::istream& istr, bool strict) {
    NullOutputStream null;
    FastInfosetWriter writer(null, false,
                             strict ? DocumentVocabulary::VOC_MAP : DocumentVocabulary::VOC_HASH);
    writer.setStrict(strict);
    XML::SAXParser parser;
    parser.setFeature(XML::XMLReader::FEATURE_NAMESPACES, true);
    parser.setFeature(XML::XMLReader::FEATURE_NAMESPACE_PREFIXES, true);
    parser.setFeature(XML::SAXParser::FEATURE_DECLARATIONS_FIRST, true);
    parser.setContentHandler(&writer);
    parser.setDTDHandler(&writer);
    parser.setLexicalHandler(&writer);
    parser.parse(istr);
    return std::as_const(writer).getDocumentVocabulary();
}

DocumentVocabulary ExternalVocabularyLoader::loadFastInfoset(std::istream& istr, VocabularyLoader& loader,
                                                             bool strict) {
    FastInfosetParser parser(DocumentVocabulary::VOC_VECTOR, &loader);
    parser.setStrict(strict);
    parser.parse(istr);
    return parser.vocabulary();
}

} // namespace Tamo::FastInfoset
