#ifndef TAMO_TESTS_FAILURE_H
#define TAMO_TESTS_FAILURE_H

#include <functional>
#include <string>

namespace Tamo::FastInfoset::Test {

/// How use fails: the class without namespaces, ": " and the message; for an assertion the message is the
/// condition alone. Empty when nothing is thrown.
std::string failureOf(const std::function<void()>& use);

/// How the cursor fails where a parser fails so: by FISException alone, with the same message.
std::string cursorFailureOf(const std::string& parserFailure);

} // namespace Tamo::FastInfoset::Test

#endif
