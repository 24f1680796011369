#ifndef TAMO_XML_DIRECTLOOKUPS_H
#define TAMO_XML_DIRECTLOOKUPS_H

#include "Tamo/Export.h"
#include <string>

namespace Tamo::XML {

/// Look-ups of types and values by name that cost two virtual calls instead of three: for the attribute lists
/// of this library. List is such a list, which derives from this class, Base Attributes or StableAttributes.
/// Used by one thread at a time.
template<class List, class Base>
class TAMO_API DirectLookUps : public Base {
public:
    using Base::getType;
    using Base::getValue;

    const std::string& getType(const std::string& uri, const std::string& localName) const override {
        return typeAt(this->getIndex(uri, localName));
    }

    const std::string& getType(const std::string& qname) const override {
        return typeAt(this->getIndex(qname));
    }

    const std::string& getValue(const std::string& uri, const std::string& localName) const override {
        return valueAt(this->getIndex(uri, localName));
    }

    const std::string& getValue(const std::string& qname) const override {
        return valueAt(this->getIndex(qname));
    }

private:
    const std::string& typeAt(int i) const {
        return i < 0 ? Base::NONE : static_cast<const List&>(*this).List::getType(i);
    }

    const std::string& valueAt(int i) const {
        return i < 0 ? Base::NONE : static_cast<const List&>(*this).List::getValue(i);
    }
};

} // namespace Tamo::XML

#endif
