#ifndef TAMO_FINF_COMPAREDDOCUMENT_H
#define TAMO_FINF_COMPAREDDOCUMENT_H

#include "Tamo/FastInfoset/FastInfosetReader.h"
#include "command/Options.h"
#include "files/InputFile.h"
#include "files/VocabularyFiles.h"
#include <optional>
#include <string>

namespace finf {

/// A document as a row of items that can be compared: runs of text are one item each, however the document
/// carries them, and what is no information is left out.
///
/// Fast Infoset is read as the comparison goes on, XML text is held in memory as Fast Infoset. A run of text
/// is held in memory.
class ComparedDocument {
public:
    using Reader = Tamo::FastInfoset::FastInfosetReader;

    /// The options are borrowed.
    ComparedDocument(const std::string& path, const Options& options);

    /// Opens the document. Throws FinfError and what its kind of document brings.
    void open();

    /// Whether the last operation has failed, so that an exception is about this document.
    bool hasFailed() const noexcept { return _hasFailed; }

    /// What messages call it.
    const std::string& name() const noexcept { return _name; }

    /// Goes to the next item. Throws as open() does.
    void next();

    /// What the item is: NO_DOCUMENT before the first one, never END_DTD; END_DOCUMENT in the end.
    Reader::Event event() const noexcept { return _event; }

    /// The text of the item, when it is TEXT.
    const std::string& text() const noexcept { return _text; }

    /// The item's other properties.
    const Reader& item() const noexcept { return _reader; }

private:
    const Options& _options;
    const std::string _path;
    const std::string _name;
    std::optional<InputFile> _input;
    bool _hasFailed = false;
    VocabularyFiles _vocabularies;
    std::string _octets; // of what was XML text
    Reader _reader;
    Reader::Event _event = Reader::NO_DOCUMENT;
    bool _isAhead = false; // the reader stands behind the text already
    std::string _text;
};

} // namespace finf

#endif
