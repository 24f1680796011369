#ifndef TAMO_FUZZ_EVENTSCRIPT_H
#define TAMO_FUZZ_EVENTSCRIPT_H

#include "Tamo/FastInfoset/FISContentHandler.h"
#include "Tamo/FastInfoset/TypedAttributes.h"
#include "Tamo/XML/AttributesImpl.h"
#include "Tamo/XML/DTDHandler.h"
#include "Tamo/XML/LexicalHandler.h"
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace Tamo::FastInfoset::Fuzz {

/// Events that the fuzzer's octets stand for, in any order, with names and texts that a parser would never
/// report. Some octets choose from short lists, so that names meet; the rest are strings of the input.
class EventScript {
public:
    /// Where events go; typed values go nowhere without a handler for them.
    struct Handlers {
        XML::ContentHandler& content;
        XML::LexicalHandler& lexical;
        XML::DTDHandler& dtd;
        FISContentHandler* pTyped = nullptr;
    };

    /// For octets that stay where they are. Bit 0 of the first makes the script tidy.
    EventScript(const std::uint8_t* data, std::size_t size) : _data(data), _size(size) {}

    /// Whether events that have no place there are left out, and what is open is closed at the end.
    bool isTidy() const { return _size != 0 && (_data[0] & 1) != 0; }

    /// The first octet without isTidy()'s bit, for the target's own choices.
    unsigned int choice() const { return _size == 0 ? 0 : _data[0] >> 1; }

    /// Reports the events; the same ones each time.
    void play(const Handlers& handlers);

private:
    enum Place { PROLOG, DTD, CONTENT, CDATA, EPILOG };
    struct Name {
        std::string uri;
        std::string localName;
        std::string qname;
    };

    unsigned int octet() { return _position < _size ? _data[_position++] : 0; }
    template<std::size_t N>
    std::string string(const char* const (&list)[N]);
    std::string prefix();
    std::string uri();
    std::string text();
    std::string declaredName();
    Name name(bool isAttribute);
    bool isContent() const { return !_open.empty() || !isTidy(); }
    void addTyped(TypedAttributes& list, const Name& name);
    void start(const Handlers& handlers);
    void end(const Handlers& handlers);
    void event(const Handlers& handlers, unsigned int kind);
    void documentEvent(const Handlers& handlers, unsigned int kind);
    void typedEvent(FISContentHandler& handler, unsigned int kind);

    const std::uint8_t* _data;
    std::size_t _size;
    std::size_t _position = 0;
    Place _place = PROLOG;
    bool _hasDTD = false;
    unsigned int _declarations = 0;
    std::vector<Name> _open;
};

} // namespace Tamo::FastInfoset::Fuzz

#endif
