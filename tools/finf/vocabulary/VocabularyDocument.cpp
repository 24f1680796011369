#include "vocabulary/VocabularyDocument.h"
#include "command/FinfError.h"
#include <algorithm>
#include <cstdint>
#include <iterator>
#include <set>
#include <utility>

namespace finf {

using Tamo::FastInfoset::DocumentVocabulary;

namespace {

// Half of what the tables of kind VOC_HASH take.
constexpr std::size_t MAX_PREFIXES = 125;
constexpr std::size_t MAX_NAMES = 5004;
constexpr std::size_t MAX_OTHER_NAMES = 20004;
constexpr std::size_t MAX_IDENTIFIERS = 9;
constexpr std::size_t MAX_VALUES = 20004;
constexpr std::size_t MAX_OTHER_STRINGS = 9;
constexpr std::size_t MAX_TEXTS = 32760;

const char XML_PREFIX[] = "xml";

/// What occurs at least minCount times and is accepted, the most frequent first, at most so many.
template<class T, class Accept>
std::vector<T> mostFrequent(const VocabularyUsage::Counts<T>& counts, std::uint64_t minCount,
                            std::size_t most, Accept accept) {
    std::vector<std::pair<std::uint64_t, const T*>> order;
    for (const auto& [entry, count] : counts) {
        if (count >= minCount && accept(entry)) {
            order.emplace_back(count, &entry);
        }
    }
    std::stable_sort(order.begin(), order.end(),
                     [](const auto& a, const auto& b) { return a.first > b.first; });
    std::vector<T> result;
    for (std::size_t i = 0; i < std::min(order.size(), most); ++i) {
        result.push_back(*order[i].second);
    }
    return result;
}

bool acceptAll(const std::string&) {
    return true;
}

/// For element content and attribute values in double quotes, on one line.
std::string escaped(const std::string& s) {
    std::string result;
    for (const char c : s) {
        switch (c) {
        case '&':
            result += "&amp;";
            break;
        case '<':
            result += "&lt;";
            break;
        case '>':
            result += "&gt;";
            break;
        case '"':
            result += "&quot;";
            break;
        case '\t':
        case '\n':
        case '\r':
            result += "&#" + std::to_string(static_cast<int>(c)) + ';';
            break;
        default:
            result += c;
        }
    }
    return result;
}

std::string qualifiedName(const std::string& prefix, const std::string& localName) {
    return prefix.empty() ? localName : prefix + ':' + localName;
}

bool isReserved(const std::string& target) {
    return target.size() == 3 && (target[0] | 0x20) == 'x' && (target[1] | 0x20) == 'm' &&
           (target[2] | 0x20) == 'l';
}

} // namespace

VocabularyDocument::VocabularyDocument(const VocabularyUsage& usage, std::uint64_t minCount) {
    chooseDeclarations(usage);
    chooseNames(usage);
    chooseStrings(usage, minCount);
}

// ---- what goes in

void VocabularyDocument::chooseDeclarations(const VocabularyUsage& usage) {
    const auto accept = [](const TableName& name) { return name.prefix != XML_PREFIX; };
    std::set<std::string> prefixes;
    std::set<std::string> uris;
    for (const TableName& declaration : mostFrequent(usage.declarations, 1, SIZE_MAX, accept)) {
        if (prefixes.size() < MAX_PREFIXES && uris.size() < MAX_PREFIXES) {
            prefixes.insert(declaration.prefix);
            uris.insert(declaration.uri);
            _declarations.push_back(declaration);
        }
    }
}

void VocabularyDocument::chooseNames(const VocabularyUsage& usage) {
    const auto isDeclared = [this](const TableName& name) {
        return name.uri.empty() || name.prefix == XML_PREFIX ||
               std::any_of(_declarations.begin(), _declarations.end(),
                           [&](const TableName& d) { return d.uri == name.uri && d.prefix == name.prefix; });
    };
    _elements = mostFrequent(usage.elements, 1, MAX_NAMES, isDeclared);
    if (_elements.empty()) {
        throw FinfError("the samples have no names in common use");
    }
    _attributes = mostFrequent(usage.attributes, 1, MAX_NAMES, [this](const TableName& attribute) {
        return !withAttribute(attribute, {}).empty();
    });
}

void VocabularyDocument::chooseStrings(const VocabularyUsage& usage, std::uint64_t minCount) {
    if (!_attributes.empty()) {
        _values = mostFrequent(usage.values, minCount, MAX_VALUES, acceptAll);
    }
    _texts = mostFrequent(usage.texts, minCount, MAX_TEXTS, acceptAll);
    _otherNames = mostFrequent(usage.otherNames, 1, MAX_OTHER_NAMES,
                               [](const std::string& name) { return !isReserved(name); });
    _identifiers = mostFrequent(usage.identifiers, 1, MAX_IDENTIFIERS, [](const std::string& identifier) {
        return identifier.find_first_of("\"\t\n\r") == std::string::npos;
    });
    // They stand in notations, which need names.
    for (std::size_t n = 1; _otherNames.size() < _identifiers.size(); ++n) {
        const std::string name = "n" + std::to_string(n);
        if (std::find(_otherNames.begin(), _otherNames.end(), name) == _otherNames.end()) {
            _otherNames.push_back(name);
        }
    }
    _otherStrings = mostFrequent(usage.otherStrings, minCount, MAX_OTHER_STRINGS,
                                 [this](const std::string& s) { return !otherString(s).empty(); });
}

// ---- the document

std::string VocabularyDocument::tag(const TableName& name, std::vector<Binding> bindings,
                                    const Binding& inherited) const {
    // Without a prefix or a namespace, what has to be bound is the default namespace, maybe to nothing.
    bindings.push_back({name.prefix, name.uri});
    std::string text = '<' + qualifiedName(name.prefix, name.localName);
    for (const Binding& binding : bindings) {
        const bool isThere =
            binding.uri.empty() ? !inherited.prefix.empty() || inherited.uri.empty() : binding == inherited;
        if (!isThere) {
            text += (binding.prefix.empty() ? " xmlns" : " xmlns:" + binding.prefix) + "=\"" +
                    escaped(binding.uri) + '"';
        }
    }
    return text;
}

std::string VocabularyDocument::element(const TableName& name, std::vector<Binding> bindings,
                                        const std::string& attribute) const {
    const TableName& root = _elements.front();
    return tag(name, std::move(bindings), {root.prefix, root.uri}) + attribute + "\n/>";
}

std::string VocabularyDocument::withDeclaration(const TableName& declaration, bool onFirstName) const {
    const auto carrier = std::find_if(_elements.begin(), _elements.end(), [&](const TableName& name) {
        return name.prefix != declaration.prefix;
    });
    if (carrier == _elements.end() || (carrier == _elements.begin()) != onFirstName) {
        return {};
    }
    return element(*carrier, {{declaration.prefix, declaration.uri}}, {});
}

std::string VocabularyDocument::withAttribute(const TableName& attribute, const std::string& value) const {
    const auto assignment = [&](const std::string& prefix) {
        return ' ' + qualifiedName(prefix, attribute.localName) + "=\"" + escaped(value) + '"';
    };
    if (attribute.uri.empty()) {
        return element(_elements.front(), {}, assignment({}));
    }
    // On an element whose own prefix does not stand for another namespace.
    for (const TableName& name : _elements) {
        const bool isBound = name.prefix == attribute.prefix && name.uri == attribute.uri;
        if (isBound || attribute.prefix == XML_PREFIX) {
            return element(name, {}, assignment(attribute.prefix));
        }
        if (name.prefix != attribute.prefix) {
            return element(name, {{attribute.prefix, attribute.uri}}, assignment(attribute.prefix));
        }
    }
    return {};
}

std::string VocabularyDocument::otherString(const std::string& s) const {
    if (s.find("--") == std::string::npos && s.back() != '-') {
        return "<!--" + s + "-->\n";
    }
    const bool isData =
        s.find("?>") == std::string::npos && s.front() != ' ' && s.front() != '\t' && s.front() != '\n';
    return isData && !_otherNames.empty() ? "<?" + _otherNames.front() + ' ' + s + "?>\n" : std::string();
}

std::string VocabularyDocument::prolog() const {
    const TableName& root = _elements.front();
    // The comment is too long to be numbered.
    std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                       "<!-- An external vocabulary: what occurs here is numbered in this order. -->\n";
    if (!_identifiers.empty()) {
        text += "<!DOCTYPE " + qualifiedName(root.prefix, root.localName) + " [\n";
        for (std::size_t i = 0; i < _identifiers.size(); ++i) {
            text += "<!NOTATION " + _otherNames[i] + " SYSTEM \"" + _identifiers[i] + "\">\n";
        }
        text += "]>\n";
    }
    for (std::size_t i = _identifiers.size(); i < _otherNames.size(); ++i) {
        text += "<?" + _otherNames[i] + "?>\n";
    }
    for (const std::string& s : _otherStrings) {
        text += otherString(s);
    }
    return text;
}

std::string VocabularyDocument::text() const {
    // Text between the elements would be numbered, so that line ends stand in the tags.
    std::string content;
    for (const TableName& declaration : _declarations) {
        content += withDeclaration(declaration, true);
    }
    for (auto it = std::next(_elements.begin()); it != _elements.end(); ++it) {
        content += element(*it, {}, {});
    }
    for (const TableName& attribute : _attributes) {
        content += withAttribute(attribute, {});
    }
    for (const std::string& value : _values) {
        content += withAttribute(_attributes.front(), value);
    }
    for (const TableName& declaration : _declarations) {
        content += withDeclaration(declaration, false);
    }
    const TableName& root = _elements.front();
    const std::string rootName = qualifiedName(root.prefix, root.localName);
    for (const std::string& s : _texts) {
        content += '<' + rootName + '>' + escaped(s) + "</" + rootName + "\n>";
    }
    return prolog() + tag(root, {}, {}) + "\n>" + content + "</" + rootName + ">\n";
}

void VocabularyDocument::check(const DocumentVocabulary& vocabulary) const {
    const auto require = [](bool holds, const char* table) {
        if (!holds) {
            throw FinfError(std::string("the vocabulary's document does not yield its ") + table);
        }
    };
    const auto holdsStrings = [&](DocumentVocabulary::ID id, const std::vector<std::string>& strings) {
        const auto& table = vocabulary.vocabulary(id);
        bool holds = table.size() == strings.size() + 1;
        for (std::size_t i = 0; holds && i < strings.size(); ++i) {
            holds = table.value(static_cast<unsigned int>(i + 1)) == strings[i];
        }
        return holds;
    };
    const auto holdsNames = [&](const auto& names, const std::vector<TableName>& chosen) {
        bool holds = names.size() == chosen.size() + 1;
        for (std::size_t i = 0; holds && i < chosen.size(); ++i) {
            const auto& entry = names.value(static_cast<unsigned int>(i + 1));
            holds =
                vocabulary.value(DocumentVocabulary::PREFIX, entry.prefixId()) == chosen[i].prefix &&
                vocabulary.value(DocumentVocabulary::NAMESPACE_NAME, entry.namespaceId()) == chosen[i].uri &&
                vocabulary.value(DocumentVocabulary::LOCAL_NAME, entry.localNameId()) == chosen[i].localName;
        }
        return holds;
    };
    require(holdsNames(vocabulary.elementVocabulary(), _elements), "element names");
    require(holdsNames(vocabulary.attributeVocabulary(), _attributes), "attribute names");
    require(holdsStrings(DocumentVocabulary::ATTRIBUTE_VALUE, _values), "attribute values");
    require(holdsStrings(DocumentVocabulary::CONTENT_CHARACTER_CHUNK, _texts), "texts");
    require(holdsStrings(DocumentVocabulary::OTHER_STRING, _otherStrings), "other strings");
    require(holdsStrings(DocumentVocabulary::OTHER_NCNAME, _otherNames), "other names");
    require(holdsStrings(DocumentVocabulary::OTHER_URI, _identifiers), "identifiers");
}

} // namespace finf
