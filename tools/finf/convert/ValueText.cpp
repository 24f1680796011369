#include "convert/ValueText.h"
#include "Tamo/FastInfoset/BitStreamWriter.h"
#include "Tamo/StringSink.h"

namespace finf {

using namespace Tamo::FastInfoset;

ValueText::ValueText(bool isCanonical) : _parser(DocumentVocabulary::VOC_VECTOR, nullptr) {
    _parser.setStrict(true);
    _parser.setCanonicalNumbers(isCanonical);
    _parser.setContentHandler(&_collector);
}

const std::string& ValueText::of(const Encoding& value) {
    // A header without components, an element "a", and a chunk that is no entry, by an algorithm.
    std::string document("\xE0\0\0\1\0\x3C\0a", 8);
    Tamo::StringSink sink(document);
    BitStreamWriter writer(sink, false);
    writer.write(0x23u, 6);
    writer.write(value.type() - 1, 8);
    value.write(writer);
    writer.write(0xFFu, 8); // the ends of element and document
    writer.flush();

    _collector.text.clear();
    _parser.parseMemoryNP(document.data(), document.size());
    return _collector.text;
}

} // namespace finf
