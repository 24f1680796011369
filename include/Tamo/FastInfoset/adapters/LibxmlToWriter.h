#ifndef TAMO_FASTINFOSET_ADAPTERS_LIBXMLTOWRITER_H
#define TAMO_FASTINFOSET_ADAPTERS_LIBXMLTOWRITER_H

#include "Tamo/FastInfoset/FISException.h"
#include "Tamo/FastInfoset/FastInfosetWriter.h"
#include "Tamo/FastInfoset/adapters/detail/LibxmlText.h"
#include "Tamo/XML/AttributesImpl.h"
#include <exception>
#include <libxml/SAX2.h>
#include <libxml/parser.h>
#include <string>
#include <string_view>

namespace Tamo::FastInfoset::Adapters {

/// Writes what a parser of libxml2 reads: XML text becomes a Fast Infoset document without a tree between.
///
/// attach() puts functions of its own in a parser context's SAX handler and this in its _private; the context
/// then parses as the program likes, by xmlParseDocument or by xmlParseChunk, and finish() tells how it went.
/// Exceptions of the writer do not pass through libxml2: they stop the parser and come out of finish().
/// Entities that the document defines itself are replaced; external ones are taken for undeclared and never
/// opened. The writer should be strict; both it and this have to outlive the parsing. For one document at a
/// time, used by one thread at a time.
class LibxmlToWriter {
public:
    explicit LibxmlToWriter(FastInfosetWriter& writer) : _writer(writer) {}

    LibxmlToWriter(const LibxmlToWriter&) = delete;
    LibxmlToWriter& operator=(const LibxmlToWriter&) = delete;

    /// Makes a context that has not begun to parse report to the writer.
    void attach(xmlParserCtxt* pContext) {
        _pFailure = nullptr;
        _inDocumentType = false;
        pContext->_private = this;
        xmlCtxtUseOptions(pContext, pContext->options | XML_PARSE_NOENT | XML_PARSE_NONET);
        xmlSAXHandler& sax = *pContext->sax;
        sax.startDocument = [](void* pParser) {
            xmlSAX2StartDocument(pParser); // where declarations are kept
            guard(pParser, [](LibxmlToWriter& self) { self._writer.startDocument(); });
        };
        sax.endDocument = [](void* pParser) {
            if (parserOf(pParser)->wellFormed != 0) {
                guard(pParser, [](LibxmlToWriter& self) { self._writer.endDocument(); });
            }
        };
        sax.internalSubset = [](void* pParser, const xmlChar* name, const xmlChar* publicId,
                                const xmlChar* systemId) {
            xmlSAX2InternalSubset(pParser, name, publicId, systemId);
            guard(pParser, [=](LibxmlToWriter& self) {
                self._writer.startDTD(stringOf(name), stringOf(publicId), stringOf(systemId));
                self._inDocumentType = true;
            });
        };
        sax.entityDecl = [](void* pParser, const xmlChar* name, int type, const xmlChar* publicId,
                            const xmlChar* systemId, xmlChar* content) {
            if (type == XML_INTERNAL_GENERAL_ENTITY || type == XML_INTERNAL_PARAMETER_ENTITY) {
                xmlSAX2EntityDecl(pParser, name, type, publicId, systemId, content);
            }
        };
        sax.notationDecl = [](void* pParser, const xmlChar* name, const xmlChar* publicId,
                              const xmlChar* systemId) {
            xmlSAX2NotationDecl(pParser, name, publicId, systemId);
            guard(pParser, [=](LibxmlToWriter& self) {
                const std::string identifiers[] = {stringOf(publicId), stringOf(systemId)};
                self._writer.notationDecl(stringOf(name), publicId ? &identifiers[0] : nullptr,
                                          systemId ? &identifiers[1] : nullptr);
            });
        };
        sax.unparsedEntityDecl = [](void* pParser, const xmlChar* name, const xmlChar* publicId,
                                    const xmlChar* systemId, const xmlChar* notation) {
            xmlSAX2UnparsedEntityDecl(pParser, name, publicId, systemId, notation);
            guard(pParser, [=](LibxmlToWriter& self) {
                const std::string identifier = stringOf(publicId);
                self._writer.unparsedEntityDecl(stringOf(name), publicId ? &identifier : nullptr,
                                                stringOf(systemId), stringOf(notation));
            });
        };
        sax.startElementNs = [](void* pParser, const xmlChar* localName, const xmlChar* prefix,
                                const xmlChar* uri, int declarations, const xmlChar** pDeclarations,
                                int attributes, int, const xmlChar** pAttributes) {
            guard(pParser, [=](LibxmlToWriter& self) {
                self.startElement(localName, prefix, uri, declarations, pDeclarations, attributes,
                                  pAttributes);
            });
        };
        sax.endElementNs = [](void* pParser, const xmlChar* localName, const xmlChar* prefix,
                              const xmlChar* uri) {
            guard(pParser, [=](LibxmlToWriter& self) {
                self.setName(localName, prefix, uri);
                self._writer.endElement(self._uri, self._localName, self._qname);
            });
        };
        sax.characters = sax.ignorableWhitespace = [](void* pParser, const xmlChar* text, int length) {
            guard(pParser, [=](LibxmlToWriter& self) { self.characters(text, length); });
        };
        sax.cdataBlock = [](void* pParser, const xmlChar* text, int length) {
            guard(pParser, [=](LibxmlToWriter& self) {
                self._writer.startCDATA();
                self.characters(text, length);
                self._writer.endCDATA();
            });
        };
        sax.comment = [](void* pParser, const xmlChar* text) {
            guard(pParser, [=](LibxmlToWriter& self) {
                if (!self._inDocumentType) { // X.891 has no place for it there
                    self._writer.comment(LibxmlText::viewOf(text));
                }
            });
        };
        sax.processingInstruction = [](void* pParser, const xmlChar* target, const xmlChar* data) {
            guard(pParser, [=](LibxmlToWriter& self) {
                self._writer.processingInstruction(stringOf(target), stringOf(data));
            });
        };
        sax.reference = [](void* pParser, const xmlChar* name) {
            guard(pParser, [=](LibxmlToWriter& self) { self._writer.skippedEntity(stringOf(name)); });
        };
    }

