#ifndef TAMO_FINF_FASTINFOSETTOXML_H
#define TAMO_FINF_FASTINFOSETTOXML_H

#include "command/Options.h"
#include "convert/Conversion.h"

namespace finf {

/// Fast Infoset -> XML text.
class FastInfosetToXML : public Conversion {
public:
    /// The options are borrowed.
    explicit FastInfosetToXML(const Options& options)
        : _options(options), _vocabularies(options.vocabularies, options.limits) {}

    void convert(std::istream& in, std::ostream& out) override;

private:
    const Options& _options;
    VocabularyFiles _vocabularies;
};

} // namespace finf

#endif
