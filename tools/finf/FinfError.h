#ifndef TAMO_FINF_FINFERROR_H
#define TAMO_FINF_FINFERROR_H

#include <stdexcept>
#include <string>

namespace finf {

/// Why an input cannot be converted: the text that the tool shows behind the name of the input.
class FinfError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;

    /// "WHAT: reason of the system error ERRORNUMBER".
    FinfError(const std::string& what, int errorNumber);

    /// What the tool says of any exception: its message, with line and column for XML text.
    static std::string reason(const std::exception& exception);
};

} // namespace finf

#endif
