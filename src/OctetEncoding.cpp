#include "Tamo/FastInfoset/OctetEncoding.h"
#include "Tamo/Bugcheck.h"
#include "Tamo/FastInfoset/Encoder.h"
#include "Tamo/FastInfoset/FISContentHandler.h"

namespace Tamo::FastInfoset {

OctetEncoding::OctetEncoding(const std::string& content) : Encoding(content) {}

OctetEncoding::OctetEncoding(const char* data, std::size_t length) : Encoding(data, length) {}

bool OctetEncoding::merge(const Encoding& other) {
    if (other.type() != type()) {
        return false;
    }
    _content.append(other.content());
    return true;
}

void OctetEncoding::write(BitStreamWriter& writer) const {
    tamo_assert(!_content.empty());
    Encoder::nonEmptyOctetString(writer, _content);
}

void OctetEncoding::handle(FISContentHandler* handler) const {
    if (handler) {
        deliver(*handler, content());
    }
}

void OctetEncoding::createContent() {}

} // namespace Tamo::FastInfoset
