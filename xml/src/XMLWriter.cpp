#include "Tamo/XML/XMLWriter.h"
#include "DocumentType.h"
#include "DuplicateAttributes.h"
#include "OpenElements.h"
#include "Tamo/Exception.h"
#include "Tamo/Export.h"
#include "Tamo/XML/Attributes.h"
#include "Tamo/XML/Characters.h"
#include "Tamo/XML/XMLException.h"
#include "XMLOutput.h"
#include <algorithm>
#include <optional>

namespace Tamo::XML {

namespace {

TAMO_CONSTINIT const std::string XMLNS_PREFIX{"xmlns"};
TAMO_CONSTINIT const std::string EMPTY;

constexpr std::size_t MAX_INDENT = 32;

inline std::string_view prefixOf(std::string_view qname) {
    const std::size_t colon = qname.find(':');
    return colon == std::string_view::npos ? std::string_view() : qname.substr(0, colon);
}

/// Whether a declaration may bind this prefix, which is not empty, to any namespace name of a document.
bool isDeclarable(std::string_view prefix) {
    return prefix != NamespaceSupport::XML_NAMESPACE_PREFIX && prefix != XMLNS_PREFIX &&
           Characters::isNCName(prefix);
}

void checkNamespaceName(const char* what, const std::string& uri) {
    if (uri == NamespaceSupport::XMLNS_NAMESPACE) {
        XMLOutput::refuse(what, uri, "is a reserved namespace name");
    }
}

bool isWhiteSpace(std::string_view text) {
    return text.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

} // namespace

XMLWriter::XMLWriter(std::ostream& stream, int options)
    : _pOutput(std::make_unique<XMLOutput>(&stream)),
      _pStream(&stream),
      _options(options),
      _pDocumentType(std::make_unique<DocumentType>()),
      _pDuplicates(std::make_unique<DuplicateAttributes>()),
      _pElements(std::make_unique<OpenElements>()) {}

XMLWriter::~XMLWriter() {
    try {
        _pOutput->pass();
    } catch (...) {
        // Nobody is left to be told.
    }
}

// Only where lines are broken it matters what an element has.
inline bool XMLWriter::isPretty() const noexcept {
    return (_options & PRETTY_PRINT) != 0;
}

inline void XMLWriter::noteText() {
    if (isPretty()) {
        _pElements->back().hasText = true;
    }
}

template<class Event>
void XMLWriter::guarded(Event&& event) {
    if (_failed) [[unlikely]] {
        throw XMLException("Cannot write: an earlier event of the document has failed");
    }
    try {
        event();
    } catch (...) {
        _failed = true;
        try {
            _pOutput->pass();
        } catch (const IOException&) {
            // The first exception says what went wrong.
        }
        throw;
    }
}

void XMLWriter::reset(std::ostream& stream) {
    _pOutput->reset(stream);
    _pStream = &stream;
    _failed = false;
    _startTagOpen = false;
    _brackets = 0;
    _generating.clear();
    while (!_pElements->empty()) {
        _pElements->pop();
    }
    begin();
}

void XMLWriter::require(bool condition, const char* what, const char* reason) const {
    if (!condition) [[unlikely]] {
        XMLOutput::refuse(what, reason);
    }
}

void XMLWriter::setDocumentLocator(const Locator*) {}

void XMLWriter::startDocument() {
    guarded([&] {
        require(_state == State::BEFORE, "document", "one has been started already");
        _state = State::PROLOG;
        if (_options & WRITE_XML_DECLARATION) {
            _pOutput->put("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n");
        }
    });
}

void XMLWriter::endDocument() {
    guarded([&] {
        require(_state != State::BEFORE, "document", "it ends without having been started");
        require(_state != State::PROLOG && _state != State::DTD, "document", "it has no root element");
        require(_state == State::EPILOG, "document", "it ends inside an element");
        if (isPretty()) {
            _pOutput->put('\n');
        }
        passAndFlush();
        begin();
    });
}

void XMLWriter::flush() {
    guarded([&] { passAndFlush(); });
}

void XMLWriter::passAndFlush() {
    _pOutput->pass();
    _pStream->flush();
    if (!_pStream->good()) {
        throw IOException("Cannot write to the output stream");
    }
}

void XMLWriter::startElement(const std::string& uri, const std::string& localName, const std::string& qname,
                             const Attributes& attributes) {
    guarded([&] {
        require(_state != State::EPILOG, "element", "the document has a root element already");
        require(_state == State::PROLOG || _state == State::CONTENT, "element",
                "it stands outside of content");
        writeStartTag(uri, localName, qname, _attributes.of(attributes));
    });
}

void XMLWriter::endElement(const std::string&, const std::string&, const std::string&) {
    guarded([&] {
        require(_state == State::CONTENT, "end of element", "no element is open");
        OpenElements& elements = *_pElements;
        if (_startTagOpen) {
            _pOutput->put("/>");
            _startTagOpen = false;
        } else {
            if (isPretty()) {
                const OpenElements::State state = elements.back();
                if (state.hasChildren && !state.hasText && !state.preserve) {
                    breakLine(elements.size() - 1);
                }
            }
            const OpenElements::Name name = elements.name();
            _pOutput->put("</");
            if (!name.first.empty()) [[unlikely]] {
                _pOutput->put(name.first);
            }
            _pOutput->put(name.second);
            _pOutput->put('>');
        }
        if (!_generating.empty() && _generating.back().depth == elements.size()) [[unlikely]] {
            _lastPrefix = _generating.back().lastPrefix;
            _generating.pop_back();
        }
        if (_hasMappings) [[unlikely]] {
            _namespaces.popContext(); // no element has taken them
            _hasMappings = false;
        }
        _namespaces.popContext();
        elements.pop();
        if (elements.empty()) {
            _state = State::EPILOG;
        }
    });
}

void XMLWriter::characters(const char ch[], int start, int length) {
    guarded([&] {
        if (length <= 0) {
            return;
        }
        const std::string_view text(ch + start, static_cast<std::size_t>(length));
        if (_state == State::CONTENT) [[likely]] {
            closeStartTag();
            noteText();
            _pOutput->putText(text);
        } else if (_state == State::CDATA) {
            _pOutput->putCDATA(text, _brackets);
        } else {
            require(_state == State::PROLOG || _state == State::EPILOG, "text",
                    "it stands outside of content");
            require(isWhiteSpace(text), "text", "it stands outside of the root element");
            prologOutput().put(text);
        }
    });
}

void XMLWriter::ignorableWhitespace(const char ch[], int start, int length) {
    characters(ch, start, length);
}

void XMLWriter::processingInstruction(const std::string& target, const std::string& data) {
    guarded([&] {
        beginMisc("processing instruction").putProcessingInstruction(target, data);
        endMisc();
    });
}

void XMLWriter::comment(const char ch[], int start, int length) {
    guarded([&] {
        const std::string_view text =
            length > 0 ? std::string_view(ch + start, static_cast<std::size_t>(length)) : std::string_view();
        beginMisc("comment").putComment(text);
        endMisc();
    });
}

void XMLWriter::startPrefixMapping(const std::string& prefix, const std::string& uri) {
    guarded([&] {
        const bool isLegal = uri != NamespaceSupport::XML_NAMESPACE &&
                             uri != NamespaceSupport::XMLNS_NAMESPACE &&
                             (prefix.empty() || (!uri.empty() && isDeclarable(prefix)));
        if (isLegal) {
            if (!_hasMappings) {
                _namespaces.pushContext();
                _hasMappings = true;
            }
            _namespaces.declarePrefix(prefix, uri);
        }
    });
}

void XMLWriter::endPrefixMapping(const std::string&) {}

void XMLWriter::skippedEntity(const std::string& name) {
    guarded([&] {
        if (name == "[dtd]" || name.starts_with('%')) {
            return; // part of the document type declaration, whose content is not written
        }
        require(_state == State::CONTENT, "entity reference", "it stands outside of content");
        if (!_pDocumentType->hasExternalSubset()) {
            XMLOutput::refuse("entity reference", name, "is declared nowhere");
        }
        closeStartTag();
        noteText();
        _pOutput->put('&');
        _pOutput->putNCName(name, "entity reference");
        _pOutput->put(';');
    });
}

void XMLWriter::startDTD(const std::string& name, const std::string& publicId, const std::string& systemId) {
    guarded([&] {
        require(_state == State::PROLOG, "document type declaration", "it stands outside of the prolog");
        require(!_pDocumentType->isStarted(), "document type declaration", "the document has one already");
        _state = State::DTD;
        _pDocumentType->start(name, publicId, systemId);
    });
}

void XMLWriter::endDTD() {
    guarded([&] {
        require(_state == State::DTD, "end of document type declaration", "none is open");
        _state = State::PROLOG;
        _pDocumentType->end(*_pOutput);
    });
}

void XMLWriter::startEntity(const std::string&) {}

void XMLWriter::endEntity(const std::string&) {}

void XMLWriter::startCDATA() {
    guarded([&] {
        require(_state == State::CONTENT, "CDATA section", "it stands outside of content");
        closeStartTag();
        noteText();
        _pOutput->put("<![CDATA[");
        _state = State::CDATA;
        _brackets = 0;
    });
}

void XMLWriter::endCDATA() {
    guarded([&] {
        require(_state == State::CDATA, "end of CDATA section", "none is open");
        _pOutput->put("]]>");
        _state = State::CONTENT;
    });
}

void XMLWriter::notationDecl(const std::string& name, const std::string* publicId,
                             const std::string* systemId) {
    guarded([&] {
        requireDeclarable("notation");
        _pDocumentType->addNotation(name, publicId, systemId);
    });
}

void XMLWriter::unparsedEntityDecl(const std::string& name, const std::string* publicId,
                                   const std::string& systemId, const std::string& notationName) {
    guarded([&] {
        requireDeclarable("unparsed entity");
        _pDocumentType->addUnparsedEntity(name, publicId, systemId, notationName);
    });
}

void XMLWriter::writeStartTag(const std::string& uri, const std::string& localName, const std::string& qname,
                              const Attributes& attributes) {
    const int count = attributes.getLength();
    if (count > 1) {
        if (const std::optional<int> twin = _pDuplicates->find(attributes)) {
            XMLOutput::refuse("attribute", DuplicateAttributes::nameOf(attributes, *twin),
                              "stands twice on one element");
        }
    }
    checkNamespaceName("element", uri);

    // First all names are settled, with what must be declared for them; nothing is written before.
    OpenElements::State state;
    state.preserve = isPretty() && !_pElements->empty() && _pElements->back().preserve;
    const UInt64 lastPrefix = _lastPrefix;
    openContext(uri);
    // With its colon, and apart from what declares it: attributes' prefixes are declared in the same place.
    _elementPrefix = elementPrefix(uri, qname);
    const std::size_t prefixLength = _elementPrefix.size();
    if (prefixLength != 0) {
        _elementPrefix += ':';
    }
    const std::string& name = localName.empty() ? qname : localName;
    XMLOutput::checkNCName(name, "element name");
    const std::string_view writtenPrefix = std::string_view(_elementPrefix).substr(0, prefixLength);
    for (int i = 0; i < count; ++i) {
        const std::string& attributeURI = attributes.getURI(i);
        if (!attributeURI.empty()) {
            attributePrefix(attributeURI, attributes.getQName(i), uri, writtenPrefix);
        }
    }

    if (_state == State::PROLOG) {
        if (_pDocumentType->waitsForRoot()) {
            _pDocumentType->write(*_pOutput, _elementPrefix + name);
        }
        _state = State::CONTENT;
    } else {
        closeStartTag();
        beginChild();
    }

    XMLOutput& output = *_pOutput;
    output.put('<');
    if (prefixLength != 0) {
        output.put(_elementPrefix);
    }
    output.put(name);
    _namespaces.visitDeclared([&](const std::string& declared, const std::string& declaredURI) {
        output.put(" xmlns");
        if (!declared.empty()) {
            output.put(':');
            output.put(declared);
        }
        output.put("=\"");
        output.putAttributeValue(declaredURI, "namespace name");
        output.put('"');
    });
    for (int i = 0; i < count; ++i) {
        const std::string& attributeURI = attributes.getURI(i);
        const std::string& attributeName = DuplicateAttributes::nameOf(attributes, i);
        const std::string& value = attributes.getValue(i);
        output.put(' ');
        if (!attributeURI.empty()) {
            output.put(attributePrefix(attributeURI, attributes.getQName(i), uri, writtenPrefix));
            output.put(':');
            if (attributeName == "space" && attributeURI == NamespaceSupport::XML_NAMESPACE) {
                state.preserve = value == "preserve";
            }
        } else if (attributeName == XMLNS_PREFIX) {
            XMLOutput::refuse("attribute name", attributeName, "is reserved for namespace declarations");
        }
        output.putNCName(attributeName, "attribute name");
        output.put("=\"");
        output.putAttributeValue(value, "attribute value");
        output.put('"');
    }
    _startTagOpen = true;
    _pElements->push(_elementPrefix, name, state);
    if (_lastPrefix != lastPrefix) [[unlikely]] {
        _generating.push_back({_pElements->size(), lastPrefix});
    }
}

// The context of an element that begins, with the mappings that have been reported for it. The default
// namespace is not for one that is in none.
void XMLWriter::openContext(const std::string& elementURI) {
    if (!_hasMappings) {
        _namespaces.pushContext();
        return;
    }
    _hasMappings = false;
    if (elementURI.empty() && _namespaces.isDeclared({}) && !_namespaces.getURI({}).empty()) {
        _namespaces.undeclarePrefix(EMPTY);
    }
}

std::string_view XMLWriter::elementPrefix(const std::string& uri, const std::string& qname) {
    const std::string& defaultURI = _namespaces.getURI(std::string_view());
    if (uri.empty()) {
        if (!defaultURI.empty()) {
            _namespaces.declarePrefix(EMPTY, EMPTY);
        }
        return {};
    }
    if (uri == NamespaceSupport::XML_NAMESPACE) {
        return NamespaceSupport::XML_NAMESPACE_PREFIX;
    }
    const std::string_view hint = prefixOf(qname);
    if (!qname.empty() && _namespaces.getURI(hint) == uri) {
        return hint;
    }
    if (defaultURI == uri) {
        return {};
    }
    const std::string& bound = _namespaces.getAttributePrefix(uri);
    if (!bound.empty()) {
        return bound;
    }
    if (!_namespaces.isDeclared(hint) && (hint.empty() || isDeclarable(hint))) {
        _scratch = hint;
        _namespaces.declarePrefix(_scratch, uri);
        return hint;
    }
    return generatePrefix(uri);
}

std::string_view XMLWriter::attributePrefix(const std::string& uri, const std::string& qname,
                                            const std::string& elementURI, std::string_view elementPrefix) {
    checkNamespaceName("attribute", uri);
    if (uri == NamespaceSupport::XML_NAMESPACE) {
        return NamespaceSupport::XML_NAMESPACE_PREFIX;
    }
    const std::string_view hint = prefixOf(qname);
    if (!hint.empty() && _namespaces.getURI(hint) == uri) {
        return hint;
    }
    if (!elementPrefix.empty() && elementURI == uri) {
        return elementPrefix;
    }
    const std::string& bound = _namespaces.getAttributePrefix(uri);
    if (!bound.empty()) {
        return bound;
    }
    // A prefix that is bound already, here or outside, may be in use on this element.
    if (!hint.empty() && _namespaces.getURI(hint).empty() && isDeclarable(hint)) {
        _scratch = hint;
        _namespaces.declarePrefix(_scratch, uri);
        return hint;
    }
    return generatePrefix(uri);
}

std::string_view XMLWriter::generatePrefix(const std::string& uri) {
    const auto isTaken = [this](UInt64 number) {
        _scratch.assign("ns").append(std::to_string(number));
        return !_namespaces.getURI(_scratch).empty();
    };
    if (isTaken(++_lastPrefix)) [[unlikely]] {
        // Numbers that the document has taken itself are passed over once, not again for each element.
        _lastPrefix = std::max(_lastPrefix, _skippedPrefix + 1);
        while (isTaken(_lastPrefix)) {
            ++_lastPrefix;
        }
        _skippedPrefix = _lastPrefix - 1;
    }
    _namespaces.declarePrefix(_scratch, uri);
    return _scratch;
}

void XMLWriter::closeStartTag() {
    if (_startTagOpen) {
        _pOutput->put('>');
        _startTagOpen = false;
    }
}

void XMLWriter::beginChild() {
    if (isPretty()) {
        OpenElements::State& parent = _pElements->back();
        parent.hasChildren = true;
        if (!parent.hasText && !parent.preserve) {
            breakLine(_pElements->size());
        }
    }
}

void XMLWriter::breakLine(std::size_t depth) {
    constexpr std::string_view SPACES("                                ");
    _pOutput->put('\n');
    for (std::size_t i = std::min(depth, MAX_INDENT); i > 0;) {
        const std::size_t levels = std::min(i, SPACES.size() / 2);
        _pOutput->put(SPACES.substr(0, 2 * levels));
        i -= levels;
    }
}

void XMLWriter::requireDeclarable(const char* what) const {
    const bool isWritten =
        _pDocumentType->isStarted() && _state == State::PROLOG && !_pDocumentType->isHeld();
    require((_state == State::BEFORE || _state == State::PROLOG || _state == State::DTD) && !isWritten, what,
            "the document type declaration has been written already");
}

XMLOutput& XMLWriter::prologOutput() {
    return _pDocumentType->isHeld() ? _pDocumentType->after() : *_pOutput;
}

XMLOutput& XMLWriter::beginMisc(const char* what) {
    require(_state != State::BEFORE && _state != State::CDATA, what, "it stands outside of content");
    if (_state == State::DTD) {
        return _pDocumentType->subset();
    }
    if (_state == State::CONTENT) {
        closeStartTag();
        beginChild();
    } else if (_state == State::EPILOG) {
        _pOutput->put('\n');
    }
    return prologOutput();
}

void XMLWriter::endMisc() {
    if (_state == State::DTD) {
        _pDocumentType->subset().put('\n');
    } else if (_state == State::PROLOG) {
        prologOutput().put('\n');
    }
}

// What every document begins with.
void XMLWriter::begin() {
    _state = State::BEFORE;
    _pDocumentType->reset();
    _namespaces.reset();
    _hasMappings = false;
    _lastPrefix = 0;
    _skippedPrefix = 0;
}

} // namespace Tamo::XML
