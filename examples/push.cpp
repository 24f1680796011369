// Documents from connections that an event loop looks after: each is fed what has come, and never waits.
#include "Tamo/FastInfoset/FISDefaultHandler.h"
#include "Tamo/FastInfoset/FastInfosetParser.h"
#include "Tamo/FastInfoset/FastInfosetPushParser.h"
#include "Tamo/FastInfoset/FastInfosetWriter.h"
#include <algorithm>
#include <exception>
#include <iostream>
#include <sstream>
#include <string>

using namespace Tamo;

namespace {

class Printer : public FastInfoset::FISDefaultHandler {
public:
    explicit Printer(std::string peer) : _peer(std::move(peer)) {}

    void startElement(const std::string&, const std::string& localName, const std::string&,
                      const XML::Attributes&) override {
        std::cout << _peer << ": " << localName << '\n';
    }
    void characters(const char ch[], int start, int length) override {
        std::cout << _peer << ":   " << std::string_view(ch + start, static_cast<std::size_t>(length))
                  << '\n';
    }
    void endDocument() override { std::cout << _peer << ": a whole document\n"; }

private:
    std::string _peer;
};

// [connection]
class Connection {
public:
    explicit Connection(const std::string& peer) : _printer(peer), _push(_parser) {
        _parser.initialize(&_printer);
        _parser.setLimits({.maxDepth = 100, .maxStringLength = 65536});
        _push.setMaxItemSize(1 << 20);
    }

    // The event loop has read some octets: a part of a document, or several documents.
    void received(std::span<const std::byte> octets) {
        while (!octets.empty()) {
            octets = octets.last(_push.feed(octets).leftOver);
        }
    }

    // The peer has closed its side.
    void closed() { _push.finish(); }

private:
    Printer _printer;
    // Opens no external vocabulary.
    FastInfoset::FastInfosetParser _parser{FastInfoset::DocumentVocabulary::VOC_VECTOR, nullptr};
    FastInfoset::FastInfosetPushParser _push;
};
// [/connection]

std::string message(const std::string& text) {
    std::ostringstream stream;
    FastInfoset::FastInfosetWriter writer(stream, false, FastInfoset::DocumentVocabulary::VOC_MAP);
    writer.startDocument();
    writer.startElement("message");
    writer.characters(text);
    writer.endElement();
    writer.endDocument();
    return stream.str();
}

} // namespace

int main() {
    try {
        Connection alice("alice");
        Connection bob("bob");
        const std::string from[] = {message("good morning") + message("is anybody here?"),
                                    message("not yet")};
        // What two sockets have, by turns and in pieces as they come.
        for (std::size_t at = 0; at < from[0].size(); at += 15) {
            const auto piece = [&](const std::string& octets) {
                return std::as_bytes(std::span(octets)).subspan(std::min(at, octets.size()));
            };
            const auto some = [](std::span<const std::byte> octets) {
                return octets.first(std::min<std::size_t>(octets.size(), 15));
            };
            alice.received(some(piece(from[0])));
            bob.received(some(piece(from[1].substr(0, from[1].size() - 3))));
        }
        alice.closed();
        bob.closed(); // in the middle of a document
    } catch (const std::exception& e) {
        std::cout << e.what() << '\n';
    }
    return 0;
}
