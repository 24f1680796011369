#ifndef TAMO_FINF_CLOSINGWRITER_H
#define TAMO_FINF_CLOSINGWRITER_H

#include "Tamo/XML/XMLWriter.h"
#include <cstddef>
#include <ostream>
#include <sstream>
#include <string>

namespace finf {

/// What a ClosingWriter writes to: held until the document has an element, without which it is none.
class HeldText {
protected:
    std::stringbuf _held;
    std::ostream _text{&_held};
};

/// A writer of XML text whose document may break off anywhere. The stream is borrowed; nothing is written to
/// it before the document's element.
class ClosingWriter : private HeldText, public Tamo::XML::XMLWriter {
public:
    ClosingWriter(std::ostream& out, int options) : XMLWriter(_text, options), _out(out) {}

    void startElement(const std::string& uri, const std::string& localName, const std::string& qname,
                      const Tamo::XML::Attributes& attributes) override;
    void endElement(const std::string& uri, const std::string& localName, const std::string& qname) override;
    void startCDATA() override;
    void endCDATA() override;

    /// Ends what is open, and the document; false when that has no element, and nothing is written. Throws
    /// XMLException when an event has failed.
    bool close();

private:
    std::ostream& _out;
    std::size_t _depth = 0;
    bool _hasRoot = false;
    bool _inCDATA = false;
};

} // namespace finf

#endif
