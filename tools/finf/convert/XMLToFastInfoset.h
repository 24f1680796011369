#ifndef TAMO_FINF_XMLTOFASTINFOSET_H
#define TAMO_FINF_XMLTOFASTINFOSET_H

#include "command/Options.h"
#include "convert/Conversion.h"
#include <memory>
#include <string>

namespace finf {

/// XML text -> Fast Infoset. Parser, writer and tables are kept from document to document.
class XMLToFastInfoset : public Conversion {
public:
    /// The options are borrowed.
    explicit XMLToFastInfoset(const Options& options);
    ~XMLToFastInfoset() override;

    /// Writes against this vocabulary, not against the first one of the options.
    void setVocabulary(const std::string& uri, const Tamo::FastInfoset::DocumentVocabulary& vocabulary);

    void convert(std::istream& in, std::ostream& out) override;

private:
    struct Engine;

    const Options& _options;
    VocabularyFiles _vocabularies;
    std::shared_ptr<const Tamo::FastInfoset::SharedVocabulary> _pVocabulary; // read for the first document
    std::unique_ptr<Engine> _pEngine;                                        // made for the first document
};

} // namespace finf

#endif
