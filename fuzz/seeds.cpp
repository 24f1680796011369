// Writes the seed corpora: fuzz_seeds DIRECTORY LIST XMLFILE...
//
// A line of the list is a kind, a name and the octets: in hexadecimal for "document" (behind identification
// and version), "header", "algorithm", "text" and the writers' events, as they are for "xml". Documents are
// seeds of the targets that read Fast Infoset, XML text, with that of the files, of those that read XML; what
// it is converted to is a document again. Small members of the attacks that the tests know are seeds too.
#include "Attacks.h"
#include "FuzzSupport.h"
#include "Octets.h"
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>

using namespace Tamo::FastInfoset;
using namespace Tamo::FastInfoset::Fuzz;

namespace {

class Corpora {
public:
    explicit Corpora(std::filesystem::path directory) : _directory(std::move(directory)) {}

    void add(const std::string& target, const std::string& name, const std::string& octets) {
        std::filesystem::create_directories(_directory / target);
        std::ofstream file(_directory / target / name, std::ios::binary);
        file << octets;
        if (!file.flush()) {
            throw std::runtime_error("cannot write " + (_directory / target / name).string());
        }
    }

    void addDocument(const std::string& name, const std::string& octets) {
        for (const char* target : {"parse", "push", "reencode", "to_xml", "tree", "walk"}) {
            add(target, name, octets);
            add(target, name + "-other", octets + '\0'); // in the other mode
        }
    }

    void addXML(const std::string& name, const std::string& xml) {
        add("to_fis", name, xml);
        for (const char features : {'\0', '\1', '\2', '\x0F'}) {
            add("sax", name + "-" + std::to_string(features), features + xml);
        }
        for (const int maxIndexed : {0, 16, -1}) {
            const Outcome document = convertedToFIS(xml, maxIndexed);
            if (!document.failed()) {
                addDocument(name + "-" + std::to_string(maxIndexed), document.events);
            }
        }
    }

private:
    std::filesystem::path _directory;
};

void addLine(Corpora& corpora, const std::string& line) {
    std::istringstream words(line);
    std::string kind;
    std::string name;
    std::string rest;
    words >> kind >> name >> std::ws;
    if (kind.empty() || kind.front() == '#') {
        return;
    }
    std::getline(words, rest);
    if (kind == "document") {
        corpora.addDocument(name, Test::octets("E0000001" + rest));
    } else if (kind == "xml") {
        corpora.addXML(name, rest);
    } else {
        corpora.add(kind, name, Test::octets(rest));
    }
}

} // namespace

int main(int argc, char** argv) {
    try {
        if (argc < 3) {
            throw std::invalid_argument("usage: fuzz_seeds DIRECTORY LIST XMLFILE...");
        }
        Corpora corpora(argv[1]);
        std::ifstream list(argv[2]);
        for (std::string line; std::getline(list, line);) {
            addLine(corpora, line);
        }
        for (const Test::Attack& attack : Test::attacks()) {
            if (attack.seed == 0) {
                continue; // a small one is none
            }
            const std::string octets = attack.make(attack.seed);
            if (attack.isXML) {
                corpora.addXML(attack.name, octets);
            } else {
                corpora.addDocument(attack.name, octets);
            }
        }
        for (int i = 3; i < argc; ++i) {
            std::ifstream file(argv[i], std::ios::binary);
            std::ostringstream xml;
            xml << file.rdbuf();
            if (!file) {
                throw std::runtime_error(std::string("cannot read ") + argv[i]);
            }
            corpora.addXML(std::filesystem::path(argv[i]).stem().string(), xml.str());
        }
    } catch (const std::exception& e) {
        std::cerr << "fuzz_seeds: " << e.what() << '\n';
        return 1;
    }
    return 0;
}
