#ifndef TAMO_EXAMPLE_CLIENT_H
#define TAMO_EXAMPLE_CLIENT_H

#include "Service.h"
#include "Tamo/FastInfoset/FastInfosetReader.h"
#include <cstddef>
#include <cstdio>
#include <istream>
#include <utility>

namespace example {

// [connection]
/// A connection as a stream buffer. It waits until a time and takes so many octets: beyond, it throws.
class Connection : public asio::basic_socket_streambuf<asio::generic::stream_protocol> {
public:
    using basic_socket_streambuf::basic_socket_streambuf;

    void begin(const Settings& settings) {
        expires_after(settings.time);
        _left = static_cast<std::ptrdiff_t>(settings.maxOctets);
    }

private:
    int underflow() override {
        const int octet = basic_socket_streambuf::underflow();
        if (octet == EOF && error() != asio::error::eof) {
            throw Tamo::IOException("no reply: " + error().message());
        }
        if ((_left -= egptr() - gptr()) < 0) {
            throw Tamo::IOException("the reply is too long");
        }
        return octet;
    }
    int overflow(int octet) override {
        const int result = basic_socket_streambuf::overflow(octet);
        if (result == EOF) {
            throw Tamo::IOException("the request is not taken: " + error().message());
        }
        return result;
    }

    std::ptrdiff_t _left = 0;
};
// [/connection]

/// Asks and waits for the reply. Used by one thread at a time, and no more after an exception: the connection
/// is lost then.
class Client {
public:
    Client(Socket socket, const Settings& settings) : _connection(std::move(socket)), _settings(settings) {
        _stream.exceptions(std::ios_base::badbit); // what the connection throws passes through
        _settings.prepareReader(_reader);
        _settings.prepareWriter(_writer);
    }

    // [ask]
    std::string greet(const std::string& name) {
        _connection.begin(_settings);
        _writer.reset(_stream);
        writeMessage(_writer, "greet", name);
        if (!_reader.openNext(_stream)) {
            throw Tamo::IOException("no reply: the connection is closed");
        }
        std::string greeting;
        while (_reader.next() != FastInfoset::FastInfosetReader::END_DOCUMENT) {
            if (_reader.event() == FastInfoset::FastInfosetReader::TEXT) {
                greeting += _reader.text();
            }
        }
        return greeting;
    }
    // [/ask]

private:
    Connection _connection;
    Settings _settings;
    std::iostream _stream{&_connection};
    // Opens no vocabulary: a reply begins with the shared one or is refused.
    FastInfoset::FastInfosetReader _reader{nullptr};
    FastInfoset::FastInfosetWriter _writer{_stream, false, FastInfoset::DocumentVocabulary::VOC_MAP};
};

} // namespace example

#endif
