// Peers that mean no good, towards the server and towards a client, while others are served.
#include "Client.h"
#include "Server.h"
#include "Tamo/XML/AttributesImpl.h"
#include <array>
#include <atomic>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <list>
#include <thread>
#include <vector>

using namespace example;
using namespace std::literals;

namespace {

using Writer = FastInfoset::FastInfosetWriter;

// A file, of which a peer speaks.
constexpr const char* VOCABULARY = "message-service.xml";

// The octets of events, be they a whole message or not.
std::string octetsOf(const Settings& settings, const std::function<void(Writer&)>& events) {
    std::string octets;
    Tamo::StringSink sink(octets);
    Writer writer(sink, false, FastInfoset::DocumentVocabulary::VOC_MAP);
    settings.prepareWriter(writer);
    events(writer);
    writer.flush();
    return octets;
}

// The beginning of a message, and what can follow it again and again.
struct Endless {
    Endless(const Settings& settings, const std::function<void(Writer&)>& event) {
        const auto times = [&](int count) {
            return octetsOf(settings, [&](Writer& writer) {
                writer.startDocument();
                for (writer.startElement("", "greet", "greet"); count > 0; --count) {
                    event(writer);
                    writer.flush();
                }
            });
        };
        begin = times(2);
        next = times(3).substr(begin.size());
    }

