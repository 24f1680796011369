#ifndef TAMO_XML_TEXTRUN_H
#define TAMO_XML_TEXTRUN_H

#include "Tamo/Export.h"
#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>
#include <utility>

namespace Tamo::XML {

/// The text between two other events, which Expat delivers in pieces: every line end is one by itself.
///
/// A run is 64 KiB long at most and ends with a character. Owned by one parse.
class TextRun {
public:
    /// Whether nothing has been appended since take().
    bool empty() const noexcept { return _size == 0; }

    /// Appends text and returns true. Where that would be too much, completes the run, leaves the rest in
    /// text and returns false: to be called again after take().
    bool append(std::string_view& text) {
        if (text.size() > _buffer.size() - _size && !extendFor(text)) [[unlikely]] {
            return false;
        }
        char* const pNext = _buffer.data() + _size;
        if (text.size() == 1) {
            *pNext = text[0];
        } else if (!text.empty()) {
            std::memcpy(pNext, text.data(), text.size());
        }
        _size += text.size();
        return true;
    }

    /// The run, valid until the next operation, which begins the next one.
    std::string_view take() noexcept { return {_buffer.data(), std::exchange(_size, 0)}; }

private:
    static constexpr std::size_t MOST = 64 * 1024;

    bool extendFor(std::string_view& text);

    std::string _buffer = std::string(1000, '\0');
    std::size_t _size = 0; // of the run, which begins the buffer
};

} // namespace Tamo::XML

#endif
