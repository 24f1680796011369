#ifndef TAMO_FASTINFOSET_DOCUMENTRESTRICTEDALPHABET_H
#define TAMO_FASTINFOSET_DOCUMENTRESTRICTEDALPHABET_H

#include "Tamo/Export.h"
#include "Tamo/FastInfoset/RestrictedAlphabet.h"
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

    /// Appends an alphabet of these UTF-8 characters (at least one).
    void add(const std::string& characters);

    /// Appends an empty alphabet.
    void addDummy();

    /// The alphabet numbered index, from 1; any other number fails an assertion.
    RestrictedAlphabet& alphabet(unsigned int vocabulary);

    /// The list; alphabet number i is its element i - 1.
    const std::vector<RestrictedAlphabet>& alphabets() const noexcept { return *_pAlphabets; }

    /// The alphabets of this list behind as many as other has; a longer other fails an assertion.
    DocumentRestrictedAlphabet operator-(const DocumentRestrictedAlphabet& other) const;

private:
    explicit DocumentRestrictedAlphabet(int);

    std::vector<RestrictedAlphabet>& changeable();

    // Shared by copies until one of them changes, so that a document without alphabets of its own costs
    // nothing.
    std::shared_ptr<std::vector<RestrictedAlphabet>> _pAlphabets;
};

} // namespace Tamo::FastInfoset

#endif
