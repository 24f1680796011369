#include "Failure.h"
#include "Tamo/Exception.h"
#include <stdexcept>

namespace Tamo::FastInfoset::Test {

std::string failureOf(const std::function<void()>& use) {
    try {
        use();
    } catch (const Exception& e) {
        // An assertion counts by its condition: the place in the source changes too often.
        static const std::string START("Assertion violation: ");
        const std::string name = e.className();
        const std::string text = e.message();
        const std::size_t start = text.starts_with(START) ? START.size() : 0;
        return name.substr(name.rfind(':') + 1) + ": " +
               text.substr(start, start == 0 ? std::string::npos : text.find(" [in file") - start);
    } catch (const std::out_of_range& e) {
        return std::string("out_of_range: ") + e.what();
    }
    return "";
}

std::string cursorFailureOf(const std::string& parserFailure) {
    for (const std::string name : {"AssertionViolationException", "PoolOverflowException", "out_of_range"}) {
        if (parserFailure.starts_with(name + ": ")) {
            return "FISException" + parserFailure.substr(name.size());
        }
    }
    return parserFailure;
}

} // namespace Tamo::FastInfoset::Test
