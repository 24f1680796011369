#ifndef TAMO_FINF_XMLTOFASTINFOSET_H
#define TAMO_FINF_XMLTOFASTINFOSET_H

#include "command/Options.h"
#include "convert/Conversion.h"
#include <memory>
#include <string>

namespace finf {

/// XML text -> Fast Infoset.
class XMLToFastInfoset : public Conversion {
public:
    /// The options are borrowed.
    explicit XMLToFastInfoset(const Options& options)
        : _options(options), _vocabularies(options.vocabularies, options.limits) {}

    /// Writes against this vocabulary, not against the first one of the options.
    void setVocabulary(const std::string& uri, const Tamo::FastInfoset::DocumentVocabulary& vocabulary);

    void convert(std::istream& in, std::ostream& out) override;

private:
    const Options& _options;
    VocabularyFiles _vocabularies;
    std::shared_ptr<const Tamo::FastInfoset::SharedVocabulary> _pVocabulary; // read for the first document
};

} // namespace finf

#endif
