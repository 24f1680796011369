#include "PugixmlPeer.h"
#include "Tamo/FastInfoset/adapters/pugixml.h"
#include <cstring>
#include <pugixml.hpp>
#include <stdexcept>

namespace Tamo::Benchmarks {

struct PugixmlPeer::Tree {
    pugi::xml_document document;
};

namespace {

constexpr unsigned int PARSE = pugi::parse_full | pugi::parse_ws_pcdata;

void load(pugi::xml_document& document, const std::string& xml) {
    if (!document.load_buffer(xml.data(), xml.size(), PARSE, pugi::encoding_utf8)) {
        throw std::runtime_error("pugixml cannot parse");
    }
}

/// Adds up the lengths of names and values.
class LengthWalker : public pugi::xml_tree_walker {
public:
    UInt64 sum = 0;

    bool for_each(pugi::xml_node& node) override {
        sum += std::strlen(node.name()) + std::strlen(node.value());
        for (pugi::xml_attribute attribute = node.first_attribute(); attribute;
             attribute = attribute.next_attribute()) {
            sum += std::strlen(attribute.name()) + std::strlen(attribute.value());
        }
        return true;
    }
};

/// Passes what pugixml writes to a stream's buffer.
class StreamWriter : public pugi::xml_writer {
public:
    explicit StreamWriter(std::ostream& out) : _buf(*out.rdbuf()) {}
    void write(const void* data, std::size_t size) override {
        _buf.sputn(static_cast<const char*>(data), static_cast<std::streamsize>(size));
    }

private:
    std::streambuf& _buf;
};

} // namespace

PugixmlPeer::PugixmlPeer() = default;

PugixmlPeer::~PugixmlPeer() = default;

UInt64 PugixmlPeer::parse(const std::string& xml) {
    pugi::xml_document document;
    load(document, xml);
    return 1;
}

UInt64 PugixmlPeer::loadTree(const std::string& octets) {
    pugi::xml_document document;
    FastInfoset::Adapters::loadDocument(octets, document);
    return 1;
}

UInt64 PugixmlPeer::parseAndWalk(const std::string& xml) {
    pugi::xml_document document;
    load(document, xml);
    LengthWalker walker;
    document.traverse(walker);
    return walker.sum;
}

UInt64 PugixmlPeer::save(const Document& document) {
    auto& pTree = _trees[document.number];
    if (!pTree) {
        pTree = std::make_unique<Tree>();
        load(pTree->document, document.xml);
    }
    _out.reset();
    StreamWriter writer(_out);
    pTree->document.save(writer, "", pugi::format_raw, pugi::encoding_utf8);
    return _out.view().size();
}

} // namespace Tamo::Benchmarks
