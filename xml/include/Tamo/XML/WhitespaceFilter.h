#ifndef TAMO_XML_WHITESPACEFILTER_H
#define TAMO_XML_WHITESPACEFILTER_H

#include "Tamo/Export.h"
#include "Tamo/XML/XMLFilterImpl.h"
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace Tamo::XML {

/// Drops character data that is nothing but white space.
///
/// The decision is made for a whole run of character data between two other events, however many calls
/// deliver it. White space stays inside CDATA sections and where `xml:space="preserve"` is in force.
/// Everything else passes unchanged. A run of white space is held in memory until the event that ends it.
/// Parent and handlers are borrowed. One thread at a time.
class TAMO_API WhitespaceFilter : public XMLFilterImpl {
public:
    /// A filter over the reader, which is borrowed.
    explicit WhitespaceFilter(XMLReader* pReader = nullptr) : XMLFilterImpl(pReader) {}

    void startDocument() override;
    void endDocument() override;
    void startElement(const std::string& uri, const std::string& localName, const std::string& qname,
                      const Attributes& attributes) override;
    void endElement(const std::string& uri, const std::string& localName, const std::string& qname) override;
    void characters(const char ch[], int start, int length) override;
    void ignorableWhitespace(const char ch[], int start, int length) override;
    void processingInstruction(const std::string& target, const std::string& data) override;
    void startPrefixMapping(const std::string& prefix, const std::string& uri) override;
    void skippedEntity(const std::string& name) override;
    void startEntity(const std::string& name) override;
    void endEntity(const std::string& name) override;
    void startCDATA() override;
    void endCDATA() override;
    void comment(const char ch[], int start, int length) override;

private:
    struct Space {
        std::size_t depth; ///< of the element that carries xml:space
        bool preserve;
    };

    bool preserving() const { return _inCDATA || (!_spaces.empty() && _spaces.back().preserve); }
    bool passOnPending(std::string_view text);
    void endRun();

    std::string _pending;  // the white space at the beginning of the current run
    bool _passing = false; // the current run has shown something else than white space
    bool _inCDATA = false;
    std::size_t _depth = 0;
    std::vector<Space> _spaces;
};

} // namespace Tamo::XML

#endif
