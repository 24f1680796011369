#ifndef TAMO_XML_PROLOG_H
#define TAMO_XML_PROLOG_H

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace Tamo::XML {

class ContentHandler;
class DTDHandler;
class LexicalHandler;

/// Reports the beginning of a document, its document type declaration, and the comments and processing
/// instructions that may stand around that: at once, or held back until the declaration is complete, so that
/// notations and unparsed entities go first.
///
/// Strings are as Expat delivers them; null for a missing one. Owned by one parse.
class Prolog {
public:
    /// Who is reported to. Each may be null, and another one at any time.
    struct Handlers {
        ContentHandler* const& pContent;
        LexicalHandler* const& pLexical;
        DTDHandler* const& pDTD;
    };

    /// Whether events wait for the declarations.
    enum class Order { AS_WRITTEN, DECLARATIONS_FIRST };

    Prolog(const Handlers& handlers, Order order)
        : _handlers(handlers), _isHeld(order == Order::DECLARATIONS_FIRST) {}

    /// Whether events are being held back.
    bool isHeld() const noexcept { return _isHeld; }

    /// Whether the document type declaration has begun and not ended.
    bool isInDTD() const noexcept { return _isInDTD; }

    void startDTD(const char* name, const char* systemId, const char* publicId);
    void endDTD();
    void comment(std::string_view text);
    void processingInstruction(std::string&& target, std::string&& data);

    /// Declarations are reported at once.
    void notation(const char* name, const char* systemId, const char* publicId) const;
    void unparsedEntity(const char* name, const char* systemId, const char* publicId,
                        const char* notation) const;

    /// Reports what has been held back, and holds back nothing more.
    void release() {
        if (_isHeld) [[unlikely]] {
            reportHeld();
        }
    }

private:
    void reportStartDTD(const std::string& name, const std::string& publicId, const std::string& systemId);
    void reportEndDTD();
    void reportComment(std::string_view text);
    void reportProcessingInstruction(const std::string& target, const std::string& data);
    void reportHeld();

    Handlers _handlers;
    bool _isHeld;
    bool _isInDTD = false;
    std::vector<std::function<void()>> _held;
};

} // namespace Tamo::XML

#endif
