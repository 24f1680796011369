#include "StandardOutput.h"
#include "FinfError.h"
#include <iostream>
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

void StandardOutput::finish() {
    _stream.finish();
    if (_buf.error() != 0) {
        throw FinfError("cannot write", _buf.error());
    }
}

} // namespace finf
