#ifndef TAMO_FASTINFOSET_DOCUMENTRESTRICTEDALPHABET_H
#define TAMO_FASTINFOSET_DOCUMENTRESTRICTEDALPHABET_H

#include "Tamo/Export.h"
#include "Tamo/FastInfoset/RestrictedAlphabet.h"
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace Tamo::FastInfoset {

/// The restricted alphabets of a document (ITU-T X.891, 8.2), numbered from 1: the two built-in ones, the
/// reserved numbers 3 to 15, and from 16 on those of the application. A plain value.
class TAMO_API DocumentRestrictedAlphabet {
public:
    /// The built-in alphabet 1.
    static constexpr const char* NUMERIC_CHARACTERS = "0123456789-+.e ";
    /// The built-in alphabet 2.
    static constexpr const char* DATE_TIME_CHARACTERS = "0123456789-:TZ ";

    /// The number of built-in and reserved entries.
    static constexpr std::size_t BUILT_IN = 15;

    /// The built-in and reserved entries.
    DocumentRestrictedAlphabet();

    /// No entries when empty is true, else as the default constructor.
    explicit DocumentRestrictedAlphabet(bool empty);

    DocumentRestrictedAlphabet(const DocumentRestrictedAlphabet& other);
    DocumentRestrictedAlphabet(DocumentRestrictedAlphabet&& other) noexcept = default;
    DocumentRestrictedAlphabet& operator=(DocumentRestrictedAlphabet other) noexcept;
    ~DocumentRestrictedAlphabet();

    /// Appends an alphabet of these UTF-8 characters (at least one).
    void add(const std::string& characters);

    /// Appends an empty alphabet.
    void addDummy();

    /// The alphabet numbered index, from 1; any other number fails an assertion. Valid until an alphabet is
    /// added, whatever becomes of copies of this list.
    RestrictedAlphabet& alphabet(unsigned int vocabulary);
    const RestrictedAlphabet& alphabet(unsigned int vocabulary) const;

    /// The list; alphabet number i is its element i - 1.
    const std::vector<RestrictedAlphabet>& alphabets() const noexcept {
        return _pOwn ? *_pOwn : builtInAlphabets();
    }

    /// The alphabets of this list behind as many as other has; a longer other fails an assertion.
    DocumentRestrictedAlphabet operator-(const DocumentRestrictedAlphabet& other) const;

private:
    static const std::vector<RestrictedAlphabet>& builtInAlphabets();

    std::vector<RestrictedAlphabet>& own();

    std::unique_ptr<std::vector<RestrictedAlphabet>> _pOwn; // null while the list is the built-in one
};

} // namespace Tamo::FastInfoset

#endif