    /// Behind the parsing: throws what the writer has thrown, or FISException with libxml2's message and line
    /// for text that is not well-formed. Frees what the parser has kept of declarations.
    void finish(xmlParserCtxt* pContext) {
        xmlFreeDoc(pContext->myDoc);
        pContext->myDoc = nullptr;
        if (_pFailure) {
            std::rethrow_exception(_pFailure);
        }
        if (pContext->wellFormed == 0) {
            const auto* const pError = xmlCtxtGetLastError(pContext);
            std::string message = pError && pError->message ? pError->message : "it is not well-formed";
            message.erase(message.find_last_not_of("\r\n") + 1);
            throw FISException("libxml2 cannot read the XML text",
                               message + ", line " + std::to_string(pError ? pError->line : 0));
        }
    }

private:
    static xmlParserCtxt* parserOf(void* pParser) noexcept { return static_cast<xmlParserCtxt*>(pParser); }

    // Entities are read by parsers of their own, to which _private is passed on.
    template<class Use>
    static void guard(void* pParser, const Use& use) noexcept {
        auto& self = *static_cast<LibxmlToWriter*>(parserOf(pParser)->_private);
        if (self._pFailure) {
            return;
        }
        try {
            if (self._inDocumentType && parserOf(pParser)->inSubset == 0) {
                self._inDocumentType = false;
                self._writer.endDTD();
            }
            use(self);
        } catch (...) {
            self._pFailure = std::current_exception();
            xmlStopParser(parserOf(pParser));
        }
    }

    static std::string stringOf(const xmlChar* text) { return std::string(LibxmlText::viewOf(text)); }

    void setName(const xmlChar* localName, const xmlChar* prefix, const xmlChar* uri) {
        _uri = LibxmlText::viewOf(uri);
        _localName = LibxmlText::viewOf(localName);
        _qname = LibxmlText::viewOf(prefix);
        _qname.append(prefix ? ":" : "").append(_localName);
    }

    void startElement(const xmlChar* localName, const xmlChar* prefix, const xmlChar* uri, int declarations,
                      const xmlChar** pDeclarations, int attributes, const xmlChar** pAttributes) {
        for (int i = 0; i < declarations; ++i, pDeclarations += 2) {
            _writer.startPrefixMapping(stringOf(pDeclarations[0]), stringOf(pDeclarations[1]));
        }
        _attributes.clear();
        for (int i = 0; i < attributes; ++i, pAttributes += 5) {
            setName(pAttributes[0], pAttributes[1], pAttributes[2]);
            _value.assign(reinterpret_cast<const char*>(pAttributes[3]),
                          reinterpret_cast<const char*>(pAttributes[4]));
            _attributes.addAttribute(_uri, _localName, _qname, _type, _value);
        }
        setName(localName, prefix, uri);
        _writer.startElement(_uri, _localName, _qname, _attributes);
    }

    void characters(const xmlChar* text, int length) {
        if (length > 0) {
            _writer.characters(
                std::string_view(reinterpret_cast<const char*>(text), static_cast<std::size_t>(length)));
        }
    }

    FastInfosetWriter& _writer;
    std::exception_ptr _pFailure;
    bool _inDocumentType = false;
    XML::AttributesImpl _attributes;
    const std::string _type = "CDATA";
    std::string _qname;
    std::string _uri;
    std::string _localName;
    std::string _value;
};

} // namespace Tamo::FastInfoset::Adapters

#endif
