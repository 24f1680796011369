#ifndef TAMO_XML_SAXDRIVER_H
#define TAMO_XML_SAXDRIVER_H

#include "Declarations.h"
#include "ElementAttributes.h"
#include "EntityInput.h"
#include "ExpatMemory.h"
#include "NameCache.h"
#include "Prolog.h"
#include "RawBindings.h"
#include "Reading.h"
#include "Tamo/Types.h"
#include "Tamo/XML/DeliveryMeter.h"
#include "Tamo/XML/Locator.h"
#include "Tamo/XML/SAXSettings.h"
#include "TextRun.h"
#include <cstddef>
#include <expat.h>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace Tamo::XML {

/// One parse: stands between Expat's callbacks and the handlers. Reading says how often a document is read.
///
/// No exception may pass through Expat, which is C: a callback catches it, stops Expat, and run() throws it
/// on.
class SAXDriver : public Locator {
public:
    /// A parse with these settings, which do not change, of a document with these identifiers.
    SAXDriver(const SAXSettings& settings, const std::string& publicId, const std::string& systemId);

    /// Reads the document and reports it.
    void run(EntityInput input, const std::string& encoding);

    std::string getPublicId() const override { return _entities.back().publicId; }
    std::string getSystemId() const override { return _entities.back().systemId; }
    int getLineNumber() const override;
    int getColumnNumber() const override;

private:
    using Callback = Reading::Callback;
    using ExpatPtr = std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)>;

    struct Entity {
        XML_Parser pExpat;
        std::string publicId;
        std::string systemId;
    };

    ExpatPtr createExpat(const std::string& encoding);
    void installCallbacks(XML_Parser pExpat);
    void installContentCallbacks(XML_Parser pExpat);
    void installDeclarationCallbacks(XML_Parser pExpat);
    bool feedFirst(XML_Parser pExpat, EntityInput& input);
    void feed(XML_Parser pExpat, EntityInput& input);
    void* buffer(XML_Parser pExpat, std::size_t size);
    void readAgain();
    void stop() noexcept;
    [[noreturn]] void fail(const std::string& message);
    [[noreturn]] void failMemory();

    template<class Event>
    static void guarded(void* pUser, Callback callback, Event&& event);
    template<class Event>
    static void guarded(void* pUser, Event&& event);
    void guardedText(std::string_view text);

    void deliver(UInt64 octets) {
        if (!_meter.add(octets)) [[unlikely]] {
            checkDelivered();
        }
    }
    void checkDelivered();

    void startElement(const char* name, const char** attributes);
    void startRawElement(const char* name, const char** attributes);
    void endElement(const char* name);
    void endDeclarations();
    void addAttributes(const NameCache::QName& element, const char** attributes);
    void addAttribute(const NameCache::QName& name, const std::string& type, const char* value);
    void startPrefixMapping(const std::string& prefix, const std::string& uri);

    void text(std::string_view text);
    void flushText();
    void comment(std::string_view text);
    void processingInstruction(std::string&& target, std::string&& data);
    void skippedEntity(const std::string& name);

    void internalEntityDecl(std::string_view value);
    void attributeDecl(const char* element, const char* attribute, const char* type, const char* value);

    int externalEntity(XML_Parser pExpat, const char* context, const char* base, const char* systemId,
                       const char* publicId);
    void parseExternal(XML_Parser pExpat, const char* context, const char* base, const char* systemId,
                       const char* publicId);

    static int XMLCALL unknownEncoding(void*, const char* name, XML_Encoding* pInfo);

    ExpatMemory _memory; // of all parsers below
    DeliveryMeter _meter;
    UInt64 _fed = 0; // octets that Expat has been given, of all entities
    const SAXSettings& _settings;
    const bool _namespaces; // the feature, which a handler may set for the next parse
    Reading _reading;
    NameCache _names;
    RawBindings _rawBindings;
    ElementAttributes _attributes;
    TextRun _run;                  // text that has yet to be delivered
    std::vector<Entity> _entities; // the document entity and the external entities open inside it
    Declarations _declarations;
    Prolog _prolog;
};

} // namespace Tamo::XML

#endif
