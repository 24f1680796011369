#include "Tamo/FastInfoset/Encoding.h"
#include "Tamo/XML/ContentHandler.h"
#include <algorithm>

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
    // The interface counts in int: only text beyond that takes a second call.
    constexpr std::size_t MOST = 0x40000000;
    std::size_t done = 0;
    do {
        const std::size_t count = std::min(text.size() - done, MOST);
        handler.characters(text.data() + done, 0, static_cast<int>(count));
        done += count;
    } while (done < text.size());
}

} // namespace Tamo::FastInfoset
