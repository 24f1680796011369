#ifndef TAMO_FASTINFOSET_DETAIL_OPENVOCABULARY_H
#define TAMO_FASTINFOSET_DETAIL_OPENVOCABULARY_H

#include "Tamo/Export.h"
#include "Tamo/FastInfoset/DocumentVocabulary.h"
#include <string>

namespace Tamo::FastInfoset {

/// The external vocabulary that uri names, as an ExternalVocabularyLoader opens it, strictly or not. Declared
/// apart from that class, which knows the parser: a parser that is made without it is linked without it. Any
/// thread.
TAMO_API DocumentVocabulary openVocabulary(const std::string& uri, bool strict);

/// The same for FastInfosetReader: what does not open it, or makes no vocabulary of it, is a FISException
/// too, with the other exception nested.
TAMO_API DocumentVocabulary openVocabularyOrRefuse(const std::string& uri, bool strict);

} // namespace Tamo::FastInfoset

#endif
