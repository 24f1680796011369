#ifndef TAMO_FASTINFOSET_FISEXCEPTION_H
#define TAMO_FASTINFOSET_FISEXCEPTION_H

/// @file
/// The exceptions of the codec.
///
/// FISParseException reports input that ends too early or cannot be resolved, FISEncodingException bits or
/// values that form no valid construct, FISException itself header errors and misuse of the writer. Besides
/// these, the codec lets through `std::out_of_range` ("index out of range") for a table index past the end,
/// Tamo::AssertionViolationException for the conditions that are assertions by interface, Tamo::IOException
/// for stream failures and Tamo::PoolOverflowException for a full hash table; FastInfosetReader makes a
/// FISException of all of them but Tamo::IOException.

#include "Tamo/Exception.h"
#include "Tamo/Export.h"
#include "Tamo/Types.h"
#include <optional>
#include <string>

namespace Tamo::FastInfoset {

/// Base of the codec's exceptions; name "FastInfoset Exception". Those that come out of reading a document
/// say where: what() ends with " at octet N" then, message() and displayText() do not.
class TAMO_API FISException : public ::Tamo::RuntimeException {
public:
    explicit FISException(const std::string& message, int code = 0);
    FISException(const std::string& message, const std::string& argument, int code = 0);
    FISException(const std::string& message, const ::Tamo::Exception& nested, int code = 0);
    explicit FISException(int code);
    const char* name() const noexcept override;
    const char* className() const noexcept override;
    ::Tamo::Exception* clone() const override;
    [[noreturn]] void rethrow() const override;

    /// The octet of the document, counted from 0, at which the construct begins that was being read, or in
    /// the strict mode the one that is refused; none of an exception that was not thrown while reading. An
    /// external vocabulary that is read is a document of its own. What a handler throws is located, too.
    std::optional<UInt64> position() const noexcept { return _position; }

    /// Says where it was thrown, unless that is known: what a reader does with what passes through it.
    void locate(UInt64 octet) noexcept;

protected:
    std::string fullText() const override;

private:
    std::optional<UInt64> _position;
};

/// Input that ends too early or cannot be resolved; name "FastInfoset Parse Exception".
TAMO_DECLARE_EXCEPTION(FISParseException, FISException)
/// Bits or values that form no valid construct; name "FastInfoset Encoding Exception".
TAMO_DECLARE_EXCEPTION(FISEncodingException, FISException)

} // namespace Tamo::FastInfoset

#endif
