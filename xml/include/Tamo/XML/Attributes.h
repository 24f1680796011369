#ifndef TAMO_XML_ATTRIBUTES_H
#define TAMO_XML_ATTRIBUTES_H

#include "Tamo/Export.h"
#include <cstddef>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>

namespace Tamo::XML {

/// The attributes of an element (SAX2), in document order.
///
/// Owned by the reader and valid during the startElement call only. An index outside 0 ... getLength() - 1 is
/// an assertion. Look-ups by name take time in the number of attributes. A list need not write them: they are
/// here, by means of the operations that take an index; who overrides getIndex has them faster. Such a class
/// says `using Attributes::getType;` and the like where look-ups are to be seen beside its own operations.
/// Used by one thread at a time.
class TAMO_API Attributes {
public:
    /// An attribute of a list, in views that are valid as long as its strings are.
    struct Item {
        std::string_view uri;
        std::string_view localName;
        std::string_view qname;
        std::string_view value;
    };

    /// Goes over a list, which must outlive it and not change: what a range-based for needs.
    class Iterator {
    public:
        using iterator_category = std::input_iterator_tag; // what it yields is made when it is asked for
        using iterator_concept = std::forward_iterator_tag;
        using value_type = Item;
        using difference_type = std::ptrdiff_t;

        Iterator() = default;
        Iterator(const Attributes& attributes, int i) : _pAttributes(&attributes), _i(i) {}
        Item operator*() const {
            return {_pAttributes->getURI(_i), _pAttributes->getLocalName(_i), _pAttributes->getQName(_i),
                    _pAttributes->getValue(_i)};
        }
        Iterator& operator++() {
            ++_i;
            return *this;
        }
        Iterator operator++(int) { return {*_pAttributes, _i++}; }
        bool operator==(const Iterator&) const = default;

    private:
        const Attributes* _pAttributes = nullptr;
        int _i = 0;
    };

    /// The attributes as a range: `for (auto [uri, localName, qname, value] : attributes)`.
    Iterator begin() const { return {*this, 0}; }
    Iterator end() const { return {*this, getLength()}; }

    /// The value of the attribute with this local name and namespace name, which is by default that of
    /// attributes without namespace; none when there is no such attribute.
    std::optional<std::string_view> find(std::string_view localName, std::string_view uri = {}) const;

    /// The number of attributes.
    virtual int getLength() const = 0;

    /// The namespace name of attribute i; empty when it has none.
    virtual const std::string& getURI(int i) const = 0;

    /// The local name of attribute i; may be empty when the reader does not process namespaces.
    virtual const std::string& getLocalName(int i) const = 0;

    /// The qualified name of attribute i; may be empty when the reader does not know it.
    virtual const std::string& getQName(int i) const = 0;

    /// The declared type of attribute i ("CDATA" without a declaration); may be empty when unknown.
    virtual const std::string& getType(int i) const = 0;

    /// The value of attribute i.
    virtual const std::string& getValue(int i) const = 0;

    /// The index of the attribute with this expanded name; -1 when there is none.
    virtual int getIndex(const std::string& uri, const std::string& localName) const;

    /// The index of the attribute with this qualified name; -1 when there is none.
    virtual int getIndex(const std::string& qname) const;

    /// The type of the attribute with this expanded name; empty when there is none.
    virtual const std::string& getType(const std::string& uri, const std::string& localName) const;

    /// The type of the attribute with this qualified name; empty when there is none.
    virtual const std::string& getType(const std::string& qname) const;

    /// The value of the attribute with this expanded name; empty when there is none.
    virtual const std::string& getValue(const std::string& uri, const std::string& localName) const;

    /// The value of the attribute with this qualified name; empty when there is none.
    virtual const std::string& getValue(const std::string& qname) const;

    virtual ~Attributes() = default;

protected:
    /// What look-ups return for what is not there.
    static const std::string NONE;
};

} // namespace Tamo::XML

#endif
