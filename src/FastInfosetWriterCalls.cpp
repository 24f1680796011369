// The operations of FastInfosetWriter that take what a program has at hand, and make events of it.
#include "Tamo/FastInfoset/FISException.h"
#include "Tamo/FastInfoset/FastInfosetWriter.h"
#include "Tamo/FastInfoset/NameAndValue.h"
#include "Tamo/FastInfoset/TypedAttributes.h"
#include "Tamo/XML/AttributesImpl.h"
#include <algorithm>
#include <exception>

namespace Tamo::FastInfoset {

namespace {

TAMO_CONSTINIT const std::string NONE;

// A name as in XML text, in its parts.
struct GivenName {
    explicit GivenName(std::string_view name) {
        const std::size_t colon = name.find(':');
        if (colon == std::string_view::npos) {
            localName = name;
        } else {
            prefix = name.substr(0, colon);
            localName = name.substr(colon + 1);
            qname = name;
        }
    }

    std::string_view prefix; // that and the next but one are empty without a colon
    std::string localName;
    std::string qname;
};

[[noreturn]] void refuse(const char* what, std::string_view name) {
    throw FISEncodingException(what, std::string(name));
}

} // namespace

void FastInfosetWriter::startElement(std::string_view name, std::initializer_list<NameAndValue> attributes) {
    const auto boundTo = [this](const GivenName& given) -> const std::string& {
        const std::string& uri = namespaceBoundTo(given.prefix);
        if (uri.empty() && !given.qname.empty()) {
            refuse("No namespace is bound to the prefix of the name", given.qname);
        }
        return uri;
    };
    const auto addAll = [&](auto& list, const auto& add) {
        for (const NameAndValue& attribute : attributes) {
            const GivenName given(attribute.name());
            if (given.prefix == "xmlns" || attribute.name() == "xmlns") {
                refuse("A namespace declaration is no attribute, but a call of startPrefixMapping",
                       attribute.name());
            }
            add(attribute, given.prefix.empty() ? NONE : boundTo(given), given);
        }
        const GivenName given(name);
        const std::string uri = boundTo(given); // the bindings may grow while they are asked
        startElement(uri, given.localName, given.qname, list);
    };
    if (std::ranges::all_of(attributes, [](const NameAndValue& attribute) { return attribute.text(); })) {
        XML::AttributesImpl& list = givenAttributes();
        list.clear();
        addAll(list, [&](const NameAndValue& attribute, const std::string& uri, const GivenName& given) {
            list.addAttribute(uri, given.localName, given.qname, NONE, std::string(*attribute.text()));
        });
    } else {
        TypedAttributes list;
        addAll(list, [&](const NameAndValue& attribute, const std::string& uri, const GivenName& given) {
            attribute.addTo(list, uri, given.localName, given.qname);
        });
    }
}

void FastInfosetWriter::element(std::string_view name, std::initializer_list<NameAndValue> attributes) {
    startElement(name, attributes);
    endElement();
}

FastInfosetWriter::Document::Document(FastInfosetWriter& writer)
    : _writer(writer), _exceptions(std::uncaught_exceptions()) {
    _writer.startDocument();
}

FastInfosetWriter::Document::~Document() noexcept(false) {
    if (std::uncaught_exceptions() == _exceptions) {
        _writer.endDocument();
    }
}

} // namespace Tamo::FastInfoset
