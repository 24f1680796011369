#ifndef TAMO_FINF_FASTINFOSETTOXML_H
#define TAMO_FINF_FASTINFOSETTOXML_H

#include "Tamo/FastInfoset/FastInfosetParser.h"
#include "Tamo/XML/WhitespaceFilter.h"
#include "Tamo/XML/XMLWriter.h"
#include "command/Options.h"
#include "convert/Conversion.h"
#include <optional>

namespace finf {

/// Fast Infoset -> XML text. Parser, writer and tables are kept from document to document.
class FastInfosetToXML : public Conversion {
public:
    /// The options are borrowed.
    explicit FastInfosetToXML(const Options& options);

    void convert(std::istream& in, std::ostream& out) override;

private:
    void begin(std::ostream& out);

    const Options& _options;
    VocabularyFiles _vocabularies;
    Tamo::FastInfoset::FastInfosetParser _parser;
    Tamo::XML::WhitespaceFilter _filter;
    std::optional<Tamo::XML::XMLWriter>
        _writer; // made for the first document, and behind one that has failed
};

} // namespace finf

#endif
