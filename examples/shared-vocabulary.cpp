// Small messages against an external vocabulary that sender and receiver hold.
#include "Tamo/FastInfoset/Converter.h"
#include "Tamo/FastInfoset/ExternalVocabularyLoader.h"
#include "Tamo/FastInfoset/FISException.h"
#include "Tamo/FastInfoset/FastInfosetParser.h"
#include "Tamo/FastInfoset/FastInfosetWriter.h"
#include "Tamo/XML/SAXParser.h"
#include "Tamo/XML/XMLWriter.h"
#include <iostream>
#include <sstream>
#include <vector>

using namespace Tamo;
using FastInfoset::DocumentVocabulary;

namespace {

const std::string URI("urn:example:fleet:1");

// What is in every message, and what often is.
const char* const SAMPLE = "<f:report xmlns:f='urn:example:fleet' vehicle='' state='moving'>"
                           "<f:position lat='' lon=''/><f:speed unit='km/h'/><f:driver/>"
                           "<f:report state='parked'/></f:report>";

const char* const MESSAGES[] = {
    "<f:report xmlns:f='urn:example:fleet' vehicle='HH-X 12' state='moving'>"
    "<f:position lat='53.5511' lon='9.9937'/><f:speed unit='km/h'>48</f:speed></f:report>",
    "<f:report xmlns:f='urn:example:fleet' vehicle='HH-X 12' state='parked'>"
    "<f:position lat='53.5622' lon='10.0021'/><f:driver>Okafor</f:driver></f:report>",
};

// [vocabulary]
DocumentVocabulary fleetVocabulary() {
    std::istringstream sample(SAMPLE);
    DocumentVocabulary vocabulary = FastInfoset::ExternalVocabularyLoader::loadXML(sample);
    vocabulary.setURI(URI);
    return vocabulary;
}
// [/vocabulary]

// [write]
std::string write(const std::string& message, const DocumentVocabulary& vocabulary) {
    std::ostringstream octets;
    // Over a copy, so that the entries are used; announced, so that the header need not carry them.
    FastInfoset::FastInfosetWriter writer(octets, false, vocabulary);
    writer.setExternalVocabulary(vocabulary.getURI(), vocabulary);
    XML::SAXParser parser;
    parser.setContentHandler(&writer);
    parser.parseMemoryNP(message.data(), message.size());
    return octets.str();
}
// [/write]

// [read-each]
// A parser for each message: it holds the vocabulary that the message names, so nothing is loaded, and
// nothing is reset either. A second message would find the entries of the first one in front of its own.
std::string read(const std::string& octets, const DocumentVocabulary& vocabulary) {
    std::ostringstream text;
    XML::XMLWriter writer(text);
    FastInfoset::FastInfosetParser parser(vocabulary);
    parser.initialize(&writer);
    parser.parseMemoryNP(octets.data(), octets.size());
    return text.str();
}
// [/read-each]

// [loader]
/// Knows one vocabulary and opens nothing.
class FleetLoader : public FastInfoset::ExternalVocabularyLoader {
public:
    DocumentVocabulary load(const std::string& uri) override {
        if (uri != URI) {
            throw FastInfoset::FISException("Unknown external vocabulary", uri);
        }
        return _vocabulary;
    }

private:
    static DocumentVocabulary withoutURI(DocumentVocabulary vocabulary) {
        vocabulary.setURI(std::string()); // else the parser would not ask again for the next message
        return vocabulary;
    }
    // Of the kind that parsers read fastest.
    const DocumentVocabulary _vocabulary =
        withoutURI(DocumentVocabulary(fleetVocabulary(), DocumentVocabulary::VOC_VECTOR));
};
// [/loader]

// [read-all]
void readAll(const std::vector<std::string>& messages) {
    FleetLoader loader;
    FastInfoset::FastInfosetParser parser;
    parser.setExternalVocabularyLoader(&loader);
    for (const std::string& octets : messages) {
        std::ostringstream text;
        XML::XMLWriter writer(text);
        parser.initialize(&writer);
        parser.parseMemoryNP(octets.data(), octets.size());
        std::cout << text.str() << '\n';
    }
}
// [/read-all]

} // namespace

int main() {
    try {
        const DocumentVocabulary vocabulary = fleetVocabulary();
        std::vector<std::string> messages;
        for (const std::string message : MESSAGES) {
            std::istringstream xml(message);
            std::ostringstream alone;
            FastInfoset::Converter::convertToFIS(xml, alone, 16, 0);
            messages.push_back(write(message, vocabulary));
            std::cout << "XML " << message.size() << " octets, alone " << alone.str().size()
                      << ", against the vocabulary " << messages.back().size() << ": "
                      << alone.str().size() - messages.back().size() << " saved\n"
                      << read(messages.back(), vocabulary) << '\n';
        }
        std::cout << "With one parser and a loader:\n";
        readAll(messages);
    } catch (const std::exception& e) {
        std::cerr << e.what() << '\n';
        return 1;
    }
    return 0;
}
