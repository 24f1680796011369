#include "inspect/PageData.h"
#include "Tamo/Base64.h"
#include <algorithm>
#include <new>

namespace finf {

namespace {

constexpr std::size_t MOST_PENDING = 16384;
constexpr std::size_t BLOCK_SIZE = 49152; // that of a script element, at least

} // namespace

PageData::PageData(std::ostream& out, const char* name) : _out(out), _name(name) {
    if (deflateInit(&_deflater, Z_DEFAULT_COMPRESSION) != Z_OK) {
        throw std::bad_alloc();
    }
}

PageData::~PageData() {
    deflateEnd(&_deflater);
}

void PageData::write(std::string_view octets) {
    if (_pending.size() + octets.size() > MOST_PENDING) {
        deflate(_pending, Z_NO_FLUSH);
        _pending.clear();
        if (octets.size() > MOST_PENDING) {
            deflate(octets, Z_NO_FLUSH);
            return;
        }
    }
    _pending.append(octets);
}

void PageData::writeNumber(Tamo::UInt64 number) {
    char octets[10];
    std::size_t count = 0;
    for (; number >= 0x80; number >>= 7) {
        octets[count++] = static_cast<char>(0x80 | (number & 0x7F));
    }
    octets[count++] = static_cast<char>(number);
    write({octets, count});
}

void PageData::finish() {
    deflate(_pending, Z_FINISH);
    _pending.clear();
    writeBlock();
}

void PageData::deflate(std::string_view octets, int flush) {
    constexpr std::size_t LARGEST = 1 << 30; // more than zlib takes at a time, in pieces
    _size += octets.size();
    do {
        const std::string_view piece = octets.substr(0, LARGEST);
        octets.remove_prefix(piece.size());
        // The interface of zlib lacks the const; it does not write there.
        _deflater.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(piece.data()));
        _deflater.avail_in = static_cast<unsigned int>(piece.size());
        do {
            char output[16384];
            _deflater.next_out = reinterpret_cast<Bytef*>(output);
            _deflater.avail_out = sizeof output;
            ::deflate(&_deflater, octets.empty() ? flush : Z_NO_FLUSH);
            _block.append(output, sizeof output - _deflater.avail_out);
            if (_block.size() >= BLOCK_SIZE) {
                writeBlock();
            }
        } while (_deflater.avail_out == 0);
    } while (!octets.empty());
}

void PageData::writeBlock() {
    if (_block.empty()) {
        return;
    }
    std::string text = "<script type=\"text/plain\" data-name=\"";
    text.append(_name).append("\">");
    Tamo::Base64::encode(_block, text);
    text.append("</script>\n");
    _out.write(text.data(), static_cast<std::streamsize>(text.size()));
    _block.clear();
}

} // namespace finf
