#ifndef TAMO_FASTINFOSET_OCTETENCODING_H
#define TAMO_FASTINFOSET_OCTETENCODING_H

#include "Tamo/Export.h"
#include "Tamo/FastInfoset/Encoding.h"

namespace Tamo::FastInfoset {

/// Base of the encodings whose value is one octet string, kept as the content: written as a non-empty octet
/// string without header or count. Derived classes say what the octets mean.
class TAMO_API OctetEncoding : public Encoding {
public:
    bool merge(const Encoding& other) override;
    void write(BitStreamWriter& writer) const override;

    using Encoding::handle;
    /// One `characters` call with the content.
    void handle(FISContentHandler* handler) const override;

    /// Nothing: the octets are the content.
    void createContent() override;

protected:
    OctetEncoding() = default;
    explicit OctetEncoding(const std::string& content);
    OctetEncoding(const char* data, std::size_t length);
};

} // namespace Tamo::FastInfoset

#endif
