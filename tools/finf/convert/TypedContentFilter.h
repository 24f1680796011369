#ifndef TAMO_FINF_TYPEDCONTENTFILTER_H
#define TAMO_FINF_TYPEDCONTENTFILTER_H

#include "Tamo/AutoPtr.h"
#include "Tamo/FastInfoset/Encoding.h"
#include "Tamo/FastInfoset/FastInfosetWriter.h"
#include "Tamo/FastInfoset/TypedAttributes.h"
#include "convert/ValueText.h"
#include <string>

namespace finf {

/// Hands text that an encoding algorithm carries in fewer octets to the writer as typed data.
///
/// Only values of attributes and the whole text of an element without other children are tried, and only what
/// gives back the identical text is used; everything else passes unchanged. Text short enough for the
/// writer's string table stays text: its second occurrence costs an index only. The writer is borrowed.
class TypedContentFilter : public Tamo::XML::ContentHandler, public Tamo::XML::LexicalHandler {
public:
    /// A filter in front of writer, which indexes strings up to maxIndexedLength octets (all when it is
    /// negative). Numbers with a fraction are taken in the canonical form of XML Schema, for readers that
    /// give that back (ITU-T X.891, 10.8), or in the shortest spelling.
    TypedContentFilter(Tamo::FastInfoset::FastInfosetWriter& writer, int maxIndexedLength, bool isCanonical)
        : _writer(writer),
          _maxIndexedLength(maxIndexedLength),
          _isCanonical(isCanonical),
          _valueText(isCanonical) {}

    void setDocumentLocator(const Tamo::XML::Locator* loc) override;
    void startDocument() override;
    void endDocument() override;
    void startElement(const std::string& uri, const std::string& localName, const std::string& qname,
                      const Tamo::XML::Attributes& attributes) override;
    void endElement(const std::string& uri, const std::string& localName, const std::string& qname) override;
    void characters(const char ch[], int start, int length) override;
    void ignorableWhitespace(const char ch[], int start, int length) override;
    void processingInstruction(const std::string& target, const std::string& data) override;
    void startPrefixMapping(const std::string& prefix, const std::string& uri) override;
    void endPrefixMapping(const std::string& prefix) override;
    void skippedEntity(const std::string& name) override;

    void startDTD(const std::string& name, const std::string& publicId, const std::string& systemId) override;
    void endDTD() override;
    void startEntity(const std::string& name) override;
    void endEntity(const std::string& name) override;
    void startCDATA() override;
    void endCDATA() override;
    void comment(const char ch[], int start, int length) override;

private:
    Tamo::AutoPtr<Tamo::FastInfoset::Encoding> encoding(const std::string& text);
    Tamo::AutoPtr<Tamo::FastInfoset::Encoding> typed(const std::string& text);
    const Tamo::XML::Attributes& typed(const Tamo::XML::Attributes& attributes);
    void passText();

    Tamo::FastInfoset::FastInfosetWriter& _writer;
    int _maxIndexedLength;
    bool _isCanonical;
    ValueText _valueText;
    bool _collecting = false; // between a start tag and what follows its text
    std::string _text;
    Tamo::FastInfoset::TypedAttributes _attributes;
};

} // namespace finf

#endif
