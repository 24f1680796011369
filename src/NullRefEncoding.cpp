#include "Tamo/FastInfoset/NullRefEncoding.h"
#include "Tamo/Bugcheck.h"
#include "Tamo/FastInfoset/Encoder.h"
#include "Tamo/FastInfoset/FISContentHandler.h"

namespace Tamo::FastInfoset {

NullRefEncoding::NullRefEncoding(const std::string& data) : _data(&data) {}

bool NullRefEncoding::merge(const Encoding&) {
    throw InvalidAccessException("NullRefEncoding is immutable");
}

void NullRefEncoding::write(BitStreamWriter& writer) const {
    tamo_assert(_data && !_data->empty());
    Encoder::nonEmptyOctetString(writer, *_data);
}

void NullRefEncoding::handle(XML::ContentHandler* handler) const {
    if (handler) {
        deliver(*handler, content());
    }
}

void NullRefEncoding::handle(FISContentHandler* handler) const {
    if (handler) {
        deliver(*handler, content());
    }
}

const std::string& NullRefEncoding::content() const {
    tamo_check_ptr(_data);
    return *_data;
}

std::string& NullRefEncoding::content() {
    throw InvalidAccessException("NullRefEncoding is immutable");
}

} // namespace Tamo::FastInfoset
