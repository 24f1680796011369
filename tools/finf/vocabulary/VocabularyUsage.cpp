#include "vocabulary/VocabularyUsage.h"
#include "Tamo/XML/Attributes.h"

namespace finf {

void VocabularyUsage::countAll(Counts<std::string>& counts, const std::string& s) {
    if (!s.empty()) {
        ++counts[s];
    }
}

void VocabularyUsage::countString(Counts<std::string>& counts, const std::string& s) {
    if (s.size() <= MAX_STRING) {
        countAll(counts, s);
    }
}

std::string VocabularyUsage::prefixOf(const std::string& qualifiedName) {
    const std::size_t colon = qualifiedName.find(':');
    return colon == std::string::npos ? std::string() : qualifiedName.substr(0, colon);
}

void VocabularyUsage::startPrefixMapping(const std::string& prefix, const std::string& uri) {
    if (!uri.empty()) {
        ++declarations[{prefix, uri, {}}];
    }
}

void VocabularyUsage::startElement(const std::string& uri, const std::string& localName,
                                   const std::string& qname, const Tamo::XML::Attributes& attrs) {
    ++elements[{prefixOf(qname), uri, localName}];
    for (int i = 0; i < attrs.getLength(); ++i) {
        ++attributes[{prefixOf(attrs.getQName(i)), attrs.getURI(i), attrs.getLocalName(i)}];
        countString(values, attrs.getValue(i));
    }
}

void VocabularyUsage::characters(const char ch[], int start, int length) {
    countString(texts, std::string(ch + start, static_cast<std::size_t>(length)));
}

void VocabularyUsage::processingInstruction(const std::string& target, const std::string& data) {
    countAll(otherNames, target);
    countString(otherStrings, data);
}

void VocabularyUsage::comment(const char ch[], int start, int length) {
    countString(otherStrings, std::string(ch + start, static_cast<std::size_t>(length)));
}

void VocabularyUsage::startDTD(const std::string&, const std::string& publicId, const std::string& systemId) {
    countAll(identifiers, systemId);
    countAll(identifiers, publicId);
}

void VocabularyUsage::notationDecl(const std::string& name, const std::string* publicId,
                                   const std::string* systemId) {
    countAll(otherNames, name);
    for (const std::string* pIdentifier : {systemId, publicId}) {
        if (pIdentifier) {
            countAll(identifiers, *pIdentifier);
        }
    }
}

void VocabularyUsage::unparsedEntityDecl(const std::string& name, const std::string* publicId,
                                         const std::string& systemId, const std::string& notationName) {
    countAll(otherNames, notationName);
    notationDecl(name, publicId, &systemId);
}

} // namespace finf
