#ifndef TAMO_TESTS_FAILURE_H
#define TAMO_TESTS_FAILURE_H

#include <functional>
#include <string>

namespace Tamo::FastInfoset::Test {

/// How use fails: the class without namespaces, ": " and the message; for an assertion the message is the
/// condition alone. Empty when nothing is thrown.
std::string failureOf(const std::function<void()>& use);

} // namespace Tamo::FastInfoset::Test

#endif
