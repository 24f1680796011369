#include "ChildOrder.h"
#include "Forms.h"
#include "Refusal.h"

namespace Tamo::FastInfoset {

void ChildOrder::require(const BitStreamReader& reader, unsigned char b, bool isInElement) {
    const bool isDeclaration = b >= Forms::CHARACTERS_END && (b & Forms::DECLARATION_BITS) == Forms::DOCTYPE;
    if (isInElement) {
        Refusal::unless(!isDeclaration, reader, "a document type declaration within an element", "C.3");
        return;
    }
    if (b < Forms::ELEMENT_END) {
        Refusal::unless(!_hasElement, reader, "a second element of the document", "C.2");
        _hasElement = true;
    } else if (b < Forms::CHARACTERS_END) {
        Refusal::at(reader, "character data outside of the document's element", "C.2");
    } else if (isDeclaration) {
        Refusal::unless(!_hasElement && !_hasDeclaration, reader,
                        "a document type declaration behind the first or behind the element", "C.2");
        _hasDeclaration = true;
    } else {
        Refusal::unless((b & Forms::DECLARATION_BITS) != Forms::ENTITY_REFERENCE, reader,
                        "an entity reference outside of the document's element", "C.2");
    }
}

void ChildOrder::requireElement(const BitStreamReader& reader) const {
    Refusal::unless(_hasElement, reader, "a document without element", "C.2");
}

} // namespace Tamo::FastInfoset
