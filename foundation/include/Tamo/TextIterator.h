#ifndef TAMO_TEXTITERATOR_H
#define TAMO_TEXTITERATOR_H

#include "Tamo/Export.h"
#include "Tamo/TextEncoding.h"
#include <cstddef>
#include <iterator>
#include <string>

namespace Tamo {

/// Walks over the code points of a string in any encoding.
///
/// The string and the encoding must outlive the iterator, and the string must not change meanwhile. An
/// invalid sequence yields -1; advancing always moves on. Dereferencing or advancing the end is undefined.
/// Used by one thread at a time.
class TAMO_API TextIterator {
public:
    using iterator_category = std::input_iterator_tag;
    using value_type = int;
    using difference_type = std::ptrdiff_t;
    using pointer = const int*;
    using reference = int;

    /// An iterator that equals only others like it.
    TextIterator() noexcept = default;

    /// The beginning of text.
    TextIterator(const std::string& text, const TextEncoding& encoding) noexcept
        : _pEncoding(&encoding), _pOctet(octets(text)), _pEnd(_pOctet + text.size()) {}

    /// The end of text.
    explicit TextIterator(const std::string& text) noexcept
        : _pOctet(octets(text) + text.size()), _pEnd(_pOctet) {}

    TextIterator(std::string&&, const TextEncoding&) = delete;
    explicit TextIterator(std::string&&) = delete;

    /// The code point here, or -1 for an invalid sequence.
    int operator*() const noexcept {
        std::size_t length = 0;
        return _pEncoding->decode(_pOctet, available(), length);
    }

    /// Advances by one code point or invalid sequence.
    TextIterator& operator++() noexcept {
        _pOctet += _pEncoding->sequenceLength(_pOctet, available());
        return *this;
    }

    TextIterator operator++(int) noexcept {
        TextIterator before(*this);
        ++*this;
        return before;
    }

    /// The end of the iterator's text.
    TextIterator end() const noexcept {
        TextIterator result(*this);
        result._pOctet = _pEnd;
        return result;
    }

    bool operator==(const TextIterator& other) const noexcept { return _pOctet == other._pOctet; }

private:
    static const unsigned char* octets(const std::string& text) noexcept {
        return reinterpret_cast<const unsigned char*>(text.data());
    }
    std::size_t available() const noexcept { return static_cast<std::size_t>(_pEnd - _pOctet); }

    const TextEncoding* _pEncoding = nullptr;
    const unsigned char* _pOctet = nullptr;
    const unsigned char* _pEnd = nullptr;
};

} // namespace Tamo

#endif
