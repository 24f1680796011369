#ifndef TAMO_EXAMPLE_SERVER_H
#define TAMO_EXAMPLE_SERVER_H

#include "Service.h"
#include "Tamo/FastInfoset/FastInfosetParser.h"
#include "Tamo/FastInfoset/FastInfosetPushParser.h"
#include <array>
#include <span>
#include <utility>

namespace example {

/// A connection of the server, which the event loop never waits for: std::make_shared, then exchange(). It
/// holds one request and one reply, because the next request is read when the reply has been taken. Used by
/// the thread that runs the loop.
class Session : public std::enable_shared_from_this<Session> {
public:
    /// Over a connection, with the settings, which each session keeps.
    Session(Socket socket, std::shared_ptr<const Settings> pSettings)
        : _socket(std::move(socket)), _deadline(_socket.get_executor()), _pSettings(std::move(pSettings)) {
        _pSettings->prepareReader(_parser);
        _parser.initialize(&_greeter);
        _push.setMaxItemSize(_pSettings->maxOctets);
    }

    // [exchange]
    /// Answers requests until the connection ends.
    void exchange() {
        _deadline.expires_after(_pSettings->time);
        _deadline.async_wait([self = shared_from_this()](auto) {
            if (self->_deadline.expiry() <= std::chrono::steady_clock::now()) {
                self->end("the time is over");
            }
        });
        read();
    }

private:
    void read() try {
        if (!_rest.empty()) {
            const auto fed = _push.feed(_rest);
            _rest = _rest.last(fed.leftOver); // which begins the next request
            if (fed.status == FastInfoset::FastInfosetPushParser::Status::FINISHED) {
                return reply();
            }
        }
        _socket.async_read_some(asio::buffer(_buffer), [self = shared_from_this()](auto error, auto size) {
            self->_rest = std::as_bytes(std::span(self->_buffer).first(size));
            error ? self->end(error.message()) : self->read();
        });
    } catch (const std::exception& e) {
        end(e.what());
    }

    void reply() {
        asio::async_write(_socket, asio::buffer(_greeter.reply()),
                          [self = shared_from_this()](auto error, auto) {
                              error ? self->end(error.message()) : self->exchange();
                          });
    }
    // [/exchange]

    void end(const std::string& why) {
        if (asio::error_code ignored; _socket.is_open()) {
            _socket.close(ignored);
            _deadline.cancel();
            _pSettings->ended(why);
        }
    }

    Socket _socket;
    asio::steady_timer _deadline; // of the exchange
    std::shared_ptr<const Settings> _pSettings;
    Greeter _greeter{*_pSettings};
    // Opens no vocabulary: a request begins with the shared one or is refused.
    FastInfoset::FastInfosetParser _parser{FastInfoset::DocumentVocabulary::VOC_VECTOR, nullptr};
    FastInfoset::FastInfosetPushParser _push{_parser};
    std::array<char, 4096> _buffer;
    std::span<const std::byte> _rest; // what has come and not been fed
};

} // namespace example

#endif
