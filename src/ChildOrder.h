#ifndef TAMO_FASTINFOSET_CHILDORDER_H
#define TAMO_FASTINFOSET_CHILDORDER_H

namespace Tamo::FastInfoset {

class BitStreamReader;

/// Which child may stand where in a document that is read by the letter (ITU-T X.891, 7.2 and 7.3): one
/// element, before it at most one document type declaration, and neither text nor references beside it. What
/// is out of place throws FISEncodingException. Used by one thread at a time.
class ChildOrder {
public:
    /// Whether the document's element has begun.
    bool hasElement() const noexcept { return _hasElement; }

    /// The document's element begins, the first one.
    void addElement() noexcept { _hasElement = true; }

    /// Requires that a child that begins with the octet b may stand here, within an element or beside it.
    void require(const BitStreamReader& reader, unsigned char b, bool isInElement);

    /// Requires that the document, which ends, has its element.
    void requireElement(const BitStreamReader& reader) const;

private:
    bool _hasDeclaration = false;
    bool _hasElement = false;
};

} // namespace Tamo::FastInfoset

#endif
