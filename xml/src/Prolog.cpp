#include "Prolog.h"
#include "SystemIdentifier.h"
#include "Tamo/XML/ContentHandler.h"
#include "Tamo/XML/DTDHandler.h"
#include "Tamo/XML/LexicalHandler.h"
#include <utility>

namespace Tamo::XML {

void Prolog::startDTD(const char* name, const char* systemId, const char* publicId) {
    _isInDTD = true;
    std::string nameText(name);
    std::string publicText(publicId ? publicId : "");
    std::string systemText = SystemIdentifier::normalized(systemId);
    if (_isHeld) {
        _held.emplace_back(
            [this, heldName = std::move(nameText), heldPublic = std::move(publicText),
             heldSystem = std::move(systemText)] { reportStartDTD(heldName, heldPublic, heldSystem); });
    } else {
        reportStartDTD(nameText, publicText, systemText);
    }
}

void Prolog::reportStartDTD(const std::string& name, const std::string& publicId,
                            const std::string& systemId) {
    if (LexicalHandler* pHandler = _handlers.pLexical) {
        pHandler->startDTD(name, publicId, systemId);
    }
}

void Prolog::endDTD() {
    _isInDTD = false;
    if (_isHeld) {
        _held.emplace_back([this] { reportEndDTD(); });
        reportHeld();
    } else {
        reportEndDTD();
    }
}

void Prolog::reportEndDTD() {
    if (LexicalHandler* pHandler = _handlers.pLexical) {
        pHandler->endDTD();
    }
}

void Prolog::comment(std::string_view text) {
    if (_isHeld) {
        _held.emplace_back([this, held = std::string(text)] { reportComment(held); });
    } else {
        reportComment(text);
    }
}

void Prolog::reportComment(std::string_view text) {
    if (LexicalHandler* pHandler = _handlers.pLexical) {
        pHandler->comment(text.data(), 0, static_cast<int>(text.size()));
    }
}

void Prolog::processingInstruction(std::string&& target, std::string&& data) {
    if (_isHeld) {
        _held.emplace_back([this, heldTarget = std::move(target), heldData = std::move(data)] {
            reportProcessingInstruction(heldTarget, heldData);
        });
    } else {
        reportProcessingInstruction(target, data);
    }
}

void Prolog::reportProcessingInstruction(const std::string& target, const std::string& data) {
    if (ContentHandler* pHandler = _handlers.pContent) {
        pHandler->processingInstruction(target, data);
    }
}

void Prolog::notation(const char* name, const char* systemId, const char* publicId) const {
    if (DTDHandler* pHandler = _handlers.pDTD) {
        const std::string systemText = SystemIdentifier::normalized(systemId);
        const std::string publicText(publicId ? publicId : "");
        pHandler->notationDecl(name, publicId ? &publicText : nullptr, systemId ? &systemText : nullptr);
    }
}

void Prolog::unparsedEntity(const char* name, const char* systemId, const char* publicId,
                            const char* notation) const {
    if (DTDHandler* pHandler = _handlers.pDTD) {
        const std::string publicText(publicId ? publicId : "");
        pHandler->unparsedEntityDecl(name, publicId ? &publicText : nullptr,
                                     SystemIdentifier::normalized(systemId), notation);
    }
}

void Prolog::reportHeld() {
    _isHeld = false;
    if (ContentHandler* pHandler = _handlers.pContent) {
        pHandler->startDocument();
    }
    for (const std::function<void()>& report : _held) {
        report();
    }
    _held = {};
}

} // namespace Tamo::XML
