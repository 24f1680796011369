#ifndef TAMO_FASTINFOSET_TYPEDATTRIBUTES_H
#define TAMO_FASTINFOSET_TYPEDATTRIBUTES_H

#include "Tamo/AutoPtr.h"
#include "Tamo/Export.h"
#include "Tamo/FastInfoset/Encoding.h"
#include "Tamo/FastInfoset/TypedChunk.h"
#include "Tamo/Types.h"
#include "Tamo/UUID.h"
#include "Tamo/XML/AttributesImpl.h"
#include "Tamo/XML/DirectLookUps.h"
#include "Tamo/XML/StableAttributes.h"
#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace Tamo::FastInfoset {

/// An attribute list whose values may be typed: carried by an encoding algorithm (ITU-T X.891, 7.14.6 and
/// clause 10) and not as text.
///
/// FastInfosetWriter::startElement writes such values by their algorithms. A parser hands a FISContentHandler
/// such a list, known by a dynamic_cast, when an element has attributes that the document carries so. For
/// everybody else it is a list of texts: getValue() makes the text of a value on the first call.
///
/// A value, whose copies share the Encoding objects; used by one thread at a time, by one that asks for texts
/// too. References and spans stay valid until the list is changed. An index outside 0 ... getLength() - 1
/// throws AssertionViolationException.
class TAMO_API TypedAttributes final : public XML::DirectLookUps<TypedAttributes, XML::StableAttributes> {
public:
    TypedAttributes() = default;
    TypedAttributes(const TypedAttributes& other);
    TypedAttributes(TypedAttributes&& other) noexcept = default;
    TypedAttributes& operator=(const TypedAttributes& other);
    TypedAttributes& operator=(TypedAttributes&& other) noexcept = default;

    int getLength() const override { return texts().getLength(); }
    const std::string& getURI(int i) const override { return texts().getURI(i); }
    const std::string& getLocalName(int i) const override { return texts().getLocalName(i); }
    const std::string& getQName(int i) const override { return texts().getQName(i); }
    const std::string& getType(int i) const override { return texts().getType(i); }
    const std::string& getValue(int i) const override;
    using DirectLookUps::getType;
    using DirectLookUps::getValue;
    int getIndex(const std::string& uri, const std::string& localName) const override;
    int getIndex(const std::string& qname) const override;

    /// Removes all attributes.
    void clear() noexcept;

    /// Replaces the contents by the texts of another list; what is typed there is text here.
    void setAttributes(const XML::Attributes& attributes);

    /// Append an attribute with a name as XML::AttributesImpl has it and the type "CDATA"; duplicates are not
    /// looked for. A value that is no text is shared, or copied from the array; octets have base64 as their
    /// text, as an Encoding a HexEncoding is there, too. An empty array is the empty text.
    void addAttribute(const std::string& uri, const std::string& localName, const std::string& qname,
                      std::string_view text);
    void addAttribute(const std::string& uri, const std::string& localName, const std::string& qname,
                      const AutoPtr<Encoding>& pValue);
    void addAttribute(const std::string& uri, const std::string& localName, const std::string& qname,
                      std::span<const std::byte> octets);
    void addAttribute(const std::string& uri, const std::string& localName, const std::string& qname,
                      std::span<const Int16> values);
    void addAttribute(const std::string& uri, const std::string& localName, const std::string& qname,
                      std::span<const Int32> values);
    void addAttribute(const std::string& uri, const std::string& localName, const std::string& qname,
                      std::span<const Int64> values);
    void addAttribute(const std::string& uri, const std::string& localName, const std::string& qname,
                      std::span<const float> values);
    void addAttribute(const std::string& uri, const std::string& localName, const std::string& qname,
                      std::span<const double> values);
    void addAttribute(const std::string& uri, const std::string& localName, const std::string& qname,
                      std::span<const UUID> values);
    void addAttribute(const std::string& uri, const std::string& localName, const std::string& qname,
                      const std::vector<bool>& values);

    /// Makes a value that of attribute i, by the algorithm with an index in a document, and the URI that the
    /// document declares for it, empty for a built-in one. The strict mode of FastInfosetWriter looks for the
    /// URI in its own document and writes text when it is not declared there.
    void setValue(int i, const AutoPtr<Encoding>& pValue, unsigned int algorithm, const std::string& uri);

    /// Makes a value that of attribute i, whose text stays: it is that of the value.
    void setTyped(int i, const AutoPtr<Encoding>& pValue);

    /// How values become text from now on: UUIDs in lower case, and numbers with a fraction in the canonical
    /// form of XML Schema. Neither at first.
    void setTextForm(bool lowerCaseUUIDs, bool canonicalNumbers) noexcept {
        _lowerCaseUUIDs = lowerCaseUUIDs;
        _canonicalNumbers = canonicalNumbers;
    }

    /// Whether the value of attribute i is typed, and the value itself, null for text.
    bool isTyped(int i) const { return !encoding(i).isNull(); }
    const AutoPtr<Encoding>& encoding(int i) const;

    /// The index of its algorithm, 0 for text, and the URI that the document declares for it, empty for a
    /// built-in one and outside of documents.
    unsigned int algorithm(int i) const;
    const std::string& algorithmURI(int i) const;

    /// The values of attribute i; empty unless it is of that type. Octets are those of hexadecimal and base64
    /// data.
    std::span<const std::byte> octets(int i) const;
    std::span<const Int16> int16Values(int i) const;
    std::span<const Int32> int32Values(int i) const;
    std::span<const Int64> int64Values(int i) const;
    std::span<const float> floatValues(int i) const;
    std::span<const double> doubleValues(int i) const;
    std::span<const UUID> uuidValues(int i) const;
    const std::vector<bool>& boolValues(int i) const;

private:
    struct Value {
        AutoPtr<Encoding> pEncoding; // null: text
        unsigned int algorithm = 0;
        std::string uri;
        const std::string* pURI = nullptr;       // in place of that, as the list's _pTexts
        bool hasText = false;                    // in the list
        mutable std::optional<std::string> text; // once it was asked for, and is not in the list
    };

    friend class TypedAttributeValues;

    // Has the names and texts of a list that lasts longer, until it is filled otherwise: what a document has
    // once and refers to often is not copied.
    void refer(const XML::Attributes& texts);

    // The same for a value and the URI of its algorithm.
    void referToValue(int i, const AutoPtr<Encoding>& pValue, unsigned int algorithm, const std::string& uri);

    const XML::Attributes& texts() const noexcept { return _pTexts ? *_pTexts : _list; }
    const Value& at(int i) const;
    TypedChunk chunk(int i) const;
    template<class E, class T>
    void addArray(const std::string& uri, const std::string& localName, const std::string& qname,
                  std::span<const T> values);

    XML::AttributesImpl _list;
    const XML::Attributes* _pTexts = nullptr; // in place of that; null in lists that are copied or filled
    std::vector<Value> _values;               // one an attribute
    bool _lowerCaseUUIDs = false;
    bool _canonicalNumbers = false;
};

} // namespace Tamo::FastInfoset

#endif
