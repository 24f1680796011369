#include "files/StandardOutput.h"
#include "command/FinfError.h"
#include <cstdlib>
#include <iostream>
#include <string_view>
#include <unistd.h>

namespace finf {

StandardOutput::StandardOutput()
    : _buf(STDOUT_FILENO), _direct(&_buf), _stream(_direct), _pPrevious(std::cout.rdbuf(_stream.rdbuf())) {}

StandardOutput::~StandardOutput() {
    std::cout.rdbuf(_pPrevious);
}

void StandardOutput::passOn() {
    if (auto* pBuf = dynamic_cast<Tamo::DeferredFlushBuf*>(std::cout.rdbuf())) {
        pBuf->passOn();
    }
}

bool StandardOutput::takesColours(const std::string& when) {
    const auto is = [](const char* pValue, std::string_view value) { return pValue && pValue == value; };
    const char* pNoColour = std::getenv("NO_COLOR");
    return when == "always" || (when == "auto" && ::isatty(STDOUT_FILENO) == 1 &&
                                (!pNoColour || is(pNoColour, "")) && !is(std::getenv("TERM"), "dumb"));
}

void StandardOutput::finish() {
    _stream.finish();
    if (_buf.error() != 0) {
        throw FinfError("cannot write", _buf.error());
    }
}

} // namespace finf
