#include "Tamo/FastInfoset/FastInfosetPushParser.h"
#include "DocumentParser.h"
#include "ItemScanner.h"
#include "Tamo/Exception.h"
#include "Tamo/FastInfoset/BitStreamReader.h"
#include "Tamo/FastInfoset/FISException.h"
#include "Tamo/FastInfoset/FastInfosetParser.h"
#include "Tamo/XML/ContentHandler.h"
#include <limits>
#include <optional>
#include <string>
#include <vector>

namespace Tamo::FastInfoset {

class FastInfosetPushParser::Implementation {
public:
    explicit Implementation(DocumentParser& engine) noexcept : _engine(engine) {}

    Fed feed(std::span<const unsigned char> octets) {
        start();
        Fed fed{Status::NEEDS_MORE, octets.size()};
        while (fed.leftOver != 0 && fed.status == Status::NEEDS_MORE) {
            fed.status = feedSome(octets);
            fed.leftOver = octets.size();
        }
        _isUsable = true;
        return fed;
    }

    void finish() {
        start();
        if (_isInDocument) {
            _reader->continueIn(_kept.data(), _kept.size());
            _engine.locate(*_reader, [this] {
                beginIfNot();
                _engine.parsePart(*_reader, true);
                throwDisagreement(); // what is there has been found to be no whole document
            });
        }
        _isUsable = true;
    }

    void reset() {
        _engine.abandon();
        _kept = {};
        _isInDocument = false;
        _isUsable = true;
    }

    bool isInDocument() const noexcept { return _isInDocument; }
    std::size_t keptOctets() const noexcept { return _kept.size(); }
    UInt64 steps() const noexcept { return _scanner.steps(); }

    std::size_t maxItemSize = 0;

private:
    using Stand = ItemScanner::Stand;

    // What throws leaves this as it is here.
    void start() {
        if (!_isUsable) {
            throw InvalidAccessException("The push parser has failed, or is called by a handler; reset() it");
        }
        _isUsable = false;
    }

    void beginIfNot() {
        if (!_hasBegun) {
            _hasBegun = true;
            _engine.begin(*_reader);
        }
    }

    // Takes octets, which are taken away: of an item of which there is a part its rest, else as many items as
    // there are. What is unfinished behind them is kept.
    Status feedSome(std::span<const unsigned char>& octets) {
        if (!_isInDocument) {
            _reader.emplace(nullptr, 0);
            _scanner.begin(_engine.isStrict(), _engine.strings().limits().maxStringLength,
                           maxItemSize != 0 ? maxItemSize : std::numeric_limits<UInt64>::max());
            _size = 0;
            _hasBegun = false;
            _isInDocument = true;
        }
        const bool isRest = !_kept.empty();
        const Stand stand = _scanner.scan(octets.data(), octets.size(),
                                          isRest ? ItemScanner::Extent::ITEM : ItemScanner::Extent::ALL);
        const std::span<const unsigned char> whole = octets.first(_scanner.whole());
        octets = octets.subspan(whole.size());
        if (!whole.empty()) {
            if (isRest) {
                keep(whole);
                read(_kept, stand);
                _kept.clear();
            } else {
                read(whole, stand);
            }
        }
        switch (stand) {
        case Stand::TOO_LARGE:
            _engine.locate(*_reader, [this] {
                _reader->continueIn(nullptr, 0);
                _reader->beginConstruct(); // behind what has been read
                throw FISException("Limit exceeded: item size", std::to_string(maxItemSize));
            });
            break;
        case Stand::NEEDS_MORE:
            keep(octets);
            octets = {};
            break;
        default:
            break;
        }
        return _isInDocument ? Status::NEEDS_MORE : Status::FINISHED;
    }

    void keep(std::span<const unsigned char> octets) {
        _kept.insert(_kept.end(), octets.begin(), octets.end());
    }

    // Reads octets behind those read before, which are whole items, or no document from some place on.
    void read(std::span<const unsigned char> octets, Stand stand) {
        _reader->continueIn(octets.data(), octets.size());
        _size += octets.size();
        _engine.locate(*_reader, [&] { readItems(stand); });
    }

    void readItems(Stand stand) {
        beginIfNot();
        const bool isOpen = _engine.parsePart(*_reader, false);
        // By default the last octet is not read.
        const UInt64 octet = _reader->position() / 8;
        if (isOpen == (stand == Stand::DOCUMENT_END) || stand == Stand::REFUSED ||
            (octet != _size && (isOpen || octet + 1 != _size))) {
            throwDisagreement();
        }
        if (!isOpen) {
            _isInDocument = false;
            if (_engine.handlers().pContent) {
                _engine.handlers().pContent->endDocument();
            }
        }
    }

    [[noreturn]] void throwDisagreement() const {
        throw FISException(
            "An encoding algorithm has read fewer or more octets than its value has, before octet " +
            std::to_string(_reader->position() / 8));
    }

    DocumentParser& _engine;
    ItemScanner _scanner;
    std::optional<BitStreamReader> _reader; // of the document
    std::vector<unsigned char> _kept;       // of an unfinished item
    UInt64 _size = 0;                       // of what has been read of the document
    bool _isInDocument = false;
    bool _hasBegun = false; // whether the header has been read
    bool _isUsable = true;
};

FastInfosetPushParser::FastInfosetPushParser(FastInfosetParser& parser)
    : _pImplementation(std::make_unique<Implementation>(*parser._pEngine)) {}

FastInfosetPushParser::~FastInfosetPushParser() = default;

FastInfosetPushParser::Fed FastInfosetPushParser::feed(std::span<const std::byte> octets) {
    return _pImplementation->feed({reinterpret_cast<const unsigned char*>(octets.data()), octets.size()});
}

void FastInfosetPushParser::finish() {
    _pImplementation->finish();
}

void FastInfosetPushParser::reset() {
    _pImplementation->reset();
}

void FastInfosetPushParser::setMaxItemSize(std::size_t octets) noexcept {
    _pImplementation->maxItemSize = octets;
}

std::size_t FastInfosetPushParser::maxItemSize() const noexcept {
    return _pImplementation->maxItemSize;
}

bool FastInfosetPushParser::isInDocument() const noexcept {
    return _pImplementation->isInDocument();
}

std::size_t FastInfosetPushParser::keptOctets() const noexcept {
    return _pImplementation->keptOctets();
}

UInt64 FastInfosetPushParser::steps() const noexcept {
    return _pImplementation->steps();
}

} // namespace Tamo::FastInfoset
