#ifndef TAMO_FINF_FASTINFOSETTOXML_H
#define TAMO_FINF_FASTINFOSETTOXML_H

#include "Tamo/FastInfoset/FastInfosetParser.h"
#include "command/Options.h"
#include "convert/ClosingWriter.h"
#include "convert/Conversion.h"

namespace finf {

/// Fast Infoset -> XML text, live: nothing is waited for that is not needed.
class FastInfosetToXML : public Conversion {
public:
    /// The options are borrowed.
    explicit FastInfosetToXML(const Options& options);

    /// Takes no octet behind the document. With Options::recover and Options::follow, throws TornDocument for
    /// one that does not come to its end, once it is closed.
    void convert(std::istream& in, std::ostream& out) override;

    void flush() override;

private:
    void parse(std::istream& in, ClosingWriter& writer);
    [[noreturn]] void explain(const std::exception& failure, std::istream& in, std::streamoff start,
                              ClosingWriter& writer, std::ostream& out) const;

    const Options& _options;
    VocabularyFiles _vocabularies;
    Tamo::FastInfoset::FastInfosetParser _parser;
    ClosingWriter* _pWriter = nullptr; // of the document that is being read
};

} // namespace finf

#endif
