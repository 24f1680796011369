#ifndef TAMO_XML_XMLREADER_H
#define TAMO_XML_XMLREADER_H

#include "Tamo/Export.h"
#include "Tamo/StringConstant.h"
#include <cstddef>
#include <iosfwd>
#include <span>
#include <string>
#include <string_view>

namespace Tamo::XML {

class ContentHandler;
class DeclHandler;
class DTDHandler;
class EntityResolver;
class ErrorHandler;
class InputSource;
class LexicalHandler;

/// Reads a document and reports it as events (SAX2).
///
/// Handlers are borrowed: they must outlive their use. Any number of documents can be read with one reader,
/// one at a time and on one thread at a time; handlers are called on the thread that calls `parse`. An
/// exception that a handler throws passes out of `parse` unchanged; the reader can be used again afterwards.
class TAMO_API XMLReader {
public:
    /// Reports validity errors.
    static constexpr StringConstant FEATURE_VALIDATION{"http://xml.org/sax/features/validation"};
    /// Reports namespace names and local names.
    static constexpr StringConstant FEATURE_NAMESPACES{"http://xml.org/sax/features/namespaces"};
    /// Reports qualified names.
    static constexpr StringConstant FEATURE_NAMESPACE_PREFIXES{
        "http://xml.org/sax/features/namespace-prefixes"};
    /// Hands out one and the same string object for equal names.
    static constexpr StringConstant FEATURE_STRING_INTERNING{"http://xml.org/sax/features/string-interning"};
    /// Reads external general entities.
    static constexpr StringConstant FEATURE_EXTERNAL_GENERAL_ENTITIES{
        "http://xml.org/sax/features/external-general-entities"};
    /// Reads external parameter entities, the external subset included.
    static constexpr StringConstant FEATURE_EXTERNAL_PARAMETER_ENTITIES{
        "http://xml.org/sax/features/external-parameter-entities"};
    /// The declaration handler: a DeclHandler* passed as void*, as setDeclHandler() does.
    static constexpr StringConstant PROPERTY_DECLARATION_HANDLER{
        "http://xml.org/sax/properties/declaration-handler"};
    /// The lexical handler: a LexicalHandler* passed as void*, as setLexicalHandler() does.
    static constexpr StringConstant PROPERTY_LEXICAL_HANDLER{"http://xml.org/sax/properties/lexical-handler"};

    /// Sets the resolver of external entities; null for the reader's own.
    virtual void setEntityResolver(EntityResolver* pResolver) = 0;
    /// The resolver that was set, or null.
    virtual EntityResolver* getEntityResolver() const = 0;

    /// Sets the receiver of notations and unparsed entities; null for none.
    virtual void setDTDHandler(DTDHandler* pDTDHandler) = 0;
    /// The DTD handler that was set, or null.
    virtual DTDHandler* getDTDHandler() const = 0;

    /// Sets the receiver of the content; null for none.
    virtual void setContentHandler(ContentHandler* pContentHandler) = 0;
    /// The content handler that was set, or null.
    virtual ContentHandler* getContentHandler() const = 0;

    /// Sets the receiver of errors; null for none.
    virtual void setErrorHandler(ErrorHandler* pErrorHandler) = 0;
    /// The error handler that was set, or null.
    virtual ErrorHandler* getErrorHandler() const = 0;

    /// Sets the receiver of comments, CDATA sections and the document type declaration; null for none. The
    /// property PROPERTY_LEXICAL_HANDLER, typed; throws what that does.
    void setLexicalHandler(LexicalHandler* pLexicalHandler);
    /// The lexical handler that was set, or null.
    LexicalHandler* getLexicalHandler() const;

    /// Sets the receiver of element, attribute and entity declarations; null for none. The property
    /// PROPERTY_DECLARATION_HANDLER, typed; throws what that does.
    void setDeclHandler(DeclHandler* pDeclHandler);
    /// The declaration handler that was set, or null.
    DeclHandler* getDeclHandler() const;

    /// Switches a feature; throws SAXNotRecognizedException or SAXNotSupportedException.
    virtual void setFeature(const std::string& name, bool value) = 0;
    /// The state of a feature; throws SAXNotRecognizedException.
    virtual bool getFeature(const std::string& name) const = 0;

    /// Sets a property that is a string; throws SAXNotRecognizedException or SAXNotSupportedException.
    virtual void setProperty(const std::string& name, const std::string& value) = 0;
    /// Sets a property that is an object, borrowed; throws SAXNotRecognizedException or
    /// SAXNotSupportedException.
    virtual void setProperty(const std::string& name, void* value) = 0;
    /// The value of a property that is an object, or null; throws SAXNotRecognizedException.
    virtual void* getProperty(const std::string& name) const = 0;

    /// Reads a document from the source, which stays the caller's.
    virtual void parse(InputSource* pSource) = 0;
    /// Reads the document that the system identifier names.
    virtual void parse(const std::string& systemId) = 0;
    /// Reads a document from a byte stream, which is borrowed: parse() of an InputSource over it. A class
    /// that overrides the others says `using XMLReader::parse;`.
    void parse(std::istream& stream);
    /// Reads a document of `size` octets in memory, not copied as a whole.
    virtual void parseMemoryNP(const char* xml, std::size_t size) = 0;

    /// The same for the octets of a view.
    void parseMemory(std::span<const std::byte> octets) {
        parseMemoryNP(reinterpret_cast<const char*>(octets.data()), octets.size());
    }
    void parseMemory(std::string_view octets) { parseMemoryNP(octets.data(), octets.size()); }
    /// Octets without a length are no document.
    void parseMemory(const char*) = delete;

    virtual ~XMLReader() = default;
};

} // namespace Tamo::XML

#endif
