#ifndef TAMO_FASTINFOSET_ADAPTERS_DETAIL_LIBXMLTEXT_H
#define TAMO_FASTINFOSET_ADAPTERS_DETAIL_LIBXMLTEXT_H

#include "Tamo/FastInfoset/FISException.h"
#include <climits>
#include <libxml/xmlstring.h>
#include <string>
#include <string_view>

namespace Tamo::FastInfoset::Adapters {

/// Strings on their way to libxml2, which counts them in int, and from it. Stateless; any thread.
struct LibxmlText {
    LibxmlText() = delete;

    static const xmlChar* octetsOf(std::string_view text) noexcept {
        return reinterpret_cast<const xmlChar*>(text.data());
    }

    /// The length; FISException for one that int does not hold.
    static int lengthOf(std::string_view text) {
        if (text.size() > static_cast<std::size_t>(INT_MAX)) {
            throw FISException("libxml2 can hold no string of " + std::to_string(text.size()) + " octets");
        }
        return static_cast<int>(text.size());
    }

    /// A string of libxml2's, of which null is the empty one.
    static std::string_view viewOf(const xmlChar* text) noexcept {
        return text ? std::string_view(reinterpret_cast<const char*>(text)) : std::string_view();
    }
};

} // namespace Tamo::FastInfoset::Adapters

#endif