    std::string begin;
    std::string next;
};

void send(Socket& socket, const std::string& octets) {
    asio::write(socket, asio::buffer(octets));
}

void sendSlowly(Socket& socket, const std::string& octets) {
    for (const char octet : octets) {
        send(socket, std::string(1, octet));
        std::this_thread::sleep_for(10ms);
    }
}

[[noreturn]] void sendEndless(Socket& socket, const Endless& octets) {
    std::string packet = octets.begin;
    for (;;) {
        while (packet.size() < 4000) {
            packet += octets.next;
        }
        send(socket, packet);
        packet.clear();
        std::this_thread::sleep_for(10ms);
    }
}

struct Hostile {
    const char* name;
    // What it does, given a message that the other side would take. Closed connections end it.
    std::function<void(Socket&, const std::string& message)> attack;
    bool isServer = true; // or a client only
    // What becomes of it: at a server, over a Unix socket and over TCP, and at a client.
    std::string outcomes[3] = {"nothing", "nothing", "nothing"};
};

std::list<Hostile> makeHostiles(const Settings& settings) {
    const auto message = [](const std::string& name) {
        return [=](Writer& writer) { writeMessage(writer, "greet", name); };
    };
    const std::string large = octetsOf(settings, message(std::string(4000, 'x')));
    std::string huge = large; // in front of a long string stand the four octets of its length (X.891, C.24)
    huge.replace(huge.find("xxx") - 4, 4, "\xff\xff\x00\x00"s);
    const std::string attributes = octetsOf(settings, [](Writer& writer) {
        Tamo::XML::AttributesImpl many;
        for (int i = 0; i < 1000; ++i) {
            const std::string name = "name" + std::to_string(i);
            many.addAttribute("", name, name, "CDATA", "the value of " + name);
        }
        writer.startDocument();
        writer.startElement("", "greet", "greet", many);
    });
    const Endless depth(settings, [](Writer& writer) { writer.startElement("", "greet", "greet"); });
    const Endless numbers(settings,
                          [](Writer& writer) { writer.encodedData(std::vector<Tamo::Int32>(100, 7)); });
    // A vocabulary that is there for those who open what documents name.
    std::istringstream xml("<greet/>");
    auto vocabulary = FastInfoset::ExternalVocabularyLoader::loadXML(xml, true);
    vocabulary.setURI(VOCABULARY);
    std::ofstream(VOCABULARY) << xml.str();
    Settings foreign;
    foreign.pVocabulary = FastInfoset::SharedVocabulary::of(vocabulary);
    const std::string named = octetsOf(foreign, message("Eve"));
    FastInfoset::FastInfosetParser().parseMemoryNP(named.data(), named.size()); // opens it

    const auto sending = [](const std::string& octets) {
        return [=](Socket& socket, const std::string&) { send(socket, octets); };
    };
    return {
        {"sends an octet each 10 ms",
         [](Socket& socket, const std::string& octets) {
             sendSlowly(socket, octets);
             std::array<char, 8> reply;
             static_cast<void>(socket.read_some(asio::buffer(reply)));
             socket.shutdown(Socket::shutdown_send);
         }},
        {"does so and does not end", [=](Socket& socket, const auto&) { sendSlowly(socket, large); }},
        {"stops in the middle",
         [](Socket& socket, const std::string& octets) {
             send(socket, octets.substr(0, octets.size() - 3));
         }},
        {"closes in the middle",
         [](Socket& socket, const std::string& octets) {
             send(socket, octets.substr(0, octets.size() - 3));
             socket.shutdown(Socket::shutdown_send);
         }},
        {"sends garbage", sending("GET / HTTP/1.1\r\n\r\n")},
        {"nests without end", [=](Socket& socket, const auto&) { sendEndless(socket, depth); }},
        {"announces a huge string", sending(huge)},
        {"sends a thousand attributes", sending(attributes)},
        {"sends numbers without end", [=](Socket& socket, const auto&) { sendEndless(socket, numbers); }},
        {"names a vocabulary", sending(named)},
        {"takes no replies",
         [=](Socket& socket, const auto&) {
             for (;;) {
                 send(socket, large);
             }
         },
         false},
    };
}

// A hostile peer, until the other side has closed the connection.
void play(const Hostile& hostile, Socket& socket, const std::string& message) {
    asio::error_code error;
    try {
        hostile.attack(socket, message);
    } catch (const std::system_error&) {
        // closed
    }
    for (std::array<char, 1000> octets; !error;) {
        socket.read_some(asio::buffer(octets), error);
    }
}

template<class Protocol>
std::pair<Socket, Socket> connect(asio::io_context& servers, asio::io_context& clients) {
    typename Protocol::socket server(servers);
    typename Protocol::socket client(clients);
    if constexpr (std::is_same_v<Protocol, asio::ip::tcp>) {
        asio::ip::tcp::acceptor acceptor(servers, {asio::ip::address_v4::loopback(), 0});
        client.connect(acceptor.local_endpoint());
        acceptor.accept(server);
    } else {
        asio::local::connect_pair(server, client);
    }
    return {std::move(server), std::move(client)};
}

void run() {
    using Unix = asio::local::stream_protocol;
    Settings settings;
    settings.time = 2s;
    std::list<Hostile> hostiles = makeHostiles(settings);
    const std::string request =
        octetsOf(settings, [](Writer& writer) { writeMessage(writer, "greet", "Eve"); });
    const std::string reply =
        octetsOf(settings, [](Writer& writer) { writeMessage(writer, "greeting", "Hello, Eve"); });

    asio::io_context clients;
    asio::io_context loop;
    const auto atServer = [&](std::pair<Socket, Socket> ends, std::string* pOutcome) {
        Settings with = settings;
        with.ended = [=](const std::string& why) { *pOutcome = why; };
        auto pSession =
            std::make_shared<Session>(std::move(ends.first), std::make_shared<const Settings>(with));
        asio::post(loop, [=] { pSession->exchange(); });
        return std::move(ends.second);
    };
    Settings impatient = settings;
    impatient.time /= 2;
    std::string ignored;
    Client local(atServer(connect<Unix>(loop, clients), &ignored), impatient);
    Client remote(atServer(connect<asio::ip::tcp>(loop, clients), &ignored), impatient);
    std::vector<std::function<void()>> parts;
    for (Hostile& hostile : hostiles) {
        for (const bool isTCP : {false, true}) {
            auto pSocket = std::make_shared<Socket>(
                atServer(isTCP ? connect<asio::ip::tcp>(loop, clients) : connect<Unix>(loop, clients),
                         &hostile.outcomes[isTCP]));
            parts.push_back([&, pSocket] { play(hostile, *pSocket, request); });
        }
        if (hostile.isServer) {
            auto pEnds = std::make_shared<std::pair<Socket, Socket>>(connect<Unix>(clients, clients));
            parts.push_back([&, pEnds] { play(hostile, pEnds->first, reply); });
            parts.push_back([&, pEnds] {
                try {
                    hostile.outcomes[2] = Client(std::move(pEnds->second), settings).greet("Ada");
                } catch (const std::exception& e) {
                    hostile.outcomes[2] = e.what();
                }
            });
        }
    }

    std::atomic<std::size_t> ended = 0;
    std::vector<std::jthread> threads;
    for (const auto& part : parts) {
        threads.emplace_back([&] {
            part();
            ++ended;
        });
    }
    std::jthread server([&] { loop.run(); });
    while (ended < parts.size()) {
        if (local.greet("Ada") != "Hello, Ada" || remote.greet("Grace") != "Hello, Grace") {
            throw Tamo::IOException("another greeting");
        }
        std::this_thread::sleep_for(5ms);
    }
    loop.stop();
    server.join();
    std::remove(VOCABULARY);
    for (const Hostile& hostile : hostiles) {
        std::cout << hostile.name << "\n  to the server: " << hostile.outcomes[0] << '\n';
        if (hostile.outcomes[1] != hostile.outcomes[0]) {
            std::cout << "  over TCP: " << hostile.outcomes[1] << '\n';
        }
        if (hostile.isServer) {
            std::cout << "  to a client: " << hostile.outcomes[2] << '\n';
        }
    }
    std::cout << "others were greeted all the time\n";
}

} // namespace

int main() {
    try {
        run();
    } catch (const std::exception& e) {
        std::cerr << e.what() << '\n';
        return 1;
    }
    return 0;
}
