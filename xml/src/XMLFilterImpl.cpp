#include "Tamo/XML/XMLFilterImpl.h"
#include "Tamo/Bugcheck.h"
#include "Tamo/XML/SAXException.h"

namespace Tamo::XML {

/// Puts a filter in place of its parent's handlers for as long as it lives.
class XMLFilterImpl::Connection {
public:
    Connection(XMLReader& parent, XMLFilterImpl& filter)
        : _parent(parent),
          _pEntityResolver(parent.getEntityResolver()),
          _pDTDHandler(parent.getDTDHandler()),
          _pContentHandler(parent.getContentHandler()),
          _pErrorHandler(parent.getErrorHandler()),
          _pLexicalHandler(parent.getProperty(_lexicalHandler)) {
        // What can fail comes first: nothing is connected then.
        parent.setProperty(_lexicalHandler, static_cast<LexicalHandler*>(&filter));
        // A parent that uses a resolver of its own by default keeps it unless the filter was given one.
        if (filter.getEntityResolver()) {
            parent.setEntityResolver(&filter);
        }
        parent.setDTDHandler(&filter);
        parent.setContentHandler(&filter);
        parent.setErrorHandler(&filter);
    }

    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    ~Connection() {
        _parent.setEntityResolver(_pEntityResolver);
        _parent.setDTDHandler(_pDTDHandler);
        _parent.setContentHandler(_pContentHandler);
        _parent.setErrorHandler(_pErrorHandler);
        try {
            _parent.setProperty(_lexicalHandler, _pLexicalHandler);
        } catch (...) {
            // The parent took the property before; a destructor lets nothing out.
        }
    }

private:
    // A string already, because the destructor may find no memory for one.
    const std::string _lexicalHandler{XMLReader::PROPERTY_LEXICAL_HANDLER};
    XMLReader& _parent;
    EntityResolver* _pEntityResolver;
    DTDHandler* _pDTDHandler;
    ContentHandler* _pContentHandler;
    ErrorHandler* _pErrorHandler;
    void* _pLexicalHandler;
};

void XMLFilterImpl::setFeature(const std::string& name, bool value) {
    if (!_pParent) {
        throw SAXNotRecognizedException(name);
    }
    _pParent->setFeature(name, value);
}

bool XMLFilterImpl::getFeature(const std::string& name) const {
    if (!_pParent) {
        throw SAXNotRecognizedException(name);
    }
    return _pParent->getFeature(name);
}

void XMLFilterImpl::setProperty(const std::string& name, const std::string& value) {
    if (!_pParent) {
        throw SAXNotRecognizedException(name);
    }
    _pParent->setProperty(name, value);
}

void XMLFilterImpl::setProperty(const std::string& name, void* value) {
    if (name == PROPERTY_LEXICAL_HANDLER) {
        _pLexicalHandler = static_cast<LexicalHandler*>(value);
    } else if (_pParent) {
        _pParent->setProperty(name, value);
    } else {
        throw SAXNotRecognizedException(name);
    }
}

void* XMLFilterImpl::getProperty(const std::string& name) const {
    if (name == PROPERTY_LEXICAL_HANDLER) {
        return _pLexicalHandler;
    }
    if (!_pParent) {
        throw SAXNotRecognizedException(name);
    }
    return _pParent->getProperty(name);
}

void XMLFilterImpl::parse(InputSource* pSource) {
    tamo_check_ptr(_pParent);
    Connection connection(*_pParent, *this);
    _pParent->parse(pSource);
}

void XMLFilterImpl::parse(const std::string& systemId) {
    tamo_check_ptr(_pParent);
    Connection connection(*_pParent, *this);
    _pParent->parse(systemId);
}

void XMLFilterImpl::parseMemoryNP(const char* xml, std::size_t size) {
    tamo_check_ptr(_pParent);
    Connection connection(*_pParent, *this);
    _pParent->parseMemoryNP(xml, size);
}

InputSource* XMLFilterImpl::resolveEntity(const std::string* publicId, const std::string& systemId) {
    return _pEntityResolver ? _pEntityResolver->resolveEntity(publicId, systemId) : nullptr;
}

void XMLFilterImpl::releaseInputSource(InputSource* pSource) {
    if (_pEntityResolver) {
        _pEntityResolver->releaseInputSource(pSource);
    }
}

void XMLFilterImpl::notationDecl(const std::string& name, const std::string* publicId,
                                 const std::string* systemId) {
    if (_pDTDHandler) {
        _pDTDHandler->notationDecl(name, publicId, systemId);
    }
}

void XMLFilterImpl::unparsedEntityDecl(const std::string& name, const std::string* publicId,
                                       const std::string& systemId, const std::string& notationName) {
    if (_pDTDHandler) {
        _pDTDHandler->unparsedEntityDecl(name, publicId, systemId, notationName);
    }
}

void XMLFilterImpl::setDocumentLocator(const Locator* loc) {
    if (_pContentHandler) {
        _pContentHandler->setDocumentLocator(loc);
    }
}

void XMLFilterImpl::startDocument() {
    if (_pContentHandler) {
        _pContentHandler->startDocument();
    }
}

void XMLFilterImpl::endDocument() {
    if (_pContentHandler) {
        _pContentHandler->endDocument();
    }
}

void XMLFilterImpl::startElement(const std::string& uri, const std::string& localName,
                                 const std::string& qname, const Attributes& attributes) {
    if (_pContentHandler) {
        _pContentHandler->startElement(uri, localName, qname, attributes);
    }
}

void XMLFilterImpl::endElement(const std::string& uri, const std::string& localName,
                               const std::string& qname) {
    if (_pContentHandler) {
        _pContentHandler->endElement(uri, localName, qname);
    }
}

void XMLFilterImpl::characters(const char ch[], int start, int length) {
    if (_pContentHandler) {
        _pContentHandler->characters(ch, start, length);
    }
}

void XMLFilterImpl::ignorableWhitespace(const char ch[], int start, int length) {
    if (_pContentHandler) {
        _pContentHandler->ignorableWhitespace(ch, start, length);
    }
}

void XMLFilterImpl::processingInstruction(const std::string& target, const std::string& data) {
    if (_pContentHandler) {
        _pContentHandler->processingInstruction(target, data);
    }
}

void XMLFilterImpl::startPrefixMapping(const std::string& prefix, const std::string& uri) {
    if (_pContentHandler) {
        _pContentHandler->startPrefixMapping(prefix, uri);
    }
}

void XMLFilterImpl::endPrefixMapping(const std::string& prefix) {
    if (_pContentHandler) {
        _pContentHandler->endPrefixMapping(prefix);
    }
}

void XMLFilterImpl::skippedEntity(const std::string& name) {
    if (_pContentHandler) {
        _pContentHandler->skippedEntity(name);
    }
}

void XMLFilterImpl::warning(const SAXParseException& exception) {
    if (_pErrorHandler) {
        _pErrorHandler->warning(exception);
    }
}

void XMLFilterImpl::error(const SAXParseException& exception) {
    if (_pErrorHandler) {
        _pErrorHandler->error(exception);
    }
}

void XMLFilterImpl::fatalError(const SAXParseException& exception) {
    if (_pErrorHandler) {
        _pErrorHandler->fatalError(exception);
    }
}

void XMLFilterImpl::startDTD(const std::string& name, const std::string& publicId,
                             const std::string& systemId) {
    if (_pLexicalHandler) {
        _pLexicalHandler->startDTD(name, publicId, systemId);
    }
}

void XMLFilterImpl::endDTD() {
    if (_pLexicalHandler) {
        _pLexicalHandler->endDTD();
    }
}

void XMLFilterImpl::startEntity(const std::string& name) {
    if (_pLexicalHandler) {
        _pLexicalHandler->startEntity(name);
    }
}

void XMLFilterImpl::endEntity(const std::string& name) {
    if (_pLexicalHandler) {
        _pLexicalHandler->endEntity(name);
    }
}

void XMLFilterImpl::startCDATA() {
    if (_pLexicalHandler) {
        _pLexicalHandler->startCDATA();
    }
}

void XMLFilterImpl::endCDATA() {
    if (_pLexicalHandler) {
        _pLexicalHandler->endCDATA();
    }
}

void XMLFilterImpl::comment(const char ch[], int start, int length) {
    if (_pLexicalHandler) {
        _pLexicalHandler->comment(ch, start, length);
    }
}

} // namespace Tamo::XML
