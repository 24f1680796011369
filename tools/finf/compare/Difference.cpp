#include "compare/Difference.h"
#include "compare/DocumentPath.h"
#include "walk/Text.h"
#include <algorithm>
#include <map>
#include <tuple>
#include <vector>

namespace finf {

namespace {

using Reader = ComparedDocument::Reader;

// Of a text that differs, so much is shown from a little before the difference on.
constexpr std::size_t SHOWN = 60;
constexpr std::size_t SHOWN_BEFORE = 20;

std::string inQuotes(std::string_view text) {
    std::string line;
    Text::appendQuoted(line, text, SHOWN);
    return line;
}

std::string nameOf(std::string_view uri, std::string_view localName, std::string_view qname) {
    std::string name(qname.empty() ? localName : qname);
    return uri.empty() ? name : name + " of namespace " + std::string(uri);
}

/// The texts from where they begin to differ.
Difference differenceOf(std::string path, std::string_view a, std::string_view b) {
    const auto place = static_cast<std::size_t>(
        std::mismatch(a.begin(), a.begin() + static_cast<std::ptrdiff_t>(std::min(a.size(), b.size())),
                      b.begin())
            .first -
        a.begin());
    if (place <= SHOWN_BEFORE) {
        return {std::move(path), inQuotes(a), inQuotes(b)};
    }
    std::size_t start = place - SHOWN_BEFORE;
    while (start > 0 && (static_cast<unsigned char>(a[start]) & 0xC0) == 0x80) {
        --start;
    }
    return {path + ", octet " + std::to_string(start), "..." + inQuotes(a.substr(start)),
            "..." + inQuotes(b.substr(start))};
}

/// An item in words.
std::string describe(const ComparedDocument& document) {
    const Reader& item = document.item();
    switch (document.event()) {
    case Reader::START_ELEMENT:
        return "element " + nameOf(item.uri(), item.localName(), item.qname());
    case Reader::END_ELEMENT:
        return "the end of the element";
    case Reader::TEXT:
        return "text " + inQuotes(document.text());
    case Reader::COMMENT:
        return "comment " + inQuotes(item.text());
    case Reader::PROCESSING_INSTRUCTION:
        return "processing instruction " + std::string(item.target());
    case Reader::START_DTD:
        return "a document type declaration";
    default:
        return "the end of the document";
    }
}

using Names = std::map<std::string, std::string>;

Names attributesOf(const Reader& item) {
    Names names;
    const auto& attributes = item.attributes();
    for (int i = 0; i < attributes.getLength(); ++i) {
        names["{" + attributes.getURI(i) + "}" + attributes.getLocalName(i)] = attributes.getValue(i);
    }
    return names;
}

Names declarationsOf(const Reader& item) {
    Names names;
    for (const auto& mapping : item.prefixMappings()) {
        names[mapping.prefix.empty() ? "xmlns" : "xmlns:" + std::string(mapping.prefix)] = mapping.uri;
    }
    return names;
}

std::optional<Difference> compareNames(const std::string& path, const Names& first, const Names& second) {
    for (const auto& [names, others, isFirst] :
         {std::tuple(&first, &second, true), {&second, &first, false}}) {
        for (const auto& [name, value] : *names) {
            // An attribute of no namespace is shown by its name alone.
            const std::string place = path + "/@" + (name.starts_with("{}") ? name.substr(2) : name);
            const auto other = others->find(name);
            if (other == others->end()) {
                return isFirst ? Difference{place, inQuotes(value), "nothing"}
                               : Difference{place, "nothing", inQuotes(value)};
            }
            if (isFirst && other->second != value) {
                return differenceOf(place, value, other->second);
            }
        }
    }
    return std::nullopt;
}

Names declaredBy(const Reader& item) {
    Names names;
    for (const auto& notation : item.notations()) {
        names["notation " + notation.getName()] = notation.getPublicId() + ' ' + notation.getSystemId();
    }
    for (const auto& entity : item.unparsedEntities()) {
        names["entity " + entity.getName()] =
            entity.getPublicId() + ' ' + entity.getSystemId() + ' ' + entity.getNotationName();
    }
    return names;
}

/// Items of one kind.
std::optional<Difference> compareItems(const ComparedDocument& first, const ComparedDocument& second,
                                       DocumentPath& path) {
    const Reader& a = first.item();
    const Reader& b = second.item();
    const auto compareTexts = [&](const std::string& place, std::string_view x,
                                  std::string_view y) -> std::optional<Difference> {
        return x == y ? std::nullopt : std::optional(differenceOf(place, x, y));
    };
    switch (first.event()) {
    case Reader::START_DOCUMENT:
        return compareNames("", declaredBy(a), declaredBy(b));
    case Reader::START_DTD: {
        auto difference = compareTexts("/document type, public identifier", a.publicId(), b.publicId());
        return difference ? difference
                          : compareTexts("/document type, system identifier", a.systemId(), b.systemId());
    }
    case Reader::START_ELEMENT: {
        const std::string place = path.open(a.qname().empty() ? a.localName() : a.qname());
        if (a.uri() != b.uri() || a.localName() != b.localName() || a.qname() != b.qname()) {
            return Difference{path.parent(), describe(first), describe(second)};
        }
        auto difference = compareNames(place, declarationsOf(a), declarationsOf(b));
        return difference ? difference : compareNames(place, attributesOf(a), attributesOf(b));
    }
    case Reader::END_ELEMENT:
        path.close();
        return std::nullopt;
    case Reader::TEXT:
        return compareTexts(path.text() + "/text()", first.text(), second.text());
    case Reader::COMMENT:
        return compareTexts(path.text() + "/comment()", a.text(), b.text());
    case Reader::PROCESSING_INSTRUCTION: {
        const std::string place = path.text() + "/processing-instruction()";
        auto difference = compareTexts(place, a.target(), b.target());
        return difference ? difference : compareTexts(place, a.text(), b.text());
    }
    default:
        return std::nullopt;
    }
}

} // namespace

std::optional<Difference> Difference::between(ComparedDocument& first, ComparedDocument& second) {
    DocumentPath path;
    while (first.event() != Reader::END_DOCUMENT) {
        first.next();
        second.next();
        if (first.event() != second.event()) {
            return Difference{path.text().empty() ? "/" : path.text(), describe(first), describe(second)};
        }
        if (auto difference = compareItems(first, second, path)) {
            return difference;
        }
    }
    return std::nullopt;
}

} // namespace finf
