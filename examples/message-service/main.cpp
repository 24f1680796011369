// A service that is asked over TCP and over a Unix socket, by clients that wait for its replies.
#include "Client.h"
#include "Server.h"
#include <iostream>
#include <thread>

using namespace example;

namespace {

// [listen]
// Serves the connections of an acceptor until that is closed. The server and its sessions alone hold the
// settings, so that their count tells how many there are.
void listen(asio::ip::tcp::acceptor& acceptor, asio::steady_timer& pause,
            const std::shared_ptr<const Settings>& pSettings) {
    acceptor.async_accept([&](auto error, asio::ip::tcp::socket socket) {
        if (!acceptor.is_open()) {
            return;
        }
        if (!error && pSettings.use_count() <= pSettings->maxConnections) {
            std::make_shared<Session>(std::move(socket), pSettings)->exchange();
        }
        pause.expires_after(std::chrono::milliseconds(error ? 100 : 0)); // no descriptors, say
        pause.async_wait([&](auto) { listen(acceptor, pause, pSettings); });
    });
}
// [/listen]

} // namespace

int main() {
    try {
        Settings settings;
        settings.maxConnections = 3;

        asio::io_context loop(1);
        asio::ip::tcp::acceptor acceptor(loop, {asio::ip::address_v4::loopback(), 0});
        asio::steady_timer pause(loop);
        auto pSettings = std::make_shared<const Settings>(settings);
        listen(acceptor, pause, pSettings);
        asio::local::stream_protocol::socket here(loop);
        asio::local::stream_protocol::socket there(loop);
        asio::local::connect_pair(here, there);
        std::make_shared<Session>(std::move(there), pSettings)->exchange();
        const auto endpoint = acceptor.local_endpoint();
        std::jthread server([&] { loop.run(); });

        asio::io_context clients;
        const auto connect = [&] {
            asio::ip::tcp::socket socket(clients);
            socket.connect(endpoint);
            return socket;
        };
        Client local(std::move(here), settings);
        Client first(connect(), settings);
        Client second(connect(), settings);
        for (const char* const name : {"Ada", "Grace"}) {
            std::cout << "local: " << local.greet(name) << "\nfirst: " << first.greet(name)
                      << "\nsecond: " << second.greet(name) << '\n';
        }
        try {
            Client(connect(), settings).greet("Edsger");
            std::cout << "a fourth one is served\n";
        } catch (const std::exception&) {
            std::cout << "a fourth one is too many\n";
        }
        loop.stop();
    } catch (const std::exception& e) {
        std::cerr << e.what() << '\n';
        return 1;
    }
    return 0;
}
