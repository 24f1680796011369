#ifndef TAMO_FINF_DOCUMENTKIND_H
#define TAMO_FINF_DOCUMENTKIND_H

#include <cstddef>
#include <string_view>

namespace finf {

/// What the first octets of an input say it is.
enum class DocumentKind { EMPTY, XML, FAST_INFOSET, UNKNOWN };

/// How many octets tell the kind of a document: the longest XML declaration of X.891 (12.3) and what follows
/// it.
constexpr std::size_t KIND_OCTETS = 128;

/// The kind of a document that begins with these octets, of which the first KIND_OCTETS count.
DocumentKind kindOf(std::string_view beginning);

/// Whether what begins with this octet, as std::istream::peek() tells it, may be Fast Infoset.
bool mayBeFastInfoset(int octet);

} // namespace finf

#endif
