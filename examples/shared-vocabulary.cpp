// Small messages against an external vocabulary that sender and receiver hold.
#include "Tamo/FastInfoset/ExternalVocabularyLoader.h"
#include "Tamo/FastInfoset/FastInfosetParser.h"
#include "Tamo/FastInfoset/FastInfosetWriter.h"
#include "Tamo/FastInfoset/SharedVocabulary.h"
#include "Tamo/FastInfoset/XMLToFastInfoset.h"
#include "Tamo/NullStream.h"
#include "Tamo/StringSink.h"
#include "Tamo/XML/SAXParser.h"
#include "Tamo/XML/XMLWriter.h"
#include <iostream>
#include <memory>
#include <sstream>

using namespace Tamo;

namespace {

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
// Made once; any number of parsers and writers in any threads begin with it.
using Vocabulary = std::shared_ptr<const FastInfoset::SharedVocabulary>;

Vocabulary fleetVocabulary() {
    std::istringstream sample(SAMPLE);
    return FastInfoset::SharedVocabulary::of(FastInfoset::ExternalVocabularyLoader::loadXML(sample));
}
// [/vocabulary]

// [write]
// The writer is told once, and kept: reset() costs nothing for the vocabulary.
class Sender {
public:
    explicit Sender(const Vocabulary& vocabulary) {
        _writer.useVocabulary(vocabulary);
        _parser.setContentHandler(&_writer);
    }

    std::string write(const std::string& message) {
        std::string octets;
        StringSink sink(octets);
        _writer.reset(sink);
        _parser.parseMemoryNP(message.data(), message.size());
        return octets;
    }

private:
    NullOutputStream _nothing;
    FastInfoset::FastInfosetWriter _writer{_nothing, false, FastInfoset::DocumentVocabulary::VOC_MAP};
    XML::SAXParser _parser;
};
// [/write]

// [read]
// So is the parser, which opens nothing: a message that names another vocabulary is refused.
class Receiver {
public:
    explicit Receiver(const Vocabulary& vocabulary) { _parser.useVocabulary(vocabulary); }

    std::string read(const std::string& octets) {
        std::ostringstream text;
        XML::XMLWriter writer(text);
        _parser.initialize(&writer);
        _parser.parseMemoryNP(octets.data(), octets.size());
        return text.str();
    }

private:
    FastInfoset::FastInfosetParser _parser{FastInfoset::DocumentVocabulary::VOC_VECTOR, nullptr};
};
// [/read]

} // namespace

int main() {
    try {
        const Vocabulary vocabulary = fleetVocabulary();
        std::cout << vocabulary->uri() << '\n';
        Sender sender(vocabulary);
        Receiver receiver(vocabulary);
        FastInfoset::XMLToFastInfoset conversion;
        for (const std::string message : MESSAGES) {
            const std::size_t alone = conversion.convert(message).size();
            const std::string octets = sender.write(message);
            std::cout << "XML " << message.size() << " octets, alone " << alone << ", against the vocabulary "
                      << octets.size() << ": " << alone - octets.size() << " saved\n"
                      << receiver.read(octets) << '\n';
        }
    } catch (const std::exception& e) {
        std::cerr << e.what() << '\n';
        return 1;
    }
    return 0;
}
