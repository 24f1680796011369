#ifndef TAMO_XML_SAXPARSER_H
#define TAMO_XML_SAXPARSER_H

#include "Tamo/Export.h"
#include "Tamo/StringConstant.h"
#include "Tamo/XML/SAXSettings.h"
#include "Tamo/XML/XMLReader.h"

namespace Tamo::XML {

class LexicalHandler;

/// Reads XML 1.0 text.
///
/// What it reports:
/// - with FEATURE_NAMESPACES (on by default) namespace name, local name and qualified name of elements and
///   attributes, without it qualified names only; namespace declarations as prefix mappings, never as
///   attributes;
/// - character data in runs: one `characters` call for all text between two other events, line ends, entity
///   references and all, cut only at 64 KiB and never inside a character; never an empty call;
/// - a CDATA section as startCDATA, characters, endCDATA; comments outside the document type declaration;
///   processing instructions everywhere; document type declaration, notations, unparsed entities with their
///   identifiers as written, line ends normalised; attributes defaulted by the internal subset;
/// - references to entities that were not read as skippedEntity. startEntity and endEntity are not called.
///
/// External entities are read only when the standard features for them are on (they are off), through the
/// entity resolver or, without one, EntityResolverImpl. Encodings: UTF-8, UTF-16, ISO-8859-1, US-ASCII, and
/// what iconv knows of encodings that extend ASCII by single or multiple octets.
///
/// A document that is not well-formed is a SAXParseException with its position, after
/// ErrorHandler::fatalError; a stream that fails is an IOException; exceptions of handlers pass unchanged.
/// The parser can be used again after each. Memory grows with the depth of the document, its longest name,
/// attribute list or comment, and its declarations, not with its size; but a document of less than 64 MiB in
/// memory or 16 MiB in a file is copied at once, for speed, and twice if it is unusual. Handlers are
/// borrowed. One thread at a time; no locale dependence.
class TAMO_API SAXParser : public XMLReader {
public:
    /// Reports notations and unparsed entities before startDocument, and everything else in document order:
    /// the prolog is held back until the document type declaration is complete. Off by default.
    static constexpr StringConstant FEATURE_DECLARATIONS_FIRST{"urn:tamo:xml:features:declarations-first"};

    /// A parser without handlers, namespace processing on, external entities off.
    SAXParser() = default;

    SAXParser(const SAXParser&) = delete;
    SAXParser& operator=(const SAXParser&) = delete;

    void setEntityResolver(EntityResolver* pResolver) override { _settings.pEntityResolver = pResolver; }
    EntityResolver* getEntityResolver() const override { return _settings.pEntityResolver; }
    void setDTDHandler(DTDHandler* pDTDHandler) override { _settings.pDTDHandler = pDTDHandler; }
    DTDHandler* getDTDHandler() const override { return _settings.pDTDHandler; }
    void setContentHandler(ContentHandler* pContentHandler) override {
        _settings.pContentHandler = pContentHandler;
    }
    ContentHandler* getContentHandler() const override { return _settings.pContentHandler; }
    void setErrorHandler(ErrorHandler* pErrorHandler) override { _settings.pErrorHandler = pErrorHandler; }
    ErrorHandler* getErrorHandler() const override { return _settings.pErrorHandler; }

    /// Switches a feature, from the next parse on: namespaces, namespace prefixes (stored; qualified names
    /// are always reported), both kinds of external entities, declarations first. Validation and string
    /// interning can only be set to false.
    void setFeature(const std::string& name, bool value) override;
    bool getFeature(const std::string& name) const override;

    /// What is handed to the handlers of one document, at most, from the next parse on; beyond it
    /// SAXParseException "Limit exceeded: ...".
    void setLimits(const DeliveryLimits& limits) { _settings.limits = limits; }
    const DeliveryLimits& limits() const { return _settings.limits; }

    /// There are no string properties: throws.
    void setProperty(const std::string& name, const std::string& value) override;
    /// Sets the lexical handler; the declaration handler is stored and returned only.
    void setProperty(const std::string& name, void* value) override;
    void* getProperty(const std::string& name) const override;

    using XMLReader::parse;
    /// Reads a document; throws SAXParseException, IOException and what handlers throw.
    void parse(InputSource* pSource) override;
    /// Reads a document; throws SAXParseException "Cannot resolve system identifier" when it cannot be
    /// opened.
    void parse(const std::string& systemId) override;
    void parseMemoryNP(const char* xml, std::size_t size) override;

private:
    SAXSettings _settings;
};

} // namespace Tamo::XML

#endif
