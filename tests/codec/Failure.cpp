#include "Failure.h"
#include "Tamo/Exception.h"
#include <stdexcept>

namespace Tamo::FastInfoset::Test {

std::string failureOf(const std::function<void()>& use) {
    try {
        use();
    } catch (const LogicException& e) {
        // An assertion counts by its condition: the place in the source changes too often.
        static const std::string START("Assertion violation: ");
        const std::string name = e.className();
        const std::string text = e.message();
        const std::size_t start = text.compare(0, START.size(), START) == 0 ? START.size() : 0;
        return name.substr(name.rfind(':') + 1) + ": " + text.substr(start, text.find(" [in file") - start);
    } catch (const Exception& e) {
        const std::string name = e.className();
        return name.substr(name.rfind(':') + 1) + ": " + e.message();
    } catch (const std::out_of_range& e) {
        return std::string("out_of_range: ") + e.what();
    }
    return "";
}

} // namespace Tamo::FastInfoset::Test
