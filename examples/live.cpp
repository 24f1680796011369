// Messages that follow one another on a connection: each is acted on as its octets arrive.
#include "Tamo/FastInfoset/FastInfosetReader.h"
#include "Tamo/FastInfoset/FastInfosetWriter.h"
#include <algorithm>
#include <iostream>
#include <sstream>
#include <streambuf>
#include <string>

using namespace Tamo;

namespace {

// Stands for a connection: hands out its octets in packets, each when somebody waits for it.
class Packets : public std::streambuf {
public:
    explicit Packets(const std::string& octets) : _octets(octets) {}

private:
    int underflow() override {
        constexpr std::size_t SIZE = 20;
        const std::size_t size = std::min(SIZE, _octets.size() - _begin);
        if (size == 0) {
            std::cout << "closed\n";
            return EOF;
        }
        std::cout << "packet of " << size << " octets\n";
        char* const pBegin = _octets.data() + _begin;
        setg(pBegin, pBegin, pBegin + size);
        _begin += size;
        return static_cast<unsigned char>(*pBegin);
    }

    std::string _octets;
    std::size_t _begin = 0;
};

std::string message(const std::string& first, const std::string& second) {
    std::ostringstream octets;
    FastInfoset::FastInfosetWriter writer(octets);
    writer.setStrict(true);
    writer.startDocument();
    writer.startElement("tasks");
    writer.element("task", first);
    writer.element("task", second);
    writer.endElement();
    writer.endDocument();
    return octets.str();
}

// [read]
// Reads messages until the connection is closed between two of them.
void serve(std::istream& connection) {
    using FastInfoset::FastInfosetReader;
    FastInfosetReader reader(nullptr);    // opens no external vocabularies
    while (reader.openNext(connection)) { // waits for the first octet of a message
        while (reader.next() != FastInfosetReader::END_DOCUMENT) {
            if (reader.event() == FastInfosetReader::TEXT) {
                std::cout << "to do: " << reader.text() << '\n'; // nothing behind it has been waited for
            }
        }
        std::cout << "message of " << reader.documentSize() << " octets\n";
    }
}
// [/read]

} // namespace

int main() {
    try {
        Packets packets(message("wash the windows", "feed the cat") + message("water the plants", "sleep"));
        std::istream connection(&packets);
        connection.exceptions(std::ios_base::badbit); // what the connection throws passes through
        serve(connection);
    } catch (const std::exception& e) {
        std::cerr << e.what() << '\n';
        return 1;
    }
    return 0;
}
