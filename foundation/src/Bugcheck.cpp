#include "Tamo/Bugcheck.h"

namespace Tamo {

namespace {

std::string describe(const char* condition, const char* file, int line) {
    std::string text("Assertion violation: ");
    text.append(condition).append(" [in file \"").append(file).append("\", line ");
    text.append(std::to_string(line)).append("]");
    return text;
}

} // namespace

void Bugcheck::assertion(const char* condition, const char* file, int line) {
    throw AssertionViolationException(describe(condition, file, line));
}

void Bugcheck::nullPointer(const char* pointer, const char* file, int line) {
    throw NullPointerException(describe(pointer, file, line));
}

void Bugcheck::unexpected(const char* file, int line) {
    throw AssertionViolationException(describe("unexpected", file, line));
}

} // namespace Tamo
