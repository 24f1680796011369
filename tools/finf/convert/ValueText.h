#ifndef TAMO_FINF_VALUETEXT_H
#define TAMO_FINF_VALUETEXT_H

#include "Tamo/FastInfoset/Encoding.h"
#include "Tamo/FastInfoset/FastInfosetParser.h"
#include "Tamo/XML/DefaultHandler.h"
#include <string>

namespace finf {

/// What a strict reader makes of typed values as the text of an element.
class ValueText {
public:
    /// Of a reader that gives numbers with a fraction in the canonical form of XML Schema, or in the shortest
    /// spelling.
    explicit ValueText(bool isCanonical);

    ValueText(const ValueText&) = delete;
    ValueText& operator=(const ValueText&) = delete;

    /// The text of a value of a built-in algorithm; valid until the next call.
    const std::string& of(const Tamo::FastInfoset::Encoding& value);

private:
    class Collector : public Tamo::XML::DefaultHandler {
    public:
        void characters(const char ch[], int start, int length) override {
            text.append(ch + start, static_cast<std::size_t>(length));
        }

        std::string text;
    };

    Collector _collector;
    Tamo::FastInfoset::FastInfosetParser _parser;
};

} // namespace finf

#endif
