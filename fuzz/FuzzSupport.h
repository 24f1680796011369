#ifndef TAMO_FUZZ_FUZZSUPPORT_H
#define TAMO_FUZZ_FUZZSUPPORT_H

#include "Tamo/FastInfoset/ExternalVocabularyLoader.h"
#include "Tamo/FastInfoset/ParserLimits.h"
#include "Trace.h"
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

/// What the fuzz targets share. A target is one program with one LLVMFuzzerTestOneInput; a property that does
/// not hold ends the process, so that the fuzzer keeps the input.
namespace Tamo::FastInfoset::Fuzz {

/// What a use of the library came to: how it failed ("" when it did not; see Test::failureOf, through which
/// any exception that must not get out ends the process), and what it delivered until then.
struct Outcome {
    std::string failure;
    std::string events;
    bool isForeign = false;      ///< the document names an external vocabulary
    bool hasRecentNames = false; ///< see Information
    std::size_t delivered = 0;   ///< see Information

    bool failed() const { return !failure.empty(); }
};

/// Ends the process unless the property holds, with the texts that explain it.
void require(bool holds, const char* property, const std::string& first = {}, const std::string& second = {});

/// Ends the process when more has been written than a small multiple of what a document is and delivers: work
/// that is not in proportion.
void requireProportion(const Outcome& written, std::size_t document, std::size_t delivered);

/// Whether a document is for the strict mode: that of an odd size is. Octets behind a document mean nothing,
/// so that one more gives any document to the other mode.
inline bool isForStrictMode(std::string_view document) {
    return document.size() % 2 != 0;
}

/// Limits that keep one run short.
ParserLimits limits();

/// Octets in a block of exactly their size, so that the address sanitizer sees a read behind them.
class Block {
public:
    explicit Block(std::string_view octets);

    const char* data() const { return _pOctets.get(); }
    std::size_t size() const { return _size; }

private:
    std::unique_ptr<char[]> _pOctets;
    std::size_t _size;
};

/// External vocabularies without any file: "x..." is an XML document, "v..." a Fast Infoset document, "s..."
/// the document itself; any other URI is refused.
class Loader : public ExternalVocabularyLoader {
public:
    /// For this document, which the loader does not copy.
    explicit Loader(std::string_view document) : _document(document) {}

    /// Whether a vocabulary has been asked for.
    bool isUsed() const { return _isUsed; }

    DocumentVocabulary load(const std::string& uri) override;

private:
    std::string_view _document;
    bool _isUsed = false;
};

/// The information of a document as both of its forms carry it: no prefixes, no CDATA borders, no skipped
/// entities, no white space outside of the root element; of the document type declaration the identifiers and
/// what it holds, notations before unparsed entities.
class Information : public Trace {
public:
    Information() : Trace(INFORMATION) {}

    std::string information() const { return _notations + _entities + text(); }

    /// The octets that have been delivered, and as many more for each call as XML::DeliveryLimits counts.
    std::size_t delivered() const { return _delivered; }

    /// Whether there are names that XML 1.0 allows from its fifth edition on, and Expat does not.
    bool hasRecentNames() const { return _hasRecentNames; }

    void setDocumentLocator(const XML::Locator*) override {}
    void startElement(const std::string& uri, const std::string& localName, const std::string& qname,
                      const XML::Attributes& attributes) override;
    void endElement(const std::string& uri, const std::string& localName, const std::string& qname) override;
    void characters(const char ch[], int start, int length) override;
    void processingInstruction(const std::string& target, const std::string& data) override;
    void startPrefixMapping(const std::string& prefix, const std::string& uri) override;
    void endPrefixMapping(const std::string& prefix) override { count(prefix.size()); }
    void comment(const char ch[], int start, int length) override;
    void skippedEntity(const std::string&) override {}
    void startDTD(const std::string& name, const std::string& publicId, const std::string& systemId) override;
    void endDTD() override { _inDTD = false; }
    void notationDecl(const std::string& name, const std::string* publicId,
                      const std::string* systemId) override;
    void unparsedEntityDecl(const std::string& name, const std::string* publicId, const std::string& systemId,
                            const std::string& notationName) override;

private:
    static std::string normalized(const std::string& publicId);
    void look(const std::string& name);
    void count(std::size_t octets) { _delivered += octets + XML::DeliveryLimits::CALLBACK; }

    std::string _notations;
    std::string _entities;
    std::size_t _depth = 0;
    std::size_t _delivered = 0;
    bool _inDTD = false;
    bool _hasRecentNames = false;
};

/// The information of XML text.
Outcome informationOfXML(const std::string& xml);

/// The information of a Fast Infoset document. An external vocabulary is not loaded.
Outcome informationOfFIS(std::string_view document, bool strict = false);

/// The Fast Infoset document that Converter makes of XML text, and the other way round; octets in events. An
/// object that is kept for several documents has to make the same.
Outcome convertedToFIS(const std::string& xml, int maxIndexedStringLength, bool stripWhitespace = false,
                       bool strict = false);
Outcome convertedToXML(const std::string& document, int options, bool strict = false);

/// All entries of all tables.
std::string describedVocabulary(const DocumentVocabulary& vocabulary);

} // namespace Tamo::FastInfoset::Fuzz

#endif
