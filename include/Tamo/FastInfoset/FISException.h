#ifndef TAMO_FASTINFOSET_FISEXCEPTION_H
#define TAMO_FASTINFOSET_FISEXCEPTION_H

/// @file
/// The exceptions of the codec.
///
/// FISParseException reports input that ends too early or cannot be resolved, FISEncodingException bits or
/// values that form no valid construct, FISException itself header errors and misuse of the writer. Besides
/// these, the codec lets through `std::out_of_range` ("index out of range") for a table index past the end,
/// Tamo::AssertionViolationException for the conditions that are assertions by interface, Tamo::IOException
/// for stream failures and Tamo::PoolOverflowException for a full hash table.

#include "Tamo/Exception.h"

namespace Tamo::FastInfoset {

/// Base of the codec's exceptions; name "FastInfoset Exception".
TAMO_DECLARE_EXCEPTION(FISException, ::Tamo::RuntimeException)
/// Input that ends too early or cannot be resolved; name "FastInfoset Parse Exception".
TAMO_DECLARE_EXCEPTION(FISParseException, FISException)
/// Bits or values that form no valid construct; name "FastInfoset Encoding Exception".
TAMO_DECLARE_EXCEPTION(FISEncodingException, FISException)

} // namespace Tamo::FastInfoset

#endif
