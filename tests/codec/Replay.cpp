#include "Replay.h"
#include "Tamo/XML/AttributesImpl.h"
#include <algorithm>
#include <stdexcept>
#include <vector>

namespace Tamo::FastInfoset::Test {

namespace {

void replayText(FastInfosetReader& reader, TypedEventRecorder& recorder) {
    const auto values = [&](const auto& list) {
        for (const auto& value : list) {
            recorder.encodedData(value);
        }
    };
    if (reader.isCData()) {
        recorder.startCDATA();
    }
    if (reader.valueType() == FastInfosetReader::PLAIN_TEXT) {
        recorder.characters(reader.text().data(), 0, static_cast<int>(reader.text().size()));
    } else if (reader.valueType() == FastInfosetReader::OCTETS) {
        recorder.binaryData(reinterpret_cast<const char*>(reader.octets().data()), reader.octets().size());
    }
    values(reader.int16Values()), values(reader.int32Values()), values(reader.int64Values());
    values(reader.floatValues()), values(reader.doubleValues()), values(reader.uuidValues());
    for (const bool value : reader.boolValues()) {
        recorder.encodedData(value);
    }
    if (reader.isCData()) {
        recorder.endCDATA();
    }
}

void replayDeclarations(FastInfosetReader& reader, TypedEventRecorder& recorder) {
    const auto orNull = [](const std::string& identifier) {
        return identifier.empty() ? nullptr : &identifier;
    };
    for (const Notation& n : reader.notations()) {
        recorder.notationDecl(n.getName(), orNull(n.getPublicId()), orNull(n.getSystemId()));
    }
    for (const UnparsedEntity& u : reader.unparsedEntities()) {
        recorder.unparsedEntityDecl(u.getName(), orNull(u.getPublicId()), u.getSystemId(),
                                    u.getNotationName());
    }
}

} // namespace

void replay(FastInfosetReader& reader, TypedEventRecorder& recorder) {
    using R = FastInfosetReader;
    using Prefixes = std::vector<std::string>;
    // Of all open elements; by default of the element started last alone, as the parser has them.
    std::vector<Prefixes> open(1);
    const auto name = [&](auto use) {
        use(std::string(reader.uri()), std::string(reader.localName()), std::string(reader.qname()));
    };
    for (;;) {
        switch (reader.next()) {
        case R::START_DOCUMENT:
            replayDeclarations(reader, recorder);
            recorder.startDocument();
            break;
        case R::START_DTD:
            recorder.startDTD("", std::string(reader.publicId()), std::string(reader.systemId()));
            break;
        case R::END_DTD:
            recorder.endDTD();
            break;
        case R::START_ELEMENT:
            reader.isStrict() ? void(open.emplace_back()) : open.back().clear();
            for (const R::PrefixMapping& mapping : reader.prefixMappings()) {
                open.back().emplace_back(mapping.prefix);
                recorder.startPrefixMapping(open.back().back(), std::string(mapping.uri));
            }
            name([&](auto... parts) { recorder.startElement(parts..., reader.attributes()); });
            break;
        case R::END_ELEMENT:
            name([&](auto... parts) { recorder.endElement(parts...); });
            if (reader.isStrict()) {
                std::for_each(open.back().rbegin(), open.back().rend(),
                              [&](const std::string& prefix) { recorder.endPrefixMapping(prefix); });
                open.pop_back();
            } else {
                for (const std::string& prefix : open.back()) {
                    recorder.endPrefixMapping(prefix);
                }
            }
            break;
        case R::TEXT:
            replayText(reader, recorder);
            break;
        case R::COMMENT:
            recorder.comment(reader.text().data(), 0, static_cast<int>(reader.text().size()));
            break;
        case R::PROCESSING_INSTRUCTION:
            recorder.processingInstruction(std::string(reader.target()), std::string(reader.text()));
            break;
        case R::ENTITY_REFERENCE:
            recorder.skippedEntity(std::string(reader.target()));
            break;
        case R::END_DOCUMENT:
            recorder.endDocument();
            return;
        case R::NO_DOCUMENT:
            throw std::logic_error("no document is open");
        }
    }
}

} // namespace Tamo::FastInfoset::Test
