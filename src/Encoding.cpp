#include "Tamo/FastInfoset/Encoding.h"
#include "Tamo/XML/ContentHandler.h"
#include "TextPieces.h"

namespace Tamo::FastInfoset {

Encoding::Encoding(const std::string& content) : _content(content) {}

Encoding::Encoding(const char* data, std::size_t length) : _content(data, length) {}

Encoding::~Encoding() = default;

void Encoding::handle(XML::ContentHandler* handler) const {
    if (handler) {
        deliver(*handler, content());
    }
}

const std::string& Encoding::content() const {
    return _content;
}

std::string& Encoding::content() {
    return _content;
}

void Encoding::deliver(XML::ContentHandler& handler, const std::string& text) {
    TextPieces::forEach(text, [&handler](std::string_view piece) {
        handler.characters(piece.data(), 0, static_cast<int>(piece.size()));
    });
}

} // namespace Tamo::FastInfoset
