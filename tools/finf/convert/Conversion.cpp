#include "convert/Conversion.h"
#include "Tamo/MemoryStream.h"
#include <sstream>
#include <utility>

namespace finf {

std::string Conversion::converted(const std::string& octets) {
    Tamo::MemoryInputStream in(octets.data(), octets.size());
    std::ostringstream out;
    convert(in, out);
    return std::move(out).str();
}

} // namespace finf
