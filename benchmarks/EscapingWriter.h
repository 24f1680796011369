#ifndef TAMO_BENCHMARKS_ESCAPINGWRITER_H
#define TAMO_BENCHMARKS_ESCAPINGWRITER_H

#include "Recording.h"
#include <cstddef>
#include <string>

namespace Tamo::Benchmarks {

/// The serializer that one writes by hand: qualified names as they are, text and values escaped, no check of
/// anything. The floor for writing XML text.
class EscapingWriter {
public:
    /// Writes the events into memory that is reused.
    const std::string& write(const Recording& recording) {
        _out.clear();
        recording.visit(*this);
        return _out;
    }

    void mapping(const std::string& prefix, const std::string& uri);
    void startElement(const std::string& qname, const Recording::Attribute* pAttributes, unsigned int number);
    void endElement(const std::string& qname);
    void characters(const std::string& text);
    void processingInstruction(const std::string& target, const std::string& data);
    void comment(const std::string& text);
    void startCDATA();
    void endCDATA();

private:
    void closeTag();
    void escaped(const std::string& text, unsigned char kind);
    void attribute(const std::string& name, const std::string& value);

    std::string _out;
    std::string _mappings;
    bool _open = false;
    bool _inCDATA = false;
};

} // namespace Tamo::Benchmarks

#endif
