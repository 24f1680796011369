#ifndef TAMO_FINF_FINFERROR_H
#define TAMO_FINF_FINFERROR_H

#include <functional>
#include <stdexcept>
#include <string>

namespace finf {

/// Why the tool cannot do its work: the text that it shows behind the name of the input.
class FinfError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;

    /// "WHAT: reason of the system error ERRORNUMBER".
    FinfError(const std::string& what, int errorNumber);

    /// The system error that is the reason, 0 when there is none.
    int errorNumber() const noexcept { return _errorNumber; }

    /// What the tool says of any exception: its message, with line and column for XML text.
    static std::string reason(const std::exception& exception);

    /// Writes "finf: SUBJECT: reason" on standard error, as one line of printable characters whatever a
    /// document has put into it. Of a reader of the output that has gone away it says nothing.
    static void report(const std::string& subject, const std::exception& exception);

    /// The message on one line of printable characters.
    static std::string oneLine(std::string message);

    /// Does the work, which reads Fast Infoset. Conditions of the format that are assertions, and indexes
    /// past the end of their table, are thrown as FinfError that speaks of a damaged document.
    static void explainDamage(const std::function<void()>& work);

private:
    int _errorNumber = 0;
};

} // namespace finf

#endif
