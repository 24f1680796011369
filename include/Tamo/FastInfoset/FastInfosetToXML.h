#ifndef TAMO_FASTINFOSET_FASTINFOSETTOXML_H
#define TAMO_FASTINFOSET_FASTINFOSETTOXML_H

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

/// Turns Fast Infoset into XML text, any number of documents, one after the other: parser, writer and tables
/// are kept, so that small documents cost less than with Converter, which makes them for each.
///
/// The documents are those of Converter, and have nothing in common. Memory is bounded by the largest
/// document's tables and depth, not by its size. Exceptions of the parser and of the writer
/// (XML::XMLException) pass through; the next document can be converted after each. The vocabulary loader of
/// the options is borrowed. One thread at a time; different objects are independent.
class TAMO_API FastInfosetToXML {
public:
    explicit FastInfosetToXML(const ConversionOptions& options = ConversionOptions());
    ~FastInfosetToXML();

    FastInfosetToXML(const FastInfosetToXML&) = delete;
    FastInfosetToXML& operator=(const FastInfosetToXML&) = delete;

    /// Reads a document from in and writes it to out as XML text. IOException when a stream fails. What was
    /// written before an exception stays in out.
    void convert(std::istream& in, std::ostream& out);

    /// Reads a document in memory and writes it to the sink, which has delivered the text at the end. What
    /// the sink throws passes through.
    void convert(std::string_view document, Sink& out);

    /// The same as a string.
    std::string convert(std::string_view document);

private:
    struct Engine;

    std::unique_ptr<Engine> _pEngine;
};

} // namespace Tamo::FastInfoset

#endif
