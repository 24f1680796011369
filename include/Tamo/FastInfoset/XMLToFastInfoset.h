#ifndef TAMO_FASTINFOSET_XMLTOFASTINFOSET_H
#define TAMO_FASTINFOSET_XMLTOFASTINFOSET_H

#include "Tamo/Export.h"
#include "Tamo/FastInfoset/ConversionOptions.h"
#include <iosfwd>
#include <memory>
#include <string>
#include <string_view>

namespace Tamo {
class Sink;
}

namespace Tamo::FastInfoset {

/// Turns XML text into Fast Infoset, any number of documents, one after the other: parser, writer and tables
/// are kept, so that small documents cost less than with Converter, which makes them for each.
///
/// The documents are those of Converter, and have nothing in common. Memory is bounded by the largest
/// document's tables and depth, not by its size. Exceptions of the XML parser (XML::SAXParseException) and of
/// the writer pass through; the next document can be converted after each. One thread at a time; different
/// objects are independent.
class TAMO_API XMLToFastInfoset {
public:
    explicit XMLToFastInfoset(const ConversionOptions& options = ConversionOptions());
    ~XMLToFastInfoset();

    XMLToFastInfoset(const XMLToFastInfoset&) = delete;
    XMLToFastInfoset& operator=(const XMLToFastInfoset&) = delete;

    /// Reads XML text from in and writes it to out, which is flushed at the end alone. IOException when a
    /// stream fails. What was written before an exception stays in out.
    void convert(std::istream& in, std::ostream& out);

    /// Reads XML text in memory and writes it to the sink, which has delivered the document at the end. What
    /// the sink throws passes through.
    void convert(std::string_view xml, Sink& out);

    /// The same as a string.
    std::string convert(std::string_view xml);

private:
    struct Engine;

    std::unique_ptr<Engine> _pEngine;
};

} // namespace Tamo::FastInfoset

#endif
