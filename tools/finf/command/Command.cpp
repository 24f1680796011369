#include "command/Command.h"
#include "command/FinfError.h"

namespace finf {

ExitStatus Command::attempt(const std::string& path, const std::function<void()>& work) {
    try {
        work();
        return DONE;
    } catch (const std::exception& e) {
        FinfError::report(path == "-" ? "standard input" : path, e);
        return FAILED;
    }
}

ExitStatus Command::attemptToRead(const std::string& path, const std::function<void()>& work) {
    return attempt(path, [&] { FinfError::explainDamage(work); });
}

} // namespace finf
