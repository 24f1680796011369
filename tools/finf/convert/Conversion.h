#ifndef TAMO_FINF_CONVERSION_H
#define TAMO_FINF_CONVERSION_H

#include <istream>
#include <ostream>
#include <string>

namespace finf {

/// Converts documents, one after the other. An object is used by one thread at a time; different objects
/// share nothing.
class Conversion {
public:
    Conversion() = default;
    virtual ~Conversion() = default;

    Conversion(const Conversion&) = delete;
    Conversion& operator=(const Conversion&) = delete;

    /// Reads a document from in, which stands behind it then where more of them can follow, and writes it to
    /// out. Throws what FinfError::reason explains.
    virtual void convert(std::istream& in, std::ostream& out) = 0;

    /// Passes on to out what is written so far of the document that is being read: for what in waits with.
    virtual void flush() {}

    /// The same in memory.
    std::string converted(const std::string& octets);
};

} // namespace finf

#endif
