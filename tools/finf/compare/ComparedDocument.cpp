#include "compare/ComparedDocument.h"
#include "command/FinfError.h"
#include "convert/XMLToFastInfoset.h"
#include "files/DocumentKind.h"
#include "files/X3D.h"
#include <sstream>
#include <utility>

namespace finf {

ComparedDocument::ComparedDocument(const std::string& path, const Options& options)
    : _options(options),
      _path(path),
      _name(path == "-" ? "standard input" : path),
      _vocabularies(options.vocabularies, options.limits) {
    _reader.setExternalVocabularyLoader(&_vocabularies);
    _reader.setLimits(options.limits);
    X3D::addDecodings(_reader.decodingAlgorithms());
}

void ComparedDocument::open() {
    _hasFailed = true;
    _input.emplace(_path);
    _input->requireKind(DocumentKind::UNKNOWN);
    if (_input->kind() == DocumentKind::FAST_INFOSET) {
        _reader.openNext(_input->stream());
    } else {
        Options plain;
        plain.limits = _options.limits;
        std::ostringstream out;
        _input->explain(DocumentKind::UNKNOWN,
                        [&] { XMLToFastInfoset(plain).convert(_input->stream(), out); });
        _octets = std::move(out).str();
        _reader.open(_octets);
    }
    _hasFailed = false;
}

void ComparedDocument::next() {
    _hasFailed = true;
    _input->explain(DocumentKind::UNKNOWN, [this] {
        FinfError::explainDamage([this] {
            _event = std::exchange(_isAhead, false) ? _reader.event() : _reader.next();
            while (_event == Reader::END_DTD) {
                _event = _reader.next();
            }
            if (_event == Reader::END_DOCUMENT && _input->hasMore()) {
                throw FinfError("more stands behind the document");
            }
            if (_event == Reader::TEXT) {
                _text.clear();
                do {
                    _text.append(_reader.text());
                } while (_reader.next() == Reader::TEXT);
                _isAhead = true;
            }
        });
    });
    _hasFailed = false;
}

} // namespace finf
