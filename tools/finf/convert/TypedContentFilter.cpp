#include "convert/TypedContentFilter.h"
#include "Tamo/FastInfoset/BitStreamReader.h"
#include "Tamo/FastInfoset/BitStreamWriter.h"
#include "Tamo/FastInfoset/BoolEncoding.h"
#include "Tamo/FastInfoset/DWordEncoding.h"
#include "Tamo/FastInfoset/DecodingAlgorithm.h"
#include "Tamo/FastInfoset/DoubleEncoding.h"
#include "Tamo/FastInfoset/EncodingAlgorithm.h"
#include "Tamo/FastInfoset/FloatEncoding.h"
#include "Tamo/FastInfoset/HexEncoding.h"
#include "Tamo/FastInfoset/IntEncoding.h"
#include "Tamo/FastInfoset/LongEncoding.h"
#include "Tamo/FastInfoset/ShortEncoding.h"
#include "Tamo/FastInfoset/UUIDEncoding.h"
#include "Tamo/NumberParser.h"
#include "Tamo/StringSink.h"
#include <algorithm>
#include <string_view>
#include <vector>

namespace finf {

using namespace Tamo::FastInfoset;

namespace {

/// Longer runs pass as text, so that memory does not grow with the document.
constexpr std::size_t MAX_RUN = 16 * 1024 * 1024;

/// Where the octets of an algorithm stand in a character chunk: behind the bits that tell the algorithm.
constexpr int BITS_BEFORE = 6;

struct Algorithm {
    unsigned int index;
    int (*check)(const std::string&);
};

constexpr Algorithm ALGORITHMS[] = {
    {1, &HexEncoding::check},   {2, &DWordEncoding::check},  {3, &ShortEncoding::check},
    {4, &IntEncoding::check},   {5, &LongEncoding::check},   {6, &BoolEncoding::check},
    {7, &FloatEncoding::check}, {8, &DoubleEncoding::check}, {9, &UUIDEncoding::check},
};

struct Candidate {
    std::size_t octets;
    Tamo::AutoPtr<Encoding> pValue;
};

/// The value of the text by an algorithm that takes it.
Tamo::AutoPtr<Encoding> valueOf(unsigned int index, const std::string& text) {
    std::string written;
    Tamo::StringSink sink(written);
    BitStreamWriter writer(sink, false);
    writer.writeBits(BITS_BEFORE, false);
    EncodingAlgorithm().encode(index, writer, text);
    writer.complete();
    writer.flush();

    BitStreamReader reader(written.data(), written.size());
    reader.skip(BITS_BEFORE);
    return DecodingAlgorithm().read(static_cast<int>(index), reader);
}

/// The numbers of a text, single spaces between them; none when it has anything else.
std::vector<double> numbersOf(std::string_view text) {
    std::vector<double> numbers;
    for (;;) {
        const std::size_t end = text.find(' ');
        double number = 0;
        if (!Tamo::NumberParser::tryParseFloat(text.substr(0, end), number)) {
            return {};
        }
        numbers.push_back(number);
        if (end == std::string_view::npos) {
            return numbers;
        }
        text.remove_prefix(end + 1);
    }
}

} // namespace

// The smallest value that saves octets and gives back the identical text; null when there is none.
Tamo::AutoPtr<Encoding> TypedContentFilter::encoding(const std::string& text) {
    std::vector<Candidate> candidates;
    // An algorithm costs one octet more than text does in front of the octets themselves.
    const auto saves = [&](std::size_t octets) { return octets > 0 && octets + 1 < text.size(); };
    for (const Algorithm& algorithm : ALGORITHMS) {
        const auto octets = static_cast<std::size_t>(std::max(algorithm.check(text), 0));
        if (saves(octets)) {
            candidates.push_back({octets, valueOf(algorithm.index, text)});
        }
    }
    if (_isCanonical) {
        const std::vector<double> numbers = numbersOf(text);
        if (saves(numbers.size() * sizeof(float))) {
            const std::vector<float> floats(numbers.begin(), numbers.end());
            candidates.push_back(
                {numbers.size() * sizeof(float), Tamo::AutoPtr<Encoding>(new FloatEncoding(floats))});
        }
        if (saves(numbers.size() * sizeof(double))) {
            candidates.push_back(
                {numbers.size() * sizeof(double), Tamo::AutoPtr<Encoding>(new DoubleEncoding(numbers))});
        }
    }
    std::stable_sort(candidates.begin(), candidates.end(),
                     [](const Candidate& a, const Candidate& b) { return a.octets < b.octets; });
    for (const Candidate& candidate : candidates) {
        if (_valueText.of(*candidate.pValue) == text) {
            return candidate.pValue;
        }
    }
    return {};
}

// The same for text that no table takes.
Tamo::AutoPtr<Encoding> TypedContentFilter::typed(const std::string& text) {
    const bool isTried = _maxIndexedLength >= 0 &&
                         text.size() > static_cast<std::size_t>(_maxIndexedLength) && text.size() <= MAX_RUN;
    return isTried ? encoding(text) : nullptr;
}

// The list with values in the place of texts, or the list itself when there are none.
const Tamo::XML::Attributes& TypedContentFilter::typed(const Tamo::XML::Attributes& attributes) {
    bool isTyped = false;
    const int count = attributes.getLength();
    for (int i = 0; i < count; ++i) {
        if (const Tamo::AutoPtr<Encoding> pValue = typed(attributes.getValue(i))) {
            if (!isTyped) {
                _attributes.setAttributes(attributes);
                isTyped = true;
            }
            _attributes.setTyped(i, pValue);
        }
    }
    return isTyped ? _attributes : attributes;
}

void TypedContentFilter::passText() {
    _collecting = false;
    if (!_text.empty()) {
        _writer.characters(_text.data(), 0, static_cast<int>(_text.size()));
        _text.clear();
    }
}

void TypedContentFilter::setDocumentLocator(const Tamo::XML::Locator* loc) {
    _writer.setDocumentLocator(loc);
}

void TypedContentFilter::startDocument() {
    _collecting = false; // a document that has ended in an exception may have left text here
    _text.clear();
    _writer.startDocument();
}

void TypedContentFilter::endDocument() {
    _writer.endDocument();
}

void TypedContentFilter::startElement(const std::string& uri, const std::string& localName,
                                      const std::string& qname, const Tamo::XML::Attributes& attributes) {
    passText();
    _writer.startElement(uri, localName, qname, typed(attributes));
    _collecting = true;
}

void TypedContentFilter::endElement(const std::string& uri, const std::string& localName,
                                    const std::string& qname) {
    if (const Tamo::AutoPtr<Encoding> pValue = _collecting ? typed(_text) : nullptr) {
        _writer.insertEncoding(pValue);
        _text.clear();
    }
    passText();
    _writer.endElement(uri, localName, qname);
}

void TypedContentFilter::characters(const char ch[], int start, int length) {
    if (_collecting && static_cast<std::size_t>(length) <= MAX_RUN - _text.size()) {
        _text.append(ch + start, static_cast<std::size_t>(length));
    } else {
        passText();
        _writer.characters(ch, start, length);
    }
}

void TypedContentFilter::ignorableWhitespace(const char ch[], int start, int length) {
    passText();
    _writer.ignorableWhitespace(ch, start, length);
}

void TypedContentFilter::processingInstruction(const std::string& target, const std::string& data) {
    passText();
    _writer.processingInstruction(target, data);
}

void TypedContentFilter::startPrefixMapping(const std::string& prefix, const std::string& uri) {
    passText();
    _writer.startPrefixMapping(prefix, uri);
}

void TypedContentFilter::endPrefixMapping(const std::string& prefix) {
    passText();
    _writer.endPrefixMapping(prefix);
}

void TypedContentFilter::skippedEntity(const std::string& name) {
    passText();
    _writer.skippedEntity(name);
}

void TypedContentFilter::startDTD(const std::string& name, const std::string& publicId,
                                  const std::string& systemId) {
    _writer.startDTD(name, publicId, systemId);
}

void TypedContentFilter::endDTD() {
    _writer.endDTD();
}

// The boundaries of an entity that was expanded do not divide the text.
void TypedContentFilter::startEntity(const std::string&) {}

void TypedContentFilter::endEntity(const std::string&) {}

void TypedContentFilter::startCDATA() {
    passText();
    _writer.startCDATA();
}

void TypedContentFilter::endCDATA() {
    _writer.endCDATA();
}

void TypedContentFilter::comment(const char ch[], int start, int length) {
    passText();
    _writer.comment(ch, start, length);
}

} // namespace finf
