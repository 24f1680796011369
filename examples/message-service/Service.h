#ifndef TAMO_EXAMPLE_SERVICE_H
#define TAMO_EXAMPLE_SERVICE_H

#include "Tamo/Exception.h"
#include "Tamo/FastInfoset/ExternalVocabularyLoader.h"
#include "Tamo/FastInfoset/FISDefaultHandler.h"
#include "Tamo/FastInfoset/FastInfosetWriter.h"
#include "Tamo/FastInfoset/ParserLimits.h"
#include "Tamo/FastInfoset/SharedVocabulary.h"
#include "Tamo/StringSink.h"
#include <asio.hpp>
#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <sstream>
#include <string>

namespace example {

namespace FastInfoset = Tamo::FastInfoset;

/// A stream socket of any kind: TCP, Unix.
using Socket = asio::generic::stream_protocol::socket;

/// What server and client agree on, and what each puts up with from the other.
struct Settings {
    // [settings]
    /// What messages have in common, made once for all connections in all threads.
    std::shared_ptr<const FastInfoset::SharedVocabulary> pVocabulary = vocabulary();
    /// What a message may hold.
    FastInfoset::ParserLimits limits{
        .maxDepth = 4, .maxStringLength = 4096, .maxTableEntries = 100, .maxDeliveredOctets = 16384};
    /// What may be held of a message that is not whole: of an item of it (server), or of all (client).
    std::size_t maxOctets = 16384;
    /// The time for an exchange, the silence before it included, however steadily octets come.
    std::chrono::milliseconds time{5000};
    /// The connections that the server has at a time.
    long maxConnections = 500;
    // [/settings]
    /// Is told why the server has ended a connection.
    std::function<void(const std::string& why)> ended = [](const std::string&) {};

    // [vocabulary]
    static std::shared_ptr<const FastInfoset::SharedVocabulary> vocabulary() {
        std::istringstream sample("<messages><greet/><greeting/></messages>");
        return FastInfoset::SharedVocabulary::of(
            FastInfoset::ExternalVocabularyLoader::loadXML(sample, true));
    }

    // Of a parser or a cursor.
    void prepareReader(auto& reader) const {
        reader.setStrict(true);
        reader.setLimits(limits);
        reader.useVocabulary(pVocabulary);
    }

    void prepareWriter(FastInfoset::FastInfosetWriter& writer) const {
        writer.setStrict(true);
        writer.useVocabulary(pVocabulary);
        writer.setFlush(FastInfoset::FastInfosetWriter::Flush::DOCUMENT_END);
    }
    // [/vocabulary]
};

/// Writes a message of one element.
inline void writeMessage(FastInfoset::FastInfosetWriter& writer, const std::string& name,
                         const std::string& text) {
    writer.startDocument();
    writer.dataElement("", name, name, text);
    writer.endDocument();
}

/// What the service does: takes the events of a request, and makes the reply. Each connection has its own.
class Greeter : public FastInfoset::FISDefaultHandler {
public:
    explicit Greeter(const Settings& settings) { settings.prepareWriter(_writer); }

    /// The reply to the request that has been read; valid until the next one has been.
    const std::string& reply() {
        _octets.clear();
        _writer.reset(_sink);
        writeMessage(_writer, "greeting", "Hello, " + _name);
        return _octets;
    }

    void startDocument() override { _name.clear(); }
    void startElement(const std::string&, const std::string& name, const std::string&,
                      const Tamo::XML::Attributes&) override {
        if (name != "greet") {
            throw Tamo::IOException("no request: " + name);
        }
    }
    // No longer in all than the limit on what is delivered.
    void characters(const char ch[], int start, int length) override {
        _name.append(ch + start, static_cast<std::size_t>(length));
    }

private:
    std::string _name;
    std::string _octets;
    Tamo::StringSink _sink{_octets};
    FastInfoset::FastInfosetWriter _writer{_sink, false, FastInfoset::DocumentVocabulary::VOC_MAP};
};

} // namespace example

#endif
