#ifndef TAMO_FASTINFOSET_NULLREFENCODING_H
#define TAMO_FASTINFOSET_NULLREFENCODING_H

#include "Tamo/Export.h"
#include "Tamo/FastInfoset/NullEncoding.h"

namespace Tamo::FastInfoset {

/// Plain text that stands elsewhere, usually in a vocabulary table: refers to it without copying. The string
/// is borrowed and must outlive the use of this object, which is read-only.
class TAMO_API NullRefEncoding : public NullEncoding {
public:
    /// Refers to data.
    explicit NullRefEncoding(const std::string& data);

    /// Refers to another string.
    void reset(const std::string& data) noexcept { _data = &data; }

    /// Throws InvalidAccessException.
    bool merge(const Encoding& other) override;
    void write(BitStreamWriter& writer) const override;
    void handle(XML::ContentHandler* handler) const override;
    void handle(FISContentHandler* handler) const override;
    const std::string& content() const override;

    /// Throws InvalidAccessException.
    std::string& content() override;

private:
    const std::string* _data;
};

} // namespace Tamo::FastInfoset

#endif
