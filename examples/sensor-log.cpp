// A log of documents, one for each batch of readings: what was reported as durable outlives a killed process.
//
//   sensor-log                    shows on a file of its own what happens when a process is killed
//   sensor-log FILE append COUNT  goes on with the log and prints the number of each batch once it is durable
//   sensor-log FILE list          prints the numbers of the batches that are in the log
#include "DocumentLog.h"
#include "Tamo/FastInfoset/FastInfosetWriter.h"
#include <iostream>
#include <sstream>
#include <string_view>
#include <vector>

using namespace Tamo;
using example::DocumentLog;

namespace {

// [batch]
std::string writeBatch(Int32 number, const std::vector<double>& kelvin) {
    std::ostringstream octets;
    FastInfoset::FastInfosetWriter writer(octets, false, FastInfoset::DocumentVocabulary::VOC_MAP);
    writer.setStrict(true);
    writer.startDocument();
    writer.startElement("batch");
    writer.startElement("number");
    writer.encodedData(number);
    writer.endElement();
    writer.startElement("kelvin");
    for (const double value : kelvin) {
        writer.encodedData(value);
    }
    writer.endElement();
    writer.endElement();
    writer.endDocument();
    return octets.str();
}
// [/batch]

// [replay]
/// Collects the batches of a log. What comes of a document counts when it has come to its end.
class Batches : public FastInfoset::FISDefaultHandler {
public:
    using FISDefaultHandler::encodedData;

    void startDocument() override { _values = 0; }
    void encodedData(Int32 number) override { _number = number; }
    void encodedData(double) override { ++_values; }
    void endDocument() override {
        if (_number != last + 1) {
            throw std::runtime_error("batch " + std::to_string(_number) + " follows " + std::to_string(last));
        }
        last = _number;
        values += _values;
    }

    Int32 last = 0; ///< the number of the last batch
    int values = 0; ///< how many there are in all batches

private:
    Int32 _number = 0;
    int _values = 0;
};
// [/replay]

std::vector<double> measure(Int32 number) {
    std::vector<double> kelvin;
    for (int i = 0; i < 5 + number % 400; ++i) {
        kelvin.push_back(291.15 + 0.25 * (i % 8));
    }
    return kelvin;
}

// [run]
void append(const std::string& path, Int32 count) {
    Batches batches;
    DocumentLog log(path, batches);
    for (Int32 number = batches.last + 1; count > 0; ++number, --count) {
        log.append(writeBatch(number, measure(number)));
        std::cout << number << std::endl; // others may rely on it now
    }
}
// [/run]

void list(const std::string& path) {
    Batches batches;
    const DocumentLog log(path, batches);
    for (Int32 number = 1; number <= batches.last; ++number) {
        std::cout << number << '\n';
    }
}

void show() {
    const std::string path = std::filesystem::temp_directory_path() / ("log-" + std::to_string(::getpid()));
    append(path, 3);
    const auto whole = std::filesystem::file_size(path);
    std::ofstream(path, std::ios::binary | std::ios::app) << writeBatch(4, measure(4)).substr(0, 50);
    std::cout << "killed while it wrote the fourth\n";

    Batches batches;
    const DocumentLog log(path, batches);
    std::cout << batches.last << " batches with " << batches.values << " values, and "
              << (log.size() == whole ? "nothing" : "something") << " behind them\n";
    std::filesystem::remove(path);
}

} // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    try {
        if (arguments.size() == 3 && arguments[1] == "append") {
            append(arguments[0], std::stoi(arguments[2]));
        } else if (arguments.size() == 2 && arguments[1] == "list") {
            list(arguments[0]);
        } else {
            show();
        }
    } catch (const std::exception& e) {
        std::cerr << e.what() << '\n';
        return 1;
    }
    return 0;
}
